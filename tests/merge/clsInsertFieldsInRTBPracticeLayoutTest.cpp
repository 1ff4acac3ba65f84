#include "context/AppContext.h"
#include "merge/MergeTestDatabase.h"
#include "merge/clsInsertFieldsInRTB.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

// Databases laid out by other hands than ours: client columns in another
// satellite table, columns that are missing, and calendar texts stored in
// the columns our own schema now creates.
namespace {

using Inserter = clsInsertFieldsInRTB;

const QString kLetter = QStringLiteral(
    "{\\rtf1 \\'abCompany Name\\'bb: \\'abFile Number\\'bb / \\'abHST Number\\'bb\\par}");

class PracticeLayoutTest : public ::testing::Test {
protected:
    void SetUp() override {
        context->clock.setFixed(QDateTime(QDate(2024, 3, 5), QTime(9, 0)));
        context->currentCountry = 1;
        context->currentProvince = 3;
        db = std::make_unique<MergeTestDatabase>(env.path("practice.qmd"));
        db->fillStandardPractice();
    }
    void TearDown() override { db.reset(); }

    // The client's custom column moved from ClientOptions into OtherInfo.
    void moveClientCustomColumnToOtherInfo() {
        db->exec("ALTER TABLE OtherInfo ADD COLUMN ClientCustom1 TEXT");
        db->exec("UPDATE OtherInfo SET ClientCustom1 = (SELECT ClientOptions.ClientCustom1 FROM "
                 "ClientOptions WHERE ClientOptions.ClientOptionID = OtherInfo.OtherInfoID)");
        db->exec("ALTER TABLE ClientOptions DROP COLUMN ClientCustom1");
    }

    // The letter merged for company 10 with either substitution.
    QString merge(Inserter& fields, bool fast) {
        fields.setFastSubstitution(fast);
        fields.createDefaultFieldListStructure(InformationKind::Companies, true, false);
        fields.initializeDataRecordsets(1, false, -1, true, true, true, true, true, 10, -1);
        return fields.parseRTBComment(kLetter, 10, -1, -1, 1, -1, -1, -1, false, true, false);
    }

    TestEnvironment env;
    ScopedAppContext context;
    std::unique_ptr<MergeTestDatabase> db;
};

TEST_F(PracticeLayoutTest, ClientColumnInAnotherSatelliteFailedTheMerge) {
    moveClientCustomColumnToOtherInfo();
    for (bool fast : {true, false}) {
        Inserter fields;
        EXPECT_EQ(merge(fields, fast), "{\\rtf1 Acme Widgets: F-77 / 12345 RT0001\\par}")
            << (fast ? "one pass" : "step by step");
        EXPECT_TRUE(fields.missingColumns().isEmpty());
    }
}

TEST_F(PracticeLayoutTest, ColumnMissingEverywhereFailedTheMerge) {
    db->exec("ALTER TABLE ClientOptions DROP COLUMN ClientCustom1");
    for (bool fast : {true, false}) {
        Inserter fields;
        EXPECT_EQ(merge(fields, fast), "{\\rtf1 Acme Widgets:  / 12345 RT0001\\par}")
            << (fast ? "one pass" : "step by step");
        EXPECT_EQ(fields.missingColumns(), QStringList({"File Number (column ClientCustom1)"}));
        EXPECT_EQ(fields.emptyPlaceholders(), QStringList({"File Number"}));

        // The report belongs to the record merged last.
        fields.parseRTBComment(QStringLiteral("{\\rtf1 \\'abCompany Name\\'bb}"), 10, -1, -1, 1, -1,
                               -1, -1, false, true, false);
        EXPECT_TRUE(fields.missingColumns().isEmpty());
    }
}

TEST_F(PracticeLayoutTest, SatelliteTableMissingEntirelyFailedTheClientRead) {
    // A table the letter needs nothing from, then the one holding File Number.
    db->exec("DROP TABLE OtherInfo");
    for (bool fast : {true, false}) {
        Inserter fields;
        EXPECT_EQ(merge(fields, fast), "{\\rtf1 Acme Widgets: F-77 / 12345 RT0001\\par}")
            << (fast ? "one pass" : "step by step");
        EXPECT_TRUE(fields.missingColumns().isEmpty());
    }
    db->exec("DROP TABLE ClientOptions");
    for (bool fast : {true, false}) {
        Inserter fields;
        EXPECT_EQ(merge(fields, fast), "{\\rtf1 Acme Widgets:  / 12345 RT0001\\par}")
            << (fast ? "one pass" : "step by step");
        EXPECT_EQ(fields.missingColumns(), QStringList({"File Number (column ClientCustom1)"}));
    }
}

TEST_F(PracticeLayoutTest, MissingCompanyColumnIsReportedNotThrown) {
    db->exec("ALTER TABLE Companies DROP COLUMN PostalCode");
    Inserter fields;
    fields.createDefaultFieldListStructure(InformationKind::Companies, true, false);
    const QString letter = QStringLiteral("{\\rtf1 \\'abCity\\'bb \\'abPostal Code\\'bb}");
    EXPECT_EQ(fields.parseRTBComment(letter, 10, -1, -1, 1, -1, -1, -1, false, true, false),
              "{\\rtf1 Toronto }");
    EXPECT_EQ(fields.missingColumns(), QStringList({"Postal Code (column PostalCode)"}));
}

TEST_F(PracticeLayoutTest, ColumnsAreReadAgainForAnotherDatabase) {
    Inserter fields;
    EXPECT_EQ(merge(fields, true), "{\\rtf1 Acme Widgets: F-77 / 12345 RT0001\\par}");

    // The same inserter meets a second practice, laid out differently.
    TestEnvironment other;
    { const auto first = std::move(db); }
    db = std::make_unique<MergeTestDatabase>(other.path("other.qmd"));
    db->fillStandardPractice();
    moveClientCustomColumnToOtherInfo();
    EXPECT_EQ(merge(fields, true), "{\\rtf1 Acme Widgets: F-77 / 12345 RT0001\\par}");
}

TEST_F(PracticeLayoutTest, CalendarTextsReadTheUsersSettings) {
    db->insert("UserCalendarSettings",
               {{"UserIDNum", 7},
                {"ApptTemplate", QStringLiteral("\u00ABAppointment Name\u00BB at "
                                                "\u00ABAppointment Start Time\u00BB")},
                {"ApptTitleBarText", "Company Name"},
                {"BeforeAppointmentText", "Before"},
                {"AfterAppointmentText", "After"},
                {"TaskTemplate", "Text Constant"},
                {"DocketTitleBarText", QStringLiteral("\u00ABDocket Name\u00BB!")}});
    Inserter fields;
    EXPECT_EQ(fields.createDisplayTextByID(7, int(CalendarItemKind::Appointment), 10, 100, 700),
              "Before\r\nYear end review at 2:30 pm\r\nAfter");
    // A setting without guillemets names one field.
    EXPECT_EQ(fields.createTitleBarTextByID(7, int(CalendarItemKind::Appointment), 10, 100, 700),
              "Acme Widgets");
    // "Text Constant" selects the built-in text; no task exists, so only the
    // company is filled.
    EXPECT_EQ(fields.createDisplayTextByID(7, int(CalendarItemKind::Task), 10, 100, 999),
              " for Acme Widgets\r\n to ");
    EXPECT_EQ(fields.createTitleBarTextByID(7, int(CalendarItemKind::Docket), 10, 100, 999), "!");
    EXPECT_EQ(fields.createDisplayTextByID(7, 7, 10, 100, 700), "") << "not a calendar kind";
}

} // namespace
