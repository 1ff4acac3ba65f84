#include "data/JetSqlTranslator.h"

#include "platform/errorClass.h"

#include <gtest/gtest.h>

namespace {

struct Case {
    const char* name;
    QString jet;
    QString sql;
    QVariantList parameters;
};

void runCases(const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const TranslatedSql t = JetSqlTranslator::translate(c.jet);
        EXPECT_EQ(t.sql, c.sql);
        EXPECT_EQ(t.parameters, c.parameters);
        EXPECT_TRUE(t.placeholders.empty());
    }
}

} // namespace

TEST(JetSqlTranslatorTest, DateLiteralsBecomeIsoParameters) {
    runCases({
        {"month first",
         "SELECT * FROM T WHERE D = #3/5/2024#",
         "SELECT * FROM T WHERE D = ?",
         {QStringLiteral("2024-03-05")}},
        {"iso", "WHERE D >= #2024-12-31#", "WHERE D >= ?", {QStringLiteral("2024-12-31")}},
        {"two-digit year below 30 is this century",
         "WHERE D < #1/2/29#",
         "WHERE D < ?",
         {QStringLiteral("2029-01-02")}},
        {"two-digit year from 30 is the last",
         "WHERE D < #1/2/30#",
         "WHERE D < ?",
         {QStringLiteral("1930-01-02")}},
        {"with time",
         "WHERE D = #3/5/2024 2:07:09 PM#",
         "WHERE D = ?",
         {QStringLiteral("2024-03-05 14:07:09")}},
        {"midnight written out keeps the time",
         "WHERE D = #3/5/2024 12:00 AM#",
         "WHERE D = ?",
         {QStringLiteral("2024-03-05 00:00:00")}},
        // The column is read on the zero day too when it holds the short
        // "HH:MM:SS" form, so both stored forms compare alike.
        {"time alone on the zero day",
         "WHERE T = #9:30#",
         "WHERE (CASE WHEN substr(T, 3, 1) = ? THEN ? || T ELSE T END) = ?",
         {QStringLiteral(":"), QStringLiteral("1899-12-30 "),
          QStringLiteral("1899-12-30 09:30:00")}},
        {"spaces inside the marks",
         "WHERE D = # 3/5/2024 #",
         "WHERE D = ?",
         {QStringLiteral("2024-03-05")}},
        {"between two dates",
         "WHERE D BETWEEN #1/1/2024# AND #12/31/2024#",
         "WHERE D BETWEEN ? AND ?",
         {QStringLiteral("2024-01-01"), QStringLiteral("2024-12-31")}},
    });
}

TEST(JetSqlTranslatorTest, BadDateLiteralsAreErrors) {
    for (const char* jet :
         {"WHERE D = #2/30/2024#", "WHERE D = #13/1/2024#", "WHERE D = #yesterday#", "WHERE D = ##",
          "WHERE D = #3/5/2024", "WHERE D = #13:00 PM#", "WHERE D = #25:00#"}) {
        SCOPED_TRACE(jet);
        try {
            JetSqlTranslator::translate(QString::fromLatin1(jet));
            ADD_FAILURE() << "no error";
        } catch (const QmError& e) {
            EXPECT_EQ(e.number(), QmError::DatabaseError);
            EXPECT_TRUE(e.description().contains(u"date literal")) << e.description().toStdString();
        }
    }
}

TEST(JetSqlTranslatorTest, TrueAndFalse) {
    runCases({
        {"equals true means any non-zero", "WHERE Active = True", "WHERE Active <> 0", {}},
        {"equals false", "WHERE Active = False", "WHERE Active = 0", {}},
        {"not equal true", "WHERE Active <> TRUE", "WHERE Active = 0", {}},
        {"not equal false", "WHERE Active <> false", "WHERE Active <> 0", {}},
        {"bang equals", "WHERE Active != True", "WHERE Active = 0", {}},
        {"no space", "WHERE Active=True", "WHERE Active<> 0", {}},
        {"as a value elsewhere",
         "UPDATE T SET Active = True, Gone = False",
         "UPDATE T SET Active <> 0, Gone = 0",
         {}},
        {"in a list", "SELECT True, False FROM T", "SELECT 1, 0 FROM T", {}},
        {"a qualified column named True is a name",
         "SELECT T.True FROM T",
         "SELECT T.True FROM T",
         {}},
        {"words that start alike are names",
         "WHERE Trueness = 1 AND Falsey = 2",
         "WHERE Trueness = ? AND Falsey = ?",
         {1LL, 2LL}},
    });
}

