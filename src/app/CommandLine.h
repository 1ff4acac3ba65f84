#pragma once

#include <QStringList>
#include <QTextStream>
#include <optional>

// The headless subcommands: the same routines the windows call, for batch
// work and tests. Each handler gets the arguments after the subcommand's
// name and returns the process exit status.
struct CommandIO {
    QTextStream& out;
    QTextStream& err;
};

using CommandHandler = int (*)(const QStringList& args, CommandIO& io);

struct CommandEntry {
    const char* name;
    const char* usage;
    CommandHandler handler;
};

// The table of subcommands.
const std::vector<CommandEntry>& headlessCommands();

// True when the arguments (without the program name) ask for a headless
// subcommand or for --version/--help, which need no window.
bool isHeadlessInvocation(const QStringList& args);

// What the arguments (without the program name) ask for. Anything the
// program does not know is a usage error naming it, never ignored.
struct Invocation {
    enum class Kind { Windowed, Automation, Headless, UsageError };
    Kind kind = Kind::Windowed;
    QStringList files; // Windowed: existing files to open in the window
    QString error;     // UsageError: what was wrong, one line
};
Invocation classifyArguments(const QStringList& args);

// The usage text, a line per subcommand.
QString usageText();

// Runs it; the caller has made the application object.
int runHeadlessCommand(const QStringList& args, CommandIO& io);
// Settings of the process made before anything else runs (the program's
// and the benchmarks' main): with TZ unset the C library reads the zone
// file again on every local-time conversion, thousands of times a merge,
// so TZ is made to name the same zone file, read once.
void prepareProcessEnvironment();

// Small helpers shared by the handlers: "--name value" options.
std::optional<QString> optionValue(const QStringList& args, const QString& name);
bool hasFlag(const QStringList& args, const QString& name);
// The arguments that are neither options nor option values.
QStringList positionalArguments(const QStringList& args, const QStringList& optionsWithValues);
