#include "data/ReadAhead.h"

#include <gtest/gtest.h>

namespace {

std::vector<RecordsetColumn> columnsNamed(const QStringList& names) {
    std::vector<RecordsetColumn> columns;
    for (const QString& name : names) {
        RecordsetColumn column;
        column.name = name;
        columns.push_back(column);
    }
    return columns;
}

std::vector<qint64> range(qint64 from, qint64 to) {
    std::vector<qint64> keys;
    for (qint64 k = from; k <= to; ++k)
        keys.push_back(k);
    return keys;
}

TEST(ReadAheadShape, OneKeyedReadsAreTakenApartAndRewrittenOverAnArray) {
    const auto shape = ReadAhead::shapeOf(QStringLiteral(
        "SELECT ContactLinks.ContactIDNum, ContactLinks.DefaultContact FROM ContactLinks "
        "WHERE ContactLinks.CompanyNum = ? ORDER BY ContactLinks.ContactIDNum;"));
    ASSERT_TRUE(shape);
    EXPECT_EQ(shape->keyColumn, QStringLiteral("ContactLinks.CompanyNum"));
    EXPECT_EQ(shape->orderBy, QStringLiteral("ORDER BY ContactLinks.ContactIDNum"));
    // The original columns keep their places (an ORDER BY by position still
    // means them); the key comes last.
    EXPECT_EQ(ReadAhead::batchedStatement(*shape, true),
              QStringLiteral("SELECT ContactLinks.ContactIDNum, ContactLinks.DefaultContact, "
                             "ContactLinks.CompanyNum AS qm_ahead_key FROM ContactLinks WHERE "
                             "ContactLinks.CompanyNum = ANY(?) ORDER BY "
                             "ContactLinks.ContactIDNum"));
    EXPECT_EQ(ReadAhead::keyArray({3, -1, 12}, true), QStringLiteral("{3,-1,12}"));
    // The embedded engine has no arrays; it reads the keys from JSON.
    EXPECT_TRUE(ReadAhead::batchedStatement(*shape, false)
                    .contains(QStringLiteral("ContactLinks.CompanyNum IN (SELECT value FROM "
                                             "json_each(?)) ORDER BY")));
    EXPECT_EQ(ReadAhead::keyArray({3, -1, 12}, false), QStringLiteral("[3,-1,12]"));

    const auto join = ReadAhead::shapeOf(
        QStringLiteral("SELECT Companies.CompanyID, Notes.Text FROM (Companies INNER JOIN Notes ON "
                       "Companies.CompanyID = Notes.CompanyNum) WHERE Companies.CompanyID=?"));
    ASSERT_TRUE(join);
    EXPECT_EQ(join->from, QStringLiteral("(Companies INNER JOIN Notes ON Companies.CompanyID = "
                                         "Notes.CompanyNum)"));
    EXPECT_TRUE(join->orderBy.isEmpty());
    // Words inside quoted text are not clauses.
    EXPECT_TRUE(ReadAhead::shapeOf(QStringLiteral(
                    "SELECT 'GROUP BY ? WHERE' AS Note, T.A FROM T WHERE T.K = ?")) == std::nullopt)
        << "a ? inside a literal is not told apart from the key's";
    EXPECT_TRUE(ReadAhead::shapeOf(
        QStringLiteral("SELECT 'GROUP BY WHERE' AS Note, T.A FROM T WHERE T.K = ?")));
}

TEST(ReadAheadShape, ReadsWhoseRowsDependOnOtherKeysAreReadAsAsked) {
    const char* refused[] = {
        "SELECT COUNT(*) FROM Contacts WHERE CompanyNum = ?",
        "SELECT Max(ContactID) FROM Contacts WHERE CompanyNum = ?",
        "SELECT DISTINCT City FROM Companies WHERE CompanyID = ?",
        "SELECT CompanyNum FROM Contacts WHERE CompanyNum = ? GROUP BY CompanyNum",
        "SELECT ContactID FROM Contacts WHERE CompanyNum = ? LIMIT 1",
        "SELECT ContactID FROM Contacts WHERE CompanyNum = ? AND Active = 1",
        "SELECT ContactID FROM Contacts WHERE CompanyNum > ?",
        "SELECT ContactID FROM Contacts WHERE CompanyNum = ? OR CompanyNum = ?",
        "SELECT ContactID FROM Contacts WHERE ContactID IN (SELECT ContactIDNum FROM "
        "ContactLinks WHERE CompanyNum = ?)",
        "SELECT ContactID FROM Contacts",
        "SELECT ContactID FROM Contacts WHERE Note = 'unclosed = ?",
        "UPDATE Contacts SET Note = 'x' WHERE ContactID = ?",
    };
    for (const char* sql : refused)
        EXPECT_FALSE(ReadAhead::shapeOf(QString::fromLatin1(sql))) << sql;
}

class ReadAheadWindows : public ::testing::Test {
protected:
    ReadAhead ahead;
    const QString companies = QStringLiteral("SELECT Companies.CompanyName FROM Companies WHERE "
                                             "Companies.CompanyID = ?");
    const QString links = QStringLiteral(
        "SELECT ContactLinks.ContactIDNum FROM ContactLinks WHERE ContactLinks.CompanyNum = ?");
    const QString contacts =
        QStringLiteral("SELECT Contacts.FirstName FROM Contacts WHERE Contacts.ContactID = ?");

