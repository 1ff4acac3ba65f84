// Draws a template with the merge panel and the result of merging it, on a
// sample practice, into two PNG files for docs/. Run by
// scripts/screenshot-merge-windows.sh.
#include "app/MergeSession.h"
#include "data/SamplePractice.h"
#include "merge/MergeRun.h"
#include "ui/CommandActions.h"
#include "ui/MergeWindowCommands.h"
#include "ui/frmDocument.h"
#include "ui/frmMain.h"

#include <QAction>
#include <QApplication>
#include <QMdiSubWindow>
#include <QPixmap>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>

namespace {

const char kLetter[] =
    "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0 Liberation Serif;}}\\f0\\fs24 "
    "\\'ab(Todays Date, mmmm d yyyy)\\'bb\\par\\par \\'abCompany Name\\'bb\\par "
    "\\'abContact Business Address\\'bb\\par\\par Dear \\'abContact First Name\\'bb,\\par\\par "
    "The year end of \\'abCompany Name\\'bb falls on \\'ab(Year End Date, mmmm d yyyy)\\'bb. "
    "{\\b Please send us your records} within thirty days of that date.\\par\\par "
    "Yours sincerely,\\par}";

bool save(QWidget& window, const QString& path) {
    if (!window.grab().save(path, "PNG")) {
        std::fprintf(stderr, "could not write %s\n", qPrintable(path));
        return false;
    }
    return true;
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    if (argc != 3) {
        std::fprintf(stderr, "usage: merge-window-shot TEMPLATE.png RESULT.png\n");
        return 2;
    }
    QTemporaryDir folder;
    const QString database = folder.filePath(QStringLiteral("Data.qmd"));
    SamplePracticeOptions options;
    options.referenceDate = QDate(2024, 3, 5);
    SamplePractice::write(database, options);
    MergeSession session;
    if (!session.openDatabase(database)) {
        std::fprintf(stderr, "%s\n", qPrintable(session.databaseError()));
        return 1;
    }
    session.context().clock.setFixed(QDateTime(options.referenceDate, QTime(9, 0)));

    frmMain window;
    window.LoadFonts();
    window.resize(1200, 860);
    window.show();
    window.commands()->action(QStringLiteral("mnuViewToolbarMergeTutorial"))->trigger();
    auto* merge = window.findChild<MergeWindowCommands*>();
    window.runCommand(QStringLiteral("mnuFileNewStandard"));
    QMdiSubWindow* sub = window.activeDocumentWindow();
    auto* letter = sub ? qobject_cast<frmDocument*>(sub->widget()) : nullptr;
    if (!merge || !letter) {
        std::fprintf(stderr, "no document window\n");
        return 1;
    }
    letter->rtfText().setTextRTF(QString::fromLatin1(kLetter));
    merge->changeTemplateInformation(*letter, InformationKind::Companies);
    FieldTable all(2);
    MergeRun::addAllRecipients(InformationKind::Companies, *session.context().database, all);
    for (int row = 1; row <= std::min(all.rowCount(), 6); ++row) {
        letter->IDList.addRow(row, {all.value(row, 1), all.value(row, 2)});
    }

    int status = 0;
    QTimer::singleShot(600, &window, [&] {
        if (!save(window, QString::fromLocal8Bit(argv[1]))) {
            status = 1;
        }
        merge->mergeDocument(*letter, MergeWindowCommands::Recipients::GivenFirst);
        QTimer::singleShot(600, &window, [&] {
            if (!save(window, QString::fromLocal8Bit(argv[2]))) {
                status = 1;
            }
            window.allowClose();
            QApplication::quit();
        });
    });
    QApplication::exec();
    return status;
}
