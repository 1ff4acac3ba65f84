#include "data/modFormatAddresses.h"

#include "ClientDbFixture.h"
#include "data/modDatabaseFunctions.h"
#include "platform/richtext/RichTextBox.h"

#include <QFile>

namespace {

// Test texts are written with "|" for CR LF, so that the shape of a block
// stays readable in the tables.
QString lines(const char* text) {
    return QString::fromUtf8(text).replace(u'|', QStringLiteral("\r\n"));
}

struct BlockCase {
    const char* name;
    AddressFields fields;
    bool showContactName;
    bool toRTF;
    const char* expected;
};

AddressFields office() {
    AddressFields f;
    f.company = QStringLiteral("ABC Consulting");
    f.contactName = QStringLiteral("Jane Smith");
    f.address = QStringLiteral("1 Main Street");
    f.city = QStringLiteral("Ottawa");
    f.province = QStringLiteral("Ontario");
    f.postalCode = QStringLiteral("K1A 0A1");
    f.country = QStringLiteral("Canada");
    return f;
}

template <typename Change> AddressFields officeWith(Change change) {
    AddressFields f = office();
    change(f);
    return f;
}

AddressFields only(QString AddressFields::*member, const char* value) {
    AddressFields f;
    f.*member = QString::fromUtf8(value);
    return f;
}

class CreateAddressTest : public ::testing::TestWithParam<BlockCase> {};

TEST_P(CreateAddressTest, BuildsTheBlock) {
    const BlockCase& c = GetParam();
    EXPECT_EQ(createAddress(c.fields, c.showContactName, c.toRTF), lines(c.expected));
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, CreateAddressTest,
    ::testing::Values(
        BlockCase{"WithContact", office(), true, false,
                  "ABC Consulting|Jane Smith|1 Main Street|Ottawa, Ontario  K1A 0A1"},
        BlockCase{"ContactNameHidden", office(), false, false,
                  "ABC Consulting|1 Main Street|Ottawa, Ontario  K1A 0A1"},
        BlockCase{"CompanyOnly", only(&AddressFields::company, "ABC Consulting"), true, false,
                  "ABC Consulting|"},
        BlockCase{"PostalCodeOnly", only(&AddressFields::postalCode, "K1A 0A1"), true, false,
                  "|K1A 0A1"},
        BlockCase{"NoAddressLineLeavesAnEmptyLine",
                  officeWith([](AddressFields& f) { f.address.clear(); }), true, false,
                  "ABC Consulting|Jane Smith||Ottawa, Ontario  K1A 0A1"},
        BlockCase{"ProvinceWithoutCity",
                  officeWith([](AddressFields& f) { f.city = QStringLiteral("  "); }), false, false,
                  "ABC Consulting|1 Main Street|Ontario  K1A 0A1"},
        BlockCase{"CityAndPostalCode", officeWith([](AddressFields& f) { f.province.clear(); }),
                  false, false, "ABC Consulting|1 Main Street|Ottawa  K1A 0A1"},
        BlockCase{"ForeignCountry",
                  officeWith([](AddressFields& f) { f.country = QStringLiteral("USA"); }), false,
                  false, "ABC Consulting|1 Main Street|Ottawa, Ontario  K1A 0A1|USA"},
        BlockCase{"UnlistedAbbreviationPrinted",
                  officeWith([](AddressFields& f) { f.country = QStringLiteral(" cdn "); }), false,
                  false, "ABC Consulting|1 Main Street|Ottawa, Ontario  K1A 0A1|cdn"},
        BlockCase{"HomeCountryLowerCase",
                  officeWith([](AddressFields& f) { f.country = QStringLiteral(" canada "); }),
                  false, false, "ABC Consulting|1 Main Street|Ottawa, Ontario  K1A 0A1"},
        BlockCase{"CountryAfterAnAddressWithoutCity", officeWith([](AddressFields& f) {
                      f.city.clear();
                      f.province.clear();
                      f.postalCode.clear();
                      f.country = QStringLiteral("Cda");
                  }),
                  false, false, "ABC Consulting|1 Main Street|"},
        BlockCase{"ValuesTrimmed",
                  officeWith([](AddressFields& f) { f.company = QStringLiteral("  ABC  "); }),
                  false, false, "ABC|1 Main Street|Ottawa, Ontario  K1A 0A1"},
        BlockCase{"Empty", AddressFields{}, true, true, ""},
        BlockCase{"Rtf", office(), true, true,
                  "ABC Consulting\\par |Jane Smith\\par |1 Main Street\\par |Ottawa, Ontario  "
                  "K1A 0A1"},
        BlockCase{"RtfLineBreaksInsideAValue", officeWith([](AddressFields& f) {
                      f.address = QStringLiteral("Suite 2\r\n1 Main\nRear");
                  }),
                  false, true,
                  "ABC Consulting\\par |Suite 2\\par |1 Main\\par |Rear\\par |Ottawa, Ontario  "
                  "K1A 0A1"},
        BlockCase{
            "RtfEscapesValues",
            only(&AddressFields::company, "C\xC3\xB4t\xC3\xA9 {\\} \xC5\x81\xC3\xB3\x64\xC5\xBA"),
            true, true, "C\\'f4t\\'e9 \\{\\\\\\} \\u321?\\'f3d\\u378?\\par |"}),
    [](const ::testing::TestParamInfo<BlockCase>& testCase) {
        return std::string(testCase.param.name);
    });

TEST(CreateAddressWithContactInfoTest, AddsContactLinesInOrder) {
    AddressFields f = only(&AddressFields::company, "ABC");
    f.webSite = QStringLiteral("abc.example");
    f.email = QStringLiteral("a@abc.example");
    f.home = QStringLiteral("4");
    f.cell = QStringLiteral("3");
    f.fax = QStringLiteral("2");
    f.phone = QStringLiteral("1");
    EXPECT_EQ(createAddressWithContactInfo(f, true, false),
              lines("ABC||Phone: 1|Fax: 2|Cell: 3|Home: 4|Email: a@abc.example|Web Site: "
                    "abc.example"));
}

TEST(CreateAddressWithContactInfoTest, RtfConvertsTheAddressLinesTwice) {
    AddressFields f = office();
    f.phone = QStringLiteral("613-555-0100");
    f.fax = QStringLiteral(" ");
    EXPECT_EQ(createAddressWithContactInfo(f, false, true),
              lines("ABC Consulting\\par \\par |1 Main Street\\par \\par |Ottawa, Ontario  K1A "
                    "0A1\\par |Phone: 613-555-0100"));
}

TEST(CreateAddressWithContactInfoTest, WithoutContactLinesConvertsOnce) {
    EXPECT_EQ(createAddressWithContactInfo(office(), false, true),
              createAddress(office(), false, true));
}

TEST(ConvertToRtfTest, MarksOnlyCrLf) {
    EXPECT_EQ(convertToRTF(lines("a|b||c\rd\ne")), lines("a\\par |b\\par |\\par |c\rd\ne"));
}

TEST(EscapeRtfTextTest, EscapesWhatRtfCannotHoldPlainly) {
    const struct {
        const char* name;
        QString in;
        QString out;
    } cases[] = {
        {"Plain", QStringLiteral("abc 123"), QStringLiteral("abc 123")},
        {"Structure", QStringLiteral("{a}\\b"), QStringLiteral("\\{a\\}\\\\b")},
        {"CodePage", QString::fromUtf8("\xE2\x82\xAC \xC2\xA0 \xC3\xBF"),
         QStringLiteral("\\'80 \\'a0 \\'ff")},
        {"OutsideCodePage", QString::fromUtf8("\xD0\x96"), QStringLiteral("\\u1046?")},
        {"Surrogates", QString::fromUtf8("\xF0\x9F\x98\x80"),
         QStringLiteral("\\u-10179?\\u-8704?")},
        {"LineBreaks", QStringLiteral("a\rb\nc\r\nd"), lines("a|b|c|d")},
        {"TabsAndControls", QStringLiteral("a\tb\x01\x7f"), QStringLiteral("a\\tab b")},
    };
    for (const auto& c : cases)
        EXPECT_EQ(escapeRTFText(c.in), c.out) << c.name;
}

TEST(CardsWithoutConnectionTest, ReturnEmptyAndWriteNothing) {
    ScopedAppContext context;
    int company = 10;
    EXPECT_EQ(createBusinessContactAddress(200, false, -1, company, true, true, true, true), "");
    EXPECT_EQ(company, 10);
    EXPECT_EQ(saveContactBusinessRTF(200, -1, 10, false), "");
    saveCompanyContactRTF(10, 200);
    saveContactBusinessRTFForAllCompanies(200, 10, QStringLiteral("card"));
}

class AddressDbTest : public ClientDbFixture {
protected:
    void SetUp() override {
        ClientDbFixture::SetUp();
        loadFixture(QStringLiteral("../address/people"));
    }

