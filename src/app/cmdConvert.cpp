#include "app/Commands.h"
#include "context/AppContext.h"
#include "documents/DocumentFile.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"
#include "platform/richtext/RichTextBox.h"

// quillmere-pad convert IN OUT: loads IN as the program opens a document
// (RTF, its trailer ignored, or plain text) and writes OUT as rich text the
// way Save writes it, without a trailer. OUT is replaced whole or not at all.
int runConvertCommand(const QStringList& args, CommandIO& io) {
    const QStringList files = positionalArguments(args, {});
    if (files.size() != 2) {
        io.err << "Usage: quillmere-pad convert IN OUT\n";
        return 2;
    }
    ProcedureScope scope(app().errors,
                         QStringLiteral("QuillmerePad.exe-cmdConvert-runConvertCommand"));
    try {
        RichTextBox box;
        DocumentFile::open(files.at(0), box,
                           [&io](const QString& line) { io.err << "convert: " << line << '\n'; });
        // Written here rather than by the box so that the reason of a
        // failure (a full disk, a refused folder) reaches the user.
        QString reason;
        if (!fileControl::writeFileAtomically(files.at(1), box.TextRTF().toLatin1(), &reason)) {
            throw QmError(QmError::PathFileAccessError,
                          QStringLiteral("Path/File access error: ") + reason);
        }
    } catch (const QmError& error) {
        io.err << "Error " << error.number() << ": " << error.description() << '\n';
        return 1;
    }
    return 0;
}
