#include "documents/DocumentLifecycle.h"

#include "context/AppContext.h"
#include "documents/DocumentFile.h"
#include "documents/DocumentModel.h"
#include "documents/PagedTextLayout.h"
#include "documents/modDocument.h"
#include "files/clsINI.h"
#include "files/clsWorkingFolderLocation.h"
#include "platform/FileDialogs.h"
#include "platform/MsgboxClass.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"
#include "platform/richtext/RichTextBox.h"
#include "platform/rtf/RtfReader.h"
#include "platform/text/CodePage1252.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFont>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>
#include <algorithm>

namespace {

const QString kCrLf = QStringLiteral("\r\n");

// The filter of the document dialogs as the old dialogs wrote it.
constexpr const char* kFilter =
    "Quillmere Documents (*.qmw;*.qmb;*.qme;*.qmt;*.qma)|*.qmw;*.qmb;*.qme;*.qmt;*.qma|"
    "Rich Text Files (*.rtf)|*.rtf|Text Files (*.txt)|*.txt|All Files (*.*)|*.*|";

// Files bigger than this open in continuous display.
constexpr qint64 kContinuousFromKilobytes = 250;

// Holds isCreatingDocument for a routine and gives back what it found.
class CreatingDocument {
public:
    CreatingDocument() : m_previous(app().isCreatingDocument) { app().isCreatingDocument = true; }
    ~CreatingDocument() { app().isCreatingDocument = m_previous; }
    CreatingDocument(const CreatingDocument&) = delete;
    CreatingDocument& operator=(const CreatingDocument&) = delete;

private:
    bool m_previous;
};

QString templatesFolder() {
    const clsWorkingFolderLocation* folders = app().workingFolders;
    return folders ? folders->getTemplatesFolder() : QString();
}

QString inFolder(const QString& folder, const QString& name) {
    return folder.isEmpty() ? name : fileControl::AddBackslash(folder) + name;
}

bool hasThreeLetterExtension(const QString& name) {
    return name.size() >= 4 && name.at(name.size() - 4) == QLatin1Char('.');
}

// Replaces a three-letter extension by `ext`, or appends it; a name that
// already ends in it stays.
QString withExtension(const QString& name, const QString& ext) {
    if (ext.isEmpty() || name.endsWith(QLatin1Char('.') + ext, Qt::CaseInsensitive)) {
        return name;
    }
    if (hasThreeLetterExtension(name)) {
        return name.left(name.size() - 4) + QLatin1Char('.') + ext;
    }
    return name + QLatin1Char('.') + ext;
}

QString baseName(const QString& path) {
    return QFileInfo(path).completeBaseName();
}

// The document as its file leaves it: saved, nothing to undo.
void markSaved(LifecycleDocument& document) {
    document.model().HasDocumentChanged = false;
    document.model().IsDocumentSaved = true;
    document.box().document()->setModified(false);
}

QString samePath(const QString& path) {
    const QFileInfo info(path);
    const QString canonical = info.canonicalFilePath();
    return canonical.isEmpty() ? QDir::cleanPath(info.absoluteFilePath()) : canonical;
}

} // namespace

NewDocumentFields newDocumentFields(NewDocumentKind kind, int count,
                                    const QString& templatesFolderPath) {
    struct Template {
        NewDocumentKind kind;
        const char* caption;
        InformationKind information;
        const char* extension;
    };
    static const Template kTemplates[] = {
        {NewDocumentKind::Company, "Merge Template - Companies ", InformationKind::Companies,
         ".qmb"},
        {NewDocumentKind::CompanyContact, "Merge Template - Contacts ",
         InformationKind::CompaniesAndContacts, ".qmb"},
        {NewDocumentKind::Contact, "Merge Template - Contacts ", InformationKind::Contacts, ".qme"},
        {NewDocumentKind::Remitt, "Merge Template - Tasks ", InformationKind::Tasks, ".qmt"},
        {NewDocumentKind::Appointment, "Merge Template - Appointments ",
         InformationKind::Appointments, ".qma"},
    };
    NewDocumentFields fields;
    const QString number = QString::number(count);
    if (kind == NewDocumentKind::Standard) {
        fields.caption = QStringLiteral("Document ") + number;
        fields.fileName = inFolder(templatesFolderPath,
                                   QStringLiteral("Document ") + number + QStringLiteral(".rtf"));
        return fields;
    }
    for (const Template& t : kTemplates) {
        if (t.kind == kind) {
            fields.caption = QLatin1String(t.caption) + number;
            fields.fileName =
                inFolder(templatesFolderPath, QStringLiteral("Template Document ") + number +
                                                  QLatin1String(t.extension));
            fields.documentType = DocumentModel::Template;
            fields.informationType = t.information;
        }
    }
    return fields;
}

