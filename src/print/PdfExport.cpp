#include "print/PdfExport.h"

#include "documents/DocumentFile.h"
#include "documents/DocumentLifecycle.h"
#include "platform/ProgressReporter.h"
#include "platform/errorClass.h"
#include "print/PdfTarget.h"

#include <QDir>
#include <QFileInfo>

std::unique_ptr<PaginatedDocument>
PaginatedDocument::load(const QString& path, const std::function<void(const QString&)>& warn,
                        bool keepGlyphsUntilDrawn) {
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
    if (keepGlyphsUntilDrawn) {
        document->layout.keepGlyphsUntilDrawn();
    }
    document->layout.endLoad();
    return document;
}

std::unique_ptr<PaginatedDocument>
PaginatedDocument::openToWrite(const QString& path,
                               const std::function<void(const QString&)>& warn) {
    return load(path, warn, true);
}

std::unique_ptr<PaginatedDocument>
PaginatedDocument::open(const QString& path, const std::function<void(const QString&)>& warn) {
    return load(path, warn, false);
}

PrintOutcome writeDocumentPdf(const PageLayout& layout, const DocumentModel& geometry,
                              const QString& path, const PageRange& range, const QString& title,
                              ProgressReporter& progress) {
    // A layout that keeps its glyphs until drawn is laid out as the sheets
    // are written, and its count is known at the end only.
    const int known = layout.keepsGlyphsUntilDrawn() ? 0 : layout.totalPages();
    const int last = range.toPage == 0 ? known : std::min(range.toPage, known);
    PdfTarget target(path, title);
    progress.begin(QStringLiteral("Writing PDF"), std::max(0, last - range.fromPage + 1));
    if (!target.begin(geometry)) {
        progress.end();
        return {0, false, target.error()};
    }
    int written = 0;
    for (int page = range.fromPage; range.toPage == 0 || page <= range.toPage; ++page) {
        if (known > 0 ? page > last : !layout.hasSheet(page)) {
            break;
        }
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
