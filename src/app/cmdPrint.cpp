#include "app/Commands.h"
#include "context/AppContext.h"
#include "platform/ProgressReporter.h"
#include "platform/errorClass.h"
#include "print/PdfExport.h"
#include "print/PrintDocument.h"
#include "print/PrintTarget.h"
#include "print/PrinterSystem.h"

// quillmere-pad print DOC [--printer NAME] [--pages RANGE] [--copies N]:
// the document to a printer of the print service without a dialog, through
// the same page loop as File > Print.
int runPrintCommand(const QStringList& args, CommandIO& io) {
    const QStringList files = positionalArguments(
        args, {QStringLiteral("--printer"), QStringLiteral("--pages"), QStringLiteral("--copies")});
    if (files.size() != 1) {
        io.err << "Usage: quillmere-pad print DOC [--printer NAME] [--pages RANGE] [--copies N]\n";
        return 2;
    }
    for (const char* option : {"--printer", "--pages", "--copies"}) {
        if (hasFlag(args, QLatin1String(option)) && !optionValue(args, QLatin1String(option))) {
            io.err << option << " needs a value\n";
            return 2;
        }
    }
    int copies = 1;
    if (const auto text = optionValue(args, QStringLiteral("--copies"))) {
        QString error;
        const auto parsed = parseCopies(*text, &error);
        if (!parsed) {
            io.err << error << '\n';
            return 2;
        }
        copies = *parsed;
    }
    std::optional<PageRange> range;
    if (const auto text = optionValue(args, QStringLiteral("--pages"))) {
        const PageRangeResult parsed = parsePageRange(*text);
        if (!parsed.range) {
            io.err << parsed.error << '\n';
            return 2;
        }
        range = parsed.range;
    }
    QString error;
    const QString printer = choosePrinter(
        printerSystem(), optionValue(args, QStringLiteral("--printer")).value_or(""), &error);
    if (printer.isEmpty()) {
        io.err << error << '\n';
        return 1;
    }
    ProcedureScope scope(app().errors, QStringLiteral("QuillmerePad.exe-cmdPrint-runPrintCommand"));
    try {
        const auto document = PaginatedDocument::open(
            files.at(0), [&io](const QString& warning) { io.err << warning << '\n'; });
        const int total = document->layout.totalPages();
        PrintRequest request = PrintRequest::fromDialog(copies, 1, total, total);
        if (range) {
            const PageRangeResult fitted = fitPageRange(*range, total);
            if (!fitted.range) {
                io.err << fitted.error << '\n';
                return 2;
            }
            request = PrintRequest::fromDialog(copies, fitted.range->fromPage, fitted.range->toPage,
                                               total);
        }
        const auto target = printerSystem()->printerTarget(printer, document->caption, &error);
        if (!target) {
            io.err << error << '\n';
            return 1;
        }
        NullProgress progress;
        const PrintOutcome outcome =
            PrintDocument(target.get(), request, progress)
                .printDocument(document->layout, document->model, document->caption);
        if (!outcome.ok()) {
            io.err << outcome.error << '\n';
            return 1;
        }
        io.out << "Sent " << outcome.pages << (outcome.pages == 1 ? " page" : " pages") << " to "
               << printer << '\n';
    } catch (const QmError& failure) {
        io.err << "Error " << failure.number() << ": " << failure.description() << '\n';
        return 1;
    }
    return 0;
}
