#include "data/modDatabaseFunctions.h"
#include "platform/errorClass.h"

#include "ClientDbFixture.h"
#include "data/ContactCardWriter.h"

#include <QStandardItemModel>

namespace {

class LookupTest : public ClientDbFixture {
protected:
    void SetUp() override {
        ClientDbFixture::SetUp();
        loadFixture(QStringLiteral("small_practice"));
        hostExec(QStringLiteral("INSERT INTO Tasks (TaskID, ScheduleIDNum, Subject) VALUES (500, "
                                "301, 'Prepare'), (501, 301, 'Review')"));
        hostExec(QStringLiteral("INSERT INTO Dockets (DocketID, CompanyIDNum) VALUES (600, 10)"));
        hostExec(QStringLiteral(
            "INSERT INTO AccountantFirmInfo (CompanyID, CompanyName) VALUES (1, 'Ledger & Co.')"));
        hostExec(QStringLiteral(
            "INSERT INTO AccountantEmployeeInfo (ContactID, UserName, UserLevel) VALUES "
            "(900, 'zed', 1), (901, 'amy', 1), (902, 'bob', 2)"));
        hostExec(QStringLiteral("INSERT INTO PersonalTaxStatus (ContactNum, TaxYear, ActiveStatus) "
                                "VALUES (202, 2023, 2)"));
    }
};

TEST_F(LookupTest, ConvertsIDs) {
    EXPECT_EQ(getClientDataIDFromCompanyID(11), 101);
    EXPECT_EQ(getCompanyIDFromClientDataID(102), 12);
    EXPECT_EQ(getClientDataIDFromScheduleID(302), 101);
    EXPECT_EQ(getCompanyIDFromScheduleID(302), 11);
    EXPECT_EQ(getCompanyIDFromAppointmentID(401), 12);
    EXPECT_EQ(getScheduleIDFromTaskID(501), 301);
    EXPECT_EQ(getTaskIDFromScheduleID(301), 500);
    for (int missing : {-1, 0, 9999}) {
        EXPECT_EQ(getClientDataIDFromCompanyID(missing), -1);
        EXPECT_EQ(getCompanyIDFromScheduleID(missing), -1);
        EXPECT_EQ(getTaskIDFromScheduleID(missing), -1);
    }
}

TEST_F(LookupTest, FindsNames) {
    EXPECT_EQ(getCompanyNameFromCompanyID(12), QStringLiteral("O'Brien & Sons"));
    EXPECT_EQ(getCompanyNameFromClientDataID(100), QStringLiteral("Acme Widgets"));
    EXPECT_EQ(getScheduleNameFromScheduleID(300), QStringLiteral("1st Quarterly GST Payment"));
    EXPECT_EQ(getAppointmentSubjectFromAppointmentID(400), QStringLiteral("Review, 50% done"));
    EXPECT_EQ(getDisplayNameFromContactID(201), QStringLiteral("Bob Roy"));
    EXPECT_EQ(getAccountantFirmName(), QStringLiteral("Ledger & Co."));
    EXPECT_EQ(getUserNameFromUserID(902), QStringLiteral("bob"));
    EXPECT_EQ(getCompanyNameFromCompanyID(9999), QString());
    EXPECT_EQ(getCompanyNameFromClientDataID(9999), QString());
}

struct ValidityCase {
    const char* name;
    bool (*test)(const QString&);
    const char* present;
    const char* absent;
};

class ValidityTest : public LookupTest, public ::testing::WithParamInterface<ValidityCase> {};

TEST_P(ValidityTest, TellsRealIDs) {
    const ValidityCase& c = GetParam();
    EXPECT_TRUE(c.test(QString::fromLatin1(c.present)));
    EXPECT_TRUE(c.test(QStringLiteral(" ") + QString::fromLatin1(c.present) + u' '));
    EXPECT_FALSE(c.test(QString::fromLatin1(c.absent)));
    for (const char* junk : {"", "  ", "abc", "1 OR 1=1", "12; DROP TABLE Companies", "-1"})
        EXPECT_FALSE(c.test(QString::fromLatin1(junk))) << junk;
}

INSTANTIATE_TEST_SUITE_P(Families, ValidityTest,
                         ::testing::Values(ValidityCase{"Appointment", validAppointmentID, "400",
                                                        "402"},
                                           ValidityCase{"Docket", validDocketID, "600", "601"},
                                           ValidityCase{"Schedule", validScheduleID, "302", "303"},
                                           ValidityCase{"Task", validTaskID, "500", "502"},
                                           ValidityCase{"Client", validClientID, "103", "10"},
                                           ValidityCase{"Company", validCompanyID, "13", "100"},
                                           ValidityCase{"Contact", validContactID, "202", "900"},
                                           ValidityCase{"Firm", validFirmID, "1", "2"},
                                           ValidityCase{"Employee", validEmployeeID, "900", "200"}),
                         [](const auto& p) { return std::string(p.param.name); });

TEST_F(LookupTest, StatusFirmAndUsers) {
    EXPECT_EQ(getBusinessClientActiveStatusFromClientID(101), 2);
    EXPECT_EQ(getBusinessClientActiveStatusFromClientID(103), 0); // Null status
    EXPECT_EQ(getPersonalClientActiveStatus(202, 2023), 2);
    EXPECT_EQ(getPersonalClientActiveStatus(202, 2022), 0);
    EXPECT_EQ(getAccountantFirmID(), 1);
    EXPECT_EQ(getDefaultUserID(), 901); // level 1, first by user name

    QStandardItemModel users;
    populateUserList(users, true, true, true);
    QStringList got;
    for (int r = 0; r < users.rowCount(); ++r)
        got << users.item(r)->text() + u'=' +
                   users.item(r)->data(modDatabaseFunctions::ItemDataRole).toString();
    EXPECT_EQ(got,
              (QStringList{"All Users=-1", "None Assigned=-1", "amy=901", "bob=902", "zed=900"}));
}

TEST_F(LookupTest, CompanyListsCarryIDs) {
    QStandardItemModel list;
    populateCompanyNameInComboBox(list, true, true, false, true);
    QStringList got;
    for (int r = 0; r < list.rowCount(); ++r)
        got << list.item(r)->text() + u'=' +
                   list.item(r)->data(modDatabaseFunctions::ItemDataRole).toString();
    EXPECT_EQ(got, (QStringList{" =-1", "Acme Widgets=10", "bakery on main=11", "O'Brien & Sons=12",
                                "Zed Holdings=13"}));
}

TEST(NodeKeyTest, ParsesEveryKeyForm) {
    struct Case {
        const char* key;
        short type;
        int id;
    };
    const Case cases[] = {{"", 0, -1},
                          {"   ", 0, -1},
                          {"Category:5", 3, 5},
                          {"TaxCategory:7", 3, 7},
                          {"FirmCategory:4", 3, 4},
                          {"Company:12", 2, 12},
                          {"Company:12Contact:200", 1, 200},
                          {"Category:5Contact:202", 1, 202},
                          {"TaxCategory:7TaxContact:202", 1, 202},
                          {"FirmContact:900", 1, 900},
                          {"Company:10Contact:200Family:200Contact:201", 1, 201},
                          {"TaxCategory:7TaxContact:202Family:202TaxContact:203", 1, 203},
                          {"FirmContact:900Family:900FirmContact:905", 1, 905},
                          {"Company:abc", 2, -1},
                          {"Something:3", 0, -1}};
    for (const Case& c : cases) {
        const QString key = QString::fromLatin1(c.key);
        EXPECT_EQ(getSelectedMajorNodeTypeFromString(key), c.type) << c.key;
        EXPECT_EQ(getSelectedNodeIDFromString(key), c.id) << c.key;
    }
    EXPECT_EQ(getCategoryIDFromCategoryNodeKey(QStringLiteral("Category:5Contact:202")), -1);
    EXPECT_EQ(getContactIDFromContactNodeKey(QStringLiteral("Company:10")), -1);
}

TEST(MainQueryTest, TailsAndCountries) {
    ScopedAppContext context;
    const QString canada = getMainBusinessSQLString(true, 0);
    EXPECT_TRUE(canada.startsWith(QStringLiteral(
        "SELECT AccountingServices.*, ClientData.*, ClientOptions.*, Companies.*, CorpTaxInfo.*")));
    EXPECT_TRUE(canada.endsWith(
        QStringLiteral("WHERE ClientData.ShowThisClient = True AND ClientData.ActiveStatus=1 ORDER "
                       "BY Companies.CompanyName;")));
    EXPECT_TRUE(getMainBusinessSQLString(true, 1).endsWith(
        QStringLiteral("CompaniesNotes.CompanyNum WHERE ClientData.ShowThisClient = True AND NOT "
                       "ClientData.ActiveStatus=1 ORDER BY "
                       "Companies.CompanyName;")));
    EXPECT_TRUE(getMainBusinessSQLString(false, 2).endsWith(
        QStringLiteral("CompaniesNotes.CompanyNum ORDER BY Companies.CompanyName;")));
    context->currentCountry = 2;
    EXPECT_TRUE(getMainBusinessSQLString(true, 2).startsWith(
        QStringLiteral("SELECT AccountingServices.*, ClientData.*, ClientOptions.*, Companies.*, "
                       "ClientUSInfo.*")));
    EXPECT_TRUE(getMainBusinessSQLString(false, 0).startsWith(
        QStringLiteral("SELECT ClientData.*, AccountingServices.*")));
    EXPECT_TRUE(getMainBusinessSQLString(false, 0).contains(
        QStringLiteral("FROM (ClientUSInfo INNER JOIN")));
}

// The main query runs on a database made by other hands; every tail gives
// the clients it names.
class MainQueryRunTest : public LookupTest {
protected:
    void SetUp() override {
        LookupTest::SetUp();
        for (const char* table : {"AccountingServices", "ClientOptions", "CorpTaxInfo", "LawInfo",
                                  "OtherInfo", "SoftwareInfo", "WSIB_EHTInfo", "ClientUSInfo"}) {
            const QString key = QString::fromLatin1(table) == QStringLiteral("AccountingServices")
                                    ? QStringLiteral("AccountingServiceID")
                                : QString::fromLatin1(table) == QStringLiteral("ClientOptions")
                                    ? QStringLiteral("ClientOptionID")
                                    : QString::fromLatin1(table) + QStringLiteral("ID");
            hostExec(QStringLiteral("INSERT INTO %1 (%2) SELECT ClientDataID FROM ClientData")
                         .arg(QLatin1String(table), key));
        }
        hostExec(QStringLiteral(
            "INSERT INTO CompaniesNotes (CompanyNum) SELECT CompanyID FROM Companies"));
    }
    QStringList names(bool visible, int status) {
        const int h = m_db->openRecordset(getMainBusinessSQLString(visible, status));
        QStringList out;
        for (; !m_db->isEOF(h); m_db->moveNext(h))
            out << m_db->getField(h, QStringLiteral("CompanyName")).toString();
        m_db->closeRecordset(h);
        return out;
    }
};

TEST_F(MainQueryRunTest, EveryTailSelectsItsClients) {
    for (int country : {1, 2}) {
        m_context->currentCountry = country;
        EXPECT_EQ(names(true, 0), (QStringList{"Acme Widgets"}));
        EXPECT_EQ(names(true, 1), (QStringList{"bakery on main"}));
        EXPECT_EQ(names(true, 2), (QStringList{"Acme Widgets", "bakery on main", "Zed Holdings"}));
        EXPECT_EQ(names(false, 0), (QStringList{"Acme Widgets", "O'Brien & Sons"}));
        EXPECT_EQ(names(false, 1), (QStringList{"bakery on main"}));
        EXPECT_EQ(names(false, 2), (QStringList{"Acme Widgets", "bakery on main", "O'Brien & Sons",
                                                "Zed Holdings"}));
    }
    const int h = m_db->openRecordset(getMainBusinessSQLString(true, 0));
    EXPECT_EQ(m_db->getField(h, QStringLiteral("ClientDataID")).toInt(), 100);
    EXPECT_EQ(m_db->getField(h, QStringLiteral("Companies.CompanyID")).toInt(), 10);
    m_db->closeRecordset(h);
}

class TaxYearTest : public ClientDbFixture {
protected:
    void today(int y, int m, int d) {
        m_context->clock.setFixed(QDateTime(QDate(y, m, d), QTime(10, 0)));
    }
    QString stored() {
        return hostValue(QStringLiteral("SELECT CurrentTaxYear FROM DataVersion")).toString();
    }
};

TEST_F(TaxYearTest, ProvisionalYearTurnsAfterApril) {
    today(2024, 4, 30);
    EXPECT_EQ(provisionalTaxYear(), 2023);
    today(2024, 5, 1);
    EXPECT_EQ(provisionalTaxYear(), 2024);
}

TEST_F(TaxYearTest, HealsMissingBlankAndOutOfRangeYears) {
    today(2024, 4, 30);
    EXPECT_EQ(getCurrentTaxYear(), 2023); // empty table: a row is added
    EXPECT_EQ(stored(), QStringLiteral("2023"));
    hostExec(QStringLiteral("UPDATE DataVersion SET CurrentTaxYear = ''"));
    today(2024, 5, 1);
    EXPECT_EQ(getCurrentTaxYear(), 2024);
    EXPECT_EQ(stored(), QStringLiteral("2024"));
    hostExec(QStringLiteral("UPDATE DataVersion SET CurrentTaxYear = '1850'"));
    EXPECT_EQ(getCurrentTaxYear(), 1850); // returned once, then replaced
    EXPECT_EQ(stored(), QStringLiteral("2024"));
    hostExec(QStringLiteral("UPDATE DataVersion SET CurrentTaxYear = '2150'"));
    EXPECT_EQ(getCurrentTaxYear(), 2150); // below 2200 is accepted when reading
    EXPECT_EQ(stored(), QStringLiteral("2150"));
    EXPECT_EQ(hostValue(QStringLiteral("SELECT COUNT(*) FROM DataVersion")).toInt(), 1);
}

TEST_F(TaxYearTest, StoringLimitsTheYear) {
    today(2024, 8, 1);
    putCurrentTaxYear(2100);
    EXPECT_EQ(stored(), QStringLiteral("2100"));
    putCurrentTaxYear(2101);
    EXPECT_EQ(stored(), QStringLiteral("2024"));
    putCurrentTaxYear(1899);
    EXPECT_EQ(stored(), QStringLiteral("2024"));
}

TEST(TaxYearWithoutDatabase, IsTheProvisionalYear) {
    ScopedAppContext context;
    context->clock.setFixed(QDateTime(QDate(2030, 1, 15), QTime(8, 0)));
    EXPECT_EQ(getCurrentTaxYear(), 2029);
}

class CategoryTest : public ClientDbFixture {};

TEST_F(CategoryTest, CreatesMissingSystemCategoriesUnderTheRoot) {
    EXPECT_EQ(getBusinessCategoryName(), QStringLiteral("Quillmere Business clients"));
    const int business = getBusinessCategoryNum();
    const int main = getMainCategoryNum();
    EXPECT_EQ(
        hostValue(
            QStringLiteral("SELECT CategoryNum FROM Categories WHERE CategoryID=%1").arg(business))
            .toInt(),
        main);
    EXPECT_EQ(getFirmCategoryName(), QStringLiteral("Firm Staff"));
    EXPECT_EQ(getPersonalTaxCategoryName(), QStringLiteral("Quillmere Personal clients"));
    EXPECT_EQ(getMainCategoryName(), QStringLiteral("Contact Ledger"));
    EXPECT_EQ(hostValue(QStringLiteral("SELECT COUNT(*) FROM Categories")).toInt(), 4);
    EXPECT_EQ(hostValue(QStringLiteral("SELECT CategoryDescription FROM Categories WHERE "
                                       "CategorySpecialCode='FirmCategory'"))
                  .toString(),
              QStringLiteral("This category contains all of your staff members."));
}

TEST_F(CategoryTest, LateRootTakesOverAndNamesAreCut) {
    hostExec(
        QStringLiteral("INSERT INTO Categories (CategoryID, CategoryNum, CategoryName, "
                       "CategorySpecialCode) VALUES "
                       "(7, NULL, '', 'BusinessCategory'), (8, NULL, 'Tax', 'PersonalCategory')"));
    EXPECT_EQ(getBusinessCategoryName(),
              QStringLiteral("Quillmere Business clients")); // blank stored name
    const int main = createNewDefaultMainCategory(
        QStringLiteral("A ledger name that is much longer than thirty"));
    EXPECT_EQ(
        hostValue(
            QStringLiteral("SELECT CategoryName FROM Categories WHERE CategoryID=%1").arg(main))
            .toString(),
        QStringLiteral("A ledger name that is much lon"));
    EXPECT_EQ(
        hostValue(QStringLiteral("SELECT COUNT(*) FROM Categories WHERE CategoryNum=%1").arg(main))
            .toInt(),
        2);
    EXPECT_EQ(createNewFirmCategory(), getFirmCategoryNum());
}

TEST_F(CategoryTest, TaxYearsAndAncestry) {
    loadFixture(QStringLiteral("small_practice"));
    EXPECT_TRUE(isCategoryPersonalTaxYearCategory(4));
    EXPECT_FALSE(isCategoryPersonalTaxYearCategory(5));
    EXPECT_EQ(getPersonalTaxYearFromCategoryID(5), 2023);
    EXPECT_EQ(getPersonalTaxYearFromCategoryID(6), 0);
    EXPECT_TRUE(doesThisCategoryBelongToCategory(5, 3));
    EXPECT_TRUE(doesThisCategoryBelongToCategory(5, 5));
    EXPECT_FALSE(doesThisCategoryBelongToCategory(6, 3));
    hostExec(QStringLiteral("UPDATE Categories SET CategoryNum = 6 WHERE CategoryID = 6"));
    EXPECT_FALSE(doesThisCategoryBelongToCategory(6, 1)); // its own parent stops the walk
    // A loop over two categories is a broken tree: an error, not a hang.
    hostExec(QStringLiteral("UPDATE Categories SET CategoryNum = 5 WHERE CategoryID = 6"));
    hostExec(QStringLiteral("UPDATE Categories SET CategoryNum = 6 WHERE CategoryID = 5"));
    EXPECT_THROW(doesThisCategoryBelongToCategory(5, 1), QmError);
    EXPECT_TRUE(doesThisCategoryBelongToCategory(5, 6));
    hostExec(QStringLiteral("UPDATE Categories SET CategoryNum = 4 WHERE CategoryID = 5"));
    hostExec(QStringLiteral("UPDATE Categories SET CategoryNum = 6 WHERE CategoryID = 6"));
    // The personal-tax flag of a link is corrected.
    EXPECT_TRUE(doesThisContactBelongToPersonalTaxCategory(202));
    EXPECT_EQ(hostValue(QStringLiteral("SELECT IsPersonalTaxCategory FROM ContactLinks WHERE "
                                       "ContactIDNum=202 AND CategoryNum=5"))
                  .toInt(),
              1);
    EXPECT_FALSE(doesThisContactBelongToPersonalTaxCategory(200));
}

TEST_F(CategoryTest, LongChainGivesYearZero) {
    hostExec(QStringLiteral("INSERT INTO Categories (CategoryID, CategoryNum, CategorySpecialCode) "
                            "VALUES (1, NULL, 'TaxYear:2020')"));
    QStringList rows;
    for (int id = 2; id <= 102; ++id)
        rows << QStringLiteral("(%1, %2)").arg(id).arg(id - 1);
    hostExec(QStringLiteral("INSERT INTO Categories (CategoryID, CategoryNum) VALUES ") +
             rows.join(u','));
    EXPECT_EQ(getPersonalTaxYearFromCategoryID(100), 2020);
    EXPECT_EQ(getPersonalTaxYearFromCategoryID(102), 0);
}

// Records the cards the repairs ask for.
class RecordingCards : public ContactCardWriter {
public:
    void saveContactBusinessRTF(int contactID, int, int companyID, bool) override {
        calls << QStringLiteral("contact %1 of %2").arg(contactID).arg(companyID);
    }
    void saveCompanyContactRTF(int companyID, int contactID) override {
        calls << QStringLiteral("company %1 card %2").arg(companyID).arg(contactID);
    }
    QStringList calls;
};

class DefaultContactTest : public LookupTest {
protected:
    void SetUp() override {
        LookupTest::SetUp();
        setContactCardWriter(&m_cards);
        hostExec(QStringLiteral("UPDATE Contacts SET BusinessPhone_Main='555-0101', "
                                "BusinessEmail='ann@acme.ca' WHERE ContactID=200"));
    }
    void TearDown() override {
        setContactCardWriter(nullptr);
        LookupTest::TearDown();
    }
    QString companyCopy(int company) {
        return hostValue(
                   QStringLiteral(
                       "SELECT DefaultContactName || '|' || DefaultContactPhoneNumber || '|' || "
                       "DefaultContactFaxNumber || '|' || DefaultContactEmail FROM Companies WHERE "
                       "CompanyID=%1")
                       .arg(company))
            .toString();
    }
    RecordingCards m_cards;
};

TEST_F(DefaultContactTest, ReadsTheMarkedContact) {
    EXPECT_EQ(getDefaultContactIDFromCompanyID(10), 201);
    EXPECT_TRUE(isContactDefaultContact(201, 10));
    EXPECT_FALSE(isContactDefaultContact(200, 10));
    EXPECT_FALSE(isContactDefaultContact(200, 99));
    EXPECT_EQ(getDefaultContactIDFromCompanyID(99), -1); // no links: nothing to repair
    EXPECT_TRUE(m_cards.calls.isEmpty());
}

TEST_F(DefaultContactTest, SettingADefaultMarksOnlyOneAndCopiesIt) {
    setContactAsDefault(200, 10);
    EXPECT_EQ(hostValue(QStringLiteral(
                            "SELECT SUM(DefaultContact) FROM ContactLinks WHERE CompanyNum=10"))
                  .toInt(),
              1);
    EXPECT_TRUE(isContactDefaultContact(200, 10));
    EXPECT_EQ(companyCopy(10), QStringLiteral("Ann Lee|555-0101||ann@acme.ca"));
    EXPECT_EQ(m_cards.calls, (QStringList{"contact 200 of 10", "company 10 card 200",
                                          "contact 201 of 10", "company 10 card 200"}));
}

TEST_F(DefaultContactTest, DeletedDefaultIsRepairedFromTheFirstLink) {
    // Company 11's only link points to a contact that no longer exists.
    hostExec(QStringLiteral(
        "UPDATE ContactLinks SET DefaultContact=0, ContactIDNum=777 WHERE CompanyNum=11"));
    hostExec(QStringLiteral("UPDATE Companies SET DefaultContactName='Gone' WHERE CompanyID=11"));
    EXPECT_EQ(getDefaultContactIDFromCompanyID(11), 777);
    EXPECT_EQ(
        hostValue(
            QStringLiteral(
                "SELECT DefaultContact FROM ContactLinks WHERE CompanyNum=11 AND ContactIDNum=777"))
            .toInt(),
        1);
    EXPECT_EQ(companyCopy(11), QStringLiteral("|||"));
}

TEST_F(DefaultContactTest, UnmarkedCompanyGetsItsFirstContact) {
    hostExec(QStringLiteral("UPDATE ContactLinks SET DefaultContact=0 WHERE CompanyNum=10"));
    EXPECT_EQ(checkForDefaultContact(10, false), -1);
    EXPECT_EQ(hostValue(QStringLiteral(
                            "SELECT SUM(DefaultContact) FROM ContactLinks WHERE CompanyNum=10"))
                  .toInt(),
              0);
    EXPECT_EQ(getDefaultContactIDFromCompanyID(10), 200);
    EXPECT_EQ(companyCopy(10), QStringLiteral("Ann Lee|555-0101||ann@acme.ca"));
}

TEST_F(DefaultContactTest, CompanyWithoutLinksGetsTheNoContactCard) {
    hostExec(QStringLiteral("UPDATE Companies SET DefaultContactName='Old', "
                            "DefaultContactEmail='x' WHERE CompanyID=13"));
    EXPECT_EQ(checkForDefaultContact(13, true), -1);
    EXPECT_EQ(companyCopy(13), QStringLiteral("|||"));
    EXPECT_EQ(m_cards.calls, (QStringList{"company 13 card -1"}));
}

TEST_F(DefaultContactTest, LookupColumnsFollowTheDefaultContact) {
    hostExec(QStringLiteral("UPDATE Contacts SET Birthday='1970-03-05' WHERE ContactID=200"));
    hostExec(QStringLiteral("INSERT INTO CustomFields (RemittanceCustomInfo1, "
                            "RemittanceCustomType1, RemittanceCustomInfo2, "
                            "RemittanceCustomType2, RemittanceCustomInfo3, RemittanceCustomType3, "
                            "RemittanceCustomInfo4, "
                            "RemittanceCustomType4) VALUES ('Birthday', 3, 'businessphone_main', "
                            "3, 'Bank', 3, 'BusinessEmail', 1)"));
    hostExec(QStringLiteral("UPDATE Schedule SET Custom3='keep', Custom4='keep'"));
    setContactAsDefault(200, 10, true);
    EXPECT_TRUE(m_cards.calls.isEmpty());
    for (int id : {300, 301}) {
        EXPECT_EQ(hostValue(QStringLiteral("SELECT Custom1 || '|' || Custom2 || '|' || Custom3 || "
                                           "'|' || Custom4 FROM Schedule WHERE ScheduleID=%1")
                                .arg(id))
                      .toString(),
                  QStringLiteral("Mar 5, 1970|555-0101|keep|keep"));
    }
    EXPECT_TRUE(
        hostValue(QStringLiteral("SELECT Custom1 IS NULL FROM Schedule WHERE ScheduleID=302"))
            .toBool());
}

TEST(LookupFieldTest, NamesContactFieldsInAnyCase) {
    for (const char* yes : {"DisplayName", "displayname", "SpouseCountry", "ContactCustom5",
                            "MaritialStatus", " Birthday "})
        EXPECT_TRUE(isContactLookupField(QString::fromLatin1(yes))) << yes;
    for (const char* no : {"", "Custom1", "MaritalStatus", "CompanyName", "Bank"})
        EXPECT_FALSE(isContactLookupField(QString::fromLatin1(no))) << no;
}

TEST(LookupWithoutDatabase, ReturnsDefaultsSilently) {
    ScopedAppContext context;
    databaseControl disconnected;
    context->database = &disconnected;
    EXPECT_EQ(getCompanyIDFromClientDataID(1), -1);
    EXPECT_EQ(getCompanyNameFromCompanyID(1), QString());
    EXPECT_FALSE(validCompanyID(QStringLiteral("1")));
    EXPECT_EQ(getDefaultContactIDFromCompanyID(1), -1);
    EXPECT_EQ(getMainCategoryNum(), -1);
    EXPECT_EQ(createNewFirmCategory(), -1);
    setContactAsDefault(1, 1);
    QStandardItemModel list;
    populateUserList(list, true, false, true);
    EXPECT_EQ(list.rowCount(), 1);
}

} // namespace
