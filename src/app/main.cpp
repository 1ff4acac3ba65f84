#include "context/AppContext.h"
#include "app/CommandLine.h"

#include <QApplication>
#include <QGuiApplication>

#include <cstdio>
#include <memory>

int runWindowedProgram(int argc, char** argv);

int main(int argc, char** argv) {
    QStringList args;
    for (int i = 1; i < argc; ++i) {
        args << QString::fromLocal8Bit(argv[i]);
    }
    if (args.size() == 1 && args.first() == QLatin1String("--version")) {
        std::fputs(qPrintable(getProgramVersion() + QLatin1Char('\n')), stdout);
        return 0;
    }
    if (isHeadlessInvocation(args)) {
        // Headless work lays text out like the windows do, which needs a
        // GUI application but no screen.
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
            qputenv("QT_QPA_PLATFORM", "offscreen");
        }
        QGuiApplication application(argc, argv);
        QTextStream out(stdout);
        QTextStream err(stderr);
        CommandIO io{out, err};
        return runHeadlessCommand(args, io);
    }
    return runWindowedProgram(argc, argv);
}
