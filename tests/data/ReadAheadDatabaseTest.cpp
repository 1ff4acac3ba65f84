#include "ClientDbFixture.h"

#include <QStringList>

namespace {

// A lookup's answer with its type, which must not depend on how it was read.
QString typed(const std::optional<QVariant>& value) {
    if (!value)
        return QStringLiteral("(no row)");
    return QString::fromLatin1(value->typeName()) + u':' + value->toString();
}

// What a merge reads for one recipient: its name, its contact links in
// order, each linked contact's name, its links as the table lists them, and
// a join of the two tables.
QStringList recipientReads(databaseControl& db, int company, bool unordered) {
    QStringList seen;
    seen << db.lookupValue(QStringLiteral("SELECT Companies.CompanyName FROM Companies WHERE "
                                          "CompanyID = ?"),
                           {company}, QString())
                .value_or(QStringLiteral("(none)"))
                .toString();
    const int links = db.openRecordset(
        QStringLiteral("SELECT ContactLinks.ContactIDNum, ContactLinks.DefaultContact FROM "
                       "ContactLinks WHERE ContactLinks.CompanyNum = %1 ORDER BY "
                       "ContactLinks.ContactIDNum DESC")
            .arg(company));
    for (; db.hasRecords(links) && !db.isEOF(links); db.moveNext(links)) {
        const int contact = db.getField(links, QStringLiteral("ContactIDNum")).toInt();
        seen << QString::number(contact) +
                    (db.getField(links, QStringLiteral("DefaultContact")).toBool() ? u'*' : u' ');
        seen << db.lookupValue(QStringLiteral("SELECT Contacts.FirstName FROM Contacts WHERE "
                                              "Contacts.ContactID = ?"),
                               {contact}, QStringLiteral("Contacts.FirstName"))
                    .value_or(QStringLiteral("(no contact)"))
                    .toString();
        // A stored date, a Null, a Yes/No: typed as when asked alone.
        seen << typed(db.lookupValue(QStringLiteral("SELECT Contacts.FirstName, "
                                                    "Contacts.Birthday FROM Contacts WHERE "
                                                    "Contacts.ContactID = ?"),
                                     {contact}, QStringLiteral("Birthday")));
        seen << typed(db.lookupValue(QStringLiteral("SELECT ContactLinks.DefaultContact FROM "
                                                    "ContactLinks WHERE "
                                                    "ContactLinks.ContactIDNum = ?"),
                                     {contact}, QString()));
        const int person = db.openRecordset(
            QStringLiteral("SELECT Contacts.FirstName, Contacts.ContactID FROM Contacts WHERE "
                           "Contacts.ContactID = %1")
                .arg(contact));
        seen << (db.hasRecords(person) ? db.getField(person, QStringLiteral("FirstName")).toString()
                                       : QStringLiteral("(none)"));
        db.closeRecordset(person);
    }
    db.closeRecordset(links);
    // Without ORDER BY the file gives a key's rows in the order it keeps
    // them, which a letter may show; read ahead, they must come the same.
    // A server promises no order either way.
    if (unordered) {
        const int listed = db.openRecordset(
            QStringLiteral("SELECT ContactLinks.ContactIDNum FROM ContactLinks WHERE "
                           "ContactLinks.CompanyNum = %1")
                .arg(company));
        QString order;
        for (; db.hasRecords(listed) && !db.isEOF(listed); db.moveNext(listed))
            order += db.getField(listed, QStringLiteral("ContactIDNum")).toString() + u';';
        db.closeRecordset(listed);
        seen << order;
    }
    const int joined = db.openRecordset(
        QStringLiteral("SELECT Companies.City, ContactLinks.ContactIDNum FROM (Companies INNER "
                       "JOIN ContactLinks ON Companies.CompanyID = ContactLinks.CompanyNum) "
                       "WHERE Companies.CompanyID = %1 ORDER BY ContactLinks.ContactIDNum")
            .arg(company));
    for (; db.hasRecords(joined) && !db.isEOF(joined); db.moveNext(joined))
        seen << db.getField(joined, QStringLiteral("City")).toString() + u'/' +
                    db.getField(joined, QStringLiteral("ContactIDNum")).toString();
    db.closeRecordset(joined);
    return seen;
}

// A first merge's repair: flips the default mark of a company's links.
void repair(databaseControl& db, int company) {
    const int links = db.openRecordset(
        QStringLiteral("SELECT ContactLinks.DefaultContact FROM ContactLinks WHERE "
                       "ContactLinks.CompanyNum = %1")
            .arg(company),
        databaseControl::KeysetCursor, databaseControl::OptimisticLock);
    for (; db.hasRecords(links) && !db.isEOF(links); db.moveNext(links))
        db.updateFieldNow(links, QStringLiteral("DefaultContact"),
                          db.getField(links, QStringLiteral("DefaultContact")).toBool()
                              ? QStringLiteral("0")
                              : QStringLiteral("1"));
    db.closeRecordset(links);
}

class ReadAheadDatabaseTest : public ClientDbFixture {
protected:
    void SetUp() override {
        ClientDbFixture::SetUp();
        // Companies 4 to 1299, most with a default contact, every third with
        // a second one listed before it, every seventh with none; contacts
        // only for some links.
        const QString numbers = QStringLiteral(
            "WITH RECURSIVE n(k) AS (SELECT 4 UNION ALL SELECT k + 1 FROM n WHERE k < 1299) ");
        hostExec(numbers + QStringLiteral("INSERT INTO Companies (CompanyID, CompanyName, City) "
                                          "SELECT k, 'Client ' || k, 'Town ' || (k % 5) FROM n"));
        hostExec(numbers +
                 QStringLiteral("INSERT INTO ContactLinks (ContactIDNum, CompanyNum, "
                                "DefaultContact) SELECT 20000 + k, k, 0 FROM n WHERE k % 7 <> 0 "
                                "AND k % 3 = 0"));
        hostExec(numbers + QStringLiteral("INSERT INTO ContactLinks (ContactIDNum, CompanyNum, "
                                          "DefaultContact) SELECT 10000 + k, k, 1 FROM n WHERE "
                                          "k % 7 <> 0"));
        hostExec(numbers + QStringLiteral("INSERT INTO Contacts (ContactID, FirstName) SELECT "
                                          "10000 + k, 'Person ' || k FROM n WHERE k % 4 <> 0"));
        hostExec(QStringLiteral("UPDATE Contacts SET Birthday = '1961-04-12' WHERE ContactID % 3 "
                                "= 0"));
        for (int k = 1299; k >= 1; k -= 2)
            m_keys.push_back(k);
        m_keys.push_back(99999); // no such company
        m_keys.push_back(5);     // listed twice
    }