    static QString golden(const char* name) {
        QFile file(testDataPath(QStringLiteral("address/") + QLatin1String(name)));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
        return QString::fromLatin1(file.readAll());
    }
    QString companyCard(int companyID) {
        return hostValue(
                   QStringLiteral("SELECT ContactNotes FROM CompaniesNotes WHERE CompanyNum = %1")
                       .arg(companyID))
            .toString();
    }
    QString contactCard(int contactID) {
        return hostValue(
                   QStringLiteral("SELECT BusinessNotes FROM ContactsNotes WHERE ContactNum = %1")
                       .arg(contactID))
            .toString();
    }
};

TEST_F(AddressDbTest, BusinessContactAddressShapes) {
    const struct {
        const char* name;
        int contact;
        int employee;
        int companyIn;
        bool phones;
        bool email;
        bool company;
        const char* expected;
        int companyOut;
    } cases[] = {
        {"OwnAddress", 200, -1, 10, false, false, true,
         "Maple Ledger Ltd|Jane Smith|200 Elgin St|Ottawa, ON  K2P 1L5", 10},
        {"OwnAddressWithPhonesAndEmail", 200, -1, 10, true, true, false,
         "Maple Ledger Ltd\\par \\par |Jane Smith\\par \\par |200 Elgin St\\par \\par "
         "|Ottawa, ON  K2P 1L5\\par |Phone: 613-555-0110\\par |Fax: 613-555-0111\\par |Email: "
         "jane@maple.example",
         10},
        {"InheritsAddressKeepsOwnPhone", 201, -1, 10, true, false, false,
         "Luc C\\'f4t\\'e9\\par \\par |1 Main Street\\par \\par |Ottawa, Ontario  K1A "
         "0A1\\par |Phone: 555-0120\\par |Fax: 613-555-0101",
         10},
        {"VanishedCompany", 204, -1, 99, false, false, true, "Orphan Oz", -1},
        {"NoCompanyGiven", 201, -1, -1, false, false, false,
         "Luc C\\'f4t\\'e9\\par |5 Rue Priv\\'e9e\\par |Gatineau", -1},
        {"EmployeeGetsFirmForAnyOtherID", -1, 500, 10, false, false, true,
         "Dana Fox\\par |77 King St W\\par |Toronto, ON  M5K 1A1", 1},
        {"EmployeeWithTheFirmIDGetsNoFirm", -1, 500, 1, false, false, true, "Dana Fox\\par", -1},
        {"NobodyValid", 999, 998, 10, true, true, true, "", 10},
        {"AllNullContact", 205, -1, 10, true, true, true, "", 10},
    };
    for (const auto& c : cases) {
        int company = c.companyIn;
        // Plain blocks for the contact cases without phones, RTF otherwise,
        // so that both paths meet real rows.
        const bool rtf = c.phones || c.employee >= 0 || c.contact == 201;
        EXPECT_EQ(createBusinessContactAddress(c.contact, rtf, c.employee, company, true, c.phones,
                                               c.email, c.company),
                  lines(c.expected))
            << c.name;
        EXPECT_EQ(company, c.companyOut) << c.name;
    }
}

TEST_F(AddressDbTest, CardOfAContactMatchesGoldenAndIsStored) {
    const QString card = saveContactBusinessRTF(200, -1, 10, false);
    EXPECT_EQ(card, golden("card_jane_company10.rtf"));
    EXPECT_EQ(contactCard(200), card);
    EXPECT_EQ(companyCard(10), card);
}

TEST_F(AddressDbTest, DefaultOfTwoCompaniesGetsACardForEach) {
    const QString card = saveContactBusinessRTF(201, -1, 13, false);
    EXPECT_EQ(card, golden("card_luc_company13.rtf"));
    EXPECT_EQ(companyCard(13), card);
    EXPECT_EQ(companyCard(11), golden("card_luc_company11.rtf"));
    // Linked to company 10 but not its default: its card stays.
    EXPECT_EQ(companyCard(10), QStringLiteral("old card"));
    // The contact's own notes row was created for the right person.
    EXPECT_TRUE(contactCard(201).startsWith(QStringLiteral("{\\rtf1")));
}

TEST_F(AddressDbTest, SkipFlagLeavesOtherCompaniesAlone) {
    saveContactBusinessRTF(201, -1, 13, true);
    EXPECT_EQ(companyCard(13), QStringLiteral("old card"));
    EXPECT_TRUE(hostValue(QStringLiteral("SELECT ContactNotes FROM CompaniesNotes WHERE "
                                         "CompanyNum = 11"))
                    .isNull());
}

TEST_F(AddressDbTest, CardOfAnEmployeeAbroad) {
    m_context->currentCountry = 2;
    const QString card = saveContactBusinessRTF(-1, 500, -1, false);
    EXPECT_EQ(card, golden("card_employee_us.rtf"));
    EXPECT_EQ(hostValue(QStringLiteral(
                  "SELECT BusinessNotes FROM AccountantEmployeeInfo WHERE ContactID = 500")),
              card);
    EXPECT_EQ(hostValue(QStringLiteral("SELECT COUNT(*) FROM ContactsNotes WHERE ContactNum = "
                                       "500")),
              0);
}

TEST_F(AddressDbTest, CardOfAContactWithNullsEverywhere) {
    const QString header = QStringLiteral(
        "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang4105{\\fonttbl{\\f0\\fswiss\\fcharset0 "
        "Arial;}}\\viewkind4\\uc1\\pard\\f0\\fs16");
    EXPECT_EQ(saveContactBusinessRTF(205, -1, -1, false),
              header + lines("\\b Default Contact:\\b0  No\\par|\\par|}"));
    EXPECT_EQ(saveContactBusinessRTF(204, -1, 99, false),
              header +
                  lines("\\b\\pard\\fi-1450\\li1450\\ri0 Name:\\b0  Orphan Oz\\par|\\par|"
                        "\\b Default Contact:\\b0  No\\par|\\par|"
                        "\\b\\pard\\fi0\\li0\\ri0 Address:\\b0\\par|Orphan Oz\\par\\par|\\par|}"));
}

TEST_F(AddressDbTest, MissingCustomLabelRowIsCreated) {
    hostExec(QStringLiteral("DELETE FROM CustomAddressFields"));
    const QString card = saveContactBusinessRTF(200, -1, 10, true);
    EXPECT_TRUE(card.contains(lines("\\b \\b0  Blue\\par|\\b \\b0  Yes\\par|\\par|")));
    EXPECT_EQ(hostValue(QStringLiteral("SELECT COUNT(*) FROM CustomAddressFields")), 1);
}

TEST_F(AddressDbTest, CardReadsBackAsItsText) {
    RichTextBox box;
    box.setTextRTF(saveContactBusinessRTF(201, -1, 13, true));
    const QString text = box.Text();
    EXPECT_TRUE(text.contains(QString::fromUtf8("Name: Luc C\xC3\xB4t\xC3\xA9")))
        << qPrintable(text);
    EXPECT_TRUE(text.contains(QStringLiteral("Partner {tax} \\ audit"))) << qPrintable(text);
    EXPECT_TRUE(text.contains(QString::fromUtf8("\xC5\x81\xC3\xB3\x64\xC5\xBA")))
        << qPrintable(text);
    EXPECT_TRUE(text.contains(QStringLiteral("Ottawa, Ontario  K1A 0A1"))) << qPrintable(text);
}

TEST_F(AddressDbTest, CompanyCardOfNoDefaultAndOfInvalidIDs) {
    saveCompanyContactRTF(12, -1);
    EXPECT_EQ(companyCard(12), golden("no_default.rtf"));
    EXPECT_EQ(saveNoDefaultComment(), golden("no_default.rtf"));
    // No notes row, no company, or a contact ID below -1: nothing written.
    saveCompanyContactRTF(99, -1);
    saveCompanyContactRTF(10, -2);
    EXPECT_EQ(companyCard(10), QStringLiteral("old card"));
    EXPECT_EQ(hostValue(QStringLiteral("SELECT COUNT(*) FROM CompaniesNotes")), 6);
}

class DefaultContactRepairTest : public AddressDbTest {
protected:
    void TearDown() override {
        m_cards.reset();
        EXPECT_EQ(contactCardWriter(), nullptr);
        AddressDbTest::TearDown();
    }
    void installCards() { m_cards = std::make_unique<ScopedContactCardWriter>(); }

