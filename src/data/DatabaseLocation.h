#pragma once

#include <QString>
#include <QStringList>
#include <optional>

class QSqlDatabase;

// Where the client database lives, as the `dataLocation` setting names it:
// a file path (the embedded engine, for one seat) or a connection URI of a
// database server shared by the practice's workstations,
// "postgresql://user@host:port/dbname?option=value".
//
// A password is never taken from the setting: it would sit in a plain text
// file on every workstation. The server's own means supply it (a .pgpass
// file, a service file, or a trusted local socket).
struct DatabaseLocation {
    enum class Engine { Sqlite, Postgres };

    Engine engine = Engine::Sqlite;
    QString path; // the file, for Sqlite
    QString host; // empty: the local socket
    int port = -1;
    QString user;
    QString database;
    // Options passed to the client library as they stand ("sslmode=require",
    // "service=practice", "connect_timeout=5").
    QStringList options;

    // Reads a setting's value. A value that is not a URI is a path, taken as
    // it stands (its existence is the connection's business). A URI with a
    // password, an unknown scheme, no database name, a bad port or an option
    // the client library does not know gives nothing, with the reason in
    // `error`.
    static std::optional<DatabaseLocation> parse(const QString& dataLocation, QString* error);
    // Whether the text is meant as a server URI rather than a path.
    static bool looksLikeUri(const QString& dataLocation);

    bool isServer() const { return engine == Engine::Postgres; }
    // For messages: the path, or the URI without secrets.
    QString display() const;
    // The Qt driver that reaches this engine.
    QString driverName() const;

    // Adds a connection of that name to Qt's registry and opens it. On
    // failure the connection stays registered (closed), so that the caller
    // can read its error and must remove it; `error` then holds a message
    // naming what is wrong (the server cannot be reached, the password was
    // refused, no such database). `readOnly` opens an SQLite file read-only;
    // on a server it makes the session's transactions read-only.
    bool open(QSqlDatabase& db, const QString& connectionName, QString* error,
              bool readOnly = false) const;
};
