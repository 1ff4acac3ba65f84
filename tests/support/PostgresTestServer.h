#pragma once

#include <QString>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>
#include <optional>

// A PostgreSQL server of its own for a test program: a cluster made by
// initdb in a temporary folder, listening on a Unix socket in that folder
// and on a free TCP port of 127.0.0.1, trusting every local client. It is
// started on first use and stopped at the end of the program (see
// stopShared), so that every test of the program shares one server and
// gets fresh databases from it.
//
// The server programs are Debian's (/usr/lib/postgresql/N/bin, the newest)
// unless initdb is on PATH. initdb refuses to run as root, so a root
// process runs them as "nobody", with the folder given to that user.
class PostgresTestServer {
public:
    ~PostgresTestServer();
    PostgresTestServer(const PostgresTestServer&) = delete;
    PostgresTestServer& operator=(const PostgresTestServer&) = delete;

    // The program's server, started now if it is not yet running. Null when
    // it cannot run here (no server programs, initdb or start-up failed),
    // with the reason in `whyNot`; a failed start is not tried again.
    static PostgresTestServer* shared(QString* whyNot);
    // Whether the last failure of shared() is that this machine lacks the
    // server programs or the Qt driver, rather than a server that would not
    // start: tests skip for the first and fail for the second.
    static bool isMissing();
    // Stops the shared server and removes its folder; the tests' main()
    // calls it while the application object still exists.
    static void stopShared();

    // Creates a database and returns its connection URI, or nothing with
    // the reason in `error`. Names are made unique by the server. The new
    // database is empty, or a copy of the database of `templateUri` (which
    // must have no session open).
    std::optional<QString> createDatabase(const QString& hint, QString* error,
                                          const QString& templateUri = QString());
    // Drops a database made by createDatabase, closing its sessions first.
    void dropDatabase(const QString& uri);

    int port() const { return m_port; }
    QString user() const;
    QString socketFolder() const;
    // Connection URI of a database of this server (which need not exist).
    QString uri(const QString& database) const;

private:
    PostgresTestServer() = default;
    bool start(QString* error, bool* missing);
    void stop();
    void stopAbandonedServers(const QString& base, bool root) const;
    // Runs a server program (as the unprivileged user when root); false
    // with its output in `error` when it fails.
    bool run(const QString& program, const QStringList& arguments, int timeoutMs,
             QString* error) const;
    bool exec(const QString& sql, QString* error);

    QString m_bin; // folder of initdb, pg_ctl and postgres
    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_runAs; // empty: this process's own user
    int m_port = -1;
    bool m_running = false;
    QString m_adminConnection;
};

// Declares `server` for the rest of the test; without one, skips the test
// where the server programs are missing and fails it where they are there
// but the server would not start, giving the reason either way.
#define QM_REQUIRE_POSTGRES(server)                                                                \
    QString server##WhyNot;                                                                        \
    PostgresTestServer* server = PostgresTestServer::shared(&server##WhyNot);                      \
    if (!server && PostgresTestServer::isMissing())                                                \
        GTEST_SKIP() << server##WhyNot.toStdString();                                              \
    if (!server)                                                                                   \
    GTEST_FAIL() << server##WhyNot.toStdString()
