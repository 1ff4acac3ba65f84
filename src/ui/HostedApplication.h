#pragma once

#include "app/clsDocMerge.h"

class Application;
class AutomationService;
class QtMainWindowHost;
class frmDocument;

// The windowed program as the automation object sees it: start-up with the
// host's values, and the document windows themselves: what the host puts on
// the active document is what the user sees and what the merge button reads.
class HostedApplication : public DocMergeApplication {
public:
    HostedApplication(Application& program, QtMainWindowHost& window);
    ~HostedApplication() override;

    // Where the end of the program is told to the host.
    void setService(AutomationService* service) { m_service = service; }

    void setBusy(bool busy) override;
    void startApplication(clsDocMerge& object) override;
    void doEventsIfInputPending() override;
    void createNewStandardDocument() override;
    void openExistingDocument(const QString& filePath) override;
    bool hasActiveDocument() const override;
    QString SQLFilter() const override;
    void setSQLFilter(const QString& filter) override;
    void connectToRemittRST() override;
    FieldTable& IDList() override;
    void changeTemplateInformation(int mergeType) override;
    void performMerge() override;
    void bringToForeground() override;
    void exitCurrentProgram() override;

private:
    // The main window's active document window, as the user sees it.
    frmDocument* activeDocument() const;

    Application& m_program;
    QtMainWindowHost& m_window;
    AutomationService* m_service = nullptr;
    bool m_started = false;
    int m_busy = 0;
};

// The hosted start: serves the automation object on the session bus and runs
// the event loop until the program ends. A second process finds the name
// taken and ends at once.
int runAutomation(Application& program, QtMainWindowHost& window);
