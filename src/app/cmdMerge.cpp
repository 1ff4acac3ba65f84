#include "app/Commands.h"
#include "app/MergeSession.h"
#include "merge/MergeLookups.h"
#include "merge/MergeRun.h"
#include "merge/MergeTemplate.h"
#include "platform/ProgressReporter.h"
#include "print/PdfExport.h"

#include <QDate>

namespace {

// Exit status of a run that filed some letters but not all; each one that
// failed is named on standard error.
constexpr int kSomeLettersNotFiled = 3;

int parseID(const QString& text) {
    bool ok = false;
    const int id = text.trimmed().toInt(&ok);
    return ok ? id : -1;
}

} // namespace

// quillmere-pad merge TEMPLATE --database DB --out ROOT [--type N]
//     [--ids LIST | --all | --tasks CRITERIA | --appointments CRITERIA]
//     [--today YYYY-MM-DD] [--province N] [--report] [--pdf]
// Exits 3 when some letters could not be merged or filed.
// CRITERIA sets fields of the task or appointment search by name:
// "taskName=GST;searchByTaskName=1;dateMatch=4".
int runMergeCommand(const QStringList& args, CommandIO& io) {
    const QStringList withValues = {"--database", "--out",      "--type",  "--ids",
                                    "--today",    "--province", "--tasks", "--appointments"};
    const QStringList positional = positionalArguments(args, withValues);
    const auto database = optionValue(args, QStringLiteral("--database"));
    const auto root = optionValue(args, QStringLiteral("--out"));
    const auto idText = optionValue(args, QStringLiteral("--ids"));
    const bool all = hasFlag(args, QStringLiteral("--all"));
    const auto tasks = optionValue(args, QStringLiteral("--tasks"));
    const auto appointments = optionValue(args, QStringLiteral("--appointments"));
    const int sources =
        int(idText.has_value()) + int(all) + int(tasks.has_value()) + int(appointments.has_value());
    if (positional.size() != 1 || !database || !root || sources != 1) {
        io.err << "Usage: quillmere-pad merge TEMPLATE --database DB --out ROOT [--type N] "
                  "[--ids LIST | --all | --tasks CRITERIA | --appointments CRITERIA] "
                  "[--today YYYY-MM-DD] [--province N] [--report] [--pdf]\n";
        return 2;
    }
    MergeSession session([&io](const QString& text) { io.err << text << '\n'; });
    MergeRequest request;
    request.vaultRoot = *root;
    if (const auto today = optionValue(args, QStringLiteral("--today"))) {
        request.today = QDate::fromString(*today, Qt::ISODate);
        if (!request.today.isValid()) {
            io.err << "--today takes a date as YYYY-MM-DD\n";
            return 2;
        }
        session.context().clock.setFixed(QDateTime(request.today, QTime(12, 0)));
    }
    if (const auto province = optionValue(args, QStringLiteral("--province"))) {
        bool ok = false;
        request.province = province->toShort(&ok);
        if (!ok) {
            io.err << "--province takes a number\n";
            return 2;
        }
        // Opening the template rewrites regional placeholders already.
        session.context().currentProvince = *request.province;
    }
    if (!session.openDatabase(*database)) {
        io.err << "The Quillmere Pad was not able to access the companies database and needs to "
                  "close.\n";
        return 2;
    }

    try {
        MergeTemplate opened = openMergeTemplate(positional.first());
        request.model = opened.model;
        request.templateCaption = opened.caption;
        request.templateText = opened.rtf;
    } catch (const QmError& fault) {
        io.err << (fault.number() == QmError::InvalidFileFormat ? invalidDocumentMessage()
                                                                : fault.description())
               << '\n';
        return 2;
    }
    if (const auto type = optionValue(args, QStringLiteral("--type"))) {
        bool ok = false;
        request.model.InformationType = informationKindFromInt(type->toInt(&ok));
        if (!ok) {
            io.err << "--type takes a number\n";
            return 2;
        }
    }
    if (tasks || appointments) {
        // A filter says what kind of merge it is.
        const InformationKind kind = tasks ? InformationKind::Tasks : InformationKind::Appointments;
        if (optionValue(args, QStringLiteral("--type")) && request.model.InformationType != kind) {
            io.err << (tasks ? "--tasks" : "--appointments") << " merges information type "
                   << toInt(kind) << " only\n";
            return 2;
        }
        request.model.InformationType = kind;
        request.recipients = tasks ? MergeRequest::Recipients::TaskCriteria
                                   : MergeRequest::Recipients::AppointmentCriteria;
        request.criteria = tasks ? *tasks : *appointments;
    } else if (all) {
        request.recipients = MergeRequest::Recipients::All;
    } else {
        const bool withContacts = isClientKind(request.model.InformationType);
        for (const QString& item : idText->split(QLatin1Char(','), Qt::SkipEmptyParts)) {
            const QStringList parts = item.split(QLatin1Char(':'));
            const int first = parseID(parts.value(0));
            const int second = parts.size() > 1 ? parseID(parts.value(1)) : -1;
            request.IDList.addRow(
                request.IDList.rowCount() + 1,
                {QString::number(first), withContacts ? QString::number(second) : QString()});
        }
    }

    MergeRun run(std::move(request));
    databaseControl& db = *session.context().database;
    try {
        NullProgress progress;
        // Each letter is listed as soon as it is filed, so that the list of
        // a run killed half-way names every letter that exists.
        const bool report = hasFlag(args, QStringLiteral("--report"));
        const bool pdf = hasFlag(args, QStringLiteral("--pdf"));
        int pdfFailures = 0;
        const DocumentModel& geometry = run.result().model;
        // Each letter is filed while the next record merges.
        const MergeRun::Outcome outcome =
            run.mergeAndFile(session.fields(), db, progress, [&](const MergedRecord& record) {
                if (!record.failure.isEmpty()) {
                    io.err << record.name << "\tnot filed:\t" << record.failure << '\n';
                    io.err.flush();
                    return;
                }
                io.out << record.name << '\t' << record.savedPath << '\n';
                if (pdf) {
                    // The letter as PDF beside the filed letter, whole or not at all.
                    NullProgress quiet;
                    const PrintOutcome written =
                        writeLettersPdf({{record.name, record.rtf}}, geometry,
                                        pdfPathBeside(record.savedPath), record.name, quiet);
                    if (written.ok()) {
                        io.out << '\t' << "pdf:\t" << pdfPathBeside(record.savedPath) << '\n';
                    } else {
                        ++pdfFailures;
                        io.err << record.name << "\tno pdf:\t" << written.error << '\n';
                    }
                }
                if (report && !record.emptyPlaceholders.isEmpty()) {
                    io.out << "\tempty:\t" << record.emptyPlaceholders.join(QStringLiteral(", "))
                           << '\n';
                }
                if (report) {
                    for (const QString& value : record.suspectValues) {
                        io.out << "\tcheck value:\t" << value << '\n';
                    }
                    for (const QString& field : record.missingColumns) {
                        io.out << "\tno such column:\t" << field << '\n';
                    }
                }
                if (report && !record.replacedPath.isEmpty()) {
                    io.out << "\treplaced:\t" << record.replacedPath << '\n';
                }
                io.out.flush();
            });
        switch (outcome) {
        case MergeRun::Outcome::Refused:
            io.err << run.problem() << '\n';
            return 2;
        case MergeRun::Outcome::NothingToMerge:
            // The reason has gone to the message sink.
            return 1;
        case MergeRun::Outcome::Merged:
            break;
        }
        const int failures = run.notFiled();
        if (failures > 0 || pdfFailures > 0) {
            return kSomeLettersNotFiled;
        }
    } catch (const QmError& fault) {
        io.err << fault.description() << '\n';
        return 2;
    }
    return 0;
}