TEST(JetSqlTranslatorTest, TextLiteralsAndWildcards) {
    runCases({
        {"single quotes, compared without case",
         "WHERE Name = 'Smith'",
         "WHERE Name = ? COLLATE NOCASE",
         {QStringLiteral("Smith")}},
        {"double quotes are text",
         "WHERE Name = \"Smith\"",
         "WHERE Name = ? COLLATE NOCASE",
         {QStringLiteral("Smith")}},
        {"doubled quote inside",
         "WHERE Name = 'O''Brien'",
         "WHERE Name = ? COLLATE NOCASE",
         {QStringLiteral("O'Brien")}},
        {"other quote inside",
         "WHERE Name = 'Say \"hi\"'",
         "WHERE Name = ? COLLATE NOCASE",
         {QStringLiteral("Say \"hi\"")}},
        {"empty text", "WHERE Name <> ''", "WHERE Name <> ? COLLATE NOCASE", {QString("")}},
        {"like with star and question mark",
         "WHERE Name LIKE 'Sm*th?'",
         "WHERE Name LIKE ?",
         {QStringLiteral("Sm%th_")}},
        {"like keyword in any case",
         "WHERE Name like '*'",
         "WHERE Name like ?",
         {QStringLiteral("%")}},
        {"wildcards in an equality stay",
         "WHERE Name = 'a*b?'",
         "WHERE Name = ? COLLATE NOCASE",
         {QStringLiteral("a*b?")}},
        {"text in a value list has no collation",
         "INSERT INTO T (A) VALUES ('x; DROP')",
         "INSERT INTO T (A) VALUES (?)",
         {QStringLiteral("x; DROP")}},
        {"a hash inside text is not a date",
         "WHERE Ref = 'No. #12'",
         "WHERE Ref = ? COLLATE NOCASE",
         {QStringLiteral("No. #12")}},
        {"a question mark inside text is not a placeholder",
         "WHERE Q = 'why?'",
         "WHERE Q = ? COLLATE NOCASE",
         {QStringLiteral("why?")}},
        {"brackets keep their name",
         "SELECT [Company Name] FROM [Client List]",
         "SELECT [Company Name] FROM [Client List]",
         {}},
    });
}

TEST(JetSqlTranslatorTest, NumbersAndOperators) {
    runCases({
        {"compared number is a parameter", "WHERE ID = 42", "WHERE ID = ?", {42LL}},
        {"decimal", "WHERE Fee > 10.5", "WHERE Fee > ?", {10.5}},
        {"negative after an operator", "WHERE Balance < -3", "WHERE Balance < ?", {-3LL}},
        {"negative with a space", "WHERE Balance >= - 2.5", "WHERE Balance >= ?", {-2.5}},
        {"subtraction is left alone", "SELECT A - 1 FROM T", "SELECT A - 1 FROM T", {}},
        {"bang equals becomes the standard form", "WHERE ID != 7", "WHERE ID <> ?", {7LL}},
        {"name starting with a digit", "SELECT 2ndLine FROM T", "SELECT 2ndLine FROM T", {}},
        {"top count stays", "SELECT TOP 5 * FROM T", "SELECT TOP 5 * FROM T", {}},
    });
}

TEST(JetSqlTranslatorTest, OrderByItemsCompareWithoutCase) {
    runCases({
        {"one item",
         "SELECT * FROM T ORDER BY Name",
         "SELECT * FROM T ORDER BY Name COLLATE NOCASE",
         {}},
        {"direction after the collation",
         "SELECT * FROM T ORDER BY Name DESC, City asc",
         "SELECT * FROM T ORDER BY Name COLLATE NOCASE DESC, City COLLATE NOCASE asc",
         {}},
        {"ordinal stays bare",
         "SELECT A, B FROM T ORDER BY 2, A",
         "SELECT A, B FROM T ORDER BY 2, A COLLATE NOCASE",
         {}},
        {"ends before a semicolon",
         "SELECT * FROM T ORDER BY Name;",
         "SELECT * FROM T ORDER BY Name COLLATE NOCASE;",
         {}},
        {"inside a subquery",
         "SELECT * FROM (SELECT * FROM T ORDER BY Name) AS S",
         "SELECT * FROM (SELECT * FROM T ORDER BY Name COLLATE NOCASE) AS S",
         {}},
        {"function call is one item",
         "SELECT * FROM T ORDER BY Nz(A, B), C",
         "SELECT * FROM T ORDER BY Nz(A, B) COLLATE NOCASE, C COLLATE NOCASE",
         {}},
    });
}

