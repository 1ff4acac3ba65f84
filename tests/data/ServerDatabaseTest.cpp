#include "context/AppContext.h"
#include "data/ClientDatabaseSchema.h"
#include "data/DatabaseLocation.h"
#include "data/databaseControl.h"
#include "platform/errorClass.h"
#include "support/PostgresTestServer.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <gtest/gtest.h>

namespace {

// A server database with the client schema and a few rows, written by a
// side connection as another workstation would.
class ServerDatabaseTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_server = PostgresTestServer::shared(&m_whyNot);
        if (!m_server)
            GTEST_SKIP() << m_whyNot.toStdString();
        QString error;
        const auto uri = m_server->createDatabase(QStringLiteral("server_test"), &error);
        ASSERT_TRUE(uri) << error.toStdString();
        m_uri = *uri;
        QSqlDatabase side;
        ASSERT_TRUE(DatabaseLocation::parse(m_uri, &error)->open(side, m_side, &error))
            << error.toStdString();
        ClientDatabaseSchema::create(side);
        sideExec(QStringLiteral("INSERT INTO Companies (CompanyID, CompanyName, City) VALUES "
                                "(1, 'Acme Widgets', 'Ottawa'), (2, 'bolt & Nut', 'ottawa'), "
                                "(3, NULL, 'Kingston')"));
        sideExec(QStringLiteral("INSERT INTO ContactLinks (ContactIDNum, CompanyNum, "
                                "DefaultContact) VALUES (10, 1, 0), (11, 1, 1)"));
    }

    void TearDown() override {
        m_db.reset();
        if (QSqlDatabase::contains(m_side)) {
            QSqlDatabase::database(m_side, false).close();
            QSqlDatabase::removeDatabase(m_side);
        }
        if (m_server && !m_uri.isEmpty())
            m_server->dropDatabase(m_uri);
    }

    void sideExec(const QString& sql) {
        QSqlQuery query(QSqlDatabase::database(m_side));
        ASSERT_TRUE(query.exec(sql)) << query.lastError().text().toStdString();
    }

    databaseControl& connect(const QString& uri) {
        m_db = std::make_unique<databaseControl>();
        m_db->setDatabasePath(uri);
        m_db->connect();
        return *m_db;
    }

    // Ends every session of the program's connection, as a server restart
    // or a dropped network would.
    void dropProgramSessions() {
        sideExec(QStringLiteral("SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE "
                                "datname = current_database() AND pid <> pg_backend_pid()"));
    }

    PostgresTestServer* m_server = nullptr;
    QString m_whyNot;
    QString m_uri;
    const QString m_side = QStringLiteral("server_test_side");
    std::unique_ptr<databaseControl> m_db;
    ScopedAppContext m_context;
};

TEST_F(ServerDatabaseTest, ConnectionFailuresNameWhatIsWrong) {
    struct Case {
        QString uri;
        const char* says;
    };
    const QString base =
        QStringLiteral("postgresql://%1@127.0.0.1:%2/").arg(m_server->user()).arg(m_server->port());
    const Case cases[] = {
        {base + QStringLiteral("no_such_practice"), "There is no database no_such_practice"},
        {QStringLiteral("postgresql://nobody_here@127.0.0.1:%1/postgres").arg(m_server->port()),
         "has no user nobody_here"},
        // Port 1 is reserved and nothing listens there.
        {QStringLiteral("postgresql://x@127.0.0.1:1/practice"), "cannot be reached"},
        {QStringLiteral("postgresql://x:pw@127.0.0.1/practice"), "password"},
        // A database without the client tables.
        {base + QStringLiteral("postgres"), "has no client tables"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.uri.toStdString());
        databaseControl& db = connect(c.uri);
        EXPECT_FALSE(db.isConnected());
        EXPECT_TRUE(db.lastError().contains(QString::fromUtf8(c.says)))
            << db.lastError().toStdString();
        EXPECT_FALSE(db.lastError().contains(QStringLiteral(":pw@")));
    }
}

TEST_F(ServerDatabaseTest, AnOlderSchemaIsNamedByWhatItLacks) {
    sideExec(QStringLiteral("ALTER TABLE Companies DROP COLUMN WebSite"));
    sideExec(QStringLiteral("DROP TABLE ClientUSInfo"));
    databaseControl& db = connect(m_uri);
    EXPECT_FALSE(db.isConnected());
    EXPECT_TRUE(db.lastError().contains(QStringLiteral("older schema")));
    EXPECT_TRUE(db.lastError().contains(QStringLiteral("Companies.WebSite")));
    EXPECT_TRUE(db.lastError().contains(QStringLiteral("table ClientUSInfo")));
}

