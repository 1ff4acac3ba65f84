#include "app/modMain.h"
#include "context/AppContext.h"
#include "platform/TerminationSignal.h"
#include "ui/HostedApplication.h"
#include "ui/frmMain.h"

#include <QApplication>

// The windowed program: the application object and the two start modes.
int runWindowedProgram(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Quillmere Pad"));
    QStringList args = QApplication::arguments().mid(1);

    auto host = std::make_unique<QtMainWindowHost>();
    QtMainWindowHost* window = host.get();
    Application program(std::move(host));
    if (!program.Main(args)) {
        // Hosted: the host's opening call starts the application.
        return runAutomation(program, *window);
    }
    if (window->window()) {
        window->window()->setQueryUnload([&program] { program.exitCurrentProgram(); });
        // Files named on the command line (a file manager passes them).
        for (const QString& path : program.filesToOpen()) {
            window->window()->openDocumentFile(path);
        }
    }
    // The end of the desktop session leaves the way File > Exit does.
    const TerminationSignal sessionEnd([&program] { program.exitCurrentProgram(); });
    QApplication::setQuitOnLastWindowClosed(true);
    return QApplication::exec();
}
