#include "data/modRemittanceTypes.h"

#include "ClientDbFixture.h"
#include "data/modDatabaseFunctions.h"

#include <QStandardItemModel>

namespace {

QStringList entries(const QStandardItemModel& list) {
    QStringList out;
    for (int r = 0; r < list.rowCount(); ++r)
        out << list.item(r)->text() + u'=' +
                   list.item(r)->data(modDatabaseFunctions::ItemDataRole).toString();
    return out;
}

struct ProvinceCase {
    int country;
    int province;
    const char* date;
    bool addAll;
    bool subItems;
    const char* expected;
};

class TypeListTest : public ::testing::TestWithParam<ProvinceCase> {};

TEST_P(TypeListTest, ListsTheTypesOfTheRegion) {
    const ProvinceCase& c = GetParam();
    ScopedAppContext context;
    context->currentCountry = c.country;
    initializeProvince(c.province);
    context->clock.setFixed(
        QDateTime(QDate::fromString(QString::fromLatin1(c.date), Qt::ISODate), QTime(12, 0)));
    QStandardItemModel list;
    list.appendRow(new QStandardItem(QStringLiteral("stale")));
    populateTypeCombo(list, c.addAll, c.subItems);
    EXPECT_EQ(entries(list).join(u','), QString::fromLatin1(c.expected));
}

const char* const OntarioAfter =
    "HST=101,PST=102,Payroll Remitt=103,Employee Payroll=110,Year End=104,Corp Tax=105,"
    "WSIB=106,EHT=107,Law=108,Other=109,Custom=111";

std::vector<ProvinceCase> provinceCases() {
    std::vector<ProvinceCase> cases = {
        {1, 3, "2010-06-30", false, false,
         "GST=101,PST=102,Payroll Remitt=103,Employee Payroll=110,Year End=104,Corp "
         "Tax=105,WSIB=106,EHT=107,Law=108,"
         "Other=109,Custom=111"},
        {1, 3, "2010-07-01", false, false, OntarioAfter},
        {1, 1, "2010-07-01", false, false,
         "HST=101,PST=102,Payroll Remitt=103,Employee Payroll=110,Year End=104,Corp "
         "Tax=105,WCB=106,EHT=107,Law=108,"
         "Other=109,Custom=111"},
        {1, 1, "2009-01-01", false, false,
         "GST=101,PST=102,Payroll Remitt=103,Employee Payroll=110,Year End=104,Corp "
         "Tax=105,WCB=106,EHT=107,Law=108,"
         "Other=109,Custom=111"},
        {1, 8, "2024-01-01", true, true,
         "All=100,GST=101,QST=102,Payroll "
         "Remitt=103,RL-1=10340,T4=10310,T4a=10320,T5=10330,Employee Payroll=110,"
         "Year End=104,Corp Tax=105,CSST=106,EHT=107,Law=108,Other=109,Custom=111"},
        {1, 3, "2024-01-01", false, true,
         "HST=101,PST=102,Payroll Remitt=103,T4=10310,T4a=10320,T5=10330,Employee Payroll=110,Year "
         "End=104,"
         "Corp Tax=105,WSIB=106,EHT=107,Law=108,Other=109,Custom=111"},
        {1, 9, "2000-01-01", false, false,
         "HST=101,PST=102,Payroll Remitt=103,Employee Payroll=110,Year End=104,Corp "
         "Tax=105,WCB=106,EHT=107,Law=108,"
         "Other=109,Custom=111"},
        {1, 10, "2000-01-01", false, false,
         "HST=101,PST=102,Payroll Remitt=103,Employee Payroll=110,Year End=104,Corp "
         "Tax=105,WHSCC=106,EHT=107,Law=108,"
         "Other=109,Custom=111"},
        {1, 11, "2000-01-01", false, false,
         "HST=101,PST=102,Payroll Remitt=103,Employee Payroll=110,Year End=104,Corp "
         "Tax=105,WHSCC=106,EHT=107,Law=108,"
         "Other=109,Custom=111"},
        {2, 7, "2024-01-01", true, true,
         "All=100,Federal Tax=101,Sales & Use Tax=102,Federal Payroll=112,Employment "
         "Tax=103,Employee Payroll=110,"
         "Year End=104,Franchise Tax=105,Property Tax=106,Excise Tax=107,Other=109,Custom=111"},
        {2, 13, "2024-01-01", false, false,
         "Federal Tax=101,Sales Tax=102,Federal Payroll=112,Withholding Tax=103,Employee "
         "Payroll=110,Year End=104,"
         "Franchise Tax=105,Excise Tax=107,Other=109,Custom=111"},
        {2, 14, "2024-01-01", false, false,
         "Federal Tax=101,Sales Tax=102,Federal Payroll=112,State Payroll=103,Employee "
         "Payroll=110,Year End=104,"
         "Excise Tax=107,Other=109,Custom=111"},
        {2, 15, "2024-01-01", false, false,
         "Federal Tax=101,Sales Tax=102,Federal Payroll=112,State Payroll=103,Employee "
         "Payroll=110,Year End=104,"
         "Excise Tax=107,Other=109,Custom=111"},
        {2, 3, "2024-01-01", false, false,
         "Federal Tax=101,Federal Payroll=112,Employee Payroll=110,Year End=104,Excise "
         "Tax=107,Other=109,Custom=111"},
    };
    // Every other Canadian code: GST, PST, WCB.
    for (int code : {0, 2, 4, 5, 6, 7, 12, 13, 99, -1}) {
        cases.push_back({1, code, "2024-01-01", false, false,
                         "GST=101,PST=102,Payroll Remitt=103,Employee Payroll=110,Year "
                         "End=104,Corp Tax=105,WCB=106,"
                         "EHT=107,Law=108,Other=109,Custom=111"});
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(Regions, TypeListTest, ::testing::ValuesIn(provinceCases()),
                         [](const auto& p) {
                             return "Country" + std::to_string(p.param.country) + "Province" +
                                    std::to_string(p.param.province + 1) + "_" +
                                    std::to_string(p.index);
                         });

TEST(ProvinceTest, DefaultsToThreeWithoutAHost) {
    ScopedAppContext context;
    initializeProvince(std::nullopt);
    EXPECT_EQ(getProvince(), 3);
    initializeProvince(8);
    EXPECT_EQ(getProvince(), 8);
}

class CustomSchemeTest : public ClientDbFixture {};

TEST_F(CustomSchemeTest, SchemesFollowTheFixedTypes) {
    hostExec(QStringLiteral(
        "INSERT INTO CustomTaskSchemes (SchemeName, ScheduleNum) VALUES ('Inventory', 5), "
        "('Audit Prep', 12)"));
    initializeProvince(3);
    m_context->clock.setFixed(QDateTime(QDate(2024, 1, 1), QTime(9, 0)));
    QStandardItemModel list;
    populateTypeCombo(list, false, false);
    const QStringList got = entries(list);
    ASSERT_GE(got.size(), 2);
    EXPECT_EQ(got.mid(got.size() - 3),
              (QStringList{QStringLiteral("Custom=111"), QStringLiteral("Inventory=11105"),
                           QStringLiteral("Audit Prep=11112")}));
}

} // namespace
