#include "context/AppContext.h"
#include "merge/MergeTestDatabase.h"
#include "merge/clsInsertFieldsInRTB.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

namespace {

using Inserter = clsInsertFieldsInRTB;

class DataTest : public ::testing::Test {
protected:
    void SetUp() override {
        context->clock.setFixed(QDateTime(QDate(2024, 3, 5), QTime(9, 0)));
        db = std::make_unique<MergeTestDatabase>(env.path("client.qmd"));
        db->fillStandardPractice();
        fields.setLineBreaksAsParagraphs(false);
        fields.createDefaultFieldListStructure(InformationKind::Appointments, true, false);
    }
    void TearDown() override { db.reset(); }

    QString field(const char* name, int company, int contact, bool inRTF = true) {
        return fields.getDataField(QString::fromUtf8(name), company, contact, -1, 1, 700, -1, -1,
                                   false, inRTF);
    }

    TestEnvironment env;
    ScopedAppContext context;
    std::unique_ptr<MergeTestDatabase> db;
    Inserter fields;
};

TEST_F(DataTest, FieldsByTheirSource) {
    const struct {
        const char* name;
        int company;
        int contact;
        const char* expected;
    } cases[] = {
        {"Company Name", 10, 100, "Acme Widgets"},
        {"Abbreviated Province", 10, 100, "ON"},
        {"Abbreviated Province", 20, -1, "Newfoundland and Labrador"},
        {"Address", 10, 100, "1 Main St, \r\nUnit 4"},
        {"Company Name", 99, 100, ""},
        {"Company Name", -1, 100, ""},
        {"File Number", 10, 100, "F-77"},
        {"Your Company Name", 10, 100, "Smith & Associates"},
        {"Appointment Name", 10, 100, "Year end review"},
        {"Contact First Name", 10, 100, "Jo"},
        {"Contact & Spouse Name", 10, 100, "Jo & Sam Smith"},
        {"Contact & Spouse Name", 10, 101, "Pat Lee"},
        {"Contact & Spouse Name", 10, 102, "Solo Person"},
        // Inheritance: addresses prefer the company, phones the contact.
        {"Contact Business Address", 10, 100, "1 Main St, \r\nUnit 4"},
        {"Contact Business Phone", 10, 100, "905-000-0000"},
        {"Contact Business Address", 30, 101, "7 Pat Lane"},
        {"Contact Business Phone", 10, 101, "416-555-0100"},
        {"Contact Business Address", -1, 100, "9 Own Rd"},
        {"Contact Business Province", 10, 100, "Ont."},
        {"Contact Business Abbreviated Province", 10, 100, "QC"},
        {"No Such Field", 10, 100, ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(field(c.name, c.company, c.contact), QString::fromUtf8(c.expected))
            << c.name << " " << c.company << "/" << c.contact;
    }
    fields.setLineBreaksAsParagraphs(true);
    EXPECT_EQ(field("Address", 10, 100), "1 Main St\\par \r\nUnit 4");
    EXPECT_EQ(field("Address", 10, 100, false), "1 Main St\r\nUnit 4");
}

TEST_F(DataTest, DatesUnderTheirFormats) {
    auto date = [&](const char* name, const char* format, int company) {
        return fields.getDataDateField(QString::fromUtf8(name), QString::fromUtf8(format), company,
                                       100, -1, 1, 700, -1, -1, false, true);
    };
    EXPECT_EQ(date("Year End Date", "mmmm d yyyy", 10), "March 31 2024");
    EXPECT_EQ(date("Year End Date", "dd/mmm/yy", 10), "31/Mar/24");
    EXPECT_EQ(date("Year End Date", "mmmm d yyyy", 20), "") << "text in a date column";
    EXPECT_EQ(date("Todays Date", "dddd", -1), "Tuesday");
    EXPECT_EQ(date("Appointment Start Time", "h:Nn am/pm", 10), "2:30 pm");
    EXPECT_EQ(date("Contact Birthday", "mmm d yyyy", 10), "May 4 1970");
    EXPECT_EQ(fields.getDataDateField("Appointment Date", "yyyy", -1, -1, -1, -1, -1, -1, -1, true,
                                      false),
              "2024");
}

TEST_F(DataTest, ProvinceTables) {
    const struct {
        const char* input;
        const char* abbreviated;
        const char* full;
    } cases[] = {
        {"Ont.", "ON", "Ontario"},
        {"british columbia", "BC", "British Columbia"},
        {"P.E.I.", "PEI", "Prince Edward Island"},
        {"PE", "PE", "PE"},
        {"Newfoundland and Labrador", "Newfoundland and Labrador", "Newfoundland and Labrador"},
        {"Nfld.", "Nfld.", "Nfld."},
        {"NL", "NL", "Newfoundland"},
        {"yt", "YT", "Yukon"},
        {"", "", ""}};
    for (const auto& c : cases) {
        EXPECT_EQ(Inserter::getAbbreviatedProvince(c.input), QString::fromUtf8(c.abbreviated));
        EXPECT_EQ(Inserter::getFullProvinceString(c.input), QString::fromUtf8(c.full));
    }
}

TEST_F(DataTest, SubstitutionOfARecordBothWaysAlike) {
    const QString text = QStringLiteral(
        "{\\rtf1\\ansi \\pard Dear \\b\\'abContact Display Name\\'bb\\b0 of \\'abCompany "
        "Name\\'bb,\\par \\'ab(Year End Date, mmmm d yyyy)\\'bb \\'abContact Full Name\\'bb "
        "\\'abUnknown\\'bb \\'abCity\\'bb\\par\r\n}");
    fields.initializeDataRecordsets(2, false, -1, true, true, true, true, true, 10, 100);
    const QString fast =
        fields.parseRTBComment(text, 10, 100, -1, 1, -1, -1, -1, false, true, true);
    EXPECT_EQ(fast, "{\\rtf1\\ansi \\pard Dear \\b Jo Smith\\b0 of Acme Widgets,\\par March 31 "
                    "2024 \\'abContact Full Name\\'bb \\'abUnknown\\'bb Toronto\\par\r\n}");
    fields.setFastSubstitution(false);
    EXPECT_EQ(fields.parseRTBComment(text, 10, 100, -1, 1, -1, -1, -1, false, true, true), fast);

    // A contact without a company: the search copy asks for the contact's
    // name instead, so «Company Name» is not looked up and stays.
    fields.setFastSubstitution(true);
    const QString letter = QStringLiteral("{\\rtf1 \\'abCompany Name\\'bb \\'abCity\\'bb}");
    EXPECT_EQ(fields.parseRTBComment(letter, -1, 102, -1, 1, -1, -1, -1, false, true, true),
              "{\\rtf1 \\'abCompany Name\\'bb }");
    EXPECT_EQ(fields.emptyPlaceholders(), QStringList({"City"}));
    EXPECT_EQ(fields.parseRTBComment(letter, -1, 102, -1, 1, -1, -1, -1, false, true, false),
              "{\\rtf1  }");
}

TEST_F(DataTest, AnEmptyCatalogueIsBuiltFromTheRecordsKind) {
    Inserter fresh;
    const QString text = QStringLiteral("{\\rtf1 \\'abAppointment Name\\'bb}");
    EXPECT_EQ(fresh.parseRTBComment(text, 10, -1, -1, 1, 700, -1, -1, false, true, false),
              "{\\rtf1 Year end review}");
    EXPECT_EQ(fresh.fieldTable().value(1, Inserter::DataTable), "AppointInfo");
}

TEST_F(DataTest, CalendarTextsUseTheDefaultsAndCreateTheUsersRow) {
    const QString display = fields.createDisplayTextByID(7, 5, 10, 100, 700);
    EXPECT_EQ(display, "Year end review for Acme Widgets\r\n2:30 pm to 3:00 pm");
    const int rs = db->db().openRecordset(
        "SELECT UserCalendarSettings.* FROM UserCalendarSettings WHERE UserIDNum = 7;");
    EXPECT_TRUE(db->db().hasRecords(rs));
    db->db().closeRecordset(rs);
}

TEST_F(DataTest, ReadsAreCachedPerRecord) {
    fields.initializeDataRecordsets(2, false, -1, true, true, true, true, true, 10, 100);
    const int before = db->db().openRecordsetCount();
    for (int i = 0; i < 5; ++i) {
        field("Company Name", 10, 100);
        field("City", 10, 100);
        field("Contact First Name", 10, 100);
    }
    // One keyed set for the company and one for the contact stay open.
    EXPECT_EQ(db->db().openRecordsetCount() - before, 2);
    fields.closeDataRecordsets();
    EXPECT_EQ(db->db().openRecordsetCount(), before);
}

TEST_F(DataTest, NarrowedReadOfAMergeLeakedIntoLaterReads) {
    // A merge reads only the columns its template names; a value asked for
    // afterwards must not come from that narrowed row.
    fields.initializeDataRecordsets(2, false, -1, true, true, true, true, true, 10, 100);
    const QString letter = QStringLiteral("{\\rtf1 \\'abCity\\'bb}");
    EXPECT_EQ(fields.parseRTBComment(letter, 10, 100, -1, 1, -1, -1, -1, false, true, false),
              "{\\rtf1 Toronto}");
    EXPECT_EQ(field("Company Name", 10, 100), "Acme Widgets");
    EXPECT_EQ(field("File Number", 10, 100), "F-77");
    EXPECT_EQ(fields.parseRTBComment(QStringLiteral("{\\rtf1 \\'abFile Number\\'bb}"), 10, 100, -1,
                                     1, -1, -1, -1, false, true, false),
              "{\\rtf1 F-77}");
}

TEST_F(DataTest, TableColumnsAreLookedUpOncePerConnection) {
    const QString letter = QStringLiteral("{\\rtf1 \\'abCompany Name\\'bb \\'abFile Number\\'bb}");
    auto statementsFor = [&](int company) {
        const qint64 before = db->db().statementCount();
        fields.initializeDataRecordsets(1, false, -1, true, true, true, true, true, company, -1);
        fields.parseRTBComment(letter, company, -1, -1, 1, -1, -1, -1, false, true, false);
        return db->db().statementCount() - before;
    };
    const qint64 first = statementsFor(10);
    const qint64 second = statementsFor(20);
    EXPECT_EQ(statementsFor(30), second);
    EXPECT_GT(first, second) << "the first record also reads the tables' columns";
}

} // namespace
