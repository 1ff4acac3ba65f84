#include "app/ApplicationServices.h"
#include "app/Commands.h"
#include "context/AppContext.h"
#include "files/clsWorkingFolderLocation.h"
#include "platform/MsgboxClass.h"
#include "platform/errorClass.h"
#include "platform/richtext/RichTextBox.h"
#include "spell/SpellCheckSession.h"
#include "spell/SpellTextTarget.h"
#include "spell/clsSpellCheck.h"

#include <QDir>

namespace {

QString wordListFolder(const QStringList& args) {
    if (const auto folder = optionValue(args, QStringLiteral("--folder"))) {
        return *folder;
    }
    // The program keeps the list in its templates folder; without a started
    // program, that is the default one of a fresh installation.
    if (app().workingFolders != nullptr) {
        return app().workingFolders->getTemplatesFolder();
    }
    return clsWorkingFolderLocation().getDefaultTemplatesFolder();
}

} // namespace

int runSpellCommand(const QStringList& args, CommandIO& io) {
    const QStringList files =
        positionalArguments(args, {QStringLiteral("--tolerance"), QStringLiteral("--folder")});
    if (files.size() != 1) {
        io.err << "Usage: quillmere-pad spell FILE [--tolerance N] [--folder DIR]\n";
        return 2;
    }
    int tolerance = 3;
    if (const auto value = optionValue(args, QStringLiteral("--tolerance"))) {
        bool ok = false;
        tolerance = value->toInt(&ok);
        if (!ok) {
            io.err << "spell: --tolerance needs a number\n";
            return 2;
        }
    }

    // Read before the context below replaces the program's.
    const QString folder = wordListFolder(args);

    ScopedAppContext context;
    ApplicationServices services(context.context());
    errorClass* errors = &services.createErrors();
    MsgboxClass* messages =
        &services.createScriptedMessageBox([&io](const QString& text) { io.err << text << '\n'; });

    PlainSpellText text;
    try {
        text.setText(loadDocumentText(files.first()));
    } catch (const QmError& fault) {
        io.err << "spell: " << fault.description() << '\n';
        return 1;
    }

    QDir().mkpath(folder);
    clsSpellCheck session;
    session.setErrorClass(errors);
    session.setMsgboxClass(messages);
    session.setAppName(QStringLiteral("Quillmere Pad"));
    session.setAppFolder(folder);
    session.setRTB(&text);
    session.setTolerance(tolerance);
    // The dialog's walk through the errors, skipping each one; the session's
    // messages ("There are no spelling errors", ...) go to stderr.
    const bool ran = runGuarded(errors, [&] {
        session.startSpellCheck([&io](SpellCheckSession& dialog) {
            while (!dialog.finished()) {
                io.out << dialog.targetWord() << ':';
                if (!dialog.suggestions().isEmpty()) {
                    io.out << ' ' << dialog.suggestions().join(QStringLiteral(", "));
                }
                io.out << '\n';
                dialog.skipWord();
            }
        });
    });
    if (!ran) {
        io.err << "spell: " << errors->lastReport().description << '\n';
    }
    return ran && !session.FailedToInitializeFlag() ? 0 : 1;
}
