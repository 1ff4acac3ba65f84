#pragma once

#include "app/CommandLine.h"

#include <QString>
#include <QStringList>
#include <QTextStream>

// What a headless command printed and its exit status, for the tests of
// each command.
struct CommandRun {
    int status = 0;
    QString out;
    QString err;
};

inline CommandRun runCommand(CommandHandler handler, const QStringList& args) {
    CommandRun r;
    QTextStream out(&r.out);
    QTextStream err(&r.err);
    CommandIO io{out, err};
    r.status = handler(args, io);
    out.flush();
    err.flush();
    return r;
}
