#include "merge/MergeTemplate.h"

#include "context/AppContext.h"
#include "documents/modDocument.h"
#include "merge/clsInsertFieldsInRTB.h"
#include "platform/richtext/RichTextBox.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"

#include <QFileInfo>

QString invalidDocumentMessage() {
    return QStringLiteral(
        "This is not a valid Quillmere Pad file.  Try opening this file as a text file.");
}

MergeTemplate openMergeTemplate(const QString& path) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-modDocument-OpenExistingDocument");
    if (!fileControl::FileExists(path)) {
        throw QmError(QmError::FileNotFound, QStringLiteral("File not found: ") + path);
    }
    MergeTemplate result;
    openCompanionInformation(path, result.model);
    if (QFileInfo(path).suffix().toLower() == QLatin1String("qmw")) {
        result.model.documentType = DocumentModel::SavedMergeResult;
    }
    RichTextBox box;
    box.LoadFile(path, RichTextBox::rtfRTF);
    if (app().fieldInserter) {
        box.setTextRTF(app().fieldInserter->convertProvinceFields(box.TextRTF()));
    }
    static const char* const kPrefixes[] = {"", "", "Merge Template - ", "Merge Results - ",
                                            "Client Merge Doc - "};
    const int type = result.model.documentType;
    result.caption = QString::fromLatin1(type >= 1 && type <= 4 ? kPrefixes[type] : "") +
                     QFileInfo(path).completeBaseName();
    result.rtf = box.TextRTF();
    return result;
}
