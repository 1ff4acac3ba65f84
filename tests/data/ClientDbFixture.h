#pragma once

#include "context/AppContext.h"
#include "data/databaseControl.h"
#include "support/TestEnvironment.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QString>
#include <gtest/gtest.h>
#include <memory>

// A fresh client database, made by other hands than the program: plain SQL
// through a separate connection, following the storage conventions. The
// program's databaseControl is connected to it and installed in a scoped
// application context.
//
// The engine is SQLite (a file in a temporary folder) unless the variable
// QM_TEST_ENGINE is "postgres": each test then gets a database of its own on
// the test program's PostgreSQL server (new, or one an earlier test left
// with the schema as made, emptied), and is skipped where there is none.
class ClientDbFixture : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    static bool onPostgres();

    // Runs statements on the side connection (the "host"); fails the test
    // on an error.
    void hostExec(const QString& sql);
    QVariant hostValue(const QString& sql);
    // Loads tests/data/db/<name>.sql through the side connection.
    void loadFixture(const QString& name);

    TestEnvironment m_env;
    ScopedAppContext m_context;
    // The database's path, or its URI on a server.
    QString m_path;
    QString m_hostConnection;
    std::unique_ptr<databaseControl> m_db;

private:
    QString m_schemaFingerprint; // of a server database made for this test
    bool openHost();
    // Empties a server database whose schema the test left as made, so
    // that the next test can have it; false when it must be dropped.
    bool emptyForTheNextTest();
    // The host's SQL as a host of that engine writes it.
    static QString inHostDialect(const QString& sql);
    // A host writes its own IDs; later inserts by the program must not
    // collide with them.
    void advanceServerSequences();
};

// For a test of what only a database file has (its header, its journal,
// its permissions): skipped on a server, saying so.
#define QM_SQLITE_FILE_ONLY()                                                                      \
    if (onPostgres())                                                                              \
    GTEST_SKIP() << "checks the SQLite file itself; a server database has no file"
