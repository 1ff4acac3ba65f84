// The merge in the windows, 1,000 and 10,000 clients of one sample practice
// (unless told otherwise) each the recipients of a two-page company letter:
//   - from the merge button to the first letter on show in the result
//     window, beside the same merge through the engine alone (what the merge
//     command runs), as a ratio;
//   - a move to the next letter, median and slowest of 100 moves, with the
//     small and the large result open;
//   - the memory the large result holds: resident size after it is shown,
//     less before both merges (an upper bound: what the engine's merge freed
//     may stay with the process), and the peak.
// The large practice runs first, so that its memory is measured on a fresh
// process.
//
//   cmake --build build-bench --target merge_window_bench
//   QT_QPA_PLATFORM=offscreen build-bench/bench/ui/merge_window_bench [small] [large]
#include "app/MergeSession.h"
#include "data/SamplePractice.h"
#include "merge/MergeRun.h"
#include "platform/FieldTable.h"
#include "platform/ProgressReporter.h"
#include "platform/richtext/RichTextBox.h"
#include "ui/MergeWindowCommands.h"
#include "ui/frmDocument.h"
#include "ui/frmMain.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QMdiSubWindow>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

// A status line of /proc/self/status in megabytes ("VmRSS", "VmHWM").
double statusMegabytes(const char* key) {
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly)) {
        return 0;
    }
    const QByteArray prefix = QByteArray(key) + ':';
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith(prefix)) {
            return line.mid(prefix.size()).trimmed().split(' ').first().toDouble() / 1024.0;
        }
    }
    return 0;
}

// Two pages of a year-end letter with a dozen placeholders.
QString twoPageLetter() {
    QString body = QStringLiteral(
        "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\froman Liberation Serif;}}\\f0\\fs24 "
        "\\'ab(Todays Date, mmmm d yyyy)\\'bb\\par\\par \\'abCompany Name\\'bb\\par "
        "\\'abAddress\\'bb\\par \\'abCity\\'bb, \\'abProvince\\'bb  \\'abPostal "
        "Code\\'bb\\par\\par "
        "Dear \\'abContact First Name\\'bb,\\par\\par ");
    const QString paragraph = QStringLiteral(
        "We have reviewed the accounts of \\b \\'abCompany Name\\'bb\\b0  for the year ending "
        "\\'ab(Year End Date, mmmm d yyyy)\\'bb and enclose the draft statements. Please read "
        "them with care, sign where marked and return them with the outstanding invoices and "
        "bank statements so that the return can be filed in time.\\par\\par ");
    for (int i = 0; i < 14; ++i) {
        body += paragraph;
    }
    body += QStringLiteral("Yours sincerely,\\par\\par \\'abYour Company Name\\'bb\\par}");
    return body;
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

struct Timing {
    int letters = 0;
    int pagesPerLetter = 0;
    double engineMs = 0;
    double firstShownMs = 0;
    double nextMedianMs = 0;
    double nextSlowestMs = 0;
    double residentGrowthMb = 0;
    double peakMb = 0;
};

Timing run(const QString& path, int letters) {
    Timing timing;
    MergeSession session;
    session.context().clock.setFixed(QDateTime(QDate(2024, 3, 5), QTime(9, 0)));
    if (!session.openDatabase(path)) {
        std::printf("cannot open %s: %s\n", qPrintable(path), qPrintable(session.databaseError()));
        return timing;
    }
    databaseControl& db = *session.context().database;

    frmMain window;
    window.resize(1200, 900);
    window.show();
    auto* merge = window.findChild<MergeWindowCommands*>();
    window.newDocument(1);
    auto* templ = qobject_cast<frmDocument*>(window.activeDocumentWindow()->widget());
    templ->rtfText().setTextRTF(twoPageLetter());
    merge->changeTemplateInformation(*templ, InformationKind::Companies);
    FieldTable all(2);
    MergeRun::addAllRecipients(InformationKind::Companies, db, all);
    for (int row = 1; row <= std::min(letters, all.rowCount()); ++row) {
        templ->IDList.addRow(row, {all.value(row, 1), all.value(row, 2)});
    }
    QApplication::processEvents();
    timing.pagesPerLetter = templ->totalPages();

    const double residentBefore = statusMegabytes("VmRSS");
    // The engine alone on the same template and recipients.
    {
        MergeRequest request;
        request.model.InformationType = InformationKind::Companies;
        request.templateCaption = QStringLiteral("Merge Template - Year End");
        request.templateText = templ->mergeRTBText();
        templ->IDList.copyEntireListToSecondList(request.IDList);
        NullProgress progress;
        QElapsedTimer clock;
        clock.start();
        MergeRun engine(std::move(request));
        engine.merge(session.fields(), db, progress);
        timing.engineMs = clock.nsecsElapsed() / 1e6;
    }

    QElapsedTimer clock;
    clock.start();
    frmDocument* result = merge->mergeDocument(*templ, MergeWindowCommands::Recipients::GivenFirst);
    QApplication::processEvents();
    timing.firstShownMs = clock.nsecsElapsed() / 1e6;
    if (!result) {
        std::printf("no result window: %s\n", qPrintable(session.msgbox().texts().join('|')));
        return timing;
    }
    timing.residentGrowthMb = statusMegabytes("VmRSS") - residentBefore;
    timing.peakMb = statusMegabytes("VmHWM");
    timing.letters = templ->IDList.rowCount();

    std::vector<double> moves;
    for (int i = 0; i < 100 && i + 1 < timing.letters; ++i) {
        clock.restart();
        merge->navigate(QStringLiteral("Next"));
        QApplication::processEvents();
        moves.push_back(clock.nsecsElapsed() / 1e6);
    }
    timing.nextMedianMs = median(moves);
    timing.nextSlowestMs = moves.empty() ? 0 : *std::max_element(moves.begin(), moves.end());
    // Nothing was filed: the result goes without its closing question.
    result->setHasDocumentChanged(false);
    result->setIsDocumentSaved(true);
    return timing;
}

void report(const Timing& t) {
    std::printf("%6d letters of %d pages: engine %7.0f ms, first letter shown %7.0f ms "
                "(ratio %.2f); next letter median %.1f ms, slowest %.1f ms\n",
                t.letters, t.pagesPerLetter, t.engineMs, t.firstShownMs,
                t.engineMs > 0 ? t.firstShownMs / t.engineMs : 0.0, t.nextMedianMs,
                t.nextSlowestMs);
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(argc, argv);
    const int small = argc > 1 ? std::max(1, atoi(argv[1])) : 1000;
    const int large = argc > 2 ? std::max(1, atoi(argv[2])) : 10000;
    QTemporaryDir folder;
    // Some sample clients are inactive or hidden: a quarter more gives the
    // letters asked for.
    const QString path = folder.path() + QStringLiteral("/practice.qmd");
    SamplePracticeOptions options;
    options.clients = std::max(small, large) * 5 / 4;
    options.referenceDate = QDate(2024, 6, 1);
    SamplePractice::write(path, options);

    const Timing big = run(path, large);
    const Timing little = run(path, small);
    report(little);
    report(big);
    std::printf("%6d letters held: resident growth %.0f MB, peak %.0f MB\n", big.letters,
                big.residentGrowthMb, big.peakMb);
    return 0;
}