QString documentFileFilter() {
    return FileDialogs::filterFromPipes(QLatin1String(kFilter));
}

int openFilterFileSaveType(int filterIndex) {
    return filterIndex == 3 || filterIndex == 4 ? DocumentModel::PlainText
                                                : DocumentModel::RichText;
}

int droppedFileSaveType(const QString& path) {
    return path.right(3).toUpper() == QLatin1String("TXT") ? DocumentModel::PlainText
                                                           : DocumentModel::RichText;
}

QString changeDocumentCaption(const QString& current, int documentType, const QString& newName) {
    QString base = newName;
    if (base.trimmed().isEmpty()) {
        base = current;
        static const char* const kPrefixes[] = {
            "Merge Template - ",   "Merge Template -",   "Merge Template ",   "Merge Template",
            "Merge Results - ",    "Merge Results -",    "Merge Results ",    "Merge Results",
            "Client Merge Doc - ", "Client Merge Doc -", "Client Merge Doc ", "Client Merge Doc",
        };
        for (const char* prefix : kPrefixes) {
            base.remove(QLatin1String(prefix));
        }
    }
    return DocumentFile::caption(documentType, base);
}

QString correctSaveFileName(const QString& name, const QString& ext, int fileSaveType) {
    if (fileSaveType == DocumentModel::PlainText) {
        QString result = name;
        const QString txt = QStringLiteral(".txt");
        if (!result.endsWith(txt, Qt::CaseInsensitive) && hasThreeLetterExtension(result)) {
            result = result.left(result.size() - 4) + txt;
        }
        if (!result.endsWith(txt, Qt::CaseInsensitive)) {
            result += txt;
        }
        return result;
    }
    if (ext.isEmpty()) {
        return name;
    }
    if (name.endsWith(QStringLiteral(".rtf"), Qt::CaseInsensitive) ||
        hasThreeLetterExtension(name)) {
        return name.left(name.size() - 4) + QLatin1Char('.') + ext;
    }
    return name + QLatin1Char('.') + ext;
}

SaveAsName correctSaveAsFileName(const QString& name, int filterIndex, const QString& documentExt) {
    switch (filterIndex) {
    case 2:
        return {withExtension(name, QStringLiteral("rtf")), DocumentModel::RichText};
    case 3:
        return {withExtension(name, QStringLiteral("txt")), DocumentModel::PlainText};
    case 4:
        return {name, DocumentModel::RichText};
    default:
        return {withExtension(name, documentExt), DocumentModel::RichText};
    }
}

QString correctSelectionFileName(const QString& name, const QString& documentExt) {
    const QString ext = documentExt.toUpper();
    if (ext.isEmpty() || name.endsWith(QLatin1Char('.') + ext)) {
        return name;
    }
    QString result = name;
    if (result.endsWith(QStringLiteral(".rtf"))) {
        result.chop(4);
    }
    return result + QLatin1Char('.') + ext;
}

std::optional<QString> closeQuestion(int documentType, bool isSaved, bool hasChanged,
                                     const QString& fileName, const QString& caption) {
    const QString saveChanges =
        QStringLiteral("Would you like to save the changes before closing?");
    switch (documentType) {
    case DocumentModel::Standard:
    case DocumentModel::Template:
        if (hasChanged) {
            return QStringLiteral("The document ") + fileName + QStringLiteral(" has changed.") +
                   kCrLf + saveChanges;
        }
        return std::nullopt;
    case DocumentModel::MergeResults:
        if (!isSaved) {
            return QStringLiteral("Would you like to save the results of the merge document ") +
                   caption + QStringLiteral("?") + kCrLf +
                   QStringLiteral("If you choose 'Yes', a copy of each client's merge results will "
                                  "be saved in the respective client's document vault.");
        }
        if (hasChanged) {
            return QStringLiteral("The merge document ") + caption +
                   QStringLiteral(" has changed.") + kCrLf + saveChanges;
        }
        return std::nullopt;
    default:
        return std::nullopt;
    }
}

QString openFailureMessage(const QmError& fault) {
    if (fault.number() == QmError::InvalidFileFormat) {
        return QStringLiteral(
            "This is not a valid Quillmere Pad file.  Try opening this file as a text file.");
    }
    return fault.description();
}

