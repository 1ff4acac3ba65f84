#pragma once

#include "app/MainWindowHost.h"
#include "app/modMenuStatus.h"
#include "app/modOptions.h"
#include "ui/QtFileDialogs.h"
#include "ui/QtMsgbox.h"
#include "ui/QtProgress.h"

#include <QHash>
#include <QMainWindow>
#include <QPointer>
#include <functional>
#include <optional>

class CommandActions;
class OptionsCommands;
class RecentFilesMenu;
class Ruler;
class ZoomBox;
class frmDocument;
class QComboBox;
class QLabel;
class QMdiArea;
class QMdiSubWindow;
class QStatusBar;
class QTextCursor;
class QTextDocument;
class QToolBar;

// The main window: the frame around the document windows, with the menus,
// the tool bars, the font bar and the status bar. It decides nothing itself:
// each command goes to one routine, and which commands are usable comes from
// the availability table for the active document.
class frmMain : public QMainWindow {
    Q_OBJECT
public:
    explicit frmMain(QWidget* parent = nullptr);
    ~frmMain() override;

    QMdiArea* MDIArea() const { return m_area; }
    CommandActions* commands() const { return m_commands; }
    QComboBox* fontNameBox() const { return m_fontName; }
    QComboBox* fontSizeBox() const { return m_fontSize; }

    // Opens an empty standard document, captioned "Document N".
    void newDocument(int number);
    // Opens a document file in a window of its own, with the page setup and
    // caption its file gives. A file that cannot be read is reported through
    // the message boxes and leaves no window behind; false then.
    bool openDocumentFile(const QString& path);
    // The same without the messages: the new window, or QmError (the file
    // is missing, unreadable or not RTF) and no window.
    frmDocument* openDocumentWindow(const QString& path);
    // Puts a document at the head of File > Recent Files and the settings
    // file: after it was opened, or saved under a new name.
    void addRecentFile(const QString& path);
    RecentFilesMenu* recentFiles() const { return m_recentFiles; }
    OptionsCommands* options() const { return m_options; }

    // Runs a command by its name, behind the document-creation guard. A
    // command that is unavailable does nothing: its action is disabled, and
    // this refuses the same way for callers that bypass the action.
    void runCommand(const QString& command);
    // Gives a command its routine. Each subsystem's window code registers its
    // own; a command without a routine stays disabled with a note.
    void addRoute(const QString& command, std::function<void()> routine);
    bool hasRoute(const QString& command) const { return m_routes.contains(command); }
    // The routine of a command, empty without one: a subsystem can run its
    // own step after another's (a new template, then its recipients).
    std::function<void()> route(const QString& command) const { return m_routes.value(command); }

    // The active document window: the area's active one, or, while another
    // program has the focus, the last one activated. Null with none open.
    QMdiSubWindow* activeDocumentWindow() const;

    // How a document window reports its state to the availability table.
    // The default reads a text edit inside the window.
    using DocumentStateReader = std::function<std::optional<ActiveDocumentState>(QMdiSubWindow*)>;
    void setDocumentStateReader(DocumentStateReader reader) { m_stateReader = std::move(reader); }

    // Recomputes and applies command availability for the active document;
    // with none open the whole group goes off.
    void refreshMenuStatus();
    // The blanket switch, applied at once.
    void EnableOrDisableAllMenuAndButtons(bool enable);
    const MenuStatus& menuStatus() const { return m_status; }

    // The screen's fonts and the sizes 5 to 72 into the font bar.
    void LoadFonts();
    // Shows or hides the bars from the settings file, with the check marks.
    void GetSettings();
    // Text of a status bar panel, 1 to 5 (3 the caret's line, 5 the count).
    void setStatusPanel(int panel, const QString& text);
    // Shows or hides the bar of a View command with its check mark, as the
    // command does, without writing the setting.
    void setViewShown(const QString& command, bool shown);

    // Closing asks the application to end; it unloads the window itself.
    void setQueryUnload(std::function<void()> handler) { m_queryUnload = std::move(handler); }
    void allowClose() { m_closing = true; }

Q_SIGNALS:
    // A document window was added to the area, already shown.
    void documentWindowAdded(QMdiSubWindow* window);
    // A document window became the active one, or one closed (then `sub`
    // may be the one going away): panels that follow the active document
    // look again.
    void activeDocumentChanged(QMdiSubWindow* sub);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void buildFontBar();
    void buildStatusBar();
    void buildRuler();
    void registerRoutes();
    void watchDocument(QMdiSubWindow* sub);
    void addDocumentWindow(frmDocument* document, const QString& caption);
    void onDocumentActivated(QMdiSubWindow* sub);
    void onDocumentClosed();
    void applyStatus();
    void toggleView(const QString& command);
    QWidget* viewTarget(const QString& command) const;
    enum class Arrangement { Cascade, TileHorizontal, TileVertical, Icons };
    void arrangeDocuments(Arrangement how);
    void setAllDocumentsState(Qt::WindowState state);
    // Shows a new document window as the Options dialog's "document startup
    // position" says.
    void showAtStartupPosition(QMdiSubWindow* sub, DocumentStartup startup);

    QMdiArea* m_area;
    CommandActions* m_commands = nullptr;
    RecentFilesMenu* m_recentFiles = nullptr;
    OptionsCommands* m_options = nullptr;
    QToolBar* m_fontBar = nullptr;
    QComboBox* m_fontName = nullptr;
    QComboBox* m_fontSize = nullptr;
    QStatusBar* m_statusBar = nullptr;
    ZoomBox* m_zoom = nullptr;
    QToolBar* m_rulerBar = nullptr;
    Ruler* m_ruler = nullptr;
    QList<QLabel*> m_panels;
    QPointer<QMdiSubWindow> m_lastActive;
    MenuStatus m_status;
    DocumentStateReader m_stateReader;
    QHash<QString, std::function<void()>> m_routes;
    std::function<void()> m_queryUnload;
    bool m_closing = false;
};

// The state of a document's text and caret as the availability table reads it.
ActiveDocumentState readTextState(const QTextDocument& text, const QTextCursor& cursor,
                                  int documentType);

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
    bool unloadDocuments() override;

    frmMain* window() const { return m_window.get(); }

private:
    std::unique_ptr<frmMain> m_window;
    std::unique_ptr<QLabel> m_splash;
    QtMsgbox m_msgbox;
    QtFileDialogs m_fileDialogs;
    QtProgress m_progress;
};

// True when a loaded window has that name, compared upper-cased on both sides.
bool IsFormLoaded(const QString& name);
