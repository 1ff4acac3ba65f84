// Draws the main window with one document and every tool bar into a PNG,
// for the picture in docs/. Run by scripts/screenshot-main-window.sh, which
// gives it a home folder where install-sample has put a practice and its
// templates: the window comes up through the program's own start-up, so the
// Quick Picks panel lists the templates folder as a user sees it.
#include "app/modMain.h"
#include "context/AppContext.h"
#include "ui/CommandActions.h"
#include "ui/frmDocument.h"
#include "ui/frmMain.h"

#include <QAction>
#include <QApplication>
#include <QMdiSubWindow>
#include <QPixmap>
#include <QTimer>
#include <cstdio>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: main-window-shot OUTPUT.png\n");
        return 2;
    }
    const QString output = QString::fromLocal8Bit(argv[1]);
    auto host = std::make_unique<QtMainWindowHost>();
    QtMainWindowHost* shown = host.get();
    Application program(std::move(host));
    program.Main({});
    frmMain* window = shown->window();
    if (!window) {
        std::fprintf(stderr, "the main window did not come up\n");
        return 1;
    }
    window->showNormal();
    window->resize(1200, 800);
    // Every bar on, and the ruler: a new settings file leaves the file, edit
    // and window bars and the ruler hidden.
    for (const char* bar :
         {"mnuViewToolbarFile", "mnuViewToolbarEdit", "mnuViewToolbarWindow", "mnuViewRuler"}) {
        QAction* item = window->commands()->action(QLatin1String(bar));
        if (!item->isChecked()) {
            item->trigger();
        }
    }
    frmDocument* document = nullptr;
    if (QMdiSubWindow* sub = window->activeDocumentWindow()) {
        document = qobject_cast<frmDocument*>(sub->widget());
    }
    if (document) {
        document->rtfText().setTextRTF(QStringLiteral(
            "{\\rtf1\\ansi{\\fonttbl{\\f0 Liberation Serif;}}\\f0\\fs24 Dear Client,\\par\\par "
            "Please find enclosed the financial statements for the year ended 31 March. "
            "{\\b Kindly sign and return} the engagement letter.\\par\\li720\\fi-360 - An "
            "indented point that hangs.\\par\\pard\\par Yours sincerely,\\par}"));
        document->setFocus();
    }
    int status = 0;
    QTimer::singleShot(800, window, [&] {
        if (!window->grab().save(output, "PNG")) {
            std::fprintf(stderr, "could not write %s\n", argv[1]);
            status = 1;
        }
        // Nothing to save: the letter was only for the picture.
        if (document) {
            document->rtfText().document()->setModified(false);
            document->setHasDocumentChanged(false);
        }
        program.exitCurrentProgram();
        QApplication::quit();
    });
    QApplication::exec();
    return status;
}
