#include "app/CommandLine.h"

#include "context/AppContext.h"
#include "app/Commands.h"
#include "data/modFormatAddresses.h"

int runVersionCommand(const QStringList& /*args*/, CommandIO& io) {
    io.out << getProgramVersion() << '\n';
    return 0;
}

const std::vector<CommandEntry>& headlessCommands() {
    static const std::vector<CommandEntry> table = {
        {"--version", "--version", runVersionCommand},
        {"check", "check TEMPLATE [--database DB [--all]] [--province N]", runCheckCommand},
        {"merge", "merge TEMPLATE --database DB --out ROOT [--type N] [--ids LIST | --all | --tasks CRITERIA | --appointments CRITERIA] [--today YYYY-MM-DD] [--province N] [--report] (exit status 3: some letters not filed)", runMergeCommand},
        {"text", "text FILE", runTextCommand},
        {"pages", "pages DOC", runPagesCommand},
        {"convert", "convert IN OUT", runConvertCommand},
        {"spell", "spell FILE [--tolerance N] [--folder DIR]", runSpellCommand},
        {"sample-db", "sample-db PATH [--clients N] [--seed S] [--date YYYY-MM-DD]", runSampleDbCommand},
        {"install-sample", "install-sample", runInstallSampleCommand},
        {"tree", "tree --database DB [--mode companies|contacts|company-contacts|personal|firm|categories|all]", runTreeCommand},
    };
    return table;
}

bool isHeadlessInvocation(const QStringList& args) {
    if (args.isEmpty()) {
        return false;
    }
    if (args.first() == QLatin1String("--help") || args.first() == QLatin1String("-h")) {
        return true;
    }
    for (const auto& entry : headlessCommands()) {
        if (args.first() == QLatin1String(entry.name)) {
            return true;
        }
    }
    return false;
}

int runHeadlessCommand(const QStringList& args, CommandIO& io) {
    for (const auto& entry : headlessCommands()) {
        if (!args.isEmpty() && args.first() == QLatin1String(entry.name)) {
            // A command that repairs a default contact rebuilds its cards,
            // as the windows do.
            ScopedContactCardWriter contactCards;
            return entry.handler(args.mid(1), io);
        }
    }
    io.out << "Usage: quillmere-pad [--automation | SUBCOMMAND ...]\n";
    for (const auto& entry : headlessCommands()) {
        io.out << "  quillmere-pad " << entry.usage << '\n';
    }
    return args.isEmpty() || args.first() == QLatin1String("--help") ||
                   args.first() == QLatin1String("-h")
               ? 0
               : 2;
}

std::optional<QString> optionValue(const QStringList& args, const QString& name) {
    const int at = args.indexOf(name);
    if (at < 0 || at + 1 >= args.size()) {
        return std::nullopt;
    }
    return args.at(at + 1);
}

bool hasFlag(const QStringList& args, const QString& name) {
    return args.contains(name);
}

QStringList positionalArguments(const QStringList& args, const QStringList& optionsWithValues) {
    QStringList result;
    for (int i = 0; i < args.size(); ++i) {
        if (optionsWithValues.contains(args.at(i))) {
            ++i;
        } else if (!args.at(i).startsWith(QLatin1String("--"))) {
            result << args.at(i);
        }
    }
    return result;
}
