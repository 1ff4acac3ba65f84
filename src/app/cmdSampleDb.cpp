#include "app/Commands.h"
#include "app/modMain.h"
#include "context/AppContext.h"
#include "data/SamplePractice.h"
#include "files/clsINI.h"
#include "files/clsWorkingFolderLocation.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>

namespace {

std::optional<int> intOption(const QStringList& args, const QString& name, CommandIO& io,
                             bool& bad) {
    const auto text = optionValue(args, name);
    if (!text)
        return std::nullopt;
    bool ok = false;
    const int value = text->toInt(&ok);
    if (!ok || value < 0) {
        io.err << name << " needs a whole number, not '" << *text << "'\n";
        bad = true;
    }
    return value;
}

// The sample templates shipped with the program, so that a new practice has
// letters to open from Quick Picks and merge at once. A file the user already
// has under the same name is left alone.
void placeSampleTemplates(const QString& folder, CommandIO& io) {
    QDir().mkpath(folder);
    const QDir samples(QStringLiteral(":/samples"));
    for (const QString& name : samples.entryList(QDir::Files, QDir::Name)) {
        const QString target = fileControl::AddBackslash(folder) + name;
        if (QFileInfo::exists(target)) {
            continue;
        }
        // A resource, so Qt reads it: the file routines work on real paths.
        QFile sample(samples.filePath(name));
        QString reason;
        if (sample.open(QIODevice::ReadOnly) &&
            fileControl::writeFileAtomically(target, sample.readAll(), &reason)) {
            io.out << "Placed the sample template " << target << '\n';
        } else {
            io.err << "Could not place the sample template " << target << ": " << reason << '\n';
        }
    }
}

void printSummary(CommandIO& io, const QString& path, const SamplePracticeSummary& s) {
    io.out << "Wrote " << path << ": " << s.clients << " business clients, " << s.companies
           << " companies, " << s.contacts << " contacts, " << s.personalTaxClients
           << " personal-tax clients, " << s.scheduleRows << " scheduled tasks\n";
}

} // namespace

int runSampleDbCommand(const QStringList& args, CommandIO& io) {
    const QStringList options = {QStringLiteral("--clients"), QStringLiteral("--seed"),
                                 QStringLiteral("--date")};
    const QStringList paths = positionalArguments(args, options);
    bool bad = paths.size() != 1;
    SamplePracticeOptions o;
    o.clients = intOption(args, QStringLiteral("--clients"), io, bad).value_or(60);
    o.seed = quint32(intOption(args, QStringLiteral("--seed"), io, bad).value_or(1));
    o.referenceDate = app().clock.today();
    if (const auto date = optionValue(args, QStringLiteral("--date"))) {
        o.referenceDate = QDate::fromString(*date, Qt::ISODate);
        if (!o.referenceDate.isValid()) {
            io.err << "--date needs a date as YYYY-MM-DD, not '" << *date << "'\n";
            bad = true;
        }
    }
    if (bad) {
        io.err << "Usage: quillmere-pad sample-db PATH|URI [--clients N] [--seed S] [--date "
                  "YYYY-MM-DD]\n";
        return 2;
    }
    try {
        QElapsedTimer timer;
        timer.start();
        const SamplePracticeSummary summary = SamplePractice::write(paths.first(), o);
        printSummary(io, paths.first(), summary);
        io.out << "Time: " << QString::number(double(timer.elapsed()) / 1000.0, 'f', 2) << " s\n";
        return 0;
    } catch (const QmError& e) {
        io.err << e.description() << '\n';
        return 1;
    }
}

int runInstallSampleCommand(const QStringList& args, CommandIO& io) {
    if (!args.isEmpty()) {
        io.err << "Usage: quillmere-pad install-sample\n";
        return 2;
    }
    // The folders and settings file exactly as start-up finds them.
    AppContext& ctx = app();
    clsINI ini;
    clsWorkingFolderLocation folders;
    clsINI* previousIni = ctx.iniSettings;
    clsWorkingFolderLocation* previousFolders = ctx.workingFolders;
    ctx.iniSettings = &ini;
    ctx.workingFolders = &folders;
    struct Restore {
        AppContext& ctx;
        clsINI* ini;
        clsWorkingFolderLocation* folders;
        ~Restore() {
            ctx.iniSettings = ini;
            ctx.workingFolders = folders;
        }
    } restore{ctx, previousIni, previousFolders};

    try {
        folders.getInitialAppWorkingDataFolder();
        ini.setINIFile(fileControl::AddBackslash(folders.getApplicationWorkingFolder()) +
                       QStringLiteral("Qminiqmd.dni"));
        const QString configured = getDataFilePath();
        if (!configured.isEmpty() && fileControl::FileExists(configured)) {
            io.out << "The client database is already set: " << configured << '\n';
            return 0;
        }
        const QString path = fileControl::AddBackslash(folders.getDefaultDatabaseDataFolder()) +
                             QStringLiteral("Data.qmd");
        if (fileControl::FileExists(path)) {
            io.out << "Using the database already in the data folder: " << path << '\n';
        } else {
            SamplePracticeOptions o;
            o.referenceDate = ctx.clock.today();
            printSummary(io, path, SamplePractice::write(path, o));
            placeSampleTemplates(folders.getDefaultTemplatesFolder(), io);
        }
        ini.setKeyValue(QStringLiteral("QuillmereInfo"), QStringLiteral("dataLocation"), path);
        ini.setKeyValue(QStringLiteral("ContactLedgerInfo"), QStringLiteral("dataLocation"), path);
        io.out << "Set dataLocation in " << ini.INIFile() << '\n';
        return 0;
    } catch (const QmError& e) {
        io.err << e.description() << '\n';
        return 1;
    }
}