std::optional<QString> refuseBeforeOpening(const QString& path) {
    const QFileInfo info(path);
    if (info.isDir()) {
        return QStringLiteral("%1 is a folder, not a document.").arg(path);
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        // The loader reports why.
        return std::nullopt;
    }
    const QByteArray head = file.read(4096);
    // Text in UTF-16 has NUL bytes too, behind its byte-order mark.
    const bool utf16 = head.startsWith("\xFF\xFE") || head.startsWith("\xFE\xFF");
    if (!RtfReader::hasRtfHeader(head) && !utf16 && head.contains('\0')) {
        return QStringLiteral(
                   "%1 holds binary data; Quillmere Pad opens documents and text files only.")
            .arg(info.fileName());
    }
    return std::nullopt;
}

QString formatLineCount(long long value) {
    if (value == 0) {
        return QString();
    }
    const bool negative = value < 0;
    QString digits = QString::number(negative ? -value : value);
    for (qsizetype i = digits.size() - 3; i > 0; i -= 3) {
        digits.insert(i, QLatin1Char(','));
    }
    return negative ? QLatin1Char('-') + digits : digits;
}

LineStatus documentLineStatus(const QTextDocument& document, int cursorPosition) {
    LineStatus status;
    const QTextBlock caretBlock = document.findBlock(cursorPosition);
    auto* paged = dynamic_cast<PagedTextLayout*>(document.documentLayout());
    if (paged != nullptr && paged->lineNumbersReady() && caretBlock.isValid()) {
        status.total = document.lineCount();
        status.current = caretBlock.firstLineNumber() + 1;
        const QTextLayout* layout = caretBlock.layout();
        const int offset = cursorPosition - caretBlock.position();
        for (int i = 1; layout != nullptr && i < layout->lineCount(); ++i) {
            if (offset >= layout->lineAt(i).textStart()) {
                status.current = caretBlock.firstLineNumber() + i + 1;
            }
        }
        return status;
    }
    status.total = 0;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const QTextLayout* layout = block.layout();
        const int lines = layout != nullptr ? layout->lineCount() : 0;
        if (block == caretBlock) {
            status.current = status.total + 1;
            const int offset = cursorPosition - block.position();
            for (int i = 0; i < lines; ++i) {
                const QTextLine line = layout->lineAt(i);
                if (offset >= line.textStart()) {
                    status.current = status.total + i + 1;
                }
            }
        }
        status.total += std::max(1, lines);
    }
    status.total = std::max(status.total, 1LL);
    return status;
}

QString pageStatusText(int page, int total) {
    return QStringLiteral("Page %1 of %2").arg(page).arg(total);
}

QByteArray documentSaveBytes(const RichTextBox& box, const DocumentModel& model, bool withTrailer) {
    QByteArray content;
    if (model.fileSaveType == DocumentModel::PlainText) {
        const QString text = box.Text();
        content = CodePage1252::canEncode(text) ? CodePage1252::encode(text)
                                                : QByteArray("\xEF\xBB\xBF") + text.toUtf8();
    } else {
        content = box.TextRTF().toLatin1();
    }
    return withTrailer ? documentFileBytes(content, model) : content;
}

void DocumentLifecycle::showMessage(const QString& text) const {
    if (MsgboxClass* box = app().msgbox) {
        box->showMessage(text);
    }
}

LifecycleDocument* DocumentLifecycle::createNewDocument(NewDocumentKind kind) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-modDocument-createNewDocument");
    if (kind != NewDocumentKind::Standard && app().database == nullptr) {
        showMessage(QStringLiteral(
            "You cannot create a new merge documents at this time.  You need to open the "
            "Quillmere Pad from within Quillmere to link to the client's data properly."));
        return nullptr;
    }
    CreatingDocument guard;
    m_windows.setupMergeToolBar(DocumentModel::Standard, InformationKind::Companies);
    const NewDocumentFields fields =
        newDocumentFields(kind, ++app().unnamedDocumentCount, templatesFolder());
    LifecycleDocument* document = m_windows.newDocumentWindow(fields.caption);
    if (!document) {
        return nullptr;
    }
    QString fontName = QStringLiteral("Arial");
    QString fontSize = QStringLiteral("10");
    if (clsINI* ini = app().iniSettings) {
        fontName =
            ini->getKeyString(QStringLiteral("Document"), QStringLiteral("DefaultFont"), fontName);
        fontSize = ini->getKeyString(QStringLiteral("Document"), QStringLiteral("DefaultFontSize"),
                                     fontSize);
    }
    QFont font(fontName);
    const double points = fontSize.toDouble();
    font.setPointSizeF(points > 0 ? points : 10);
    document->box().document()->setDefaultFont(font);
    DocumentModel& model = document->model();
    model.fileSaveType = DocumentModel::RichText;
    model.documentType = fields.documentType;
    model.InformationType = fields.informationType;
    model.IsDocumentSaved = false;
    model.HasDocumentChanged = false;
    document->setFileName(fields.fileName);
    document->setCaption(fields.caption);
    if (kind != NewDocumentKind::Standard) {
        m_windows.setupMergeToolBar(fields.documentType, fields.informationType);
    }
    doEventsIfInputPending();
    return document;
}

