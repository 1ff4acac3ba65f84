#include "spell/clsSpellCheck.h"

#include "context/AppContext.h"
#include "platform/MsgboxClass.h"
#include "platform/ProgressReporter.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"
#include "platform/richtext/RichTextBox.h"
#include "spell/RichTextSpellText.h"
#include "spell/SpellCheckSession.h"
#include "spell/modSpellMDBResource.h"

#include <QDir>

namespace {
const QString kModule = QStringLiteral("QuillmerePad.exe-clsSpellCheck-");
} // namespace

QString clsSpellCheck::databasePath() const {
    return fileControl::AddBackslash(m_appFolder) + QLatin1String(kWordListFileName);
}

MsgboxClass* clsSpellCheck::messages() const {
    return m_msgbox ? m_msgbox : app().msgbox;
}

void clsSpellCheck::createSpellCheckDatabase(const QString& path) {
    ProcedureScope scope(m_errorClass, kModule + QStringLiteral("createSpellCheckDatabase"));
    if (fileControl::FileExists(path)) {
        fileControl::DeleteFile(path);
    }
    buildFileFromResource(path, kWordListResourceId, QLatin1String(kWordListResourceType));
}

bool clsSpellCheck::openSpellCheckDatabase() {
    ProcedureScope scope(m_errorClass, kModule + QStringLiteral("openSpellCheckDatabase"));
    m_wordListProblem.clear();
    try {
        if (m_appFolder.isEmpty() || !fileControl::FolderExists(m_appFolder)) {
            throw QmError(QmError::PathNotFound, QStringLiteral("Path not found"));
        }
        const QString path = databasePath();
        if (const std::optional<QString> problem = loadListFile(path)) {
            m_wordListProblem = *problem;
            m_words.loadWordList(
                path, loadResourceBytes(kWordListResourceId, QLatin1String(kWordListResourceType)));
        }
        return true;
    } catch (const std::exception&) {
        if (MsgboxClass* box = messages()) {
            box->showMessage(QStringLiteral("The spell check wizard was not able to access the "
                                            "spell check database and needs to close."));
        }
        m_failedToInitialize = true;
        return false;
    }
}

std::optional<QString> clsSpellCheck::loadListFile(const QString& path) {
    const QString shown = QDir::toNativeSeparators(path);
    if (!fileControl::FileExists(path)) {
        try {
            createSpellCheckDatabase(path);
        } catch (const QmError&) {
            return QStringLiteral("the word list \"%1\" could not be created").arg(shown);
        }
    }
    std::optional<QByteArray> text = fileControl::readWholeFile(path);
    if (!text) {
        return QStringLiteral("the word list \"%1\" cannot be read").arg(shown);
    }
    if (!isWordListText(*text)) {
        return QStringLiteral("the word list \"%1\" is damaged").arg(shown);
    }
    m_words.loadWordList(path, std::move(*text));
    return std::nullopt;
}

namespace {

// A line of zero bytes alone: what an Add to the shipped list leaves at the
// top of the file (the two bytes behind its last line end become a line of
// their own and sort first). It holds no word and is no damage.
bool zeroLine(const QByteArray& text, qsizetype lineStart) {
    qsizetype i = lineStart;
    while (i < text.size() && text.at(i) == '\0') {
        ++i;
    }
    return i > lineStart && text.mid(i, 2) == "\r\n";
}

} // namespace

bool isWordListText(const QByteArray& text) {
    // What stands behind the last line end is dropped on loading (the
    // shipped list ends in two zero bytes there), so only the lines count.
    const qsizetype end = text.lastIndexOf("\r\n");
    if (end < 0) {
        return false;
    }
    qsizetype lineStart = 0;
    for (qsizetype i = 0; i < end; ++i) {
        const auto c = static_cast<unsigned char>(text.at(i));
        if (c == '\n' && i > 0 && text.at(i - 1) == '\r') {
            lineStart = i + 1;
            continue;
        }
        if (c == '\r' && text.at(i + 1) == '\n') {
            continue;
        }
        if (c == 0 && zeroLine(text, lineStart)) {
            continue;
        }
        if (c < 0x20) {
            return false;
        }
    }
    return true;
}

void clsSpellCheck::startSpellCheck(const DialogRunner& showDialog) {
    ProcedureScope scope(m_errorClass, kModule + QStringLiteral("startSpellCheck"));
    if (ProgressReporter* progress = app().progress) {
        progress->begin(QStringLiteral("Checking document for spelling errors, please wait ..."),
                        0);
    }
    m_animationOpen = true;
    openSpellCheckForm(showDialog);
    closeAnimation();
}

void clsSpellCheck::closeAnimation() {
    if (!m_animationOpen) {
        return;
    }
    m_animationOpen = false;
    if (ProgressReporter* progress = app().progress) {
        progress->end();
    }
}

void clsSpellCheck::openSpellCheckForm(const DialogRunner& showDialog) {
    ProcedureScope scope(m_errorClass, kModule + QStringLiteral("openSpellCheckForm"));
    if (!openSpellCheckDatabase()) {
        return;
    }
    SpellCheckSession form(*this);
    const bool hasErrors = form.Initialize();
    closeAnimation();
    if (form.scanCancelled()) {
        return;
    }
    if (hasErrors) {
        if (showDialog) {
            showDialog(form);
        }
    } else if (MsgboxClass* box = messages()) {
        box->showMessage(QStringLiteral("There are no spelling errors"));
    }
}

void spellCheckPage(RichTextBox& page, const QString& templatesFolder,
                    const clsSpellCheck::DialogRunner& showDialog, QObject* owner) {
    if (app().isCreatingDocument) {
        return;
    }
    const int caret = page.SelStart();
    RichTextSpellText text(page);
    clsSpellCheck spell;
    spell.setErrorClass(app().errors);
    spell.setMsgboxClass(app().msgbox);
    spell.setMDIForm(owner);
    spell.setRTB(&text);
    spell.setAppName(QStringLiteral("Quillmere Pad"));
    spell.setAppFolder(templatesFolder);
    spell.setSelectErrors(true);
    spell.startSpellCheck(showDialog);
    page.setSelStart(caret);
    page.setSelLength(0);
}
