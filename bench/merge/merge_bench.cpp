// Timings of the merge, side by side in one run:
//  1. substitution alone on a 20 KB three-page template with 30 placeholders,
//     values from memory: the one-pass substitution against the
//     step-by-step reference (records per second and their ratio);
//  2. whole merges of kind 1 over every visible active client of sample
//     practices of 1,000 and 10,000 clients, through the same run as the
//     merge command: letters per second for a first merge and save on a
//     fresh copy, for a repeat merge and save, for the merge alone, and for
//     a plain loop writing the same files with the same care (the repeat
//     and the plain loop in turns, medians of three, with the processor
//     time each took); the per-letter cost of the large practice against
//     the small one; and a merge and save over earlier letters, each moved
//     into "Replaced".
// Usage: merge_bench [--clients-small N] [--clients-large N] [--seconds S]

#include "app/Commands.h"
#include "app/MergeSession.h"
#include "data/modFormatAddresses.h"
#include "merge/LetterWriter.h"
#include "merge/MergeLookups.h"
#include "merge/MergeRun.h"
#include "merge/ReferenceSubstitution.h"
#include "platform/ProgressReporter.h"
#include "platform/fileControl.h"
#include "platform/richtext/RichTextBox.h"

#include <QDirIterator>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <sys/resource.h>