TEST(JetSqlTranslatorTest, PlaceholdersKeepTheirSlots) {
    const TranslatedSql t = JetSqlTranslator::translate(
        QStringLiteral("SELECT * FROM T WHERE A = ? AND D > #1/2/2024# AND B = ? AND C = 'x'"),
        {false, true});
    EXPECT_EQ(t.sql, QStringLiteral("SELECT * FROM T WHERE A = ? AND D > ? AND B = ? COLLATE "
                                    "NOCASE AND C = ? COLLATE NOCASE"));
    ASSERT_EQ(t.parameters.size(), 4);
    // The caller's values go to slots 0 and 2; the literals fill 1 and 3.
    EXPECT_EQ(t.placeholders, (std::vector<int>{0, 2}));
    EXPECT_FALSE(t.parameters[0].isValid());
    EXPECT_EQ(t.parameters[1], QStringLiteral("2024-01-02"));
    EXPECT_FALSE(t.parameters[2].isValid());
    EXPECT_EQ(t.parameters[3], QStringLiteral("x"));
}

TEST(JetSqlTranslatorTest, TextPlaceholdersOnlyCollateAfterAComparison) {
    const struct {
        const char* name;
        QString jet;
        std::vector<bool> text;
        QString sql;
    } cases[] = {
        {"number placeholder stays bare", "WHERE ID = ?", {false}, "WHERE ID = ?"},
        {"no flags given", "WHERE ID = ?", {}, "WHERE ID = ?"},
        {"text after comparison", "WHERE N = ?", {true}, "WHERE N = ? COLLATE NOCASE"},
        {"text in a value list", "VALUES (?, ?)", {true, true}, "VALUES (?, ?)"},
        {"like takes no collation", "WHERE N LIKE ?", {true}, "WHERE N LIKE ?"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const TranslatedSql t = JetSqlTranslator::translate(c.jet, c.text);
        EXPECT_EQ(t.sql, c.sql);
        EXPECT_EQ(t.placeholders.size(), size_t(c.jet.count(u'?')));
    }
}

TEST(JetSqlTranslatorTest, UnterminatedLiteralsAreErrors) {
    for (const char* jet : {"WHERE N = 'Smith", "WHERE N = \"Smith", "WHERE N = 'it''s",
                            "SELECT [Company Name FROM T"}) {
        SCOPED_TRACE(jet);
        try {
            JetSqlTranslator::translate(QString::fromLatin1(jet));
            ADD_FAILURE() << "no error";
        } catch (const QmError& e) {
            EXPECT_EQ(e.number(), QmError::DatabaseError);
            EXPECT_TRUE(e.description().startsWith(u"Unterminated"))
                << e.description().toStdString();
        }
    }
}

TEST(JetSqlTranslatorTest, ReadQuotedReportsWhereTheLiteralEnds) {
    const QString text = QStringLiteral("x = 'a''b' AND");
    qsizetype end = -1;
    EXPECT_EQ(JetSqlTranslator::readQuoted(text, 4, end), QStringLiteral("a'b"));
    EXPECT_EQ(end, 10);
    end = -1;
    EXPECT_FALSE(JetSqlTranslator::readQuoted(QStringLiteral("'open''"), 0, end).has_value());
    EXPECT_EQ(end, -1);
}

TEST(StorageConventionsTest, StoredDatesReadBack) {
    const struct {
        const char* text;
        QVariant value;
    } cases[] = {
        {"2024-03-05", QDate(2024, 3, 5)},
        {"2024-03-05 14:07:09", QDateTime(QDate(2024, 3, 5), QTime(14, 7, 9))},
        {"2024-03-05T14:07", QDateTime(QDate(2024, 3, 5), QTime(14, 7))},
        {"2024-03-05 14:07:09.123", QDateTime(QDate(2024, 3, 5), QTime(14, 7, 9))},
        {"09:30:00", QDateTime(QDate(1899, 12, 30), QTime(9, 30))},
        {"2024-02-30", QVariant()},
        {"2024-03-05 25:00:00", QVariant()},
        {"3/5/2024", QVariant()},
        {"", QVariant()},
        {"2024-03-05x", QVariant()},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(StorageConventions::parseStoredDate(QString::fromLatin1(c.text)), c.value);
    }
}

TEST(StorageConventionsTest, StoredFormRoundTripsThroughTheReader) {
    const QVariant values[] = {QDate(2024, 3, 5),
                               QDateTime(QDate(1999, 12, 31), QTime(23, 59, 58))};
    for (const QVariant& v : values) {
        const QVariant stored = StorageConventions::toStored(v);
        ASSERT_EQ(stored.typeId(), QMetaType::QString);
        EXPECT_EQ(StorageConventions::parseStoredDate(stored.toString()), v);
    }
    EXPECT_EQ(StorageConventions::toStored(QTime(8, 5)), QStringLiteral("1899-12-30 08:05:00"));
    EXPECT_EQ(StorageConventions::toStored(true), 1);
    EXPECT_EQ(StorageConventions::toStored(QStringLiteral("x")), QStringLiteral("x"));
}

// The server's dialect: what the embedded engine does without being told
// (LIKE ignoring case, Nulls sorted first, collations ignored on numbers,
// sorting a DISTINCT by any expression) is spelled out.
TEST(JetSqlTranslatorTest, ServerDialectKeepsTheEmbeddedEnginesAnswers) {
    struct ServerCase {
        const char* name;
        QString jet;
        QString sql;
    };
    const std::vector<ServerCase> cases = {
        {"like ignores case", "SELECT * FROM Companies WHERE CompanyName LIKE 'a*'",
         "SELECT * FROM Companies WHERE CompanyName ILIKE ?"},
        {"not like too", "WHERE City NOT LIKE '*x'", "WHERE City NOT ILIKE ?"},
        {"text column compared without case", "WHERE Companies.City = 'Ottawa'",
         "WHERE Companies.City = ? COLLATE NOCASE"},
        {"number column compared with a text literal takes no collation", "WHERE CompanyID = '12'",
         "WHERE CompanyID = ?"},
        {"number sort key takes no collation, Nulls first",
         "SELECT * FROM Schedule ORDER BY ScheduleID",
         "SELECT * FROM Schedule ORDER BY ScheduleID NULLS FIRST"},
        {"text sort keys with directions",
         "SELECT * FROM Companies ORDER BY CompanyName DESC, City ASC, 2",
         "SELECT * FROM Companies ORDER BY CompanyName COLLATE NOCASE DESC NULLS LAST, City "
         "COLLATE NOCASE ASC NULLS FIRST, 2 NULLS FIRST"},
        {"distinct sorted outside",
         "SELECT DISTINCT Schedule.EmployeeAssigned FROM Schedule WHERE Closed = False ORDER BY "
         "Schedule.EmployeeAssigned;",
         "SELECT * FROM (SELECT DISTINCT Schedule.EmployeeAssigned FROM Schedule WHERE Closed = "
         "0) AS qm_distinct ORDER BY EmployeeAssigned COLLATE NOCASE NULLS FIRST;"},
        {"bracketed names", "SELECT [Companies].[Company Name] FROM [Companies]",
         "SELECT Companies.\"company name\" FROM Companies"},
    };
    for (const ServerCase& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(JetSqlTranslator::translate(c.jet, {}, SqlDialect::Postgres).sql, c.sql);
    }
    // The embedded engine's text stays as it always was.
    EXPECT_EQ(JetSqlTranslator::translate(QStringLiteral("WHERE CompanyID = '12' ORDER BY "
                                                         "ScheduleID"))
                  .sql,
              QStringLiteral("WHERE CompanyID = ? COLLATE NOCASE ORDER BY ScheduleID COLLATE "
                             "NOCASE"));
}

TEST(JetSqlTranslatorTest, ServerPlaceholdersSayWhichMeetANumberColumn) {
    const TranslatedSql t = JetSqlTranslator::translate(
        QStringLiteral("SELECT * FROM Companies WHERE CompanyID = ? AND CompanyName = ?"),
        {true, true}, SqlDialect::Postgres);
    EXPECT_EQ(t.sql, QStringLiteral("SELECT * FROM Companies WHERE CompanyID = ? AND CompanyName "
                                    "= ? COLLATE NOCASE"));
    EXPECT_EQ(t.numberPlaceholders, (std::vector<bool>{true, false}));
}
