#include "data/IdentitySequences.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

bool IdentitySequences::advancePastRows(QSqlDatabase& db, QString* error) {
    if (db.driverName() != QLatin1String("QPSQL"))
        return true;
    QSqlQuery owned(db);
    // Serial and identity columns alike own their sequence.
    if (!owned.exec(QStringLiteral(
            "SELECT quote_ident(t.relname), quote_ident(a.attname), s.oid::regclass::text "
            "FROM pg_class s "
            "JOIN pg_depend d ON d.objid = s.oid AND d.classid = 'pg_class'::regclass "
            "  AND d.refclassid = 'pg_class'::regclass AND d.deptype IN ('a', 'i') "
            "JOIN pg_class t ON t.oid = d.refobjid "
            "JOIN pg_attribute a ON a.attrelid = t.oid AND a.attnum = d.refobjsubid "
            "WHERE s.relkind = 'S' AND t.relnamespace = current_schema()::regnamespace"))) {
        *error = owned.lastError().text();
        return false;
    }
    QSqlQuery set(db);
    while (owned.next()) {
        const QString table = owned.value(0).toString();
        const QString column = owned.value(1).toString();
        const QString sequence = owned.value(2).toString();
        // setval(s, n, true): the next number is n + 1; (s, 1, false): it is 1.
        const QString statement =
            QStringLiteral("SELECT setval('%1', COALESCE(MAX(%2), 1), MAX(%2) IS NOT NULL) "
                           "FROM %3")
                .arg(QString(sequence).replace(u'\'', QStringLiteral("''")), column, table);
        if (!set.exec(statement)) {
            *error = set.lastError().text();
            return false;
        }
    }
    return true;
}
