#include "app/Commands.h"
#include "context/AppContext.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"
#include "platform/richtext/RichTextBox.h"
#include "platform/rtf/RtfReader.h"

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
        const auto bytes = fileControl::readWholeFile(files.at(0));
        if (!bytes) {
            throw QmError(QmError::FileNotFound, QStringLiteral("File not found"));
        }
        RichTextBox box;
        box.LoadFile(files.at(0),
                     RtfReader::hasRtfHeader(*bytes) ? RichTextBox::rtfRTF : RichTextBox::rtfText);
        box.SaveFile(files.at(1), RichTextBox::rtfRTF);
    } catch (const QmError& error) {
        io.err << "Error " << error.number() << ": " << error.description() << '\n';
        return 1;
    }
    return 0;
}
