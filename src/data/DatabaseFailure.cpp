#include "data/DatabaseFailure.h"

#include <QRegularExpression>

QString DatabaseFailure::reason(int engineCode, const QString& engineText) {
    static const QRegularExpression missing(QStringLiteral("^no such (table|column): (\\S+)"));
    if (const auto m = missing.match(engineText); m.hasMatch())
        return QStringLiteral("The database has no %1 %2").arg(m.captured(1), m.captured(2));
    // The engine's primary result codes; the extended codes add detail in
    // the high bits.
    switch (engineCode & 0xff) {
    case 3:  // SQLITE_PERM
    case 23: // SQLITE_AUTH
        return QStringLiteral("Permission to the database was refused");
    case 5: // SQLITE_BUSY
    case 6: // SQLITE_LOCKED
        return QStringLiteral("The database is locked by another program");
    case 8: // SQLITE_READONLY
        return QStringLiteral("The database is read-only");
    case 10: // SQLITE_IOERR
        return QStringLiteral("The database file could not be read or written");
    case 11: // SQLITE_CORRUPT
        return QStringLiteral("The database is damaged");
    case 13: // SQLITE_FULL
        return QStringLiteral("The disk holding the database is full");
    case 14: // SQLITE_CANTOPEN
        return QStringLiteral("The database file could not be opened");
    case 26: // SQLITE_NOTADB
        return QStringLiteral("The file is not a database");
    default:
        return QStringLiteral("The database refused the request");
    }
}
