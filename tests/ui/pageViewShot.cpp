// Opens a document in a document window and saves a picture of it:
//   page-view-shot DOC OUT.png [--continuous] [--zoom N] [--page N]
// Run under a display (scripts/page-view-screenshots.sh uses Xvfb).
#include "platform/errorClass.h"
#include "platform/richtext/RichTextBox.h"
#include "ui/PageView.h"
#include "ui/frmDocument.h"

#include <QApplication>
#include <QScrollBar>
#include <QTextStream>
#include <cstdio>

int main(int argc, char** argv) {
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication application(argc, argv);
    QStringList args = QApplication::arguments().mid(1);
    bool continuous = false;
    int zoom = 100;
    int page = 1;
    QStringList files;
    for (int i = 0; i < args.size(); ++i) {
        if (args[i] == QLatin1String("--continuous")) {
            continuous = true;
        } else if (args[i] == QLatin1String("--zoom") && i + 1 < args.size()) {
            zoom = args[++i].toInt();
        } else if (args[i] == QLatin1String("--page") && i + 1 < args.size()) {
            page = args[++i].toInt();
        } else if (args[i].startsWith(QLatin1String("--"))) {
            std::fprintf(stderr, "unknown option %s\n", qPrintable(args[i]));
            return 2;
        } else {
            files << args[i];
        }
    }
    if (files.size() != 2) {
        std::fprintf(stderr,
                     "usage: page-view-shot DOC|- OUT.png [--continuous] [--zoom N] [--page N]\n");
        return 2;
    }
    frmDocument window;
    window.resize(1100, 900);
    try {
        if (files[0] != QLatin1String("-")) {
            window.loadFile(files[0]);
        }
    } catch (const QmError& error) {
        std::fprintf(stderr, "%s\n", qPrintable(error.description()));
        return 1;
    }
    if (continuous) {
        window.currentPageDisplayType = PageLayout::ContinuousDisplay;
        window.changePageDisplayType();
    }
    window.show();
    window.pageView()->setZoom(zoom);
    const int pages = window.totalPages();
    if (page > 1) {
        const double scale = window.pageView()->pixelsPerTwip();
        window.pageView()->verticalScrollBar()->setValue(
            int(window.pageLayout().sheetRect(page).top() * scale) - 20);
    }
    for (int i = 0; i < 10; ++i) {
        QApplication::processEvents();
    }
    if (!window.grab().save(files[1])) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(files[1]));
        return 1;
    }
    std::printf("%s: %d pages\n", qPrintable(files[1]), pages);
    return 0;
}
