#include "app/Commands.h"
#include "context/AppContext.h"
#include "documents/PageLayout.h"
#include "platform/errorClass.h"
#include "print/PdfExport.h"

// quillmere-pad pages DOC: the sheets of a document as the document window
// lays them out, one line per sheet with the start of its text, then the
// count. The same layout object the window paints, so a practice can check
// a letter's page breaks without a display.
int runPagesCommand(const QStringList& args, CommandIO& io) {
    const QStringList files = positionalArguments(args, {});
    if (files.size() != 1) {
        io.err << "Usage: quillmere-pad pages DOC\n";
        return 2;
    }
    ProcedureScope scope(app().errors, QStringLiteral("QuillmerePad.exe-cmdPages-runPagesCommand"));
    try {
        // The page setup of the file's trailer, as the window and PDF use it.
        const auto document = PaginatedDocument::open(
            files.first(), [&io](const QString& warning) { io.err << warning << '\n'; });
        const PageLayout& layout = document->layout;
        const int pages = layout.totalPages();
        for (int page = 1; page <= pages; ++page) {
            QString head = layout.sheetText(page).left(60);
            // One line a sheet: line ends and tabs of the text become blanks.
            for (QChar& c : head) {
                if (c == QLatin1Char('\n') || c == QLatin1Char('\t') || c == QLatin1Char('\r')) {
                    c = QLatin1Char(' ');
                }
            }
            io.out << page << '\t' << head << '\n';
        }
        io.out << "pages: " << pages << '\n';
        io.out.flush();
    } catch (const QmError& error) {
        io.err << "Error " << error.number() << ": " << error.description() << '\n';
        return 1;
    }
    return 0;
}
