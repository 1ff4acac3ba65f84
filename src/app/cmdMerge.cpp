#include "app/Commands.h"
#include "merge/MergeLookups.h"
#include "merge/MergeResultDocument.h"
#include "merge/MergeSession.h"
#include "merge/MergeTemplate.h"
#include "platform/ProgressReporter.h"

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

// Every visible active client (kinds 1, 2), every contact linked to one
// (kind 3), every schedule (4) or appointment (5).
void addAllRecipients(InformationKind type, FieldTable& ids) {
    databaseControl* db = app().database;
    auto walk = [db](const QString& sql, const std::function<void(int)>& each) {
        const int rs = db->openRecordset(sql);
        while (db->hasRecords(rs) && !db->isEOF(rs)) {
            each(rs);
            db->moveNext(rs);
        }
        db->closeRecordset(rs);
    };
    if (isSearchKind(type)) {
        const QString sql = type == InformationKind::Tasks
                                ? QStringLiteral("SELECT Schedule.ScheduleID FROM Schedule "
                                                 "ORDER BY Schedule.ScheduleID;")
                                : QStringLiteral("SELECT Appointments.AppointmentID FROM "
                                                 "Appointments ORDER BY "
                                                 "Appointments.AppointmentID;");
        walk(sql, [&](int rs) {
            ids.addRow(ids.rowCount() + 1, {db->getField(rs, type == InformationKind::Tasks
                                                                 ? QStringLiteral("ScheduleID")
                                                                 : QStringLiteral("AppointmentID"))
                                                .toString(),
                                            QString()});
        });
        return;
    }
    std::vector<int> companies;
    walk(MergeLookups::getMainBusinessSQLString(true, 0), [&](int rs) {
        companies.push_back(db->getField(rs, QStringLiteral("Companies.CompanyID")).toInt());
    });
    for (int company : companies) {
        if (type != InformationKind::Contacts) {
            ids.addRow(ids.rowCount() + 1, {QString::number(company), QString()});
            continue;
        }
        walk(QStringLiteral("SELECT ContactLinks.ContactIDNum, ContactLinks.CompanyNum FROM "
                            "ContactLinks WHERE ContactLinks.CompanyNum = ") +
                 QString::number(company) + QLatin1Char(';'),
             [&](int rs) {
                 ids.addRow(ids.rowCount() + 1,
                            {QString::number(company),
                             db->getField(rs, QStringLiteral("ContactIDNum")).toString()});
             });
    }
}

} // namespace

// quillmere-pad merge TEMPLATE --database DB --out ROOT [--type N]
//     [--ids LIST | --all | --tasks CRITERIA | --appointments CRITERIA]
//     [--today YYYY-MM-DD] [--province N] [--report]
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
                  "[--today YYYY-MM-DD] [--province N] [--report]\n";
        return 2;
    }
    MergeSession session([&io](const QString& text) { io.err << text << '\n'; });
    if (const auto today = optionValue(args, QStringLiteral("--today"))) {
        const QDate date = QDate::fromString(*today, Qt::ISODate);
        if (!date.isValid()) {
            io.err << "--today takes a date as YYYY-MM-DD\n";
            return 2;
        }
        session.context().clock.setFixed(QDateTime(date, QTime(12, 0)));
    }
    if (const auto province = optionValue(args, QStringLiteral("--province"))) {
        bool ok = false;
        session.context().currentProvince = province->toShort(&ok);
        if (!ok) {
            io.err << "--province takes a number\n";
            return 2;
        }
    }
    if (!session.openDatabase(*database)) {
        io.err << "The Quillmere Pad was not able to access the companies database and needs to "
                  "close.\n";
        return 2;
    }

    MergeResultDocument result;
    try {
        MergeTemplate opened = openMergeTemplate(positional.first());
        result.model = opened.model;
        result.templateCaption = opened.caption;
        result.templateText = opened.rtf;
    } catch (const QmError& fault) {
        io.err << (fault.number() == QmError::InvalidFileFormat ? invalidDocumentMessage()
                                                                : fault.description())
               << '\n';
        return 2;
    }
    if (const auto type = optionValue(args, QStringLiteral("--type"))) {
        bool ok = false;
        result.model.InformationType = informationKindFromInt(type->toInt(&ok));
        if (!ok) {
            io.err << "--type takes a number\n";
            return 2;
        }
    }
    if (tasks || appointments) {
        // A filter says what kind of merge it is.
        const InformationKind kind = tasks ? InformationKind::Tasks : InformationKind::Appointments;
        if (optionValue(args, QStringLiteral("--type")) && result.model.InformationType != kind) {
            io.err << (tasks ? "--tasks" : "--appointments") << " merges information type "
                   << toInt(kind) << " only\n";
            return 2;
        }
        result.model.InformationType = kind;
        const QString error = tasks ? result.taskSearch.setCriteria(*tasks)
                                    : result.appointmentSearch.setCriteria(*appointments);
        if (!error.isEmpty()) {
            io.err << error << '\n';
            return 2;
        }
    }
    const InformationKind type = result.model.InformationType;
    if (!isMergeableKind(type)) {
        io.err << "Templates of information type " << toInt(type) << " cannot be merged here.\n";
        return 2;
    }

    try {
        if (tasks) {
            result.taskSearch.generateSQLFilter();
            result.SQLFilter = result.taskSearch.SQLFilter;
            result.connectToRemittRST();
        } else if (appointments) {
            // The appointment criteria stand in the SELECT itself, so the
            // record-set filter is left blank.
            result.connectToRemittRST();
        } else if (all) {
            addAllRecipients(type, result.IDList);
        } else {
            for (const QString& item : idText->split(QLatin1Char(','), Qt::SkipEmptyParts)) {
                const QStringList parts = item.split(QLatin1Char(':'));
                const int first = parseID(parts.value(0));
                const int second = parts.size() > 1 ? parseID(parts.value(1)) : -1;
                result.IDList.addRow(result.IDList.rowCount() + 1,
                                     {QString::number(first),
                                      isClientKind(type) ? QString::number(second) : QString()});
            }
        }
        session.fields().createDefaultFieldListStructure(type, true, true);
        NullProgress progress;
        if (!result.createMergeDocument(progress)) {
            // The reason has gone to the message sink.
            return 1;
        }
        // Each letter is listed as soon as it is filed, so that the list of
        // a run killed half-way names every letter that exists.
        const bool report = hasFlag(args, QStringLiteral("--report"));
        result.onFiled = [&io, report](const MergedRecord& record) {
            if (!record.failure.isEmpty()) {
                io.err << record.name << "\tnot filed:\t" << record.failure << '\n';
                io.err.flush();
                return;
            }
            io.out << record.name << '\t' << record.savedPath << '\n';
            if (report && !record.emptyPlaceholders.isEmpty()) {
                io.out << "\tempty:\t" << record.emptyPlaceholders.join(QStringLiteral(", "))
                       << '\n';
            }
            if (report && !record.replacedPath.isEmpty()) {
                io.out << "\treplaced:\t" << record.replacedPath << '\n';
            }
            io.out.flush();
        };
        if (result.saveMergeDocument(progress, *root) > 0) {
            return kSomeLettersNotFiled;
        }
    } catch (const QmError& fault) {
        io.err << fault.description() << '\n';
        return 2;
    }
    return 0;
}
