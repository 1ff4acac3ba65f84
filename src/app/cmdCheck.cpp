#include "app/Commands.h"
#include "merge/MergeSession.h"
#include "merge/MergeTemplate.h"

// quillmere-pad check TEMPLATE [--database DB] [--province N]
int runCheckCommand(const QStringList& args, CommandIO& io) {
    const QStringList positional =
        positionalArguments(args, {QStringLiteral("--database"), QStringLiteral("--province")});
    if (positional.size() != 1) {
        io.err << "Usage: quillmere-pad check TEMPLATE [--database DB] [--province N]\n";
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
    return 0;
}
