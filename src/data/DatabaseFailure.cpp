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

bool DatabaseFailure::isConnectionLost(const QString& sqlState, const QString& serverText) {
    if (sqlState.startsWith(QLatin1String("08")) || sqlState.startsWith(QLatin1String("57P")))
        return true;
    const QString text = serverText.toLower();
    return text.contains(u"server closed the connection") ||
           text.contains(u"no connection to the server") ||
           text.contains(u"terminating connection") || text.contains(u"connection to server") ||
           text.contains(u"could not send data to server") ||
           text.contains(u"could not receive data from server");
}

QString DatabaseFailure::serverReason(const QString& sqlState, const QString& serverText) {
    static const QRegularExpression missing(
        QStringLiteral("(relation|column) \"([^\"]+)\" does not exist"));
    if (const auto m = missing.match(serverText); m.hasMatch())
        return QStringLiteral("The database has no %1 %2")
            .arg(m.captured(1) == u"relation" ? QStringLiteral("table") : QStringLiteral("column"),
                 m.captured(2));
    if (isConnectionLost(sqlState, serverText))
        return QStringLiteral("The connection to the database server was lost");
    if (sqlState == u"23505")
        return QStringLiteral("Another row already has this key");
    if (sqlState == u"40001" || sqlState == u"40P01" || sqlState == u"55P03")
        return QStringLiteral("The database was busy with another workstation's change");
    if (sqlState == u"25006")
        return QStringLiteral("The database is read-only");
    if (sqlState == u"42501" || sqlState.startsWith(QLatin1String("28")))
        return QStringLiteral("Permission to the database was refused");
    if (sqlState == u"53100")
        return QStringLiteral("The disk holding the database is full");
    return QStringLiteral("The database refused the request");
}
