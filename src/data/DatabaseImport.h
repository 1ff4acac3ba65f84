#pragma once

#include <QString>
#include <QStringList>
#include <vector>

// The rows of one table that an import copied.
struct ImportedTable {
    QString name;
    int copied = 0;
};

// A source row left out, with what identifies it ("ScheduleID 301") and why.
struct RefusedRow {
    QString table;
    QString key;
    QString reason;
};

struct ImportReport {
    std::vector<ImportedTable> tables;
    std::vector<RefusedRow> refused;
    // What the source has or lacks beyond the rows: a missing table, a
    // column the client database does not know.
    QStringList notes;
    qint64 copied() const;
};

// Copies a whole client database to a new one, between a file and a
// database server in either direction. The source is opened read-only and
// never written. The destination must be new (see NewClientDatabase); every
// table is copied in one transaction on it, with values brought to the
// storage conventions (Yes/No as 0/1, dates as their stored text, a time
// of day on 1899-12-30, money as a double). A row whose value cannot be
// brought there (a date that is not a date) is refused and reported; the
// others are copied.
class DatabaseImport {
public:
    // `source` and `destination` are dataLocation values: paths or URIs.
    // Throws QmError when either cannot be used or the copy fails; the
    // destination is then left as it was found.
    static ImportReport run(const QString& source, const QString& destination);
};
