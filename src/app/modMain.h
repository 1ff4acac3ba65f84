#pragma once

#include "app/MainWindowHost.h"

#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

class ApplicationServices;
class clsDocMerge;
class clsINI;
class clsWorkingFolderLocation;
class errorClass;

// Owns the process-wide objects that start-up creates and releases them in
// the order shut-down prescribes. The application context (app()) points at
// them while they live.
class Application {
public:
    explicit Application(std::unique_ptr<MainWindowHost> window);
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    // Process entry: "--automation" clears isStandAlone and returns false
    // (the process waits for the host); otherwise sets isStandAlone, keeps
    // the arguments as the files to open (the command line has checked
    // them), runs startApplication and returns true.
    bool Main(const QStringList& arguments);

    // Brings the application up. Every step runs even when one before it
    // failed, as the host expects a window in any case.
    void startApplication(bool createFirstDocument, clsDocMerge* automationObject);

    // The one way out: tells a host, then unloads the main window.
    void exitCurrentProgram();
    bool hasExited() const { return m_exited; }

    // Called to tell the host that the program ends (the D-Bus signal).
    void setExitDocMergeHook(std::function<void()> hook) { m_exitDocMerge = std::move(hook); }

    MainWindowHost& window() { return *m_window; }
    clsINI* settings() const { return m_ini.get(); }
    clsWorkingFolderLocation* folders() const { return m_folders.get(); }
    errorClass* errors() const;
    ApplicationServices* services() const { return m_services.get(); }

    // Files named on the command line, for the window to open once it is up.
    const QStringList& filesToOpen() const { return m_filesToOpen; }

private:
    void unloadMainWindow();
    void openDatabaseStep();
    void saveWindowState();

    std::unique_ptr<MainWindowHost> m_window;
    // Error object, message box, field inserter, database.
    std::unique_ptr<ApplicationServices> m_services;
    std::unique_ptr<clsINI> m_ini;
    std::unique_ptr<clsWorkingFolderLocation> m_folders;
    QStringList m_filesToOpen;
    std::function<void()> m_exitDocMerge;
    bool m_exited = false;
    bool m_exiting = false;
};

// The database path recorded in the settings file, or "" when it is unset
// ("<not_set>") or blank.
QString getDataFilePath();

// Centres a window: over its parent (with the old program's asymmetry: the
// left edge never takes the parent's left) or on the screen.
struct FormRect {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
};
FormRect CenterForm(const FormRect& window, const FormRect* parent, const FormRect& screen);
