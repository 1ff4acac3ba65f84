// Merges the year-end letter for every visible active client of one client
// database, without filing, and prints letters per second: the lookups and
// the substitution that a merge makes of the database, whichever engine
// holds it. Run on a file and on a server copy of it side by side (see
// server_merge_bench.sh) to compare the engines.
// Usage: merge_alone_bench DATABASE [--rounds N]

#include "app/CommandLine.h"
#include "app/MergeSession.h"
#include "data/modFormatAddresses.h"
#include "merge/MergeRun.h"
#include "platform/ProgressReporter.h"
#include "platform/richtext/RichTextBox.h"

#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <cstdio>

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    prepareProcessEnvironment();
    QGuiApplication application(argc, argv);
    const QStringList args = application.arguments();
    if (args.size() < 2) {
        std::fprintf(stderr, "usage: merge_alone_bench DATABASE [--rounds N] [--template FILE]\n");
        return 2;
    }
    const qsizetype roundsAt = args.indexOf(QStringLiteral("--rounds"));
    const int rounds =
        roundsAt > 0 && roundsAt + 1 < args.size() ? args.at(roundsAt + 1).toInt() : 3;
    const qsizetype templateAt = args.indexOf(QStringLiteral("--template"));
    if (templateAt < 0 || templateAt + 1 >= args.size()) {
        std::fprintf(stderr, "--template FILE is needed (a merge template)\n");
        return 2;
    }
    QFile templateFile(args.at(templateAt + 1));
    if (!templateFile.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "cannot read %s\n", qPrintable(templateFile.fileName()));
        return 1;
    }

    ScopedContactCardWriter contactCards;
    MergeSession session;
    if (!session.openDatabase(args.at(1))) {
        std::fprintf(stderr, "cannot open %s\n", qPrintable(args.at(1)));
        return 1;
    }
    MergeRequest request;
    request.model.InformationType = InformationKind::Companies;
    request.templateCaption = QStringLiteral("Merge Template - Year End");
    session.fields().createDefaultFieldListStructure(InformationKind::Companies, true, true);
    {
        RichTextBox box;
        box.setTextRTF(QString::fromLatin1(templateFile.readAll()));
        request.templateText = box.TextRTF();
    }
    request.recipients = MergeRequest::Recipients::All;
    request.today = QDate(2024, 3, 5);
    databaseControl& db = *session.context().database;
    NullProgress progress;
    for (int round = 0; round < rounds; ++round) {
        QElapsedTimer timer;
        timer.start();
        const qint64 statements = db.statementCount();
        MergeRun run(request);
        run.merge(session.fields(), db, progress);
        const double seconds = double(timer.nsecsElapsed()) / 1e9;
        const auto letters = run.result().records.size();
        std::printf("round %d: %zu letters, %.0f letters/s, %.1f statements a letter\n", round + 1,
                    letters, double(letters) / seconds,
                    double(db.statementCount() - statements) /
                        double(std::max<size_t>(letters, 1)));
    }
    return 0;
}
