#include "print/PdfExport.h"

#include "documents/DocumentFile.h"
#include "documents/DocumentLifecycle.h"
#include "platform/ProgressReporter.h"
#include "platform/errorClass.h"
#include "print/PdfTarget.h"

#include <QDir>
#include <QFileInfo>

std::unique_ptr<PaginatedDocument>
PaginatedDocument::open(const QString& path, const std::function<void(const QString&)>& warn) {
    // Refused as the document window refuses it: a folder, binary data.
    if (const std::optional<QString> refusal = refuseBeforeOpening(path)) {
        throw QmError(QmError::InvalidFileFormat, *refusal);
    }
    auto document = std::make_unique<PaginatedDocument>();
    // No layout while the text goes in; the page setup is known only after.
    document->layout.beginLoad();
    OpenedDocument opened = DocumentFile::open(path, document->box, warn);
    document->model = opened.model;
    document->caption = opened.caption;
    document->layout.endLoad();
    return document;
}

PrintOutcome writeDocumentPdf(const PageLayout& layout, const DocumentModel& geometry,
                              const QString& path, const PageRange& range, const QString& title,
                              ProgressReporter& progress) {
    const int last =
        range.toPage == 0 ? layout.totalPages() : std::min(range.toPage, layout.totalPages());
    PdfTarget target(path, title);
    progress.begin(QStringLiteral("Writing PDF"), std::max(0, last - range.fromPage + 1));
    if (!target.begin(geometry)) {
        progress.end();
        return {0, false, target.error()};
    }
    int written = 0;
    for (int page = range.fromPage; page <= last; ++page) {
        progress.step(QStringLiteral("Preparing to print: ") + title);
        if (progress.cancelled()) {
            target.abort();
            progress.end();
            return {0, true, {}};
        }
        if (page > range.fromPage && !target.newPage()) {
            const QString error = target.error();
            target.abort();
            progress.end();
            return {0, false, error};
        }
        target.paintSheet(layout, page);
        ++written;
    }
    progress.end();
    if (!target.end()) {
        return {0, false, target.error()};
    }
    return {written, false, {}};
}

PrintOutcome writeLettersPdf(const std::vector<PrintLetter>& letters, const DocumentModel& geometry,
                             const QString& path, const QString& title,
                             ProgressReporter& progress) {
    PdfTarget target(path, title);
    return PrintDocument(&target, PrintRequest{}, progress)
        .printLetters(letters, geometry, QStringLiteral("Writing PDF"));
}

QString pdfPathBeside(const QString& letterPath) {
    const QFileInfo info(letterPath);
    return info.dir().filePath(info.completeBaseName() + QStringLiteral(".pdf"));
}