void DocumentLifecycle::OpenDocument() {
    FileDialogs* dialogs = app().fileDialogs;
    if (!dialogs) {
        return;
    }
    const auto choice = dialogs->openFile(QStringLiteral("Select file to open"), templatesFolder(),
                                          documentFileFilter());
    if (!choice) {
        return;
    }
    OpenExistingDocument(choice->path, openFilterFileSaveType(choice->filterIndex));
}

LifecycleDocument* DocumentLifecycle::OpenExistingDocument(const QString& path, int fileSaveType) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-modDocument-OpenExistingDocument");
    if (!QFileInfo::exists(path)) {
        return nullptr;
    }
    for (LifecycleDocument* open : m_windows.documents()) {
        if (!open->fileName().isEmpty() && open->model().IsDocumentSaved &&
            samePath(open->fileName()) == samePath(path)) {
            m_windows.activate(*open);
            return open;
        }
    }
    if (const auto refusal = refuseBeforeOpening(path)) {
        showMessage(*refusal);
        return nullptr;
    }
    QString target = path;
    bool converted = false;
    if (path.endsWith(QStringLiteral(".rtf"), Qt::CaseInsensitive)) {
        // An RTF file becomes a template in the program's own format. A
        // template of that name already there is never overwritten: the RTF
        // then opens as it is.
        const QString qmb = path.left(path.size() - 4) + QStringLiteral(".qmb");
        if (!QFileInfo::exists(qmb) && fileControl::CopyFile(path, qmb, false)) {
            fileControl::DeleteFile(path);
            m_windows.refreshFileList();
            target = qmb;
            converted = true;
        }
    }
    LifecycleDocument* document = nullptr;
    {
        CreatingDocument guard;
        try {
            document = m_windows.openDocumentWindow(target);
        } catch (const QmError& fault) {
            showMessage(openFailureMessage(fault));
            return nullptr;
        }
        if (!document) {
            return nullptr;
        }
        ++app().unnamedDocumentCount;
        DocumentModel& model = document->model();
        // Text without an RTF header stays text whatever the filter said.
        if (model.fileSaveType != DocumentModel::PlainText) {
            model.fileSaveType = fileSaveType;
        }
        document->setFileName(target);
        if (converted && model.documentType == DocumentModel::Standard) {
            model.documentType = DocumentModel::Template;
        }
        document->setCaption(
            changeDocumentCaption(QString(), model.documentType, baseName(target)));
        if (fileControl::FileSize(target) / 1024 > kContinuousFromKilobytes) {
            document->showContinuous();
        }
        markSaved(*document);
        m_windows.setupMergeToolBar(model.documentType, model.InformationType);
        m_windows.fileUsed(target);
    }
    // An opening ends with the flag down whatever stood before: a print
    // dialog answered with Cancel leaves it up, and opening a document
    // (from Quick Picks, which does not wait on the flag) is the way out.
    app().isCreatingDocument = false;
    if (converted) {
        // Writes the trailer into the new template file.
        SaveDocument(*document);
    }
    if (document->model().documentType == DocumentModel::Template) {
        const QString folder = fileControl::RemoveBackslash(templatesFolder());
        const QString fileFolder = fileControl::RemoveBackslash(QFileInfo(target).absolutePath());
        if (!folder.isEmpty() && samePath(fileFolder) != samePath(folder)) {
            MsgboxClass* box = app().msgbox;
            const QString question =
                QStringLiteral("Do you want to copy this file to your Quillmere default templates "
                               "folder?") +
                kCrLf + kCrLf +
                QStringLiteral("If you click 'Yes' than this will allow you to more conveniently "
                               "access this template document in the Quillmere Pad's Quick Pick "
                               "list.");
            if (box && box->askQuestion(question) == MsgboxClass::Yes) {
                const QString copy = inFolder(folder, QFileInfo(target).fileName());
                if (fileControl::CopyFile(target, copy, true)) {
                    document->setFileName(copy);
                    m_windows.refreshFileList();
                } else {
                    showMessage(
                        QStringLiteral("The template could not be copied to %1.").arg(folder));
                }
            }
        }
    }
    return document;
}

