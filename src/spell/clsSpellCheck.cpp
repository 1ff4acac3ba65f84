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
    try {
        if (m_appFolder.isEmpty()) {
            throw QmError(QmError::PathNotFound, QStringLiteral("Path not found"));
        }
        const QString path = databasePath();
        if (!fileControl::FileExists(path)) {
            createSpellCheckDatabase(path);
        }
        if (!fileControl::FileExists(path)) {
            throw QmError(QmError::FileNotFound, QStringLiteral("File not found: ") + path);
        }
        m_words.loadWordDatabaseIntoHashTable(path);
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