namespace {

class MemoryValues : public PlaceholderValues {
public:
    QHash<QString, QString> text;
    QString dataField(const QString& name) override { return text.value(name); }
    QString dataDateField(const QString& name, const QString& format) override {
        Q_UNUSED(name);
        return format.size() > 4 ? QStringLiteral("March 31 2024") : QStringLiteral("2024");
    }
};

QString makeTemplate(const FieldTable& table) {
    const char* names[] = {"Company Name",
                           "Address",
                           "City",
                           "Province",
                           "Postal Code",
                           "Contact Display Name",
                           "Contact First Name",
                           "Contact Last Name",
                           "Office Number",
                           "Your Company Name",
                           "Your Address",
                           "Your City",
                           "Your Office Number",
                           "Business Number",
                           "Federal Corp. Tax Number",
                           "Contact Job Title",
                           "Contact Business Email",
                           "Corporate Name",
                           "Industry Type",
                           "Software Name"};
    QString body;
    int placed = 0;
    const QString filler = QStringLiteral(
        "We are pleased to confirm the arrangements for the coming year and the services we "
        "will provide to you. Please review the enclosed statements with care. ");
    for (int page = 0; page < 3; ++page) {
        for (int para = 0; para < 10 && placed < 30; ++para) {
            body += QStringLiteral("\\pard\\f0\\fs20 ");
            body += filler + filler.left(200);
            if (placed % 3 == 2) {
                body += QStringLiteral(" \\'ab(Year End Date, mmmm d yyyy)\\'bb");
            } else {
                body += QStringLiteral(" \\b\\'ab") +
                        QString::fromLatin1(names[placed % std::size(names)]) +
                        QStringLiteral("\\'bb\\b0 ");
            }
            ++placed;
            body += filler + QStringLiteral("\\par\r\n");
        }
        body += QStringLiteral("\\page\r\n");
    }
    Q_UNUSED(table);
    QString text = QStringLiteral("{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1033{\\fonttbl{\\f0"
                                  "\\fnil\\fcharset0 Arial;}}\r\n\\viewkind4\\uc1") +
                   body;
    while (text.size() < 20000) {
        text += QStringLiteral("\\pard ") + filler + QStringLiteral("\\par\r\n");
    }
    return text + QStringLiteral("}\r\n");
}

double secondsOf(const std::function<void()>& work, int& repetitions, double budget) {
    QElapsedTimer timer;
    timer.start();
    repetitions = 0;
    do {
        work();
        ++repetitions;
    } while (timer.nsecsElapsed() < qint64(budget * 1e9));
    return double(timer.nsecsElapsed()) / 1e9;
}

void substitutionBench(double budget) {
    MergeSession session;
    session.context().clock.setFixed(QDateTime(QDate(2024, 3, 5), QTime(9, 0)));
    clsInsertFieldsInRTB& fields = session.fields();
    fields.createDefaultFieldListStructure(InformationKind::Companies, true, true);
    const FieldTable& table = fields.fieldTable();
    const QString text = makeTemplate(table);
    MemoryValues values;
    for (int row = 1; row <= table.rowCount(); ++row) {
        values.text.insert(table.value(row, 2), QStringLiteral("Value of row %1").arg(row));
    }
    MergeSubstitution fast;
    QString fastOut;
    fast.substitute(text, table, fields.tableGeneration(), false, values, fastOut);
    const QString referenceOut = referenceSubstitution(text, table, false, values);
    std::printf("substitution: template %lld characters, outputs identical: %s\n",
                static_cast<long long>(text.size()), fastOut == referenceOut ? "yes" : "NO");

    double referenceRate = 0;
    double fastRate = 0;
    for (int round = 0; round < 3; ++round) {
        int n = 0;
        const double r =
            secondsOf([&] { referenceSubstitution(text, table, false, values); }, n, budget / 6);
        referenceRate += n / r;
        const double f = secondsOf(
            [&] {
                QString out;
                fast.substitute(text, table, fields.tableGeneration(), false, values, out);
            },
            n, budget / 6);
        fastRate += n / f;
    }
    referenceRate /= 3;
    fastRate /= 3;
    std::printf("substitution: reference %.0f records/s, one-pass %.0f records/s, ratio %.1fx\n",
                referenceRate, fastRate, fastRate / referenceRate);
}

struct WholeMerge {
    int records = 0;
    double firstSeconds = 0;   // merge and save on a fresh copy (repairs included)
    double repeatSeconds = 0;  // merge and save again (median of three)
    double replaceSeconds = 0; // merge and save over the letters of the repeat
    double mergeSeconds = 0;   // merge alone
    double plainSeconds = 0;   // the same files written by a plain loop
    double repeatAgainstPlain = 0;
    // Processor time (all threads; the merging thread alone), medians: on a
    // shared machine the clock times above depend on the processors left.
    double repeatCpu = 0;
    double mergingCpu = 0;
    double plainCpu = 0;
};

double cpuSeconds(int who) {
    rusage usage{};
    getrusage(who, &usage);
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// The files a plain loop writes with the same care as the vault: each at
// the same place in a tree of client folders, to a temporary beside its
// target, one file-system sync per 256 letters as the vault does, then
// renamed into place. Its folders are its own and new, so it has no
// temporaries of a killed run to look for.
double plainWrites(const QString& folder,
                   const std::vector<std::pair<QString, QByteArray>>& letters) {
    QDir().mkpath(folder);
    QElapsedTimer timer;
    timer.start();
    std::vector<std::pair<QString, QString>> pending;
    auto placeAll = [&] {
        LetterWriter::syncFileSystem(folder);
        for (const auto& [temporary, path] : pending) {
            LetterWriter::place(temporary, path);
        }
        pending.clear();
    };
    for (const auto& [relative, bytes] : letters) {
        const QString path = folder + QLatin1Char('/') + relative;
        const QString clientFolder = QFileInfo(path).absolutePath();
        if (!QFileInfo::exists(clientFolder)) {
            QDir().mkpath(clientFolder);
        }
        pending.emplace_back(LetterWriter::writeTemporaryUnswept(path, bytes), path);
        if (pending.size() == 256) {
            placeAll();
        }
    }
    placeAll();
    return double(timer.nsecsElapsed()) / 1e9;
}

WholeMerge wholeMerge(const QString& folder, int clients) {
    const QString sample = folder + QStringLiteral("/sample-%1.qmd").arg(clients);
    {
        QString outText;
        QString errText;
        QTextStream out(&outText);
        QTextStream err(&errText);
        CommandIO io{out, err};
        if (runSampleDbCommand({sample, QStringLiteral("--clients"), QString::number(clients)},
                               io) != 0) {
            std::printf("sample-db failed: %s\n", qPrintable(errText));
            return {};
        }
    }
    // The first merge runs on a fresh copy, so that it repairs what a first
    // merge of the sample repairs.
    const QString database = folder + QStringLiteral("/practice-%1.qmd").arg(clients);
    QFile::copy(sample, database);
    // The command installs the contact-card writer; so does the benchmark.
    ScopedContactCardWriter contactCards;
    MergeSession session;
    if (!session.openDatabase(database)) {
        std::printf("cannot open %s\n", qPrintable(database));
        return {};
    }
    MergeRequest request;
    request.model.InformationType = InformationKind::Companies;
    request.templateCaption = QStringLiteral("Merge Template - Year End");
    session.fields().createDefaultFieldListStructure(InformationKind::Companies, true, true);
    // As the command does: the template as the box reads it from its file.
    {
        RichTextBox box;
        box.setTextRTF(makeTemplate(session.fields().fieldTable()));
        request.templateText = box.TextRTF();
    }
    request.recipients = MergeRequest::Recipients::All;
    request.today = QDate(2024, 3, 5);
    databaseControl& db = *session.context().database;

    NullProgress progress;
    WholeMerge timing;
    QElapsedTimer timer;
    auto mergeAndFile = [&](const QString& vault) {
        request.vaultRoot = vault;
        // As the command does: each letter filed while the next merges.
        MergeRun run(request);
        run.mergeAndFile(session.fields(), db, progress);
        const int failed = run.notFiled();
        if (failed > 0) {
            std::printf("%d letters not filed\n", failed);
        }
        return int(run.result().records.size());
    };
    timer.start();
    timing.records = mergeAndFile(folder + QStringLiteral("/vault-first-%1").arg(clients));
    timing.firstSeconds = double(timer.nsecsElapsed()) / 1e9;
    // The repeat merge and the plain loop take turns, three times, so that
    // each is timed against the file system as the other found it; the
    // medians and the median of the three ratios are reported.
    std::vector<std::pair<QString, QByteArray>> letters;
    std::vector<double> repeats;
    std::vector<double> plains;
    std::vector<double> ratios;
    std::vector<double> repeatCpu;
    std::vector<double> mergingCpu;
    std::vector<double> plainCpu;
    for (int round = 0; round < 3; ++round) {
        const QString repeatVault =
            folder + QStringLiteral("/vault-repeat-%1-%2").arg(clients).arg(round);
        const double processBefore = cpuSeconds(RUSAGE_SELF);
        const double threadBefore = cpuSeconds(RUSAGE_THREAD);
        timer.restart();
        mergeAndFile(repeatVault);
        repeats.push_back(double(timer.nsecsElapsed()) / 1e9);
        repeatCpu.push_back(cpuSeconds(RUSAGE_SELF) - processBefore);
        mergingCpu.push_back(cpuSeconds(RUSAGE_THREAD) - threadBefore);
        if (letters.empty()) {
            QDirIterator it(repeatVault, QDir::Files, QDirIterator::Subdirectories);
            const QDir vault(repeatVault);
            while (it.hasNext()) {
                const QString path = it.next();
                letters.emplace_back(vault.relativeFilePath(path),
                                     *fileControl::readWholeFile(path));
            }
        }
        const double plainBefore = cpuSeconds(RUSAGE_SELF);
        plains.push_back(
            plainWrites(folder + QStringLiteral("/plain-%1-%2").arg(clients).arg(round), letters));
        plainCpu.push_back(cpuSeconds(RUSAGE_SELF) - plainBefore);
        ratios.push_back(repeats.back() / plains.back());
    }
    timing.repeatSeconds = median(repeats);
    timing.plainSeconds = median(plains);
    timing.repeatAgainstPlain = median(ratios);
    timing.repeatCpu = median(repeatCpu);
    timing.mergingCpu = median(mergingCpu);
    timing.plainCpu = median(plainCpu);
    // Once more into the same vault: every letter moves its predecessor
    // into "Replaced" (timed apart; the plain loop has none to move).
    const QString replaceVault = folder + QStringLiteral("/vault-replace-%1").arg(clients);
    mergeAndFile(replaceVault);
    timer.restart();
    mergeAndFile(replaceVault);
    timing.replaceSeconds = double(timer.nsecsElapsed()) / 1e9;
    timer.restart();
    {
        MergeRun run(request);
        run.merge(session.fields(), db, progress);
        timing.mergeSeconds = double(timer.nsecsElapsed()) / 1e9;
    }
    return timing;
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    prepareProcessEnvironment();
    QGuiApplication application(argc, argv);
    const QStringList args = application.arguments();
    auto option = [&](const char* name, double fallback) {
        const int at = args.indexOf(QString::fromLatin1(name));
        return at > 0 && at + 1 < args.size() ? args.at(at + 1).toDouble() : fallback;
    };
    const int small = int(option("--clients-small", 1000));
    const int large = int(option("--clients-large", 10000));
    const double budget = option("--seconds", 6);

    substitutionBench(budget);

    QTemporaryDir folder;
    double perRecord[2] = {0, 0};
    int index = 0;
    for (int clients : {small, large}) {
        const WholeMerge m = wholeMerge(folder.path(), clients);
        if (m.records == 0) {
            return 1;
        }
        perRecord[index++] = m.repeatSeconds / m.records;
        std::printf("whole merge, %d clients: %d letters; first merge and save %.0f letters/s; "
                    "repeat merge and save %.0f letters/s (%.1f us each); merge alone %.0f "
                    "letters/s; plain loop writing the same files %.0f letters/s; repeat "
                    "against plain loop %.2fx; first against plain loop %.2fx\n",
                    clients, m.records, m.records / m.firstSeconds, m.records / m.repeatSeconds,
                    1e6 * m.repeatSeconds / m.records, m.records / m.mergeSeconds,
                    m.records / m.plainSeconds, m.repeatAgainstPlain,
                    m.firstSeconds / m.plainSeconds);
        std::printf("whole merge, %d clients: processor time, repeat merge and save %.2f s "
                    "(merging thread %.2f s), plain loop %.2f s; merging thread against plain "
                    "loop %.2fx\n",
                    clients, m.repeatCpu, m.mergingCpu, m.plainCpu, m.mergingCpu / m.plainCpu);
        std::printf("whole merge, %d clients: merge and save over earlier letters (each moved "
                    "to Replaced) %.0f letters/s, against plain loop %.2fx\n",
                    clients, m.records / m.replaceSeconds, m.replaceSeconds / m.plainSeconds);
    }
    std::printf("per-letter merge and save time, %d against %d clients: %.2fx\n", large, small,
                perRecord[1] / perRecord[0]);
    return 0;
}
