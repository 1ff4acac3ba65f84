#include "app/AppContext.h"
#include "app/Commands.h"
#include "platform/MsgboxClass.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"
#include "spell/SpellCheckSession.h"
#include "spell/SpellCodePage.h"
#include "spell/SpellTextTarget.h"
#include "spell/clsSpellCheck.h"

#include <QDir>
#include <QStandardPaths>
#include <QStringDecoder>

namespace {

// A document file as the checker sees it: its text with CR LF line ends.
QString loadPlainText(const QString& path) {
    const std::optional<QByteArray> bytes = fileControl::readWholeFile(path);
    if (!bytes) {
        throw QmError(QmError::FileNotFound, QStringLiteral("File not found: ") + path);
    }
    QStringDecoder utf8(QStringDecoder::Utf8);
    QString text = utf8.decode(*bytes);
    if (utf8.hasError()) {
        text = SpellCodePage::decode(*bytes);
    }
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    text.replace(QLatin1Char('\n'), QLatin1String("\r\n"));
    return text;
}

QString wordListFolder(const QStringList& args) {
    if (const auto folder = optionValue(args, QStringLiteral("--folder"))) {
        return *folder;
    }
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/Quillmere/Template Documents");
}

} // namespace

int runSpellCommand(const QStringList& args, CommandIO& io) {
    const QStringList files =
        positionalArguments(args, {QStringLiteral("--tolerance"), QStringLiteral("--folder")});
    if (files.size() != 1) {
        io.err << "Usage: quillmere-pad spell FILE [--tolerance N]\n";
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

    ScriptedMsgbox messages;
    messages.setSink([&io](const QString& text) { io.err << text << '\n'; });
    errorClass errors;
    ScopedAppContext context;
    context->errors = &errors;
    context->msgbox = &messages;

    PlainSpellText text;
    try {
        text.setText(loadPlainText(files.first()));
    } catch (const QmError& fault) {
        io.err << "spell: " << fault.description() << '\n';
        return 1;
    }

    const QString folder = wordListFolder(args);
    QDir().mkpath(folder);
    clsSpellCheck session;
    session.setErrorClass(&errors);
    session.setMsgboxClass(&messages);
    session.setAppName(QStringLiteral("Quillmere Pad"));
    session.setAppFolder(folder);
    session.setRTB(&text);
    session.setTolerance(tolerance);
    // The dialog's walk through the errors, skipping each one; the session's
    // messages ("There are no spelling errors", ...) go to stderr.
    const bool ran = runGuarded(&errors, [&] {
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
        io.err << "spell: " << errors.lastReport().description << '\n';
    }
    return ran && !session.FailedToInitializeFlag() ? 0 : 1;
}
