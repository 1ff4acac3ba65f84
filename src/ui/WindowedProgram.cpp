#include "app/modMain.h"
#include "context/AppContext.h"
#include "ui/HostedApplication.h"
#include "ui/frmMain.h"

#include <QApplication>

// The windowed program: the application object and the two start modes.
// `args` are the arguments as main decoded them, file names intact.
int runWindowedProgram(int argc, char** argv, const QStringList& args) {
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Quillmere Pad"));

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
    QApplication::setQuitOnLastWindowClosed(true);
    return QApplication::exec();
}