bool DocumentLifecycle::writeDocument(LifecycleDocument& document, const QString& path,
                                      bool withTrailer) {
    QByteArray bytes;
    try {
        bytes = documentSaveBytes(document.box(), document.model(), withTrailer);
    } catch (const QmError& fault) {
        showMessage(QStringLiteral("%1 was not saved: %2").arg(path, fault.description()));
        return false;
    }
    QString reason;
    if (!fileControl::writeFileAtomically(path, bytes, &reason)) {
        showMessage(QStringLiteral("%1 was not saved: %2\r\nThe file on disk has not been changed.")
                        .arg(path, reason));
        return false;
    }
    return true;
}

bool DocumentLifecycle::SaveDocument(LifecycleDocument& document) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-modDocument-SaveDocument");
    CreatingDocument guard;
    DocumentModel& model = document.model();
    if (!model.IsDocumentSaved) {
        return SaveDocumentAs(document);
    }
    switch (model.documentType) {
    case DocumentModel::MergeResults: {
        const auto saved = m_windows.saveMergeDoc(document);
        if (!saved) {
            showMessage(QStringLiteral("Merge results cannot be saved in this version."));
        }
        return saved.value_or(false);
    }
    case DocumentModel::SavedMergeResult:
        showMessage(
            QStringLiteral("You cannot save or change an existing completed client merge "
                           "result document.  These documents are locked for viewing only."));
        return false;
    default:
        break;
    }
    const bool isTemplate = model.documentType == DocumentModel::Template;
    const QString ext = isTemplate ? getFileExtension(model) : QStringLiteral("rtf");
    const QString path = correctSaveFileName(document.fileName(), ext, model.fileSaveType);
    if (!writeDocument(document, path, isTemplate)) {
        return false;
    }
    document.setFileName(path);
    markSaved(document);
    return true;
}

bool DocumentLifecycle::SaveDocumentAs(LifecycleDocument& document) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-modDocument-SaveDocumentAs");
    DocumentModel& model = document.model();
    if (model.documentType == DocumentModel::SavedMergeResult) {
        showMessage(QStringLiteral(
            "You cannot save or change an existing locked client merge result document.  These "
            "documents are locked for archivak purposes and can only be viewed."));
        return false;
    }
    if (model.documentType == DocumentModel::MergeResults) {
        const auto saved = m_windows.saveMergeDoc(document);
        if (!saved) {
            showMessage(QStringLiteral("Merge results cannot be saved in this version."));
        }
        return saved.value_or(false);
    }
    FileDialogs* dialogs = app().fileDialogs;
    if (!dialogs) {
        return false;
    }
    const QString suggested =
        inFolder(templatesFolder(), QFileInfo(document.fileName()).fileName());
    const auto choice =
        dialogs->saveFile(QStringLiteral("Save file as"), suggested, documentFileFilter());
    if (!choice) {
        return false;
    }
    doEventsIfInputPending();
    CreatingDocument guard;
    const SaveAsName name =
        correctSaveAsFileName(choice->path, choice->filterIndex, getFileExtension(model));
    const int previousSaveType = model.fileSaveType;
    model.fileSaveType = name.fileSaveType;
    const bool withTrailer = model.documentType == DocumentModel::Template &&
                             !name.fileName.endsWith(QStringLiteral(".rtf"), Qt::CaseInsensitive);
    if (!writeDocument(document, name.fileName, withTrailer)) {
        model.fileSaveType = previousSaveType;
        return false;
    }
    document.setFileName(name.fileName);
    document.setCaption(
        changeDocumentCaption(QString(), model.documentType, baseName(name.fileName)));
    markSaved(document);
    m_windows.fileUsed(name.fileName);
    m_windows.refreshFileList();
    return true;
}

