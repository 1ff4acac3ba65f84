#pragma once

#include "app/MainWindowHost.h"
#include "ui/QtMsgbox.h"

#include <QMainWindow>
#include <QPointer>
#include <functional>

class QMdiArea;
class QLabel;

// The main window. For now the shell of it: the document area with one
// empty document, and the way out through the application's exit routine.
class frmMain : public QMainWindow {
    Q_OBJECT
public:
    explicit frmMain(QWidget* parent = nullptr);

    QMdiArea* MDIArea() const { return m_area; }
    // Opens an empty standard document, captioned "Document N".
    void newDocument(int number);

    // Closing asks the application to end; it unloads the window itself.
    void setQueryUnload(std::function<void()> handler) { m_queryUnload = std::move(handler); }
    void allowClose() { m_closing = true; }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QMdiArea* m_area;
    std::function<void()> m_queryUnload;
    bool m_closing = false;
};

// The window side of start-up and shut-down.
class QtMainWindowHost : public MainWindowHost {
public:
    QtMainWindowHost();
    ~QtMainWindowHost() override;

    void showSplash(const QString& versionText) override;
    void load() override;
    void MDIFormInitialize() override;
    MsgboxClass& messageBoxes() override { return m_msgbox; }
    errorClass::Prompt errorPrompt() override;
    WindowPlacement placement() const override;
    void unloadOtherWindows() override;
    void closeMainWindow() override;

    frmMain* window() const { return m_window.get(); }

private:
    std::unique_ptr<frmMain> m_window;
    std::unique_ptr<QLabel> m_splash;
    QtMsgbox m_msgbox;
};

// True when a loaded window has that name, compared upper-cased on both sides.
bool IsFormLoaded(const QString& name);
