#pragma once

#include "documents/DocumentLifecycle.h"

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <functional>
#include <map>
#include <memory>

class frmDocument;
class frmMain;
class QMdiSubWindow;

// The File commands of the main window over the document lifecycle: new,
// open, save, revert, close, and the questions before a document window
// closes, however it is closed (menu, tab button, exit). Also keeps the
// status bar's line and page counts for the active document.
class DocumentCommands : public QObject, private LifecycleWindows {
    Q_OBJECT
public:
    explicit DocumentCommands(frmMain& window);
    ~DocumentCommands() override;

    DocumentLifecycle& lifecycle() { return m_lifecycle; }

    // The whole opening routine (RTF turned template, continuous display
    // for big files, the templates folder question, an open window
    // activated), for the Quick Picks, drops and recent files.
    bool openExistingDocument(const QString& path, int fileSaveType);
    void deleteDocumentFile(const QString& path);
    // Closes every document window, each with its question; false when the
    // user kept one open.
    bool unloadAllDocuments();

    // The routine that files a merge result's records; without one, such a
    // result cannot be saved and says so.
    using MergeSaver = std::function<bool(frmDocument&)>;
    void setMergeSaver(MergeSaver saver) { m_mergeSaver = std::move(saver); }

    // The lifecycle side of a window: the same object for the window's life.
    LifecycleDocument* documentOf(frmDocument* document);

Q_SIGNALS:
    // A file was opened or saved under a name (for the recent files list).
    void documentFileUsed(const QString& path);
    // Files in the templates folder may have come or gone.
    void fileListChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::vector<LifecycleDocument*> documents() override;
    LifecycleDocument* activeDocument() override;
    LifecycleDocument* newDocumentWindow(const QString& caption) override;
    LifecycleDocument* openDocumentWindow(const QString& path) override;
    void activate(LifecycleDocument& document) override;
    void unload(LifecycleDocument& document) override;
    void fileUsed(const QString& path) override { Q_EMIT documentFileUsed(path); }
    void refreshFileList() override { Q_EMIT fileListChanged(); }
    std::optional<bool> saveMergeDoc(LifecycleDocument& document) override;

    void registerRoutes();
    // Drag and drop of files on the main window; true when handled.
    bool dropEvent(QEvent* event);
    void onWindowAdded(QMdiSubWindow* sub);
    void scheduleStatus();
    void refreshStatus();
    frmDocument* activeFrm() const;
    void withActive(const std::function<void(LifecycleDocument&)>& routine);

    frmMain& m_window;
    DocumentLifecycle m_lifecycle;
    std::map<frmDocument*, std::unique_ptr<LifecycleDocument>> m_documents;
    QPointer<frmDocument> m_added;
    MergeSaver m_mergeSaver;
    bool m_statusPending = false;
    // Takes the counts again once a document being made is done.
    QTimer m_statusRetry;
    // Set while a window is closed on purpose, without its question.
    frmDocument* m_unloading = nullptr;
};

// Creates the File commands for the main window and registers their routes.
void installDocumentCommands(frmMain& window);
// The main window's File commands, or null before installation.
DocumentCommands* documentCommands(const frmMain& window);
