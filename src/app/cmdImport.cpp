#include "app/Commands.h"
#include "data/DatabaseImport.h"
#include "platform/errorClass.h"

#include <QElapsedTimer>

int runImportCommand(const QStringList& args, CommandIO& io) {
    const QStringList locations = positionalArguments(args, {});
    if (locations.size() != 2) {
        io.err << "Usage: quillmere-pad import SOURCE DEST\n"
               << "SOURCE and DEST are each a database file or a server URI "
                  "(postgresql://user@host:port/database); DEST must be new or empty.\n";
        return 2;
    }
    try {
        QElapsedTimer timer;
        timer.start();
        const ImportReport report = DatabaseImport::run(locations[0], locations[1]);
        for (const QString& note : report.notes)
            io.out << "Note: " << note << '\n';
        for (const ImportedTable& table : report.tables)
            io.out << table.name << ": " << table.copied << " rows copied\n";
        for (const RefusedRow& row : report.refused)
            io.err << "Refused " << row.table << " (" << row.key << "): " << row.reason << '\n';
        io.out << "Copied " << report.copied() << " rows";
        if (!report.refused.empty())
            io.out << "; refused " << report.refused.size();
        io.out << " in " << QString::number(double(timer.elapsed()) / 1000.0, 'f', 2) << " s\n";
        return report.refused.empty() ? 0 : 3;
    } catch (const QmError& e) {
        io.err << "Import failed; nothing was written to the destination: " << e.description()
               << '\n';
        return 1;
    }
}
