#include "ClientDbFixture.h"
#include "platform/errorClass.h"

namespace {

class WriteBatchTest : public ClientDbFixture {
protected:
    void SetUp() override {
        ClientDbFixture::SetUp();
        loadFixture(QStringLiteral("small_practice"));
    }

    int openSchedule() {
        return m_db->openRecordset(
            QStringLiteral("SELECT Schedule.Closed, Schedule.DueDate, Schedule.Amount FROM "
                           "Schedule WHERE ScheduleID=300;"),
            databaseControl::KeysetCursor, databaseControl::OptimisticLock);
    }

    QString hostDueDate() {
        return hostValue(QStringLiteral("SELECT DueDate FROM Schedule WHERE ScheduleID=300"))
            .toString();
    }

    QString ownDueDate() {
        return m_db
            ->lookupValue(QStringLiteral("SELECT Schedule.DueDate FROM Schedule WHERE "
                                         "Schedule.ScheduleID = ?;"),
                          {300}, QString())
            .value_or(QVariant())
            .toDate()
            .toString(Qt::ISODate);
    }
};

TEST_F(WriteBatchTest, WritesReachTheFileTogetherWhenTheBatchCommits) {
    const int h = openSchedule();
    {
        WriteBatch batch(*m_db);
        m_db->updateFieldNow(h, QStringLiteral("DueDate"), QStringLiteral("4/30/2023"));
        // This connection reads its own pending write; the host does not
        // see it until the commit.
        EXPECT_EQ(ownDueDate(), QStringLiteral("2023-04-30"));
        EXPECT_EQ(hostDueDate(), QStringLiteral("2023-03-31"));
        batch.commit();
        EXPECT_EQ(hostDueDate(), QStringLiteral("2023-04-30"));

        // After a checkpoint the batch goes on with a new transaction.
        m_db->updateFieldNow(h, QStringLiteral("DueDate"), QStringLiteral("5/31/2023"));
        EXPECT_EQ(hostDueDate(), QStringLiteral("2023-04-30"));
    }
    // The end of the scope commits what was left.
    EXPECT_EQ(hostDueDate(), QStringLiteral("2023-05-31"));
    EXPECT_FALSE(m_db->inWriteBatch());
    m_db->closeRecordset(h);
}

TEST_F(WriteBatchTest, AFailingWriteIsUndoneAloneAndTheOthersStand) {
    const int h = openSchedule();
    {
        WriteBatch batch(*m_db);
        m_db->updateFieldNow(h, QStringLiteral("DueDate"), QStringLiteral("4/30/2023"));
        EXPECT_THROW(m_db->updateFieldNow(h, QStringLiteral("Amount"), QStringLiteral("lots")),
                     QmError);
        m_db->updateFieldNow(h, QStringLiteral("Closed"), QStringLiteral("True"));
    }
    EXPECT_EQ(hostDueDate(), QStringLiteral("2023-04-30"));
    EXPECT_EQ(hostValue(QStringLiteral("SELECT Closed FROM Schedule WHERE ScheduleID=300")).toInt(),
              1);
    m_db->closeRecordset(h);
}

TEST_F(WriteBatchTest, NestedBatchesCommitOnlyWhenTheOutermostEnds) {
    const int h = openSchedule();
    {
        WriteBatch outer(*m_db);
        {
            WriteBatch inner(*m_db);
            m_db->updateFieldNow(h, QStringLiteral("DueDate"), QStringLiteral("4/30/2023"));
        }
        EXPECT_TRUE(m_db->inWriteBatch());
        EXPECT_EQ(hostDueDate(), QStringLiteral("2023-03-31"));
    }
    EXPECT_EQ(hostDueDate(), QStringLiteral("2023-04-30"));

    // New rows inside a batch get their key back, as outside one.
    const int c = m_db->openRecordset(
        QStringLiteral(
            "SELECT Categories.* FROM Categories WHERE CategorySpecialCode = 'FirmCategory';"),
        databaseControl::KeysetCursor, databaseControl::OptimisticLock);
    {
        WriteBatch batch(*m_db);
        m_db->addNew(c);
        m_db->setField(c, QStringLiteral("CategoryName"), QStringLiteral("Firm Staff"));
        m_db->setField(c, QStringLiteral("CategoryNum"), 1);
        m_db->saveRecord(c);
        EXPECT_GT(m_db->getField(c, QStringLiteral("CategoryID")).toInt(), 6);
    }
    m_db->closeRecordset(c);
    EXPECT_EQ(
        hostValue(QStringLiteral("SELECT COUNT(*) FROM Categories WHERE CategoryName='Firm Staff'"))
            .toInt(),
        1);
    m_db->closeRecordset(h);
}

// A merge reads through a held batch: its reads share one lock, which a
// host's write waits for only until the next commit; a batch that only
// reads without holding leaves the host free.
TEST_F(WriteBatchTest, HeldReadsKeepTheHostWaitingOnlyUntilTheCommit) {
    QM_SQLITE_FILE_ONLY();
    hostExec(QStringLiteral("PRAGMA busy_timeout = 0"));
    ASSERT_EQ(hostValue(QStringLiteral("PRAGMA journal_mode")).toString(),
              QStringLiteral("delete"));
    auto hostWrites = [&](const QString& date) {
        QSqlQuery query(QSqlDatabase::database(m_hostConnection));
        return query.exec(
            QStringLiteral("UPDATE Schedule SET DueDate='%1' WHERE ScheduleID=300").arg(date));
    };
    {
        WriteBatch batch(*m_db);
        EXPECT_EQ(ownDueDate(), QStringLiteral("2023-03-31"));
        EXPECT_TRUE(hostWrites(QStringLiteral("2023-04-30")));
    }
    {
        WriteBatch batch(*m_db, WriteBatch::Reads::Held);
        EXPECT_EQ(ownDueDate(), QStringLiteral("2023-04-30"));
        EXPECT_FALSE(hostWrites(QStringLiteral("2023-05-31")));
        EXPECT_EQ(ownDueDate(), QStringLiteral("2023-04-30"));
        batch.commit();
        EXPECT_TRUE(hostWrites(QStringLiteral("2023-05-31")));
        // The batch goes on holding from its next read, which sees the write.
        EXPECT_EQ(ownDueDate(), QStringLiteral("2023-05-31"));
        EXPECT_FALSE(hostWrites(QStringLiteral("2023-06-30")));
    }
    EXPECT_TRUE(hostWrites(QStringLiteral("2023-06-30")));
    EXPECT_FALSE(m_db->inWriteBatch());
}

TEST_F(WriteBatchTest, DisconnectingKeepsWhatTheBatchWrote) {
    const int h = openSchedule();
    WriteBatch batch(*m_db);
    m_db->updateFieldNow(h, QStringLiteral("DueDate"), QStringLiteral("4/30/2023"));
    m_db->disconnect();
    EXPECT_EQ(hostDueDate(), QStringLiteral("2023-04-30"));
}

} // namespace
