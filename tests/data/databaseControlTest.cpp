#include "ClientDbFixture.h"
#include "data/ClientDatabaseSchema.h"
#include "data/DatabaseFailure.h"
#include "data/JetSqlTranslator.h"
#include "data/TranslationCache.h"
#include "platform/errorClass.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardItemModel>
#include <functional>
#include <unistd.h>

namespace {

class DatabaseControlTest : public ClientDbFixture {
protected:
    void SetUp() override {
        ClientDbFixture::SetUp();
        loadFixture(QStringLiteral("small_practice"));
    }

    // The values of one column over every row of a statement.
    QStringList column(const QString& sql, const QString& name) {
        const int h = m_db->openRecordset(sql);
        QStringList values;
        for (; !m_db->isEOF(h); m_db->moveNext(h)) {
            const QVariant v = m_db->getField(h, name);
            values << (v.isNull() ? QStringLiteral("<null>") : v.toString());
        }
        m_db->closeRecordset(h);
        return values;
    }

    QStringList filtered(const QString& sql, const QString& filter, const QString& name) {
        const int h = m_db->openRecordset(sql);
        const int f = m_db->filterRecordset(h, filter);
        QStringList values;
        for (; !m_db->isEOF(f); m_db->moveNext(f))
            values << m_db->getField(f, name).toString();
        m_db->closeRecordset(f);
        m_db->closeRecordset(h);
        return values;
    }
};

TEST_F(DatabaseControlTest, WalksRowsAndReportsCounts) {
    const int h = m_db->openRecordset(
        QStringLiteral("SELECT Companies.CompanyID FROM Companies ORDER BY Companies.CompanyID;"));
    EXPECT_EQ(m_db->recordCount(h), 4);
    EXPECT_TRUE(m_db->hasRecords(h));
    EXPECT_FALSE(m_db->isEmpty(h));
    int walked = 0;
    for (; !m_db->isEOF(h); m_db->moveNext(h))
        ++walked;
    EXPECT_EQ(walked, 4);
    m_db->moveNext(h); // past the end stays at the end
    EXPECT_TRUE(m_db->isEOF(h));
    EXPECT_THROW(m_db->getField(h, QStringLiteral("CompanyID")), QmError);
    m_db->moveFirst(h);
    EXPECT_EQ(m_db->getField(h, QStringLiteral("CompanyID")).toInt(), 10);
    m_db->closeRecordset(h);
    EXPECT_EQ(m_db->openRecordsetCount(), 0);

    const int none = m_db->openRecordset(
        QStringLiteral("SELECT Companies.CompanyID FROM Companies WHERE CompanyID=999;"));
    EXPECT_TRUE(m_db->isEmpty(none));
    EXPECT_TRUE(m_db->isEOF(none));
    m_db->closeRecordset(none);
}

TEST_F(DatabaseControlTest, FieldValuesKeepTheirKinds) {
    const int h = m_db->openRecordset(QStringLiteral(
        "SELECT Companies.*, ClientData.ShowThisClient, ClientData.ActiveStatus FROM Companies "
        "INNER JOIN ClientData "
        "ON Companies.CompanyID = ClientData.CompanyIDNum WHERE Companies.CompanyID=10;"));
    ASSERT_TRUE(m_db->hasRecords(h));
    // Names match without regard to case.
    EXPECT_EQ(m_db->getField(h, QStringLiteral("companyname")).toString(),
              QStringLiteral("Acme Widgets"));
    EXPECT_EQ(m_db->getField(h, QStringLiteral("Companies.CompanyName")).toString(),
              QStringLiteral("Acme Widgets"));
    // Null stays distinct from an empty text.
    EXPECT_TRUE(m_db->getField(h, QStringLiteral("Email")).isNull());
    EXPECT_EQ(m_db->getField(h, QStringLiteral("ShowThisClient")).typeId(), QMetaType::Bool);
    EXPECT_TRUE(m_db->getField(h, QStringLiteral("ShowThisClient")).toBool());
    EXPECT_THROW(m_db->getField(h, QStringLiteral("NoSuchColumn")), QmError);
    m_db->closeRecordset(h);

    const int e = m_db->openRecordset(
        QStringLiteral("SELECT Companies.Email FROM Companies WHERE CompanyID=11;"));
    EXPECT_FALSE(m_db->getField(e, QStringLiteral("Email")).isNull());
    EXPECT_EQ(m_db->getField(e, QStringLiteral("Email")).toString(), QString());
    m_db->closeRecordset(e);

    // -1 as the old engine stored true is true as well.
    const int c = m_db->openRecordset(
        QStringLiteral("SELECT Schedule.* FROM Schedule WHERE ScheduleID=302;"));
    EXPECT_EQ(m_db->getField(c, QStringLiteral("closed")), QVariant(true));
    EXPECT_EQ(m_db->getField(c, QStringLiteral("DueDate")), QVariant(QDate(2023, 12, 31)));
    EXPECT_EQ(m_db->getField(c, QStringLiteral("scheduleName")).toString(),
              QStringLiteral("Year End GST Return"));
    EXPECT_EQ(m_db->getField(c, QStringLiteral("ScheduleName")).toString(),
              QStringLiteral("Year End GST Return"));
    m_db->closeRecordset(c);

    // Times of day in both stored forms.
    const int a = m_db->openRecordset(
        QStringLiteral("SELECT Appointments.* FROM Appointments ORDER BY AppointmentID;"));
    EXPECT_EQ(m_db->getField(a, QStringLiteral("TimeFrom")).toDateTime().time(), QTime(9, 30));
    m_db->moveNext(a);
    EXPECT_EQ(m_db->getField(a, QStringLiteral("TimeFrom")).toDateTime().time(), QTime(14, 0));
    m_db->closeRecordset(a);
}

// The statements of the program, in the old engine's dialect, give the rows
// the old engine gave.
struct StatementCase {
    const char* name;
    const char* sql;
    const char* column;
    QStringList expected;
};

class JetStatementTest : public DatabaseControlTest,
                         public ::testing::WithParamInterface<StatementCase> {};

TEST_P(JetStatementTest, ReturnsTheRowsOfTheOldEngine) {
    const StatementCase& c = GetParam();
    EXPECT_EQ(column(QString::fromUtf8(c.sql), QString::fromUtf8(c.column)), c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Dialect, JetStatementTest,
    ::testing::Values(
        StatementCase{"TrueMatchesAnyNonZero",
                      "SELECT ClientData.CompanyIDNum FROM ClientData WHERE "
                      "ClientData.ShowThisClient = True ORDER BY "
                      "ClientData.CompanyIDNum;",
                      "CompanyIDNum",
                      {"10", "11", "13"}},
        StatementCase{"FalseMatchesZero",
                      "SELECT ClientData.CompanyIDNum FROM ClientData WHERE "
                      "ClientData.ShowThisClient = False;",
                      "CompanyIDNum",
                      {"12"}},
        StatementCase{
            "NotActiveSkipsNullStatus",
            "SELECT ClientData.CompanyIDNum FROM ClientData WHERE NOT ClientData.ActiveStatus=1;",
            "CompanyIDNum",
            {"11"}},
        StatementCase{"OrderByIgnoresCase",
                      "SELECT Companies.CompanyName FROM Companies ORDER BY Companies.CompanyName;",
                      "CompanyName",
                      {"Acme Widgets", "bakery on main", "O'Brien & Sons", "Zed Holdings"}},
        StatementCase{"OrderByDescending",
                      "SELECT Companies.CompanyName FROM Companies ORDER BY Companies.CompanyName "
                      "DESC, Companies.CompanyID;",
                      "CompanyName",
                      {"Zed Holdings", "O'Brien & Sons", "bakery on main", "Acme Widgets"}},
        StatementCase{"TextComparesWithoutCase",
                      "SELECT Companies.CompanyID FROM Companies WHERE Companies.CompanyName = "
                      "'ACME WIDGETS';",
                      "CompanyID",
                      {"10"}},
        StatementCase{
            "DoubledQuoteInLiteral",
            "SELECT Companies.CompanyID FROM Companies WHERE CompanyName = 'O''Brien & Sons';",
            "CompanyID",
            {"12"}},
        StatementCase{"JetWildcards",
                      "SELECT Schedule.ScheduleID FROM Schedule WHERE scheduleName LIKE '*GST*';",
                      "ScheduleID",
                      {"300", "302"}},
        StatementCase{
            "AnsiWildcards",
            "SELECT Appointments.AppointmentID FROM Appointments WHERE Subject LIKE '%end%';",
            "AppointmentID",
            {"401"}},
        StatementCase{"DateLiteralUsForm",
                      "SELECT Schedule.ScheduleID FROM Schedule WHERE DueDate >= #1/1/2023# AND "
                      "DueDate <= #3/31/2023#;",
                      "ScheduleID",
                      {"300"}},
        StatementCase{"DateLiteralIsoForm",
                      "SELECT Schedule.ScheduleID FROM Schedule WHERE DueDate > #2023-04-01#;",
                      "ScheduleID",
                      {"301", "302"}},
        StatementCase{"TimeLiteral",
                      "SELECT Appointments.AppointmentID FROM Appointments WHERE TimeFrom >= "
                      "#9:00:00 am# AND "
                      "TimeFrom <= #10:00:00 am#;",
                      "AppointmentID",
                      {"400"}},
        StatementCase{
            "NegativeNumber",
            "SELECT Companies.CompanyID FROM Companies WHERE CompanyID > -1 AND CompanyID < 11;",
            "CompanyID",
            {"10"}},
        StatementCase{"ParenthesisedJoin",
                      "SELECT Companies.CompanyName, Schedule.ScheduleID FROM (ClientData INNER "
                      "JOIN Companies ON "
                      "ClientData.CompanyIDNum = Companies.CompanyID) INNER JOIN Schedule ON "
                      "ClientData.ClientDataID = "
                      "Schedule.ClientNum WHERE ClientData.ShowThisClient = True ORDER BY "
                      "Schedule.ScheduleID;",
                      "ScheduleID",
                      {"300", "301", "302"}},
        StatementCase{"IsNull",
                      "SELECT Categories.CategoryID FROM Categories WHERE CategoryNum IS NULL;",
                      "CategoryID",
                      {"1"}},
        StatementCase{"Distinct",
                      "SELECT DISTINCT Schedule.EmployeeAssigned FROM Schedule ORDER BY "
                      "Schedule.EmployeeAssigned;",
                      "EmployeeAssigned",
                      {"<null>", "Dana Fox", "O'Neil"}}),
    [](const auto& p) { return std::string(p.param.name); });

TEST_F(DatabaseControlTest, BadStatementsGoToTheHandler) {
    for (const char* sql : {"SELECT Companies.CompanyID FROM Companies WHERE CompanyName = 'open;",
                            "SELECT Nope.* FROM Nope;",
                            "SELECT Schedule.* FROM Schedule WHERE DueDate = #2/30/2023#;"}) {
        EXPECT_THROW(m_db->openRecordset(QString::fromUtf8(sql)), QmError) << sql;
    }
    EXPECT_EQ(m_db->openRecordsetCount(), 0);
}

struct FilterCase {
    const char* name;
    const char* filter;
    QStringList expected; // ScheduleIDs, in order
};

class FilterTest : public DatabaseControlTest, public ::testing::WithParamInterface<FilterCase> {};

TEST_P(FilterTest, SelectsTheMatchingRows) {
    const FilterCase& c = GetParam();
    EXPECT_EQ(filtered(QStringLiteral("SELECT Schedule.* FROM Schedule ORDER BY ScheduleID;"),
                       QString::fromUtf8(c.filter), QStringLiteral("ScheduleID")),
              c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Language, FilterTest,
    ::testing::Values(
        FilterCase{"Empty", "", {"300", "301", "302"}},
        FilterCase{"FalseYesNo", "hideInTasks = False", {"300", "301"}},
        FilterCase{"TrueMatchesMinusOne", "Closed = True", {"301", "302"}},
        FilterCase{"NumberEquality", "ClientNum = 100", {"300", "301"}},
        FilterCase{"NotEqual", "ClientNum <> 100", {"302"}},
        FilterCase{"LikeStars", "scheduleName LIKE '*GST*'", {"300", "302"}},
        FilterCase{"LikePercentAndCase", "scheduleName like 'payroll%'", {"301"}},
        FilterCase{"LikeInner", "scheduleName LIKE 'Year*Return'", {"302"}},
        FilterCase{"DateRange", "DueDate >= #1/1/2023# AND DueDate <= #4/15/2023#", {"300", "301"}},
        FilterCase{"DateEqual", "DueDate = #12/31/2023#", {"302"}},
        FilterCase{"OrBindsLooser",
                   "ClientNum = 101 OR ClientNum = 100 AND Closed = True",
                   {"301", "302"}},
        FilterCase{"Parentheses",
                   "(ClientNum = 101 OR ClientNum = 100) AND Closed = True",
                   {"301", "302"}},
        FilterCase{"ParenthesesChangeResult",
                   "(ClientNum = 101 OR ClientNum = 100) AND Closed = False",
                   {"300"}},
        FilterCase{"DoubledQuote", "EmployeeAssigned = 'O''Neil'", {"301"}},
        FilterCase{"TextIgnoresCase", "EmployeeAssigned = 'dana fox'", {"300"}},
        FilterCase{"NullMatchesNothing", "Amount > 0", {"300", "301"}},
        FilterCase{"NullKeyword", "Amount = Null", {"302"}},
        FilterCase{"RealNumber", "Amount < 125.6 AND Amount >= 125.5", {"300"}},
        FilterCase{"BracketedName", "[scheduleName] = 'Payroll Remittance'", {"301"}},
        FilterCase{"QuotedValueIsOnlyAValue", "EmployeeAssigned = 'x'' OR ''1''=''1'", {}},
        FilterCase{"NumberColumnAgainstText", "totalNum = '103'", {"301"}}),
    [](const auto& p) { return std::string(p.param.name); });

TEST_F(DatabaseControlTest, BrokenFiltersAreErrorsNotQueries) {
    const int h = m_db->openRecordset(QStringLiteral("SELECT Schedule.* FROM Schedule;"));
    for (const char* filter :
         {"EmployeeAssigned = 'O'Neil'", "scheduleName = 'open", "NoSuchColumn = 1",
          "DueDate = #13/45/2023#", "DueDate = #1/1/2023", "(ClientNum = 100", "ClientNum = 100)",
          "ClientNum 100", "ClientNum =", "ClientNum = 100 AND",
          "ClientNum = 1; DROP TABLE Schedule", "Amount > Null"}) {
        EXPECT_THROW(m_db->filterRecordset(h, QString::fromUtf8(filter)), QmError) << filter;
    }
    EXPECT_EQ(m_db->openRecordsetCount(), 1);
    m_db->closeRecordset(h);
    EXPECT_EQ(hostValue(QStringLiteral("SELECT COUNT(*) FROM Schedule")).toInt(), 3);
}

TEST_F(DatabaseControlTest, NestedFindWalksResumeTheOuterWalk) {
    // The client tree walks one record set at several levels.
    const int h =
        m_db->openRecordset(QStringLiteral("SELECT Categories.* FROM Categories ORDER BY "
                                           "Categories.CategoryNum, Categories.CategoryName;"));
    QStringList visited;
    std::function<void(int)> walk = [&](int parent) {
        if (!m_db->findRows(h, QStringLiteral("CategoryNum"), QString::number(parent)))
            return;
        while (!m_db->isEndOfFound(h)) {
            const int id = m_db->getField(h, QStringLiteral("CategoryID")).toInt();
            visited << QString::number(id);
            const int position = m_db->getPosition(h);
            walk(id);
            m_db->setPosition(h, position);
            m_db->findNext(h);
        }
    };
    walk(1);
    EXPECT_EQ(visited, (QStringList{"2", "6", "3", "4", "5"}));
    EXPECT_FALSE(m_db->findRows(h, QStringLiteral("CategoryNum"), QStringLiteral("99")));
    EXPECT_TRUE(m_db->isEndOfFound(h));
    EXPECT_THROW(m_db->findRows(h, QStringLiteral("Nope"), QStringLiteral("1")), QmError);
    m_db->closeRecordset(h);
}

TEST_F(DatabaseControlTest, EditableSetsWriteThroughAtOnce) {
    const int h = m_db->openRecordset(
        QStringLiteral(
            "SELECT ContactLinks.ContactIDNum, ContactLinks.DefaultContact FROM ContactLinks WHERE "
            "ContactLinks.CompanyNum = 10;"),
        databaseControl::KeysetCursor, databaseControl::OptimisticLock);
    for (; !m_db->isEOF(h); m_db->moveNext(h)) {
        const bool isAnn = m_db->getField(h, QStringLiteral("ContactIDNum")).toInt() == 200;
        m_db->updateFieldNow(h, QStringLiteral("DefaultContact"),
                             isAnn ? QStringLiteral("True") : QStringLiteral("False"));
    }
    m_db->moveFirst(h);
    EXPECT_EQ(m_db->getField(h, QStringLiteral("DefaultContact")), QVariant(true));
    m_db->closeRecordset(h);
    EXPECT_EQ(
        hostValue(
            QStringLiteral(
                "SELECT DefaultContact FROM ContactLinks WHERE ContactIDNum=200 AND CompanyNum=10"))
            .toInt(),
        1);
    EXPECT_EQ(
        hostValue(
            QStringLiteral(
                "SELECT DefaultContact FROM ContactLinks WHERE ContactIDNum=201 AND CompanyNum=10"))
            .toInt(),
        0);

    // An empty text into a number column stores Null.
    const int c = m_db->openRecordset(
        QStringLiteral("SELECT Categories.CategoryNum FROM Categories WHERE CategoryID = 6;"),
        databaseControl::KeysetCursor, databaseControl::OptimisticLock);
    m_db->updateFieldNow(c, QStringLiteral("CategoryNum"), QString());
    m_db->closeRecordset(c);
    EXPECT_TRUE(
        hostValue(QStringLiteral("SELECT CategoryNum IS NULL FROM Categories WHERE CategoryID = 6"))
            .toBool());

    // Read-only sets refuse, bad values are type errors and change nothing.
    const int r = m_db->openRecordset(QStringLiteral(
        "SELECT Schedule.Closed, Schedule.DueDate FROM Schedule WHERE ScheduleID=300;"));
    EXPECT_THROW(m_db->updateFieldNow(r, QStringLiteral("Closed"), QStringLiteral("True")),
                 QmError);
    m_db->closeRecordset(r);
    const int w =
        m_db->openRecordset(QStringLiteral("SELECT Schedule.Closed, Schedule.DueDate, "
                                           "Schedule.Amount FROM Schedule WHERE ScheduleID=300;"),
                            databaseControl::KeysetCursor, databaseControl::OptimisticLock);
    EXPECT_THROW(m_db->updateFieldNow(w, QStringLiteral("DueDate"), QStringLiteral("soon")),
                 QmError);
    EXPECT_THROW(m_db->updateFieldNow(w, QStringLiteral("Amount"), QStringLiteral("lots")),
                 QmError);
    EXPECT_EQ(m_db->getField(w, QStringLiteral("DueDate")), QVariant(QDate(2023, 3, 31)));
    m_db->updateFieldNow(w, QStringLiteral("DueDate"), QStringLiteral("4/30/2023"));
    m_db->closeRecordset(w);
    EXPECT_EQ(
        hostValue(QStringLiteral("SELECT DueDate FROM Schedule WHERE ScheduleID=300")).toString(),
        QStringLiteral("2023-04-30"));

    // Joins cannot be edited.
    EXPECT_THROW(
        m_db->openRecordset(
            QStringLiteral("SELECT Companies.CompanyName FROM Companies INNER JOIN ClientData ON "
                           "Companies.CompanyID = ClientData.CompanyIDNum;"),
            databaseControl::KeysetCursor, databaseControl::OptimisticLock),
        QmError);
}

TEST_F(DatabaseControlTest, NewRowsGetTheirKeyBack) {
    const int h = m_db->openRecordset(
        QStringLiteral(
            "SELECT Categories.* FROM Categories WHERE CategorySpecialCode = 'FirmCategory';"),
        databaseControl::KeysetCursor, databaseControl::OptimisticLock);
    ASSERT_TRUE(m_db->isEmpty(h));
    m_db->addNew(h);
    m_db->setField(h, QStringLiteral("CategoryName"), QStringLiteral("Firm Staff"));
    m_db->setField(h, QStringLiteral("CategorySpecialCode"), QStringLiteral("FirmCategory"));
    m_db->setField(h, QStringLiteral("CategoryNum"), 1);
    m_db->saveRecord(h);
    const int id = m_db->getField(h, QStringLiteral("CategoryID")).toInt();
    EXPECT_GT(id, 6);
    EXPECT_EQ(m_db->recordCount(h), 1);
    m_db->closeRecordset(h);
    EXPECT_EQ(
        hostValue(QStringLiteral("SELECT CategoryName FROM Categories WHERE CategoryID=%1").arg(id))
            .toString(),
        QStringLiteral("Firm Staff"));
}

TEST_F(DatabaseControlTest, FillListAddsEveryRow) {
    QStandardItemModel list;
    list.appendRow(new QStandardItem(QStringLiteral("kept")));
    const int h = m_db->openRecordset(
        QStringLiteral("SELECT Companies.Email FROM Companies ORDER BY CompanyID;"));
    m_db->fillList(h, list, QStringLiteral("email"));
    m_db->closeRecordset(h);
    ASSERT_EQ(list.rowCount(), 5);
    EXPECT_EQ(list.item(0)->text(), QStringLiteral("kept"));
    EXPECT_EQ(list.item(3)->text(), QStringLiteral("ob@example.com"));
}

// The host upgrades a table while this program holds prepared statements
// that read all of its columns.
TEST_F(DatabaseControlTest, ColumnsTheHostAddsWhileConnectedAreRead) {
    const QString sql = QStringLiteral("SELECT Companies.* FROM Companies WHERE CompanyID=10;");
    int h = m_db->openRecordset(sql);
    const QStringList before = m_db->fieldNames(h);
    m_db->closeRecordset(h);
    hostExec(QStringLiteral("ALTER TABLE Companies ADD COLUMN HostNote TEXT"));
    hostExec(QStringLiteral("UPDATE Companies SET HostNote='new' WHERE CompanyID=10"));
    const int open =
        m_db->openRecordset(QStringLiteral("SELECT Companies.CompanyID FROM Companies;"));
    hostExec(QStringLiteral("ALTER TABLE Companies ADD COLUMN HostOther TEXT"));
    h = m_db->openRecordset(sql);
    // Record sets opened before the change stay readable.
    EXPECT_EQ(m_db->recordCount(open), 4);
    m_db->closeRecordset(open);
    EXPECT_EQ(m_db->fieldNames(h).size(), before.size() + 2);
    EXPECT_EQ(m_db->getField(h, QStringLiteral("HostNote")).toString(), QStringLiteral("new"));
    EXPECT_EQ(m_db->getField(h, QStringLiteral("CompanyName")).toString(),
              QStringLiteral("Acme Widgets"));
    m_db->closeRecordset(h);
}

// A one-value lookup answers what a record set of the same statement with
// the value written in would answer, kinds included.
struct LookupCase {
    const char* name;
    const char* shape;
    QVariantList arguments;
    const char* column;
};

class LookupValueTest : public DatabaseControlTest,
                        public ::testing::WithParamInterface<LookupCase> {};

TEST_P(LookupValueTest, AnswersAsTheRecordSetDoes) {
    const LookupCase& c = GetParam();
    QString literal = QString::fromUtf8(c.shape);
    for (const QVariant& argument : c.arguments) {
        QString text = argument.toString();
        databaseControl::escapeSQLText(text);
        const bool number = argument.typeId() == QMetaType::Int;
        literal.replace(literal.indexOf(u'?'), 1, number ? text : u'\'' + text + u'\'');
    }
    const int h = m_db->openRecordset(literal);
    std::optional<QVariant> expected;
    if (m_db->hasRecords(h))
        expected = m_db->getField(h, QString::fromUtf8(c.column));
    m_db->closeRecordset(h);

    const auto actual =
        m_db->lookupValue(QString::fromUtf8(c.shape), c.arguments, QString::fromUtf8(c.column));
    ASSERT_EQ(actual.has_value(), expected.has_value());
    if (expected) {
        EXPECT_EQ(actual->typeId(), expected->typeId());
        EXPECT_EQ(actual->isNull(), expected->isNull());
        EXPECT_EQ(*actual, *expected);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Lookups, LookupValueTest,
    ::testing::Values(
        LookupCase{"TextColumn",
                   "SELECT Companies.CompanyID, Companies.CompanyName FROM Companies WHERE "
                   "CompanyID=?;",
                   {10},
                   "CompanyName"},
        LookupCase{"QualifiedColumnName",
                   "SELECT Companies.CompanyName FROM Companies WHERE CompanyID=?;",
                   {10},
                   "Companies.CompanyName"},
        LookupCase{
            "NullText", "SELECT Companies.Email FROM Companies WHERE CompanyID=?;", {10}, "Email"},
        LookupCase{
            "EmptyText", "SELECT Companies.Email FROM Companies WHERE CompanyID=?;", {11}, "email"},
        LookupCase{"NoRow",
                   "SELECT Companies.CompanyName FROM Companies WHERE CompanyID=?;",
                   {999},
                   "CompanyName"},
        LookupCase{"YesNoStoredAsMinusOne",
                   "SELECT Schedule.closed FROM Schedule WHERE ScheduleID=?;",
                   {302},
                   "closed"},
        LookupCase{"StoredDate",
                   "SELECT Schedule.DueDate FROM Schedule WHERE ScheduleID=?;",
                   {302},
                   "DueDate"},
        LookupCase{"TextArgumentComparedWithoutCase",
                   "SELECT Companies.CompanyID FROM Companies WHERE CompanyName=?;",
                   {QStringLiteral("ACME widgets")},
                   "CompanyID"},
        LookupCase{"LiteralsAndArgumentsTogether",
                   "SELECT Companies.CompanyID FROM Companies WHERE CompanyName<>'x' AND "
                   "CompanyID=? AND CompanyName LIKE 'A*';",
                   {10},
                   "CompanyID"}),
    [](const ::testing::TestParamInfo<LookupCase>& p) { return std::string(p.param.name); });

TEST_F(DatabaseControlTest, LookupArgumentsNeverBecomeStatementText) {
    // A hostile value is only ever a value: no row has this name.
    const auto injected = m_db->lookupValue(
        QStringLiteral("SELECT Companies.CompanyID FROM Companies WHERE CompanyName=?;"),
        {QStringLiteral("x' OR '1'='1")}, QStringLiteral("CompanyID"));
    EXPECT_FALSE(injected.has_value());
    const auto named = m_db->lookupValue(
        QStringLiteral("SELECT Companies.CompanyID FROM Companies WHERE CompanyID=?;"),
        {QStringLiteral("10; DROP TABLE Companies")}, QStringLiteral("CompanyID"));
    EXPECT_FALSE(named.has_value());
    EXPECT_EQ(column(QStringLiteral("SELECT Companies.CompanyID FROM Companies;"),
                     QStringLiteral("CompanyID"))
                  .size(),
              4);
}

TEST_F(DatabaseControlTest, BadLookupsGoToTheHandler) {
    const QString shape =
        QStringLiteral("SELECT Companies.CompanyName FROM Companies WHERE CompanyID=?;");
    EXPECT_THROW(m_db->lookupValue(shape, {}, QStringLiteral("CompanyName")), QmError);
    EXPECT_THROW(m_db->lookupValue(shape, {1, 2}, QStringLiteral("CompanyName")), QmError);
    EXPECT_THROW(m_db->lookupValue(shape, {10}, QStringLiteral("NoSuchColumn")), QmError);
    EXPECT_THROW(m_db->lookupValue(QStringLiteral("SELECT Nothing.x FROM Nothing WHERE x=?;"), {1},
                                   QStringLiteral("x")),
                 QmError);
    // The statement that failed leaves the connection usable.
    EXPECT_EQ(m_db->lookupValue(shape, {10}, QStringLiteral("CompanyName"))->toString(),
              QStringLiteral("Acme Widgets"));
    m_db->disconnect();
    EXPECT_THROW(m_db->lookupValue(shape, {10}, QStringLiteral("CompanyName")), QmError);
    // Prepared statements do not outlive the connection they were made on.
    m_db->connect();
    EXPECT_EQ(m_db->lookupValue(shape, {10}, QStringLiteral("CompanyName"))->toString(),
              QStringLiteral("Acme Widgets"));
}

TEST(DatabaseControlStatic, DateAndTextHelpers) {
    EXPECT_EQ(databaseControl::formatDateForSQL(QDate(2024, 2, 5)), QStringLiteral("2/5/2024"));
    QString text = QStringLiteral("O'Neil's");
    databaseControl::escapeSQLText(text);
    EXPECT_EQ(text, QStringLiteral("O''Neil''s"));
    databaseControl::escapeSQLText(text);
    EXPECT_EQ(text, QStringLiteral("O''''Neil''''s"));
}

// Files that are not a usable database leave the object disconnected.
struct BadFileCase {
    const char* name;
    std::function<void(const QString& path, const QString& goodPath)> make;
};

class BadDatabaseFileTest : public ClientDbFixture,
                            public ::testing::WithParamInterface<BadFileCase> {};

TEST_P(BadDatabaseFileTest, DoesNotConnect) {
    QM_SQLITE_FILE_ONLY();
    const QString bad = m_env.path(QStringLiteral("bad/Data.qmd"));
    m_db.reset(); // checkpoint and release the good file
    GetParam().make(bad, m_path);
    databaseControl db;
    db.setDatabasePath(bad);
    db.connect();
    EXPECT_FALSE(db.isConnected());
    EXPECT_FALSE(db.lastError().isEmpty());
    EXPECT_THROW(db.openRecordset(QStringLiteral("SELECT Companies.* FROM Companies;")), QmError);
}

INSTANTIATE_TEST_SUITE_P(
    Files, BadDatabaseFileTest,
    ::testing::Values(
        BadFileCase{"Missing", [](const QString&, const QString&) {}},
        BadFileCase{"ZeroBytes", [](const QString& p, const QString&) { writeTestFile(p, {}); }},
        BadFileCase{"TextFile",
                    [](const QString& p, const QString&) {
                        writeTestFile(p, QByteArray("Company,City\nAcme,Toronto\n").repeated(200));
                    }},
        BadFileCase{"Encrypted",
                    [](const QString& p, const QString& good) {
                        QByteArray bytes = readTestFile(good);
                        for (qsizetype i = 0; i < bytes.size(); ++i)
                            bytes[i] = char(bytes[i] ^ char(0x5a + i % 7));
                        writeTestFile(p, bytes);
                    }},
        BadFileCase{"Truncated",
                    [](const QString& p, const QString& good) {
                        const QByteArray bytes = readTestFile(good);
                        writeTestFile(p, bytes.left(bytes.size() / 2 + 100));
                    }},
        BadFileCase{"TruncatedOnPageBoundary",
                    [](const QString& p, const QString& good) {
                        const QByteArray bytes = readTestFile(good);
                        writeTestFile(p, bytes.left(4096 * 2));
                    }},
        BadFileCase{"OtherDatabase",
                    [](const QString& p, const QString&) {
                        const QString name = QStringLiteral("other_db");
                        {
                            QSqlDatabase other =
                                QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
                            other.setDatabaseName(p);
                            ASSERT_TRUE(other.open());
                            QSqlQuery(other).exec(
                                QStringLiteral("CREATE TABLE Recipes (RecipeID INTEGER)"));
                            other.close();
                        }
                        QSqlDatabase::removeDatabase(name);
                    }}),
    [](const auto& p) { return std::string(p.param.name); });

// Another process writes the file while this one reads it.
TEST_F(DatabaseControlTest, ReadsWhileAnotherProcessWrites) {
    QM_SQLITE_FILE_ONLY();
    m_db->disconnect();
    m_db->connect();
    ASSERT_TRUE(m_db->isConnected());
    QProcess writer;
    writer.setProcessChannelMode(QProcess::ForwardedChannels);
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QM_TEST_WRITER_DB"), m_path);
    writer.setProcessEnvironment(env);
    writer.start(QCoreApplication::applicationFilePath(),
                 {QStringLiteral("--gtest_filter=ConcurrentWriter.*")});
    ASSERT_TRUE(writer.waitForStarted());
    int reads = 0;
    int lastCount = 0;
    while (writer.state() != QProcess::NotRunning || reads == 0) {
        const int h = m_db->openRecordset(
            QStringLiteral("SELECT Schedule.ScheduleID, Schedule.Amount FROM Schedule;"));
        const int count = m_db->recordCount(h);
        EXPECT_GE(count, lastCount);
        EXPECT_GE(m_db->lookupValue(QStringLiteral("SELECT COUNT(*) AS n FROM Schedule WHERE "
                                                   "ScheduleID>?;"),
                                    {0}, QStringLiteral("n"))
                      ->toInt(),
                  count);
        lastCount = count;
        m_db->closeRecordset(h);
        ++reads;
        writer.waitForFinished(5);
    }
    EXPECT_EQ(writer.exitCode(), 0);
    // A prepared lookup that ran while the writer worked sees its last row.
    EXPECT_EQ(m_db->lookupValue(QStringLiteral("SELECT COUNT(*) AS n FROM Schedule WHERE "
                                               "ScheduleID>?;"),
                                {0}, QStringLiteral("n"))
                  ->toInt(),
              3 + 400);
    const int h = m_db->openRecordset(QStringLiteral("SELECT Schedule.ScheduleID FROM Schedule;"));
    EXPECT_EQ(m_db->recordCount(h), 3 + 400);
    m_db->closeRecordset(h);
    EXPECT_EQ(hostValue(QStringLiteral("PRAGMA integrity_check")).toString(), QStringLiteral("ok"));
}

// Runs only as the child process of the test above.
TEST(ConcurrentWriter, WritesRowsInSmallTransactions) {
    const QByteArray path = qgetenv("QM_TEST_WRITER_DB");
    if (path.isEmpty())
        GTEST_SKIP() << "runs as the writer of ReadsWhileAnotherProcessWrites";
    {
        QSqlDatabase db =
            QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("writer"));
        db.setDatabaseName(QString::fromLocal8Bit(path));
        db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=10000"));
        ASSERT_TRUE(db.open());
        QSqlQuery q(db);
        for (int i = 0; i < 400; ++i) {
            ASSERT_TRUE(db.transaction());
            ASSERT_TRUE(q.exec(QStringLiteral("INSERT INTO Schedule (ClientNum, scheduleName, "
                                              "Amount) VALUES (100, 'Batch %1', %1)")
                                   .arg(i)))
                << q.lastError().text().toStdString();
            ASSERT_TRUE(db.commit());
        }
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("writer"));
}

} // namespace

namespace {

// The journal mode of a file, read by a connection of its own.
QString journalMode(const QString& path) {
    const QString name = QStringLiteral("journal_probe");
    QString mode;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(path);
        if (db.open()) {
            QSqlQuery q(db);
            if (q.exec(QStringLiteral("PRAGMA journal_mode")) && q.next())
                mode = q.value(0).toString().toLower();
        }
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
    return mode;
}

void setJournalMode(const QString& path, const QString& mode) {
    const QString name = QStringLiteral("journal_setter");
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(path);
        ASSERT_TRUE(db.open());
        QSqlQuery q(db);
        ASSERT_TRUE(q.exec(QStringLiteral("PRAGMA journal_mode=") + mode));
        q.finish();
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
}

// Reads as a merge does and, where allowed, writes one value back.
void readLikeAMerge(databaseControl& db) {
    const int h = db.openRecordset(
        QStringLiteral("SELECT Companies.* FROM Companies WHERE Companies.CompanyID = 10;"));
    ASSERT_FALSE(db.isEOF(h));
    EXPECT_FALSE(db.getField(h, QStringLiteral("CompanyName")).toString().isEmpty());
    db.closeRecordset(h);
    EXPECT_TRUE(db.lookupValue(QStringLiteral("SELECT CompanyName FROM Companies WHERE "
                                              "CompanyID = ?"),
                               {10}, {})
                    .has_value());
}

} // namespace

TEST_F(DatabaseControlTest, JournalModeStaysAsThePracticeSetIt) {
    QM_SQLITE_FILE_ONLY();
    // The two modes the file itself records; the others last a connection.
    for (const char* mode : {"delete", "wal", "delete"}) {
        m_db->disconnect();
        setJournalMode(m_path, QString::fromLatin1(mode));
        m_db->connect();
        ASSERT_TRUE(m_db->isConnected()) << m_db->lastError().toStdString();
        EXPECT_FALSE(m_db->isReadOnly());
        readLikeAMerge(*m_db);
        const int h = m_db->openRecordset(
            QStringLiteral("SELECT Companies.* FROM Companies WHERE Companies.CompanyID = 10;"),
            databaseControl::KeysetCursor, databaseControl::OptimisticLock);
        m_db->updateFieldNow(h, QStringLiteral("City"), QStringLiteral("Halifax"));
        m_db->closeRecordset(h);
        m_db->disconnect();
        EXPECT_EQ(journalMode(m_path), QString::fromLatin1(mode));
    }
}

TEST_F(DatabaseControlTest, ReadOnlyConnectionReadsAndRefusesEveryWrite) {
    const QString before = hostValue("SELECT City FROM Companies WHERE CompanyID = 10").toString();
    m_db->disconnect();
    m_db->setOpenReadOnly(true);
    m_db->connect();
    ASSERT_TRUE(m_db->isConnected()) << m_db->lastError().toStdString();
    EXPECT_TRUE(m_db->isReadOnly());
    EXPECT_TRUE(m_db->readOnlyNotice().contains(QStringLiteral("not saved")));
    readLikeAMerge(*m_db);

    const int h = m_db->openRecordset(
        QStringLiteral("SELECT Companies.* FROM Companies WHERE Companies.CompanyID = 10;"),
        databaseControl::KeysetCursor, databaseControl::OptimisticLock);
    const std::function<void()> writes[] = {
        [&] { m_db->updateFieldNow(h, QStringLiteral("City"), QStringLiteral("Halifax")); },
        [&] { m_db->setField(h, QStringLiteral("City"), QStringLiteral("Halifax")); },
        [&] { m_db->addNew(h); },
    };
    for (const auto& write : writes) {
        try {
            write();
            ADD_FAILURE() << "a write went through";
        } catch (const QmError& error) {
            EXPECT_TRUE(
                error.description().startsWith(QStringLiteral("The database is open read-only")))
                << error.description().toStdString();
        }
    }
    // Nothing changed, in the set or in the file.
    EXPECT_EQ(m_db->recordCount(h), 1);
    EXPECT_EQ(m_db->getField(h, QStringLiteral("City")).toString(), before);
    m_db->closeRecordset(h);
    EXPECT_EQ(hostValue("SELECT City FROM Companies WHERE CompanyID = 10").toString(), before);

    m_db->disconnect();
    m_db->setOpenReadOnly(false);
    m_db->connect();
    EXPECT_FALSE(m_db->isReadOnly());
    EXPECT_TRUE(m_db->readOnlyNotice().isEmpty());
}

// A file on a read-only medium is detected as such, whatever its
// permissions say, and still serves a merge: in the rollback journal as in
// WAL, where the engine cannot make its lock files beside the file.
TEST_F(DatabaseControlTest, FileOnAReadOnlyMediumOpensReadOnly) {
    QM_SQLITE_FILE_ONLY();
    if (geteuid() != 0)
        GTEST_SKIP() << "needs root to mount a read-only file system";
    auto run = [](const QStringList& arguments) {
        return QProcess::execute(QStringLiteral("mount"), arguments) == 0;
    };
    m_db.reset();
    for (const char* mode : {"delete", "wal"}) {
        const QString medium = m_env.path(QStringLiteral("medium_%1/").arg(QLatin1String(mode)));
        QDir().mkpath(medium);
        if (!run({"-t", "tmpfs", "-o", "size=4m", "none", medium}))
            GTEST_SKIP() << "cannot mount a tmpfs here";
        const QString path = medium + QStringLiteral("Data.qmd");
        ASSERT_TRUE(QFile::copy(m_path, path));
        setJournalMode(path, QString::fromLatin1(mode));
        const bool remounted = run({"-o", "remount,ro", medium});
        if (remounted) {
            databaseControl db;
            db.setDatabasePath(path);
            db.connect();
            EXPECT_TRUE(db.isConnected()) << mode << ": " << db.lastError().toStdString();
            EXPECT_TRUE(db.isReadOnly()) << mode;
            if (db.isConnected())
                readLikeAMerge(db);
            db.disconnect();
        }
        QProcess::execute(QStringLiteral("umount"), {medium});
        ASSERT_TRUE(remounted) << "cannot remount the tmpfs read-only";
    }
}

TEST_F(DatabaseControlTest, FailuresSayTheirReason) {
    try {
        m_db->openRecordset(QStringLiteral("SELECT Nope.* FROM Nope;"));
        ADD_FAILURE() << "opened a missing table";
    } catch (const QmError& error) {
        EXPECT_TRUE(
            error.description().startsWith(QStringLiteral("The database has no table Nope")))
            << error.description().toStdString();
    }
    // The engine's extended codes carry the primary code in their low byte.
    const struct {
        int code;
        const char* text;
        const char* reason;
    } cases[] = {
        {5, "database is locked", "The database is locked by another program"},
        {517, "database is locked", "The database is locked by another program"},
        {26, "file is not a database", "The file is not a database"},
        {11, "database disk image is malformed", "The database is damaged"},
        {1, "no such column: Companies.Nope", "The database has no column Companies.Nope"},
        {3338, "disk I/O error", "The database file could not be read or written"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(DatabaseFailure::reason(c.code, QString::fromLatin1(c.text)),
                  QString::fromLatin1(c.reason))
            << c.code;
}

// The kept translation of a shape must give, for every text, what a fresh
// translation of that text gives: same statement, same values of the same
// types.
TEST(TranslationCacheTest, GivesWhatAFreshTranslationGives) {
    const char* const texts[] = {
        "SELECT Companies.* From Companies WHERE Companies.CompanyID=12;",
        "SELECT Companies.* From Companies WHERE Companies.CompanyID=4711;",
        "SELECT Contacts.* FROM Contacts WHERE Contacts.ContactID = 7 AND Active = True;",
        "SELECT a FROM t WHERE x >= 1.5 AND y<>-3 AND z != 0 AND w <=.25",
        "SELECT a FROM t WHERE Col1=2 AND [we=ird]=3 AND name = 'a=1' AND k = \"b<2\"",
        "SELECT a FROM t WHERE d = #1/2/2024# AND n =5 AND s LIKE '*x[*]?'",
        "SELECT a FROM t WHERE id = 12abc",
        "SELECT a FROM t WHERE id IN (1, 2, 3) ORDER BY 1, name",
        "SELECT a FROM t WHERE v = 00012 AND big = 99999999999",
        "SELECT a FROM t WHERE flag = False AND n = 1.",
    };
    TranslationCache cache;
    for (const char* text : texts) {
        const QString sql = QString::fromLatin1(text);
        const TranslatedSql fresh = JetSqlTranslator::translate(sql);
        for (int pass = 0; pass < 2; ++pass) {
            const TranslatedSql kept = cache.translate(sql);
            EXPECT_EQ(kept.sql, fresh.sql) << text;
            ASSERT_EQ(kept.parameters.size(), fresh.parameters.size()) << text;
            for (qsizetype i = 0; i < fresh.parameters.size(); ++i) {
                EXPECT_EQ(kept.parameters[i], fresh.parameters[i]) << text << " #" << i;
                EXPECT_EQ(kept.parameters[i].typeId(), fresh.parameters[i].typeId()) << text;
            }
            EXPECT_TRUE(kept.placeholders.empty()) << text;
        }
    }
    // The two company statements share one shape.
    EXPECT_EQ(cache.size(), qsizetype(std::size(texts)) - 1);
}

TEST(TranslationCacheTest, FaultsAreReportedAndNeverKept) {
    TranslationCache cache(2);
    for (const char* bad : {"SELECT a FROM t WHERE n = 'open", "SELECT a FROM t WHERE d = #x#",
                            "SELECT a FROM t WHERE [open = 1"}) {
        EXPECT_THROW(cache.translate(QString::fromLatin1(bad)), QmError) << bad;
        EXPECT_THROW(cache.translate(QString::fromLatin1(bad)), QmError) << bad;
    }
    EXPECT_EQ(cache.size(), 0);
    // A "?" of the caller's own is left to the translator each time.
    EXPECT_EQ(cache.translate(QStringLiteral("SELECT a FROM t WHERE n = ?")).placeholders.size(),
              1u);
    EXPECT_EQ(cache.size(), 0);
    // Bounded: a third shape starts the cache again.
    for (const char* text : {"SELECT a FROM t WHERE n = 1", "SELECT b FROM t WHERE n = 1",
                             "SELECT c FROM t WHERE n = 1"})
        cache.translate(QString::fromLatin1(text));
    EXPECT_LE(cache.size(), 2);
}