void DocumentLifecycle::SaveAllDocuments() {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-modDocument-SaveAllDocuments");
    for (LifecycleDocument* document : m_windows.documents()) {
        SaveDocument(*document);
    }
    showMessage(QStringLiteral("The documents have been saved."));
}

void DocumentLifecycle::SaveSelectionAs() {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-modDocument-SaveSelectionAs");
    LifecycleDocument* document = m_windows.activeDocument();
    FileDialogs* dialogs = app().fileDialogs;
    if (!document || !dialogs) {
        return;
    }
    // Taken before the dialog: the selection is what the user saw.
    const QString selection = document->box().SelRTF();
    const QString suggested = templatesFolder();
    const auto choice =
        dialogs->saveFile(QStringLiteral("Save selection as ..."), suggested, documentFileFilter());
    if (!choice) {
        return;
    }
    CreatingDocument guard;
    const QString path =
        correctSelectionFileName(choice->path, getFileExtension(document->model()));
    QString reason;
    if (!fileControl::writeFileAtomically(path, selection.toLatin1(), &reason)) {
        showMessage(QStringLiteral("%1 was not saved: %2\r\nThe file on disk has not been changed.")
                        .arg(path, reason));
    }
}

void DocumentLifecycle::RevertDocument() {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-modDocument-RevertDocument");
    LifecycleDocument* document = m_windows.activeDocument();
    MsgboxClass* box = app().msgbox;
    if (!document || !box) {
        return;
    }
    const QString question = QStringLiteral("Do you want to revert [") +
                             baseName(document->fileName()) +
                             QStringLiteral("] to the last saved version?");
    if (box->askQuestion(question) != MsgboxClass::Yes) {
        return;
    }
    const QString path = document->fileName();
    if (!QFileInfo(path).isFile()) {
        // A document never saved has no version to go back to; its text stays.
        showMessage(QStringLiteral("File not found: ") + path);
        return;
    }
    CreatingDocument guard;
    try {
        document->reload(path, document->model().fileSaveType);
    } catch (const QmError& fault) {
        showMessage(openFailureMessage(fault));
        return;
    }
    document->model().HasDocumentChanged = false;
    document->box().document()->setModified(false);
}

void DocumentLifecycle::deleteDocumentFile(const QString& path) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-modDocument-deleteDocumentFile");
    MsgboxClass* box = app().msgbox;
    if (!box) {
        return;
    }
    const QString name = baseName(path);
    for (LifecycleDocument* document : m_windows.documents()) {
        const QString wouldBe =
            changeDocumentCaption(QString(), document->model().documentType, name);
        if (wouldBe != document->caption()) {
            continue;
        }
        const QString question =
            QStringLiteral("The ") + document->caption() +
            QStringLiteral(" is currently open.  Are you sure you want to close "
                           "this form and permanently delete this document?");
        if (box->askQuestion(question) != MsgboxClass::Yes) {
            return;
        }
        markSaved(*document);
        m_windows.unload(*document);
        break;
    }
    CreatingDocument guard;
    const QString question = QStringLiteral("Are you sure you want to permanently delete the ") +
                             name + QStringLiteral(" document?");
    if (box->askQuestion(question) != MsgboxClass::Yes) {
        return;
    }
    if (!fileControl::DeleteFile(path)) {
        showMessage(QStringLiteral("%1 could not be deleted.").arg(path));
    }
    m_windows.refreshFileList();
}

bool DocumentLifecycle::queryUnload(LifecycleDocument& document) {
    if (app().isCreatingDocument) {
        return false;
    }
    if (document.closesSilently()) {
        return true;
    }
    const DocumentModel& model = document.model();
    const auto question =
        closeQuestion(model.documentType, model.IsDocumentSaved, model.HasDocumentChanged,
                      document.fileName(), document.caption());
    MsgboxClass* box = app().msgbox;
    if (!question || !box) {
        return true;
    }
    int answer = MsgboxClass::Cancel;
    {
        CreatingDocument guard;
        answer = box->askQuestionWithCancel(*question);
    }
    if (answer == MsgboxClass::Cancel) {
        return false;
    }
    if (answer == MsgboxClass::No) {
        return true;
    }
    // A save that did not happen (dialog cancelled, write refused) keeps
    // the window, so that nothing is lost.
    if (model.documentType == DocumentModel::MergeResults) {
        const auto saved = m_windows.saveMergeDoc(document);
        if (!saved) {
            showMessage(QStringLiteral("Merge results cannot be saved in this version."));
        }
        return saved.value_or(false);
    }
    return SaveDocument(document);
}
