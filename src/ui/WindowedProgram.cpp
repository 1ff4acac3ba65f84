#include "app/CommandLine.h"
#include "app/DesktopInstance.h"
#include "app/modMain.h"
#include "context/AppContext.h"
#include "platform/TerminationSignal.h"
#include "ui/HostedApplication.h"
#include "ui/frmMain.h"

#include <QApplication>
#include <QIcon>
#include <QWidget>

// The windowed program: the application object and the two start modes.
// `args` are the arguments as main decoded them, file names intact.
int runWindowedProgram(int argc, char** argv, const QStringList& args) {
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Quillmere Pad"));
    QGuiApplication::setDesktopFileName(QStringLiteral("org.quillmere.QuillmerePad"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/quillmere-pad.svg")));

    // Files opened from a file manager go to the program already running.
    DesktopInstance desktop;
    const Invocation invocation = classifyArguments(args);
    if (invocation.kind == Invocation::Kind::Windowed && !invocation.files.isEmpty() &&
        desktop.handOver(invocation.files)) {
        return 0;
    }

    auto host = std::make_unique<QtMainWindowHost>();
    QtMainWindowHost* window = host.get();
    Application program(std::move(host));
    // The end of the desktop session leaves the way File > Exit does. While
    // start-up runs (it may wait on a message) the request is kept, the
    // message closed, and the exit taken once start-up is through.
    bool started = false;
    bool exitAsked = false;
    auto sessionEnd = std::make_unique<TerminationSignal>([&] {
        if (started) {
            program.exitCurrentProgram();
            return;
        }
        exitAsked = true;
        if (QWidget* modal = QApplication::activeModalWidget()) {
            modal->close();
        }
    });
    if (!program.Main(args)) {
        // Hosted: the host's opening call starts the application, and the
        // hosted loop ends the session its own way.
        sessionEnd.reset();
        return runAutomation(program, *window);
    }
    started = true;
    if (exitAsked) {
        program.exitCurrentProgram();
        return 0;
    }
    if (window->window()) {
        window->window()->setQueryUnload([&program] { program.exitCurrentProgram(); });
        // Files named on the command line (a file manager passes them).
        for (const QString& path : program.filesToOpen()) {
            window->window()->openDocumentFile(path);
        }
        desktop.claim([window](const QStringList& files) {
            frmMain* main = window->window();
            if (!main) {
                return;
            }
            for (const QString& path : files) {
                main->openDocumentFile(path);
            }
            if (main->isMinimized()) {
                main->showNormal();
            }
            main->raise();
            main->activateWindow();
        });
    }
    QApplication::setQuitOnLastWindowClosed(true);
    return QApplication::exec();
}