    std::unique_ptr<ScopedContactCardWriter> m_cards;
};

TEST_F(DefaultContactRepairTest, RepairWritesTheCardsOfEveryLinkedContact) {
    installCards();
    EXPECT_EQ(getDefaultContactIDFromCompanyID(14), 202);
    EXPECT_TRUE(companyCard(14).contains(QStringLiteral("Name:\\b0  Ada Park\\par")));
    EXPECT_TRUE(companyCard(14).contains(QStringLiteral("Default Contact:\\b0  Yes")));
    EXPECT_TRUE(contactCard(202).contains(QStringLiteral("Default Contact:\\b0  Yes")));
    EXPECT_TRUE(contactCard(203).contains(QStringLiteral("Name:\\b0  Ben Park\\par")));
    EXPECT_TRUE(contactCard(203).contains(QStringLiteral("Default Contact:\\b0  No")));
    EXPECT_EQ(hostValue(QStringLiteral("SELECT DefaultContactName FROM Companies WHERE CompanyID "
                                       "= 14")),
              QStringLiteral("Ada Park"));
}

TEST_F(DefaultContactRepairTest, CompanyWithoutLinksGetsTheNoDefaultCard) {
    installCards();
    EXPECT_EQ(checkForDefaultContact(12, true), -1);
    EXPECT_EQ(companyCard(12), golden("no_default.rtf"));
}

TEST_F(DefaultContactRepairTest, LinkToADeletedContactClearsTheCard) {
    installCards();
    EXPECT_EQ(getDefaultContactIDFromCompanyID(15), 299);
    EXPECT_EQ(companyCard(15), QString());
    EXPECT_EQ(hostValue(QStringLiteral("SELECT DefaultContactName FROM Companies WHERE CompanyID "
                                       "= 15")),
              QString());
    EXPECT_EQ(hostValue(QStringLiteral("SELECT COUNT(*) FROM ContactsNotes WHERE ContactNum = "
                                       "299")),
              0);
}

TEST_F(DefaultContactRepairTest, WithoutTheWriterNoCardIsWritten) {
    {
        ScopedContactCardWriter scoped;
        EXPECT_NE(contactCardWriter(), nullptr);
    }
    EXPECT_EQ(contactCardWriter(), nullptr);
    EXPECT_EQ(checkForDefaultContact(12, true), -1);
    EXPECT_EQ(getDefaultContactIDFromCompanyID(14), 202);
    EXPECT_EQ(companyCard(12), QStringLiteral("old card"));
    EXPECT_EQ(companyCard(14), QStringLiteral("old card"));
}

} // namespace
