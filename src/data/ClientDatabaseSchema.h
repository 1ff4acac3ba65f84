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

// Creates every table and index in an empty database, in one transaction.
// Throws QmError(DatabaseError) on failure.
void create(QSqlDatabase& db);

} // namespace ClientDatabaseSchema
