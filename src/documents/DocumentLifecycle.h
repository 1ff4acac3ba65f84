#pragma once

#include "context/DocumentKinds.h"

#include <QString>
#include <optional>
#include <vector>

class DocumentModel;
class QmError;
class QTextDocument;
class RichTextBox;

// What the lifecycle routines need of one open document. The document
// window implements it over its widgets; tests implement it over a bare
// RichTextBox and model.
class LifecycleDocument {
public:
    virtual ~LifecycleDocument() = default;

    virtual DocumentModel& model() = 0;
    virtual RichTextBox& box() = 0;
    virtual QString caption() const = 0;
    // Also the caption of the window and its tab.
    virtual void setCaption(const QString& caption) = 0;
    virtual QString fileName() const = 0;
    virtual void setFileName(const QString& path) = 0;
    // Replaces the text with the file's and lays it out again. Throws
    // QmError as RichTextBox::LoadFile does; the text is then empty.
    virtual void reload(const QString& path, int format) = 0;
    // Switches the window to continuous display.
    virtual void showContinuous() = 0;
    // A merge result without records closes without a question.
    virtual bool closesSilently() const { return false; }
};

// What the lifecycle routines need of the main window.
class LifecycleWindows {
public:
    virtual ~LifecycleWindows() = default;

    virtual std::vector<LifecycleDocument*> documents() = 0;
    // Null when no document is open.
    virtual LifecycleDocument* activeDocument() = 0;
    // A new empty standard document window with this caption, shown.
    virtual LifecycleDocument* newDocumentWindow(const QString& caption) = 0;
    // A new window holding the file as DocumentFile::open reads it, shown,
    // or an exception (QmError) and no window.
    virtual LifecycleDocument* openDocumentWindow(const QString& path) = 0;
    virtual void activate(LifecycleDocument& document) = 0;
    // Closes the window without asking anything; the pointer dies.
    virtual void unload(LifecycleDocument& document) = 0;
    // A file was opened or saved under this name (the recent files list).
    virtual void fileUsed(const QString& /*path*/) {}
    // The templates folder's contents may have changed.
    virtual void refreshFileList() {}
    // Saves the records of a merge result into the clients' folders; true
    // when they were saved, nothing when no such routine is installed.
    virtual std::optional<bool> saveMergeDoc(LifecycleDocument& /*document*/) {
        return std::nullopt;
    }
    // The merge tool bar for a document kind.
    virtual void setupMergeToolBar(int /*documentType*/, InformationKind /*kind*/) {}
};

// The six kinds of new document of the File > New menu.
enum class NewDocumentKind {
    Standard,
    Company,
    CompanyContact,
    Contact,
    Remitt,
    Appointment,
};

// What a new document starts with.
struct NewDocumentFields {
    QString caption;
    QString fileName;
    int documentType = 1;
    InformationKind informationType = InformationKind::Companies;
};
// Number `count` of the run; `templatesFolder` may be empty.
NewDocumentFields newDocumentFields(NewDocumentKind kind, int count,
                                    const QString& templatesFolder);

// The filter of every document file dialog, in the dialog's own notation
// (see FileDialogs), and the fileSaveType that an Open filter index means.
QString documentFileFilter();
int openFilterFileSaveType(int filterIndex);
// A file dropped on the window opens as text when its name ends in "TXT".
int droppedFileSaveType(const QString& path);

// The caption of a document: the prefix of its type and either `newName`
// or, when that is blank, the current caption without any older prefix.
QString changeDocumentCaption(const QString& current, int documentType, const QString& newName);

// Save's correction of a file name: for rich text the wanted extension
// `ext` (without the point) replaces ".rtf" or another three-letter one, or
// is appended; for plain text the name ends in ".txt".
QString correctSaveFileName(const QString& name, const QString& ext, int fileSaveType);

// Save As's correction by the chosen filter (1 the program's documents,
// 2 RTF, 3 text, 4 all files: the name as typed).
struct SaveAsName {
    QString fileName;
    int fileSaveType = 0;
};
SaveAsName correctSaveAsFileName(const QString& name, int filterIndex, const QString& documentExt);

// Save Selection As's correction: the document's extension in upper case
// unless the name already ends in it, ".rtf" dropped first.
QString correctSelectionFileName(const QString& name, const QString& documentExt);

// The question asked before a document closes, or nothing when it closes
// without one.
std::optional<QString> closeQuestion(int documentType, bool isSaved, bool hasChanged,
                                     const QString& fileName, const QString& caption);

// What the user is told when a file cannot be opened.
QString openFailureMessage(const QmError& fault);
// A reason to refuse a path before loading it (a folder, binary data), or
// nothing when it may be opened.
std::optional<QString> refuseBeforeOpening(const QString& path);

// The caret's line (1-based) and the number of lines, counted through the
// whole document as laid out so far: a paragraph not yet laid out counts as
// one line. Never forces the layout, so it is cheap while a long document
// is still being paginated.
struct LineStatus {
    long long current = 1;
    long long total = 1;
};
LineStatus documentLineStatus(const QTextDocument& document, int cursorPosition);

// Counts in the status bar: digits grouped by "," in threes, zero blank.
QString formatLineCount(long long value);
QString pageStatusText(int page, int total);

// The file's bytes as a save writes them: the box's RTF or its plain text
// (code page 1252, or UTF-8 with a byte-order mark when that cannot hold
// it), followed by the trailer when `withTrailer`.
QByteArray documentSaveBytes(const RichTextBox& box, const DocumentModel& model, bool withTrailer);

// The routines of a document's life: create, open, save, revert, delete,
// close. Messages go through app().msgbox, file choices through
// app().fileDialogs (none installed: every dialog counts as cancelled).
// Each routine holds isCreatingDocument while it works.
class DocumentLifecycle {
public:
    explicit DocumentLifecycle(LifecycleWindows& windows) : m_windows(windows) {}

    // Null when the kind needs a database and there is none (a message
    // says so).
    LifecycleDocument* createNewDocument(NewDocumentKind kind);

    // Asks for a file and opens it.
    void OpenDocument();
    // Opens a file in a window of its own, or activates the window that
    // already holds it. Null when nothing was opened; a missing file does
    // nothing, a file that cannot be read is reported.
    LifecycleDocument* OpenExistingDocument(const QString& path, int fileSaveType);

    // True when the document is saved when the routine ends (a cancelled
    // dialog, a locked result and a failed write leave it unsaved and say
    // why, and the old file whole).
    bool SaveDocument(LifecycleDocument& document);
    bool SaveDocumentAs(LifecycleDocument& document);
    void SaveAllDocuments();
    void SaveSelectionAs();
    void RevertDocument();
    void deleteDocumentFile(const QString& path);

    // The question before a document closes, and what the answer does.
    // True when the window may close.
    bool queryUnload(LifecycleDocument& document);

private:
    bool writeDocument(LifecycleDocument& document, const QString& path, bool withTrailer);
    void showMessage(const QString& text) const;

    LifecycleWindows& m_windows;
};
