// Draws the main window with one document and every tool bar into a PNG,
// for the picture in docs/. Run by scripts/screenshot-main-window.sh.
#include "context/AppContext.h"
#include "ui/CommandActions.h"
#include "ui/frmDocument.h"
#include "ui/frmMain.h"

#include <QAction>
#include <QApplication>
#include <QMdiSubWindow>
#include <QPixmap>
#include <QTimer>
#include <QToolBar>
#include <cstdio>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: main-window-shot OUTPUT.png\n");
        return 2;
    }
    const QString output = QString::fromLocal8Bit(argv[1]);
    frmMain window;
    window.LoadFonts();
    window.GetSettings();
    window.resize(1200, 800);
    window.show();
    window.runCommand(QStringLiteral("mnuFileNewStandard"));
    // Every bar on, the window bar too, which starts hidden.
    window.commands()->action(QStringLiteral("mnuViewToolbarWindow"))->trigger();
    window.commands()->action(QStringLiteral("mnuViewRuler"))->trigger();
    if (QMdiSubWindow* sub = window.activeDocumentWindow()) {
        if (auto* document = qobject_cast<frmDocument*>(sub->widget())) {
            document->rtfText().setTextRTF(QStringLiteral(
                "{\\rtf1\\ansi{\\fonttbl{\\f0 Liberation Serif;}}\\f0\\fs24 Dear Client,\\par\\par "
                "Please find enclosed the financial statements for the year ended 31 March. "
                "{\\b Kindly sign and return} the engagement letter.\\par\\li720\\fi-360 - An "
                "indented "
                "point that hangs.\\par\\pard\\par Yours "
                "sincerely,\\par}"));
            document->setFocus();
        }
    }
    int status = 0;
    QTimer::singleShot(800, &window, [&] {
        if (!window.grab().save(output, "PNG")) {
            std::fprintf(stderr, "could not write %s\n", argv[1]);
            status = 1;
        }
        window.allowClose();
        QApplication::quit();
    });
    QApplication::exec();
    return status;
}