    // The reads of every key in turn, with a repair before every fifth.
    std::vector<QStringList> run(databaseControl& db) {
        std::vector<QStringList> seen;
        for (size_t i = 0; i < m_keys.size(); ++i) {
            if (i % 5 == 0)
                repair(db, int(m_keys[i]));
            seen.push_back(recipientReads(db, int(m_keys[i]), !onPostgres()));
        }
        return seen;
    }

    std::vector<qint64> m_keys;
};

TEST_F(ReadAheadDatabaseTest, ReadsOfExpectedKeysAreAnsweredAsIfAskedOneByOne) {
    // As asked, one statement a read; twice, so that the repairs are undone
    // and the run below starts from the same rows.
    std::vector<QStringList> expected;
    const qint64 start = m_db->statementCount();
    {
        WriteBatch batch(*m_db, WriteBatch::Reads::Held);
        expected = run(*m_db);
    }
    const qint64 asAsked = m_db->statementCount() - start;
    {
        WriteBatch batch(*m_db, WriteBatch::Reads::Held);
        run(*m_db);
    }

    WriteBatch batch(*m_db, WriteBatch::Reads::Held);
    ExpectedKeys expecting(*m_db, QStringLiteral("CompanyID"), m_keys);
    const qint64 before = m_db->statementCount();
    for (size_t i = 0; i < m_keys.size(); ++i) {
        if (i % 5 == 0)
            repair(*m_db, int(m_keys[i]));
        EXPECT_EQ(recipientReads(*m_db, int(m_keys[i]), !onPostgres()).join(u'|').toStdString(),
                  expected[i].join(u'|').toStdString())
            << "company " << m_keys[i];
        if (i == 40)
            batch.commit(); // a checkpoint mid-run changes nothing read
    }
    // About half the statements remain: lookups (read as asked on a file),
    // repairs, and small windows after each repair.
    const qint64 readAhead = m_db->statementCount() - before;
    EXPECT_LT(3 * readAhead, 2 * asAsked) << readAhead << " statements read ahead, " << asAsked
                                          << " as asked, for " << m_keys.size() << " companies";

    // A write of the program's own is seen by the next read of its table.
    const int row =
        m_db->openRecordset(QStringLiteral("SELECT Companies.* FROM Companies WHERE CompanyID = 5"),
                            databaseControl::KeysetCursor, databaseControl::OptimisticLock);
    m_db->updateFieldNow(row, QStringLiteral("CompanyName"), QStringLiteral("Renamed"));
    m_db->closeRecordset(row);
    EXPECT_EQ(recipientReads(*m_db, 5, false).front().toStdString(), "Renamed");
}

} // namespace
