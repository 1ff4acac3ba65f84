#include "data/ClientDatabaseSchema.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <gtest/gtest.h>

namespace {

// The tables and the columns the program relies on, as the description of
// the client database lists them (a few spot checks per family).
struct TableCase {
    const char* table;
    std::vector<const char*> columns;
};

class SchemaTest : public ::testing::TestWithParam<TableCase> {};

TEST_P(SchemaTest, HasTheColumnsTheProgramReads) {
    const TableCase& c = GetParam();
    const QStringList columns = ClientDatabaseSchema::columnNames(QString::fromLatin1(c.table));
    ASSERT_FALSE(columns.isEmpty()) << c.table;
    for (const char* column : c.columns)
        EXPECT_TRUE(columns.contains(QString::fromLatin1(column))) << c.table << "." << column;
}

INSTANTIATE_TEST_SUITE_P(
    Tables, SchemaTest,
    ::testing::Values(
        TableCase{"Categories",
                  {"CategoryID", "CategoryNum", "CategoryName", "CategoryDescription",
                   "CategorySpecialCode"}},
        TableCase{"Companies",
                  {"CompanyID", "CategoryNum", "CompanyNum", "CompanyName", "CorporateName",
                   "WebSite", "PartnerName", "AccountantName", "EmployeeAssigned", "Custom1",
                   "Custom5", "DefaultContactName", "DefaultContactPhoneNumber",
                   "DefaultContactFaxNumber", "DefaultContactEmail"}},
        TableCase{"ClientData", {"ClientDataID", "CompanyIDNum", "ActiveStatus", "ShowThisClient"}},
        TableCase{"AccountingServices",
                  {"AccountingServiceID", "BusinessNumber", "YearEndDate", "GSTNumber"}},
        TableCase{"ClientOptions", {"ClientOptionID", "ClientCustom1", "ClientCustom5"}},
        TableCase{
            "CorpTaxInfo",
            {"CorpTaxInfoID", "FederalCorpNumber", "MCBS", "IncorporationDate", "ONCorpNumber"}},
        TableCase{"LawInfo", {"LawInfoID", "NameRenewalDate", "LawSocietyMemberNumber"}},
        TableCase{"OtherInfo",
                  {"OtherInfoID", "PropertyTaxNum", "Form637RegNum", "TCN", "AlcoholNum"}},
        TableCase{"SoftwareInfo", {"SoftwareInfoID", "SoftwareName", "FileSavedAs"}},
        TableCase{"WSIB_EHTInfo",
                  {"WSIB_EHTInfoID", "WSIBNumber", "EHTPremiumRate", "Coverage", "WSIBFirmNumber"}},
        TableCase{"ClientUSInfo",
                  {"ClientUSInfoID", "EIN", "SellersPermitNum", "USYearEndDate", "SoSFileNum"}},
        TableCase{"CompaniesNotes", {"CompanyNum", "BusinessNotes", "ContactNotes", "Notes"}},
        TableCase{"Contacts",
                  {"ContactID", "DisplayName", "FirstName", "LastName", "SpouseFirstName",
                   "SpouseLastName", "ContactPersonalTaxDisplayType", "InheritCompanyInfo",
                   "SocialInsuranceNumber", "SpouseSIN", "IsSpouseAlsoPersonalTaxClient",
                   "MaritialStatus", "BusinessPhone_Main", "SpouseBirthday", "Custom5"}},
        TableCase{"ContactsNotes", {"ContactNum", "Notes", "BusinessNotes", "PersonalNotes"}},
        TableCase{"ContactLinks",
                  {"ContactIDNum", "CompanyNum", "CategoryNum", "ContactNum",
                   "IsPersonalTaxCategory", "FamilyRelationship", "DefaultContact"}},
        TableCase{"AccountantFirmInfo", {"CompanyID", "CompanyName", "Custom1"}},
        TableCase{"AccountantEmployeeInfo",
                  {"ContactID", "DisplayName", "UserName", "UserLevel", "UserColour", "ContactNum",
                   "FamilyRelationship", "CompanyNum", "CategoryNum", "PersonalTaxCategoryNum",
                   "PersonalTaxClient", "BusinessNotes", "PersonalNotes", "HomeAddress"}},
        TableCase{"UserGeneralSettings",
                  {"UserIDNum", "OptionsContactNameDisplayType", "OptionsFamilyDisplayOption"}},
        TableCase{"UserCalendarSettings", {"UserIDNum"}},
        TableCase{"DataVersion", {"CurrentTaxYear", "DataUniqueID"}},
        TableCase{"CustomFields",
                  {"RemittanceCustomInfo1", "RemittanceCustomType5", "PersonalTaxTaskCustomInfo3",
                   "PersonalTaxTaskCustomType1", "ApptCustomName1", "TaskCustomName5",
                   "DocketCustomName2", "CustomName4", "RemittanceLabel3", "CompanyLabel5"}},
        TableCase{"CustomAddressFields", {"ContactLabel1", "ContactLabel5"}},
        TableCase{"Schedule",
                  {"ScheduleID",    "ClientNum",    "ContactIDNum",     "scheduleName",
                   "totalNum",      "scheduleNum",  "DueDate",          "inHouseDueDate",
                   "NotifiedDate",  "CalendarDate", "EmployeeAssigned", "InPossession",
                   "Recieved",      "Cheque",       "Closed",           "OverdueFlag",
                   "hideInTasks",   "Year",         "Amount",           "PersonCompleted",
                   "DateCompleted", "Custom5"}},
        TableCase{
            "archiveSchedule",
            {"archiveScheduleID", "ScheduleID", "ClientDataID", "hideInTasks", "scheduleName"}},
        TableCase{"Tasks",
                  {"TaskID", "ScheduleIDNum", "CompanyIDNum", "UserIDNum", "Subject", "DateFrom",
                   "TimeFrom", "TimeTo", "EstimatedTime", "ReminderPeriod", "AppointmentText",
                   "hideInTasks"}},
        TableCase{"archiveTasks", {"oldTaskID", "ScheduleIDNum"}},
        TableCase{
            "Appointments",
            {"AppointmentID", "CompanyIDNum", "ContactIDNum", "BackColour", "TimeTo", "Custom3"}},
        TableCase{"Dockets", {"DocketID",           "DocketLocked",        "Invoiced",
                              "ShowOnInvoice",      "UsedRealTime",        "RealTimeFrom",
                              "OriginalRealTimeTo", "RoundedTimeTo",       "TextBody",
                              "DocketBillingType",  "BillingJobRate",      "BillableTime",
                              "TotalTimeReal",      "UseAdjustedTime",     "TotalTimeFinal",
                              "TotalAmountFinal",   "DescriptionClient",   "UserBillingRate",
                              "BillingRateIDNum",   "BillingProjectIDNum", "InterruptIDNum"}},
        TableCase{"CustomTaskSchemes", {"CustomTaskSchemeID", "SchemeName", "ScheduleNum"}},
        TableCase{"ClientDocumentStorage", {"ClientDataNum", "ContactNum", "FolderPath"}},
        TableCase{"PersonalTaxStatus",
                  {"ContactNum", "TaxYear", "ActiveStatus", "InHouseDueDate", "ReturnDate",
                   "ReturnStatus", "OverdueFlag", "Custom1"}},
        TableCase{"PersonalTaxInfo", {"ContactNum", "TaxYear"}}),
    [](const auto& p) { return std::string(p.param.table); });

TEST(SchemaKinds, MarksYesNoAndDateColumns) {
    for (const char* c : {"ShowThisClient", "DefaultContact", "hideInTasks", "recieved",
                          "InheritCompanyInfo", "BillableTime"})
        EXPECT_TRUE(ClientDatabaseSchema::isYesNoColumn(QString::fromLatin1(c))) << c;
    for (const char* c : {"DueDate", "TimeFrom", "Birthday", "yearenddate", "RoundedTimeTo"})
        EXPECT_TRUE(ClientDatabaseSchema::isDateColumn(QString::fromLatin1(c))) << c;
    // Spouse Birthday is text; ActiveStatus a number.
    for (const char* c : {"SpouseBirthday", "ActiveStatus", "CompanyName", "TotalTimeFinal"}) {
        EXPECT_FALSE(ClientDatabaseSchema::isDateColumn(QString::fromLatin1(c))) << c;
        EXPECT_FALSE(ClientDatabaseSchema::isYesNoColumn(QString::fromLatin1(c))) << c;
    }
}

TEST(SchemaCreate, BuildsEveryTableInAnEmptyDatabase) {
    {
        QSqlDatabase db =
            QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("schema_test"));
        db.setDatabaseName(QStringLiteral(":memory:"));
        ASSERT_TRUE(db.open());
        ClientDatabaseSchema::create(db);
        QSqlQuery q(db);
        ASSERT_TRUE(
            q.exec(QStringLiteral("SELECT COUNT(*) FROM sqlite_master WHERE type='table'")));
        ASSERT_TRUE(q.next());
        EXPECT_EQ(q.value(0).toInt(), ClientDatabaseSchema::tableNames().size());
        EXPECT_GE(ClientDatabaseSchema::tableNames().size(), 32);
        q.finish();
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("schema_test"));
}

} // namespace
