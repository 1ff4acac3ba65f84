#include "app/CommandLine.h"
#include "context/AppContext.h"
#include "platform/fileControl.h"

#include <QApplication>
#include <QGuiApplication>
#include <cstdio>
#include <memory>

int runWindowedProgram(int argc, char** argv, const QStringList& args);
// The desktop's printers for the headless print command.
void installDesktopPrinters();

namespace {

QtMessageHandler g_previousHandler = nullptr;

// Without a session, Qt warns that the runtime folder is unset or not
// private; a batch command has no use for it and prints only what it means
// to. Every other message passes on.
void dropRuntimeFolderWarning(QtMsgType type, const QMessageLogContext& context,
                              const QString& message) {
    if (type == QtWarningMsg && message.startsWith(QLatin1String("QStandardPaths: ")) &&
        (message.contains(QLatin1String("XDG_RUNTIME_DIR")) ||
         message.contains(QLatin1String("runtime directory")))) {
        return;
    }
    if (g_previousHandler) {
        g_previousHandler(type, context, message);
    } else {
        std::fputs(qPrintable(qFormatLogMessage(type, context, message) + QLatin1Char('\n')),
                   stderr);
    }
}

} // namespace

int main(int argc, char** argv) {
    prepareProcessEnvironment();
    QStringList args;
    for (int i = 1; i < argc; ++i) {
        // File names are taken as the file system gives them, UTF-8 or not.
        args << fileControl::pathFromNative(QByteArray(argv[i]));
    }
    if (args.size() == 1 && args.first() == QLatin1String("--version")) {
        std::fputs(qPrintable(getProgramVersion() + QLatin1Char('\n')), stdout);
        return 0;
    }
    const Invocation invocation = classifyArguments(args);
    if (invocation.kind == Invocation::Kind::UsageError) {
        std::fputs(qPrintable(QStringLiteral("quillmere-pad: ") + invocation.error +
                              QLatin1Char('\n') + usageText()),
                   stderr);
        return 2;
    }
    if (invocation.kind == Invocation::Kind::Headless) {
        // Headless work lays text out like the windows do, which needs a
        // GUI application but no screen.
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
            qputenv("QT_QPA_PLATFORM", "offscreen");
        }
        g_previousHandler = qInstallMessageHandler(dropRuntimeFolderWarning);
        QGuiApplication application(argc, argv);
        installDesktopPrinters();
        QTextStream out(stdout);
        QTextStream err(stderr);
        CommandIO io{out, err};
        return runHeadlessCommand(args, io);
    }
    return runWindowedProgram(argc, argv, args);
}