TEST_F(ServerDatabaseTest, TextComparesAndSortsAsOnTheEmbeddedEngine) {
    databaseControl& db = connect(m_uri);
    ASSERT_TRUE(db.isConnected()) << db.lastError().toStdString();
    const int h = db.openRecordset(
        QStringLiteral("SELECT Companies.* FROM Companies WHERE City = 'OTTAWA' OR CompanyName "
                       "LIKE 'x*' ORDER BY CompanyName"));
    QStringList names;
    for (; !db.isEOF(h); db.moveNext(h))
        names << db.getField(h, QStringLiteral("companyname")).toString();
    EXPECT_EQ(names, (QStringList{QStringLiteral("Acme Widgets"), QStringLiteral("bolt & Nut")}));
    // Column names come back as the schema spells them.
    EXPECT_TRUE(db.fieldNames(h).contains(QStringLiteral("CompanyName")));
    db.closeRecordset(h);
    EXPECT_EQ(db.lookupValue(QStringLiteral("SELECT Companies.CompanyID FROM Companies WHERE "
                                            "CompanyName = ?"),
                             {QStringLiteral("ACME widgets")}, QString()),
              std::optional<QVariant>(QVariant(qlonglong(1))));
}

TEST_F(ServerDatabaseTest, RowsWithoutAKeyAreWrittenBackByTheirAddress) {
    databaseControl& db = connect(m_uri);
    ASSERT_TRUE(db.isConnected());
    const int h = db.openRecordset(
        QStringLiteral("SELECT ContactLinks.* FROM ContactLinks WHERE ContactIDNum = 10"),
        databaseControl::KeysetCursor, databaseControl::OptimisticLock);
    db.updateFieldNow(h, QStringLiteral("DefaultContact"), QStringLiteral("True"));
    // The row moved with the update; a second write still finds it.
    db.updateFieldNow(h, QStringLiteral("FamilyRelationship"), QStringLiteral("Spouse"));
    QSqlQuery check(QSqlDatabase::database(m_side));
    ASSERT_TRUE(check.exec(QStringLiteral(
        "SELECT DefaultContact, FamilyRelationship FROM ContactLinks WHERE ContactIDNum = 10")));
    ASSERT_TRUE(check.next());
    EXPECT_EQ(check.value(0).toInt(), 1);
    EXPECT_EQ(check.value(1).toString(), QStringLiteral("Spouse"));
    // Changed meanwhile by another workstation: refused, not written over.
    sideExec(QStringLiteral("UPDATE ContactLinks SET FamilyRelationship = 'Child' WHERE "
                            "ContactIDNum = 10"));
    EXPECT_THROW(db.updateFieldNow(h, QStringLiteral("FamilyRelationship"), QStringLiteral("X")),
                 QmError);
    ASSERT_TRUE(check.exec(
        QStringLiteral("SELECT FamilyRelationship FROM ContactLinks WHERE ContactIDNum = 10")));
    ASSERT_TRUE(check.next());
    EXPECT_EQ(check.value(0).toString(), QStringLiteral("Child"));
    db.closeRecordset(h);

    // A new keyed row takes the next number, as on the embedded engine.
    const int c = db.openRecordset(QStringLiteral("SELECT Companies.* FROM Companies WHERE 1 = 0"),
                                   databaseControl::KeysetCursor, databaseControl::OptimisticLock);
    db.addNew(c);
    db.setField(c, QStringLiteral("CompanyName"), QStringLiteral("New Co"));
    db.saveRecord(c);
    EXPECT_EQ(db.getField(c, QStringLiteral("CompanyID")).toLongLong(), 4);
}

TEST_F(ServerDatabaseTest, ALostConnectionIsMadeAgainAndABatchSaysWhatWasLost) {
    databaseControl& db = connect(m_uri);
    ASSERT_TRUE(db.isConnected());
    const QString read = QStringLiteral("SELECT Companies.CompanyName FROM Companies WHERE "
                                        "CompanyID = 1");
    int h = db.openRecordset(read);
    db.closeRecordset(h);

    // A read outside a batch is asked again on a new connection.
    dropProgramSessions();
    h = db.openRecordset(read);
    EXPECT_EQ(db.getField(h, QStringLiteral("CompanyName")).toString(),
              QStringLiteral("Acme Widgets"));
    db.closeRecordset(h);

    // Inside a batch, the write that met the lost connection fails, saying
    // so; the batch's earlier write went with the connection; the next
    // write works on the new connection.
    const int w =
        db.openRecordset(QStringLiteral("SELECT Companies.* FROM Companies ORDER BY CompanyID"),
                         databaseControl::KeysetCursor, databaseControl::OptimisticLock);
    {
        WriteBatch batch(db);
        db.updateFieldNow(w, QStringLiteral("City"), QStringLiteral("Lost"));
        dropProgramSessions();
        db.moveNext(w);
        try {
            db.updateFieldNow(w, QStringLiteral("City"), QStringLiteral("Lost too"));
            ADD_FAILURE() << "the write on a lost connection did not fail";
        } catch (const QmError& fault) {
            EXPECT_TRUE(fault.description().contains(QStringLiteral("connection")))
                << fault.description().toStdString();
            EXPECT_TRUE(fault.description().contains(QStringLiteral("not saved")));
        }
        db.moveNext(w);
        db.updateFieldNow(w, QStringLiteral("City"), QStringLiteral("Kept"));
    }
    db.closeRecordset(w);
    QSqlQuery check(QSqlDatabase::database(m_side));
    ASSERT_TRUE(check.exec(QStringLiteral("SELECT City FROM Companies ORDER BY CompanyID")));
    QStringList cities;
    while (check.next())
        cities << check.value(0).toString();
    EXPECT_EQ(cities, (QStringList{QStringLiteral("Ottawa"), QStringLiteral("ottawa"),
                                   QStringLiteral("Kept")}));
}

