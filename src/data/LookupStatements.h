#pragma once

#include "data/JetSqlTranslator.h"

#include <QHash>
#include <QString>
#include <QVariant>
#include <memory>
#include <optional>

struct sqlite3;
struct sqlite3_stmt;

// The single-value lookups the program asks thousands of times per merge
// ("the name of company N"), run on the engine's own prepared statements.
// A lookup is a statement shape with "?" for its arguments, so the shape is
// translated and prepared once and each call only binds and steps; going
// around the general record-set path spares the materialised rows and the
// column descriptions that a one-value answer never needs.
//
// The connection belongs to the caller and must outlive this object; the
// statements are finalised in the destructor, which must run before the
// connection is closed.
class LookupStatements {
public:
    explicit LookupStatements(sqlite3* connection);
    ~LookupStatements();
    LookupStatements(const LookupStatements&) = delete;
    LookupStatements& operator=(const LookupStatements&) = delete;

    // The column of the first row, typed as a record set would give it
    // (Yes/No columns as bool, stored dates as dates, Null as an invalid
    // QVariant), or nothing when there is no row. Throws QmError
    // (DatabaseError) when the statement cannot be prepared or run, when
    // the argument count does not match the shape, or when the column is
    // not in the result. An empty column name reads the first column.
    std::optional<QVariant> firstValue(const QString& jetSql, const QVariantList& arguments,
                                       const QString& column);

    // The statement a lookup runs, as translated for the engine, and its
    // parameters with the arguments in the places of its "?"; nothing when
    // the argument count does not match. For a caller that may answer it
    // from rows read ahead. Throws as firstValue when it cannot be prepared.
    std::optional<std::pair<QString, QVariantList>> boundStatement(const QString& jetSql,
                                                                   const QVariantList& arguments);

    // The engine's schema version of the file, which the host's table
    // changes raise.
    int schemaVersion();

private:
    struct Statement;
    Statement& statement(const QString& jetSql, const QVariantList& arguments);

    sqlite3* m_connection;
    QHash<QString, std::shared_ptr<Statement>> m_statements;
    sqlite3_stmt* m_schemaVersion = nullptr;
};
