#include "app/Commands.h"
#include "context/AppContext.h"
#include "platform/ProgressReporter.h"
#include "platform/errorClass.h"
#include "print/PdfExport.h"

#include <QDir>

// quillmere-pad pdf DOC OUT.pdf [--pages RANGE]: the document's sheets as
// the window lays them out, on paper of its page setup, into one PDF.
int runPdfCommand(const QStringList& args, CommandIO& io) {
    const QStringList files = positionalArguments(args, {QStringLiteral("--pages")});
    if (files.size() != 2) {
        io.err << "Usage: quillmere-pad pdf DOC OUT.pdf [--pages RANGE]\n";
        return 2;
    }
    PageRange range;
    if (const auto text = optionValue(args, QStringLiteral("--pages"))) {
        const PageRangeResult parsed = parsePageRange(*text);
        if (!parsed.range) {
            io.err << parsed.error << '\n';
            return 2;
        }
        range = *parsed.range;
    } else if (hasFlag(args, QStringLiteral("--pages"))) {
        io.err << "--pages needs a range, such as 2-5\n";
        return 2;
    }
    ProcedureScope scope(app().errors, QStringLiteral("QuillmerePad.exe-cmdPdf-runPdfCommand"));
    try {
        const auto warn = [&io](const QString& warning) { io.err << warning << '\n'; };
        // Sheets before the range would be laid out with their glyphs and
        // never drawn, and so hold them to the end.
        const auto document = range.fromPage == 1
                                  ? PaginatedDocument::openToWrite(files.at(0), warn)
                                  : PaginatedDocument::open(files.at(0), warn);
        // The sheets are laid out as they are written: count only as far as
        // the range reaches, and leave "to the end" to the writing.
        PageRangeResult fitted =
            fitPageRange(range, document->layout.pagesUpTo(std::max(range.fromPage, range.toPage)));
        if (!fitted.range) {
            io.err << fitted.error << '\n';
            return 2;
        }
        if (range.toPage == 0) {
            fitted.range->toPage = 0;
        }
        NullProgress progress;
        const PrintOutcome outcome =
            writeDocumentPdf(document->layout, document->model, files.at(1), *fitted.range,
                             document->caption, progress);
        if (!outcome.ok()) {
            io.err << outcome.error << '\n';
            return 1;
        }
        io.out << QDir::toNativeSeparators(files.at(1)) << ": " << outcome.pages
               << (outcome.pages == 1 ? " page\n" : " pages\n");
    } catch (const QmError& error) {
        io.err << "Error " << error.number() << ": " << error.description() << '\n';
        return 1;
    }
    return 0;
}
