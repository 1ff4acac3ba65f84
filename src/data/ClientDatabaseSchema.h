#pragma once

#include <QString>
#include <QStringList>

class QSqlDatabase;

// The schema of the client database, kept as SQLite DDL in
// src/data/schema/ClientDatabase.sql (with the storage conventions written
// beside the columns) and compiled into the program.
namespace ClientDatabaseSchema {

QString ddl();
QStringList tableNames();
// Columns of a table in their order; empty for a table the schema lacks.
QStringList columnNames(const QString& table);

// Column kinds by name, over all tables (the program's queries join tables
// and name columns without their table). Case-insensitive.
bool isYesNoColumn(const QString& column);
bool isDateColumn(const QString& column);
// A column declared as a number (or Yes/No) in the schema; text collations
// do not apply to it. A name the schema lacks is not one.
bool isNumberColumn(const QString& column);

// The table's own key column (declared INTEGER PRIMARY KEY), or empty for a
// table without one.
QString primaryKey(const QString& table);
// The schema's spelling of a column name given in any case; the name as it
// stands when no table has it. A server folds unquoted names to lower case.
QString canonicalColumnName(const QString& column);

// The statements that make the schema on a database server: the same
// tables, columns, storage conventions and indexes, in that server's
// dialect, with a case-blind collation named as the embedded engine's, and
// the embedded engine's "next key on a Null key" rule kept by a trigger.
QStringList serverStatements();

// Creates every table and index in an empty database, in one transaction,
// on either engine (by the connection's driver). Throws
// QmError(DatabaseError) on failure.
void create(QSqlDatabase& db);

} // namespace ClientDatabaseSchema