TEST_F(ServerDatabaseTest, AHeldBatchAsksTheServerOnceForTheSameRead) {
    databaseControl& db = connect(m_uri);
    ASSERT_TRUE(db.isConnected());
    const QString read = QStringLiteral("SELECT Companies.City FROM Companies WHERE CompanyID = 1");
    auto city = [&] {
        const int h = db.openRecordset(read);
        const QString value = db.getField(h, QStringLiteral("City")).toString();
        db.closeRecordset(h);
        return value;
    };
    auto lookedUp = [&] {
        return db
            .lookupValue(QStringLiteral("SELECT City FROM Companies WHERE CompanyID = ?"), {1},
                         QString())
            ->toString();
    };
    WriteBatch batch(db, WriteBatch::Reads::Held);
    EXPECT_EQ(city(), QStringLiteral("Ottawa"));
    EXPECT_EQ(lookedUp(), QStringLiteral("Ottawa"));
    const qint64 statements = db.statementCount();
    sideExec(QStringLiteral("UPDATE Companies SET City = 'Hull' WHERE CompanyID = 1"));
    EXPECT_EQ(city(), QStringLiteral("Ottawa"));
    EXPECT_EQ(db.statementCount(), statements);
    // A checkpoint ends the shared answers.
    batch.commit();
    EXPECT_EQ(city(), QStringLiteral("Hull"));
    EXPECT_EQ(lookedUp(), QStringLiteral("Hull"));
    // So does a write of the program's own.
    sideExec(QStringLiteral("UPDATE Companies SET City = 'Aylmer' WHERE CompanyID = 1"));
    const int w =
        db.openRecordset(QStringLiteral("SELECT Companies.* FROM Companies WHERE CompanyID = 2"),
                         databaseControl::KeysetCursor, databaseControl::OptimisticLock);
    db.updateFieldNow(w, QStringLiteral("City"), QStringLiteral("Gatineau"));
    db.closeRecordset(w);
    EXPECT_EQ(city(), QStringLiteral("Aylmer"));
    EXPECT_EQ(lookedUp(), QStringLiteral("Aylmer"));
}

TEST_F(ServerDatabaseTest, AReadAheadTheServerRefusesLeavesTheBatchWhole) {
    // The window's keys include one the key column cannot hold: the read
    // over the window fails where the read of one key does not.
    sideExec(QStringLiteral("CREATE TABLE Tiny (TinyID smallint PRIMARY KEY, Label text)"));
    sideExec(QStringLiteral("INSERT INTO Tiny VALUES (1, 'one'), (2, 'two')"));
    databaseControl& db = connect(m_uri);
    ASSERT_TRUE(db.isConnected());
    WriteBatch batch(db, WriteBatch::Reads::Held);
    ExpectedKeys expecting(db, QStringLiteral("TinyID"), {1, 70000, 2});
    for (int key : {1, 2}) {
        const int h = db.openRecordset(
            QStringLiteral("SELECT Tiny.Label FROM Tiny WHERE TinyID = %1").arg(key));
        EXPECT_EQ(db.getField(h, QStringLiteral("Label")).toString(),
                  key == 1 ? QStringLiteral("one") : QStringLiteral("two"));
        db.closeRecordset(h);
    }
    const int w =
        db.openRecordset(QStringLiteral("SELECT Companies.* FROM Companies WHERE CompanyID = 3"),
                         databaseControl::KeysetCursor, databaseControl::OptimisticLock);
    db.updateFieldNow(w, QStringLiteral("City"), QStringLiteral("Cornwall"));
    db.closeRecordset(w);
    EXPECT_NO_THROW(batch.commit());
    QSqlQuery check(QSqlDatabase::database(m_side));
    ASSERT_TRUE(check.exec(QStringLiteral("SELECT City FROM Companies WHERE CompanyID = 3")));
    ASSERT_TRUE(check.next());
    EXPECT_EQ(check.value(0).toString(), QStringLiteral("Cornwall"));
}

} // namespace
