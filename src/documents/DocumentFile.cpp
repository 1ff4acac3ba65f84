#include "documents/DocumentFile.h"

#include "context/AppContext.h"
#include "documents/modDocument.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"
#include "platform/richtext/RichTextBox.h"
#include "platform/richtext/RichTextBoxPrivate.h"
#include "platform/rtf/RtfReader.h"

#include <QFileInfo>
#include <algorithm>
#include <cstdio>

namespace {

// The paper codes the page setup offers; 256 is a size typed by hand.
constexpr int kPaperCodes[] = {1,  3,  4,  5,  6,  7,  8,  9,  11, 12, 13, 14, 15,
                               16, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29,
                               30, 31, 32, 33, 34, 35, 36, 37, 38, 39, 40, 41, 256};

void toStandardError(const QString& line) {
    std::fputs(qPrintable(QStringLiteral("quillmere-pad: ") + line + QLatin1Char('\n')), stderr);
}

} // namespace

bool DocumentFile::repairPageSetup(DocumentModel& model, const WarningSink& warn) {
    const DocumentModel defaults;
    bool changed = false;
    const bool keepsFlags = model.HasDocumentChanged;
    if (std::find(std::begin(kPaperCodes), std::end(kPaperCodes), model.PaperSize) ==
        std::end(kPaperCodes)) {
        warn(QStringLiteral("unknown paper code %1, Letter is used").arg(model.PaperSize));
        model.PaperSize = defaults.PaperSize;
        changed = true;
    }
    if (model.getPageWidth() <= 0 || model.getPageHeight() <= 0) {
        warn(QStringLiteral("a page of %1 x %2 twips cannot be laid out, Letter is used")
                 .arg(model.getPageWidth())
                 .arg(model.getPageHeight()));
        model.putPageWidth(defaults.getPageWidth(), false);
        model.putPageHeight(defaults.getPageHeight(), false);
        changed = true;
    }
    const bool negative = model.getLeftMargin() < 0 || model.getRightMargin() < 0 ||
                          model.getTopMargin() < 0 || model.getBottomMargin() < 0;
    if (negative || model.printableWidth() <= 0 || model.printableHeight() <= 0) {
        warn(QStringLiteral("margins %1, %2, %3, %4 do not fit the page, one inch is used")
                 .arg(model.getLeftMargin())
                 .arg(model.getRightMargin())
                 .arg(model.getTopMargin())
                 .arg(model.getBottomMargin()));
        model.putLeftMargin(defaults.getLeftMargin(), false);
        model.putRightMargin(defaults.getRightMargin(), false);
        model.putTopMargin(defaults.getTopMargin(), false);
        model.putBottomMargin(defaults.getBottomMargin(), false);
        changed = true;
    }
    // Reading a file does not make the document changed.
    model.HasDocumentChanged = keepsFlags;
    return changed;
}

QString DocumentFile::caption(int documentType, const QString& name) {
    static const char* const kPrefixes[] = {"", "", "Merge Template - ", "Merge Results - ",
                                            "Client Merge Doc - "};
    const bool known = documentType >= 1 && documentType <= 4;
    return QString::fromLatin1(known ? kPrefixes[documentType] : "") + name;
}

OpenedDocument DocumentFile::open(const QString& path, RichTextBox& box, const WarningSink& warn) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-modDocument-OpenExistingDocument");
    const WarningSink sink = warn ? warn : WarningSink(toStandardError);
    QString reason;
    const auto bytes = fileControl::readWholeFile(path, &reason);
    if (!bytes) {
        if (!fileControl::FileExists(path) && !fileControl::FolderExists(path)) {
            throw QmError(QmError::FileNotFound, QStringLiteral("File not found: ") + path);
        }
        throw QmError(QmError::PathFileAccessError, reason);
    }
    OpenedDocument result;
    const QFileInfo info(path);
    if (!RtfReader::hasRtfHeader(*bytes)) {
        // Text from elsewhere: no trailer to read, saved back as text.
        result.isPlainText = true;
        result.model.fileSaveType = DocumentModel::PlainText;
        box.setText(decodePlainText(*bytes));
        result.text = box.Text();
    } else {
        const QString latin1 = QString::fromLatin1(*bytes);
        openCompanionInformationFromText(path, latin1, result.model, true, sink);
        repairPageSetup(result.model, sink);
        if (info.suffix().toLower() == QLatin1String("qmw")) {
            result.model.documentType = DocumentModel::SavedMergeResult;
        }
        box.setTextRTF(latin1);
        if (app().rewriteRegionalFields) {
            result.rtf = box.TextRTF();
            const QString rewritten = app().rewriteRegionalFields(result.rtf);
            // Most documents hold no regional placeholder: no second parse.
            if (rewritten != result.rtf) {
                box.setTextRTF(rewritten);
                result.rtf = box.TextRTF();
            }
        }
    }
    result.model.HasDocumentChanged = false;
    result.model.IsDocumentSaved = true;
    result.caption = caption(result.model.documentType, info.completeBaseName());
    return result;
}

OpenedDocument DocumentFile::open(const QString& path, const WarningSink& warn) {
    RichTextBox box;
    OpenedDocument result = open(path, box, warn);
    if (!result.isPlainText && result.rtf.isEmpty()) {
        result.rtf = box.TextRTF();
    }
    return result;
}

void DocumentFile::save(const QString& path, const RichTextBox& box, const DocumentModel& model) {
    saveBytes(path, box.TextRTF().toLatin1(), model);
}

void DocumentFile::saveBytes(const QString& path, const QByteArray& content,
                             const DocumentModel& model) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-modDocument-saveCompanionInformation");
    const QByteArray bytes = documentFileBytes(content, model);
    QString reason;
    if (!fileControl::writeFileAtomically(path, bytes, &reason)) {
        throw QmError(QmError::PathFileAccessError,
                      QStringLiteral("Path/File access error: %1").arg(reason));
    }
}
