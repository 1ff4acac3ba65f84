#include "data/modSettings.h"

#include "ClientDbFixture.h"

namespace {

// The name tables cell by cell: (L, F) present or blank, for the single
// person and both couple tables, in both orders.
struct NameCase {
    const char* name;
    const char* first;
    const char* last;
    const char* display;
    bool couple;
    const char* spouseFirst;
    const char* spouseLast;
    const char* type2;
    const char* type3;
};

class NameFormTest : public ::testing::TestWithParam<NameCase> {};

TEST_P(NameFormTest, FormsTheNameOfBothOrders) {
    const NameCase& c = GetParam();
    ContactNameParts parts{QString::fromUtf8(c.first),       QString::fromUtf8(c.last),
                           QString::fromUtf8(c.display),     c.couple,
                           QString::fromUtf8(c.spouseFirst), QString::fromUtf8(c.spouseLast)};
    EXPECT_EQ(formContactName(2, parts), QString::fromUtf8(c.type2));
    EXPECT_EQ(formContactName(3, parts), QString::fromUtf8(c.type3));
    EXPECT_EQ(formContactName(1, parts), QString::fromUtf8(c.display));
    EXPECT_EQ(formContactName(0, parts), QString::fromUtf8(c.display));
}

INSTANTIATE_TEST_SUITE_P(
    Tables, NameFormTest,
    ::testing::Values(
        NameCase{"SingleBoth", "John", "Smith", "J.S.", false, "", "", "John Smith", "Smith, John"},
        NameCase{"SingleLastOnly", "", "Smith", "J.S.", false, "", "", "Smith", "Smith"},
        NameCase{"SingleFirstOnly", "John", "", "J.S.", false, "", "", "John", "John"},
        NameCase{"SingleNeither", "", "", "J.S.", false, "", "", "J.S.", "J.S."},
        NameCase{"SpouseColumnsIgnoredWhenSingle", "John", "Smith", "J.S.", false, "Jane", "Smith",
                 "John Smith", "Smith, John"},
        NameCase{"CoupleWithoutSpouseFirstIsSingle", "John", "Smith", "J.S.", true, "", "Smith",
                 "John Smith", "Smith, John"},
        NameCase{"SameLastBoth", "John", "Smith", "J.S.", true, "Jane", "SMITH",
                 "John & Jane Smith", "Smith, John & Jane"},
        NameCase{"SameLastLastOnly", "", "Smith", "J.S.", true, "Jane", "Smith", "Jane Smith",
                 "Smith, Jane"},
        // With L blank, "same last name" cannot hold: the third table.
        NameCase{"BlankLastFirstOnly", "John", "", "J.S.", true, "Jane", "Smith",
                 "John & Jane Smith", "John & Smith, Jane"},
        NameCase{"BlankLastNeither", "", "", "J.S.", true, "Jane", "Smith", "J.S.",
                 "J.S. & Smith, Jane"},
        NameCase{"DifferentLastBoth", "John", "Smith", "J.S.", true, "Jane", "Doe",
                 "John Smith & Jane Doe", "Smith, John & Doe, Jane"},
        NameCase{"DifferentLastLastOnly", "", "Smith", "J.S.", true, "Jane", "Doe",
                 "Smith & Jane Doe", "Smith & Doe, Jane"},
        NameCase{"SpouseLastBlankKeepsSeparators", "John", "Smith", "J.S.", true, "Jane", "",
                 "John Smith & Jane ", "Smith, John & , Jane"},
        NameCase{"SpouseLastBlankNeither", "", "", "J.S.", true, "Jane", "", "J.S.",
                 "J.S. & , Jane"}),
    [](const auto& p) { return std::string(p.param.name); });

class DisplayNameTest : public ClientDbFixture {
protected:
    void SetUp() override {
        ClientDbFixture::SetUp();
        hostExec(QStringLiteral("INSERT INTO Contacts (ContactID, DisplayName, FirstName, "
                                "LastName, ContactPersonalTaxDisplayType, "
                                "SpouseFirstName, SpouseLastName) VALUES "
                                "(1, 'The Smiths', ' John ', 'Smith', 2, 'Jane', 'SMITH'),"
                                "(2, 'Jim Null', 'Jim', 'Null', NULL, 'Jill', 'Null'),"
                                "(3, 'Kid', 'Tim', 'Smith', NULL, NULL, NULL),"
                                "(4, 'Other Kid', 'Sue', 'Smith', NULL, NULL, NULL),"
                                "(5, '  ', NULL, NULL, NULL, NULL, NULL)"));
        hostExec(QStringLiteral(
            "INSERT INTO ContactLinks (ContactIDNum, ContactNum, FamilyRelationship) VALUES "
            "(3, 1, 'Son'), (4, 1, 'Not Specified')"));
    }
};

TEST_F(DisplayNameTest, ReadsTheContactRow) {
    EXPECT_EQ(getContactNameDisplayedByType(2, 1, -1, false), QStringLiteral("John & Jane Smith"));
    EXPECT_EQ(getContactNameDisplayedByType(3, 1, -1, false), QStringLiteral("Smith, John & Jane"));
    EXPECT_EQ(getContactNameDisplayedByType(1, 1, -1, false), QStringLiteral("The Smiths"));
    // A Null display type is a single person, whatever the spouse columns hold.
    EXPECT_EQ(getContactNameDisplayedByType(2, 2, -1, false), QStringLiteral("Jim Null"));
    EXPECT_EQ(getContactNameDisplayedByType(2, 999, -1, false), QString());
}

TEST_F(DisplayNameTest, RelationshipFollowsFlagAndFamilyOption) {
    EXPECT_EQ(getContactNameDisplayedByType(2, 3, 1, true), QStringLiteral("Tim Smith (Son)"));
    EXPECT_EQ(getContactNameDisplayedByType(2, 3, 1, false), QStringLiteral("Tim Smith"));
    EXPECT_EQ(getContactNameDisplayedByType(2, 3, -1, true), QStringLiteral("Tim Smith"));
    EXPECT_EQ(getContactNameDisplayedByType(2, 4, 1, true), QStringLiteral("Sue Smith"));
    m_context->familyDisplayOption = 2;
    EXPECT_EQ(getContactNameDisplayedByType(3, 3, 1, false), QStringLiteral("Smith, Tim (Son)"));
}

TEST_F(DisplayNameTest, NodeNamesComeFromTheCurrentRow) {
    const int h = m_db->openRecordset(
        QStringLiteral("SELECT ContactLinks.ContactIDNum, ContactLinks.ContactNum, "
                       "ContactLinks.FamilyRelationship, Contacts.FirstName, "
                       "Contacts.LastName, Contacts.DisplayName FROM ContactLinks INNER JOIN "
                       "Contacts ON ContactLinks.ContactIDNum = "
                       "Contacts.ContactID ORDER BY Contacts.ContactID;"));
    m_context->contactNameDisplayType = 3;
    EXPECT_EQ(getNodeContactNameDisplayed(h, 1, true), QStringLiteral("Smith, Tim (Son)"));
    m_context->contactNameDisplayType = 2;
    EXPECT_EQ(getNodeContactNameDisplayed(h, 1, false), QStringLiteral("Tim Smith"));
    m_context->contactNameDisplayType = 1;
    EXPECT_EQ(getNodeContactNameDisplayed(h, -1, true), QStringLiteral("Kid"));
    m_db->closeRecordset(h);
}

TEST_F(DisplayNameTest, UserSettingsAreReadAndRowsAdded) {
    hostExec(
        QStringLiteral("INSERT INTO UserGeneralSettings (UserIDNum, OptionsContactNameDisplayType, "
                       "OptionsFamilyDisplayOption) VALUES (7, 3, 2)"));
    initializeNameDisplayType(7);
    EXPECT_EQ(m_context->contactNameDisplayType, 3);
    EXPECT_EQ(m_context->familyDisplayOption, 2);
    // A user without a row gets one, and blank values read as 0.
    EXPECT_EQ(getInitialContactNameDisplayTypeSetting(8), 0);
    EXPECT_EQ(
        hostValue(QStringLiteral("SELECT COUNT(*) FROM UserGeneralSettings WHERE UserIDNum = 8"))
            .toInt(),
        1);
    EXPECT_EQ(getFamilyDisplayOption(8), 0);
    EXPECT_EQ(
        hostValue(QStringLiteral("SELECT COUNT(*) FROM UserGeneralSettings WHERE UserIDNum = 8"))
            .toInt(),
        1);
}

TEST(DisplayNameWithoutDatabase, GivesDefaults) {
    ScopedAppContext context;
    EXPECT_EQ(getContactNameDisplayedByType(2, 1, -1, false), QString());
    EXPECT_EQ(getInitialContactNameDisplayTypeSetting(1), 0);
    initializeNameDisplayType(1);
    EXPECT_EQ(context->contactNameDisplayType, 0);
}

} // namespace
