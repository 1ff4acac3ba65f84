#include "app/CommandLine.h"

#include "app/Commands.h"
#include "context/AppContext.h"
#include "platform/fileControl.h"

#include <QRegularExpression>

int runVersionCommand(const QStringList& /*args*/, CommandIO& io) {
    io.out << getProgramVersion() << '\n';
    return 0;
}

const std::vector<CommandEntry>& headlessCommands() {
    static const std::vector<CommandEntry> table = {
        {"--version", "--version", runVersionCommand},
        {"check", "check TEMPLATE [--database DB [--all]] [--province N]", runCheckCommand},
        {"merge",
         "merge TEMPLATE --database DB --out ROOT [--type N] [--ids LIST | --all | --tasks "
         "CRITERIA | --appointments CRITERIA] [--today YYYY-MM-DD] [--province N] [--report] "
         "[--pdf] (exit status 3: some letters not filed; --pdf: a PDF beside each)",
         runMergeCommand},
        {"text", "text FILE", runTextCommand},
        {"pages", "pages DOC", runPagesCommand},
        {"pdf", "pdf DOC OUT.pdf [--pages RANGE]", runPdfCommand},
        {"print", "print DOC [--printer NAME] [--pages RANGE] [--copies N]", runPrintCommand},
        {"convert", "convert IN OUT", runConvertCommand},
        {"spell", "spell FILE [--tolerance N] [--folder DIR]", runSpellCommand},
        {"sample-db", "sample-db PATH|URI [--clients N] [--seed S] [--date YYYY-MM-DD]",
         runSampleDbCommand},
        {"install-sample", "install-sample", runInstallSampleCommand},
        {"import",
         "import SOURCE DEST (each a file or postgresql:// URI; DEST new or empty; exit "
         "status 3: some rows refused)",
         runImportCommand},
        {"tree",
         "tree --database DB [--mode "
         "companies|contacts|company-contacts|personal|firm|categories|all]",
         runTreeCommand},
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

namespace {

// The options a subcommand takes are the "--" words of its usage line.
QStringList knownOptions(const CommandEntry& entry) {
    QStringList options;
    const QStringList words =
        QString::fromLatin1(entry.usage)
            .split(QRegularExpression(QStringLiteral("[\\s\\[\\]|]+")), Qt::SkipEmptyParts);
    for (const QString& word : words) {
        if (word.startsWith(QLatin1String("--"))) {
            options << word;
        }
    }
    return options;
}

} // namespace

QString usageText() {
    QString text =
        QStringLiteral("Usage: quillmere-pad [--automation | FILE ... | SUBCOMMAND ...]\n");
    for (const auto& entry : headlessCommands()) {
        text += QStringLiteral("  quillmere-pad ") + QLatin1String(entry.usage) + QLatin1Char('\n');
    }
    return text;
}

Invocation classifyArguments(const QStringList& args) {
    Invocation result;
    if (isHeadlessInvocation(args)) {
        result.kind = Invocation::Kind::Headless;
        return result;
    }
    for (const QString& arg : args) {
        if (arg == QLatin1String("--automation")) {
            result.kind = Invocation::Kind::Automation;
        } else if (arg.startsWith(QLatin1Char('-'))) {
            return {Invocation::Kind::UsageError, {}, QStringLiteral("Unknown option: ") + arg};
        } else if (fileControl::FileExists(arg)) {
            result.files << arg;
        } else {
            return {Invocation::Kind::UsageError,
                    {},
                    QStringLiteral("No such command or file: ") + arg};
        }
    }
    if (result.kind == Invocation::Kind::Automation && !result.files.isEmpty()) {
        // The host opens documents through its own calls.
        return {Invocation::Kind::UsageError,
                {},
                QStringLiteral("--automation takes no files: ") + result.files.first()};
    }
    return result;
}

int runHeadlessCommand(const QStringList& args, CommandIO& io) {
    for (const auto& entry : headlessCommands()) {
        if (!args.isEmpty() && args.first() == QLatin1String(entry.name)) {
            const QStringList known = knownOptions(entry);
            for (const QString& arg : args.mid(1)) {
                if (arg.startsWith(QLatin1String("--")) && !known.contains(arg)) {
                    io.err << "Unknown option for " << entry.name << ": " << arg << '\n'
                           << "Usage: quillmere-pad " << entry.usage << '\n';
                    return 2;
                }
            }
            return entry.handler(args.mid(1), io);
        }
    }
    io.out << usageText();
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

void prepareProcessEnvironment() {
    if (!qEnvironmentVariableIsSet("TZ")) {
        qputenv("TZ", ":/etc/localtime");
    }
}
