#include "app/modMenuStatus.h"

#include "app/MenuDefinition.h"

namespace {

QString standard(const char* key) {
    return buttonCommandId(QStringLiteral("tbrStandard"), QLatin1String(key));
}
QString edit(const char* key) {
    return buttonCommandId(QStringLiteral("tbrEdit"), QLatin1String(key));
}

void setEnabled(MenuStatus& status, const QString& command, bool enable) {
    if (enable) {
        status.disabled.remove(command);
    } else {
        status.disabled.insert(command);
    }
}

} // namespace

const QStringList& availabilityGroup() {
    static const QStringList group = [] {
        QStringList g = {
            QStringLiteral("mnuFileClose"),
            QStringLiteral("mnuFileCloseAll"),
            QStringLiteral("mnuFileSave"),
            QStringLiteral("mnuFileSaveAs"),
            QStringLiteral("mnuFileSaveAll"),
            QStringLiteral("mnuFileSaveSelectionAs"),
            QStringLiteral("mnuFileRevert"),
            QStringLiteral("mnuFilePrint"),
            QStringLiteral("mnuFilePrintPreview"),
            QStringLiteral("mnuFileExportPDF"),
            QStringLiteral("mnuEditUndo"),
            QStringLiteral("mnuEditRedo"),
            QStringLiteral("mnuEditCut"),
            QStringLiteral("mnuEditCopy"),
            QStringLiteral("mnuEditPaste"),
            QStringLiteral("mnuEditDelete"),
            QStringLiteral("mnuEditSelectAll"),
            QStringLiteral("mnuSearchFind"),
            QStringLiteral("mnuSearchFindNext"),
            QStringLiteral("mnuSearchReplace"),
            QStringLiteral("mnuSearchGoTo"),
            QStringLiteral("mnuViewDocumentProperties"),
            QStringLiteral("mnuInsertTimeDate"),
            QStringLiteral("mnuInsertPicture"),
            QStringLiteral("mnuInsertTextFile"),
            QStringLiteral("mnuInsertPathandFile"),
            QStringLiteral("mnuInsertSymbols"),
            QStringLiteral("mnuFormatFont"),
            QStringLiteral("mnuFormatBullet"),
            QStringLiteral("mnuFormatIndent"),
            QStringLiteral("mnuFormatLeftIndent"),
            QStringLiteral("mnuFormatIncreaseLeftIndent"),
            QStringLiteral("mnuFormatDecreaseLeftIndent"),
            QStringLiteral("mnuFormatRightIndent"),
            QStringLiteral("mnuFormatIncreaseRightIndent"),
            QStringLiteral("mnuFormatDecreaseRightIndent"),
            QStringLiteral("mnuFormatHangingIndent"),
            QStringLiteral("mnuFormatIncreaseHangingIndent"),
            QStringLiteral("mnuFormatDecreaseHangingIndent"),
            QStringLiteral("mnuFormatLower"),
            QStringLiteral("mnuFormatUpper"),
            QStringLiteral("mnuFormatScript"),
            QStringLiteral("mnuMergeMergeCompany"),
            QStringLiteral("mnuMergeMergeContact"),
            QStringLiteral("mnuMergeMergeRemitt"),
            QStringLiteral("mnuMergeMergeAppointment"),
            QStringLiteral("mnuMergeTestMerge"),
            QStringLiteral("mnuMergeMergeNewDoc"),
            QStringLiteral("mnuMergeMergePrinter"),
            QStringLiteral("mnuToolsSpellCheck"),
        };
        const auto add = [&g](const char* bar, std::initializer_list<const char*> keys) {
            for (const char* key : keys) {
                g << buttonCommandId(QLatin1String(bar), QLatin1String(key));
            }
        };
        add("tbrStandard", {"Save", "Print", "FullScreen", "WordWrap", "Cut", "Copy", "Paste",
                            "Undo", "Redo", "Indent", "Outdent", "SpellCheck"});
        add("tbrFormat", {"Find", "Bold", "Italic", "Underline", "StrikeThru", "Left", "Center",
                          "Right", "Bullet"});
        add("tbrFile", {"Close", "Save", "SaveAll", "Print"});
        add("tbrEdit", {"Cut", "Copy", "Paste", "Undo", "Redo", "Indent", "Outdent", "SpellCheck"});
        return g;
    }();
    return group;
}

void EnableOrDisableAllMenuAndButtons(MenuStatus& status, bool enable) {
    if (enable) {
        status.disabled.clear();
        return;
    }
    for (const QString& command : availabilityGroup()) {
        status.disabled.insert(command);
    }
}

bool SetAppropriateMenuStatus(MenuStatus& status,
                              const std::optional<ActiveDocumentState>& document) {
    if (!document) {
        return false;
    }
    const ActiveDocumentState& doc = *document;
    if (doc.documentType == 4) {
        return true;
    }
    setEnabled(status, QStringLiteral("mnuFileRevert"), doc.changed);
    setEnabled(status, QStringLiteral("mnuFileSaveSelectionAs"), doc.hasSelection);
    setEnabled(status, QStringLiteral("mnuEditUndo"), doc.canUndo);
    setEnabled(status, QStringLiteral("mnuEditCut"), doc.hasSelection);
    setEnabled(status, QStringLiteral("mnuEditCopy"), doc.hasSelection);
    setEnabled(status, QStringLiteral("mnuEditDelete"), doc.hasSelection);
    setEnabled(status, QStringLiteral("mnuEditPaste"), doc.clipboardHasText);
    for (const QString& button : {standard("Undo"), edit("Undo")}) {
        setEnabled(status, button, doc.canUndo);
    }
    for (const QString& button : {standard("Cut"), standard("Copy"), edit("Cut"), edit("Copy")}) {
        setEnabled(status, button, doc.hasSelection);
    }
    for (const QString& button : {standard("Paste"), edit("Paste")}) {
        setEnabled(status, button, doc.clipboardHasText);
    }

    using Alignment = ActiveDocumentState::Alignment;
    if (doc.alignment != Alignment::Mixed) {
        status.left = doc.alignment == Alignment::Left;
        status.center = doc.alignment == Alignment::Center;
        status.right = doc.alignment == Alignment::Right;
    }
    status.bold = doc.bold;
    status.italic = doc.italic;
    status.underline = doc.underline;
    status.strikeThru = doc.strikeThru;
    status.bullet = doc.bullet;
    status.fontName = doc.fontName;
    status.fontSize = doc.fontSize;
    return true;
}

MenuStatus ResetMenuStatus(const MenuStatus& previous,
                           const std::optional<ActiveDocumentState>& document) {
    MenuStatus status = previous;
    EnableOrDisableAllMenuAndButtons(status, true);
    SetAppropriateMenuStatus(status, document);
    return status;
}

bool commandAvailable(const MenuStatus& status, const QString& command, bool built) {
    return built && status.isEnabled(command);
}

QString notAvailableYetTip() {
    return QStringLiteral("Not available yet in this version");
}