    std::vector<qint64> window(const QString& sql, qint64 key) {
        const auto shape = ReadAhead::shapeOf(sql);
        EXPECT_TRUE(shape);
        return ahead.windowFor(sql, *shape, key).value_or(std::vector<qint64>{});
    }
};

TEST_F(ReadAheadWindows, AWindowRunsFromTheAskedKeyOverTheNextExpectedOnes) {
    std::vector<qint64> keys = range(1, 3 * ReadAhead::WindowSize);
    keys.insert(keys.begin() + 5, 3); // a recipient listed twice
    ahead.expect(QStringLiteral("CompanyID"), keys);
    const std::vector<qint64> first = window(companies, 2);
    ASSERT_EQ(first.size(), size_t(ReadAhead::WindowSize));
    EXPECT_EQ(first.front(), 2);
    EXPECT_EQ(std::count(first.begin(), first.end(), 3), 1);
    EXPECT_EQ(first.back(), qint64(ReadAhead::WindowSize) + 1);
    // Not expected: read as asked.
    EXPECT_FALSE(ahead.windowFor(companies, *ReadAhead::shapeOf(companies), 50000));

    // Rows come back grouped by their trailing key; keys without rows are
    // kept as having none, so they are not asked again.
    std::vector<std::vector<QVariant>> rows{{QStringLiteral("Acme"), qint64(2)},
                                            {QStringLiteral("Bolt"), qint64(4)}};
    ahead.keep(companies, {2, 3, 4}, columnsNamed({QStringLiteral("CompanyName")}), rows);
    ASSERT_TRUE(ahead.find(companies, 2));
    EXPECT_EQ(ahead.find(companies, 2)->rows.front().size(), 1u);
    EXPECT_EQ(ahead.find(companies, 4)->rows.front().front().toString(), QStringLiteral("Bolt"));
    ASSERT_TRUE(ahead.find(companies, 3));
    EXPECT_TRUE(ahead.find(companies, 3)->rows.empty());
    EXPECT_FALSE(ahead.find(companies, 5));
    EXPECT_FALSE(ahead.find(links, 2)) << "rows are kept per statement";
    // The next window leaves out what is kept.
    const std::vector<qint64> next = window(companies, 1);
    EXPECT_EQ(std::count(next.begin(), next.end(), 2), 0);
    EXPECT_EQ(std::count(next.begin(), next.end(), 4), 0);
    // Keeping the next window lets the one before go.
    ahead.keep(companies, {5}, columnsNamed({QStringLiteral("CompanyName")}), {});
    EXPECT_FALSE(ahead.find(companies, 2));
    EXPECT_TRUE(ahead.find(companies, 5));
}

TEST_F(ReadAheadWindows, KeysOfTheNextKindOfReadAreLearntFromRowsReadAhead) {
    ahead.expect(QStringLiteral("CompanyID"), range(1, 50));
    // Company 1 links contacts 7 and 40, company 2 links contact 3; 40 is
    // also an expected company ID.
    ahead.keep(links, {1, 2}, columnsNamed({QStringLiteral("ContactIDNum")}),
               {{qint64(7), qint64(1)}, {qint64(40), qint64(1)}, {qint64(3), qint64(2)}});
    const std::vector<qint64> learnt = window(contacts, 40);
    EXPECT_EQ(learnt, (std::vector<qint64>{40, 3}))
        << "a contact ID is looked for among contact IDs, though it is a company's too";
    EXPECT_EQ(window(contacts, 7), (std::vector<qint64>{7, 40, 3}));
    // Without a better-named list, the expected keys serve.
    EXPECT_EQ(window(companies, 40).front(), 40);
    EXPECT_EQ(window(companies, 40).size(), 11u);
}

TEST_F(ReadAheadWindows, WritesEveryFewRecordsShrinkTheWindowAndUsedWindowsGrowItBack) {
    ahead.expect(QStringLiteral("CompanyID"), range(1, 4 * ReadAhead::WindowSize));
    ahead.keep(companies, {1}, columnsNamed({QStringLiteral("CompanyName")}), {});
    ahead.keep(links, {1}, columnsNamed({QStringLiteral("ContactIDNum")}), {});
    ahead.forgetTable(QStringLiteral("Companies"));
    const int shrunk = ahead.windowSizeOf(companies);
    EXPECT_LT(shrunk, ReadAhead::WindowSize);
    EXPECT_EQ(window(companies, 2).size(), size_t(shrunk));
    EXPECT_EQ(ahead.windowSizeOf(links), ReadAhead::WindowSize) << "its table was not written";
    // A write after every few records: the window ends at the smallest.
    for (int k = 0; k < 10; ++k) {
        ahead.keep(companies, {2}, columnsNamed({QStringLiteral("CompanyName")}), {});
        ahead.forgetTable(QStringLiteral("Companies"));
    }
    EXPECT_EQ(ahead.windowSizeOf(companies), ReadAhead::SmallestWindow);
    EXPECT_EQ(window(companies, 2).size(), size_t(ReadAhead::SmallestWindow));
    // Once the writes stop, each window used up doubles the next.
    ahead.keep(companies, {99}, columnsNamed({QStringLiteral("CompanyName")}), {});
    qint64 next = 100;
    while (ahead.windowSizeOf(companies) < ReadAhead::WindowSize) {
        const int before = ahead.windowSizeOf(companies);
        ahead.keep(companies, {next++}, columnsNamed({QStringLiteral("CompanyName")}), {});
        ASSERT_GT(ahead.windowSizeOf(companies), before) << "window stuck at " << before;
    }
    // A write the statement text does not name forgets and shrinks all.
    ahead.forgetRows(true);
    EXPECT_LT(ahead.windowSizeOf(companies), ReadAhead::WindowSize);
    // A new run starts with whole windows.
    ahead.expect(QStringLiteral("CompanyID"), range(1, 10));
    EXPECT_EQ(ahead.windowSizeOf(companies), ReadAhead::WindowSize);
}

TEST_F(ReadAheadWindows, WritesForgetTheRowsOfTheTablesTheyChange) {
    ahead.expect(QStringLiteral("CompanyID"), range(1, 10));
    const QString notes = QStringLiteral(
        "SELECT CompaniesNotes.Notes FROM CompaniesNotes WHERE CompaniesNotes.CompanyNum = ?");
    ahead.keep(companies, {1}, columnsNamed({QStringLiteral("CompanyName")}), {});
    ahead.keep(notes, {1}, columnsNamed({QStringLiteral("Notes")}), {});
    ahead.forgetTable(QStringLiteral("companies"));
    EXPECT_FALSE(ahead.find(companies, 1));
    EXPECT_TRUE(ahead.find(notes, 1)) << "another table whose name starts alike";
    ahead.forgetRows();
    EXPECT_FALSE(ahead.find(notes, 1));
    // Ending the expectation forgets the rest.
    ahead.keep(notes, {1}, columnsNamed({QStringLiteral("Notes")}), {});
    ahead.expect({}, {});
    EXPECT_FALSE(ahead.isExpecting());
    EXPECT_FALSE(ahead.find(notes, 1));
}

} // namespace
