#include "merge/MergeTemplate.h"

#include "documents/DocumentFile.h"
#include "platform/errorClass.h"

QString invalidDocumentMessage() {
    return QStringLiteral(
        "This is not a valid Quillmere Pad file.  Try opening this file as a text file.");
}

MergeTemplate openMergeTemplate(const QString& path) {
    OpenedDocument opened = DocumentFile::open(path);
    if (opened.isPlainText) {
        // A merge works on rich text; a template is always saved as such.
        throw QmError(QmError::InvalidFileFormat, QStringLiteral("Invalid file format"));
    }
    MergeTemplate result;
    result.model = std::move(opened.model);
    result.caption = std::move(opened.caption);
    result.rtf = std::move(opened.rtf);
    return result;
}
