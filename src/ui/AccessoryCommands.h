#pragma once

#include <QObject>
#include <QPointer>

class frmFScreen;
class frmHelp;
class frmMain;
class frmTip;
class QuickPicksBar;

// The main window's side panel of Quick Picks and the commands of the
// accessory windows: the templates folder and open-documents wizards,
// document properties, full screen, Tip of the Day, About and the guide.
// Owned by the main window; installAccessoryCommands puts it in place.
class AccessoryCommands : public QObject {
    Q_OBJECT
public:
    explicit AccessoryCommands(frmMain& window);

    QuickPicksBar* quickPicks() const { return m_quickPicks; }
    // The full-screen view and the guide's window while they are open.
    frmFScreen* fullScreen() const;
    frmHelp* help() const;
    // The Tip of the Day that opened by itself at start-up, while open.
    frmTip* startupTip() const;

    // File1_DblClick: brings the window of `path` to the front if the file
    // is open, otherwise opens it.
    void openQuickPick(const QString& path);
    // cmdOpenTemplateFolder: the templates folder wizard, then the list
    // follows the folder it ends with.
    void openTemplateFolderWizard();
    // F11 and the full-screen button: the active document full screen, or
    // back from it.
    void toggleFullScreen();
    // The guide at topic 1 (contents), 2 (index) or 3 (search).
    void showHelp(int topic);
    // The show-and-hide command of the side panel.
    void toggleQuickPicks();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void registerRoutes();
    void openDocumentsWizard();
    void showDocumentProperties();
    void applyQuickPicksSetting();
    void showTipAtStartup();

    frmMain& m_window;
    QuickPicksBar* m_quickPicks;
    QPointer<frmFScreen> m_fullScreen;
    QPointer<frmHelp> m_help;
    QPointer<frmTip> m_startupTip;
    bool m_shownOnce = false;
};

// Creates the side panel and registers the routes of these commands.
AccessoryCommands* installAccessoryCommands(frmMain& window);
