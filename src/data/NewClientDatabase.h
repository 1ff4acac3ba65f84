#pragma once

#include "data/DatabaseLocation.h"

#include <QSqlDatabase>
#include <QString>

// A client database being made from nothing: a file that does not exist
// yet, or a database on a server that holds none of the client tables.
// The schema is created at once and every row written through db() goes
// into one transaction. Until commit() succeeds the destination stays as it
// was found: a new file is written under a temporary name beside the target
// and removed on failure; on a server the schema and the rows share one
// transaction, which a failure rolls back.
class NewClientDatabase {
public:
    // Throws QmError when the location cannot be opened or already holds a
    // client database (an existing file, a server database with any of the
    // client tables); `purpose` ends the refusal ("the import needs ...").
    NewClientDatabase(const DatabaseLocation& location, const QString& purpose);
    ~NewClientDatabase();
    NewClientDatabase(const NewClientDatabase&) = delete;
    NewClientDatabase& operator=(const NewClientDatabase&) = delete;

    QSqlDatabase& db() { return m_db; }
    const DatabaseLocation& location() const { return m_location; }

    // Moves the server's key sequences past the written rows, commits, and
    // puts a new file in place. Throws QmError, with the destination left
    // as it was found.
    void commit();

private:
    void openFile();
    void openServer(const QString& purpose);
    void createSchema();
    void discard() noexcept;

    DatabaseLocation m_location;
    QString m_connection;
    QSqlDatabase m_db;
    QString m_temporaryFile; // a new file's name until it is committed
    bool m_inTransaction = false;
    bool m_committed = false;
};
