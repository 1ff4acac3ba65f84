#pragma once

#include "app/CommandLine.h"

// One handler per subcommand, each in its own source file of app/.
int runVersionCommand(const QStringList& args, CommandIO& io);
int runSpellCommand(const QStringList& args, CommandIO& io);
int runImportCommand(const QStringList& args, CommandIO& io);
int runSampleDbCommand(const QStringList& args, CommandIO& io);
int runInstallSampleCommand(const QStringList& args, CommandIO& io);
int runTextCommand(const QStringList& args, CommandIO& io);
int runConvertCommand(const QStringList& args, CommandIO& io);
int runCheckCommand(const QStringList& args, CommandIO& io);
int runMergeCommand(const QStringList& args, CommandIO& io);
int runTreeCommand(const QStringList& args, CommandIO& io);
int runPagesCommand(const QStringList& args, CommandIO& io);
int runPdfCommand(const QStringList& args, CommandIO& io);
int runPrintCommand(const QStringList& args, CommandIO& io);
