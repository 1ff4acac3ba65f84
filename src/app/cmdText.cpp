#include "app/Commands.h"
#include "context/AppContext.h"
#include "documents/DocumentFile.h"
#include "platform/errorClass.h"
#include "platform/richtext/RichTextBox.h"

// quillmere-pad text FILE: the Text of a document as the program loads it,
// with CR LF line ends and nothing added.
int runTextCommand(const QStringList& args, CommandIO& io) {
    const QStringList files = positionalArguments(args, {});
    if (files.size() != 1) {
        io.err << "Usage: quillmere-pad text FILE\n";
        return 2;
    }
    ProcedureScope scope(app().errors, QStringLiteral("QuillmerePad.exe-cmdText-runTextCommand"));
    try {
        RichTextBox box;
        DocumentFile::open(files.first(), box,
                           [&io](const QString& line) { io.err << "text: " << line << '\n'; });
        io.out << box.Text();
        io.out.flush();
    } catch (const QmError& error) {
        io.err << "Error " << error.number() << ": " << error.description() << '\n';
        return 1;
    }
    return 0;
}
