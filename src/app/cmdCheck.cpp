#include "app/Commands.h"
#include "merge/MergeRun.h"
#include "app/MergeSession.h"
#include "merge/MergeTemplate.h"
#include "platform/ProgressReporter.h"

namespace {

// Merges the template for every recipient in memory, files nothing, and
// lists each client value that would break its letter. 1 when any does.
int listBreakingValues(MergeSession& session, const MergeTemplate& opened, CommandIO& io) {
    MergeRequest request;
    request.model = opened.model;
    request.templateCaption = opened.caption;
    request.templateText = opened.rtf;
    request.recipients = MergeRequest::Recipients::All;
    MergeRun run(std::move(request));
    NullProgress progress;
    const MergeRun::Outcome outcome =
        run.merge(session.fields(), *session.context().database, progress);
    if (outcome == MergeRun::Outcome::Refused) {
        io.err << run.problem() << '\n';
        return 2;
    }
    int flagged = 0;
    for (const MergedRecord& record : run.result().records) {
        for (const QString& value : record.suspectValues) {
            io.out << record.name << "\tcheck value:\t" << value << '\n';
            ++flagged;
        }
    }
    return flagged > 0 ? 1 : 0;
}

} // namespace

// quillmere-pad check TEMPLATE [--database DB [--all]] [--province N]
// With --all, every recipient is merged in memory and the client values
// that would break a letter are listed; nothing is filed.
int runCheckCommand(const QStringList& args, CommandIO& io) {
    const QStringList positional =
        positionalArguments(args, {QStringLiteral("--database"), QStringLiteral("--province")});
    const bool all = hasFlag(args, QStringLiteral("--all"));
    if (positional.size() != 1 || (all && !optionValue(args, QStringLiteral("--database")))) {
        io.err << "Usage: quillmere-pad check TEMPLATE [--database DB [--all]] [--province N]\n";
        return 2;
    }
    MergeSession session([&io](const QString& text) { io.out << text << '\n'; });
    if (const auto province = optionValue(args, QStringLiteral("--province"))) {
        bool ok = false;
        const short number = province->toShort(&ok);
        if (!ok) {
            io.err << "--province takes a number\n";
            return 2;
        }
        session.context().currentProvince = number;
    }
    if (const auto database = optionValue(args, QStringLiteral("--database"))) {
        if (!session.openDatabase(*database)) {
            io.err << "The Quillmere Pad was not able to access the companies database and needs "
                      "to close.\n";
            return 2;
        }
    }
    MergeTemplate opened;
    try {
        opened = openMergeTemplate(positional.first());
    } catch (const QmError& fault) {
        io.err << (fault.number() == QmError::InvalidFileFormat ? invalidDocumentMessage()
                                                                : fault.description())
               << '\n';
        return 2;
    }
    try {
        // A document of the task list (8) carries the rows of tasks (4).
        const InformationKind type = opened.model.InformationType;
        session.fields().createDefaultFieldListStructure(
            type == InformationKind::WorkListTasks ? InformationKind::Tasks : type, true, true);
        if (session.fields().testRTBComment(opened.rtf, true, true, false)) {
            return 1;
        }
    } catch (const QmError& fault) {
        io.out << fault.description() << '\n';
        return 1;
    }
    io.out << "There are no merge errors in this document.\n";
    if (all) {
        try {
            return listBreakingValues(session, opened, io);
        } catch (const QmError& fault) {
            io.err << fault.description() << '\n';
            return 2;
        }
    }
    return 0;
}
