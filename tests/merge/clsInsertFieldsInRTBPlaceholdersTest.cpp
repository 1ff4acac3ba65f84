#include "context/AppContext.h"
#include "merge/MergeTestDatabase.h"
#include "merge/clsInsertFieldsInRTB.h"
#include "platform/MsgboxClass.h"
#include "platform/errorClass.h"

#include <gtest/gtest.h>

namespace {

using Inserter = clsInsertFieldsInRTB;

QString rtf(const char* body) {
    QString text = QString::fromUtf8(body);
    text.replace(QStringLiteral("<"), QStringLiteral("\\'ab"));
    text.replace(QStringLiteral(">"), QStringLiteral("\\'bb"));
    return QStringLiteral("{\\rtf1\\ansi \\pard ") + text + QStringLiteral("\\par\r\n}");
}

struct Checked {
    ScopedAppContext context;
    ScriptedMsgbox msgbox;
    Inserter inserter;
    Checked(int type = 1, short province = 3) {
        context->msgbox = &msgbox;
        context->currentProvince = province;
        context->clock.setFixed(QDateTime(QDate(2024, 3, 5), QTime(9, 0)));
        inserter.createDefaultFieldListStructure(informationKindFromInt(type), true, false);
    }
};

TEST(clsInsertFieldsInRTBPlaceholdersTest, ValidationFindsTheFirstFaultWithItsMessage) {
    const QString missingOpen = QStringLiteral(
        "You are missing your opening brackets, '\u00AB' in one of your expressions");
    const struct {
        const char* name;
        const char* body;
        int type;
        short province;
        bool fault;
        QString message;
    } cases[] = {
        {"Clean",
         "<Company Name> <(Year End Date, mmmm d yyyy)> <(Todays Date, d)>",
         1,
         3,
         false,
         {}},
        {"ClosingBeforeOpening", "> <Company Name>", 1, 3, true, missingOpen},
        {"OpeningWithoutClosing", "<Company Name", 1, 3, true, missingOpen},
        {"ClosingOnlyPasses", "text > more", 1, 3, false, {}},
        {"StrayClosingAfterAFieldPasses", "<Company Name> >", 1, 3, false, {}},
        {"ClosingBeforeTheSecondField", "<Company Name> > <City>", 1, 3, true, missingOpen},
        {"MissingCloseRound", "<(Year End Date, mmmm d yyyy>", 1, 3, true,
         "You are missing the closing round bracket, ')' in one of your date expressions"},
        {"MissingOpenRound", "<Year End Date, mmmm d yyyy)>", 1, 3, true,
         "You are missing the opening round bracket, '(' in one of your date expressions"},
        {"FormatCaseMatters", "<(Year End Date, MMMM D YYYY)>", 1, 3, true,
         "The date format of: 'MMMM D YYYY' is not valid.  Please see help for valid date "
         "formats."},
        {"NoBlankAfterCommaPasses", "<(Year End Date,mmmm d yyyy)>", 1, 3, false, {}},
        {"PlainDateFieldPasses", "<Year End Date>", 1, 3, false, {}},
        {"TodaysDateAnyCase", "<todays date>", 1, 3, false, {}},
        {"Body41Characters", "<abcdefghijabcdefghijabcdefghijabcdefghijk>", 1, 3, true,
         QStringLiteral("You are missing a closing bracket, '\u00BB' in one of your expressions.  "
                        "Make sure you have a bracket immediately before and after a field.\r\n"
                        "\r\neg. \u00ABCompany Name\u00BB")},
        {"UnknownName", "<Company Nam>", 1, 3, true,
         QStringLiteral("The Quillmere Pad did not recognize: \u00ABCompany Nam\u00BB as a valid "
                        "placeholder field name.")},
        {"ContactDocumentHasNoAccounting", "<HST Number>", 3, 3, true,
         QStringLiteral("The Quillmere Pad did not recognize: \u00ABHST Number\u00BB as a valid "
                        "placeholder field name.")},
        {"QuebecHasNoGst", "<GST Number>", 1, 8, true,
         QStringLiteral("The Quillmere Pad did not recognize: \u00ABGST Number\u00BB as a valid "
                        "placeholder field name.")},
        {"QuebecKnowsQst", "<QST Number>", 1, 8, false, {}},
        {"Remmit5IsTheSpelling", "<Custom Task Field 5>", 4, 3, true,
         QStringLiteral("The Quillmere Pad did not recognize: \u00ABCustom Task Field 5\u00BB as a "
                        "valid placeholder field name.")},
        {"UpperCaseEscapes", "\\'ABCompany Name\\'BB", 1, 3, false, {}},
    };
    for (const auto& c : cases) {
        Checked k(c.type, c.province);
        EXPECT_EQ(k.inserter.testRTBComment(rtf(c.body), true, true, false), c.fault) << c.name;
        EXPECT_EQ(k.inserter.lastTestMessage(), c.message) << c.name;
        EXPECT_EQ(k.msgbox.texts(), c.fault ? QStringList{c.message} : QStringList{}) << c.name;
    }
}

TEST(clsInsertFieldsInRTBPlaceholdersTest, ValidationInPlainTextAndQuietly) {
    Checked k;
    EXPECT_FALSE(k.inserter.testRTBComment(QStringLiteral("Dear \u00ABCompany Name\u00BB"), false,
                                           true, false));
    EXPECT_TRUE(k.inserter.testRTBComment(QStringLiteral("\u00ABWho\u00BB"), false, false, false));
    EXPECT_FALSE(k.inserter.testRTBComment(QStringLiteral("\u00ABWho\u00BB"), false, false, true));
    EXPECT_TRUE(k.msgbox.texts().isEmpty());
    // A dated form without a comma cannot be read: a run-time fault.
    EXPECT_THROW(k.inserter.testRTBComment(rtf("<(Year End Date)>"), true, false, false), QmError);
}

TEST(clsInsertFieldsInRTBPlaceholdersTest, ReplaceTextAddsABlankUnlessOneStandsBefore) {
    const struct {
        const char* text;
        const char* value;
        bool inRTF;
        const char* expected;
    } cases[] = {
        {"a \\'abX\\'bb b", "V", true, "a V b"},
        {"\\b\\'abX\\'bb\\b0", "V", true, "\\b V\\b0"},
        {"\\b\\'abx\\'bb and \\'abX\\'bb", "V", true, "\\b V and  V"},
        {"nothing here", "V", true, "nothing here"},
        {"{\\'abX\\'bb}", "a\\b{c}", true, "{ a\\b{c}}"},
        {"\u00ABx\u00BB and \u00ABX\u00BB", "V", false, "V and V"},
    };
    for (const auto& c : cases) {
        QString text = QString::fromUtf8(c.text);
        EXPECT_FALSE(Inserter::replaceText(text, QStringLiteral("\u00ABX\u00BB"),
                                           QString::fromUtf8(c.value), c.inRTF));
        EXPECT_EQ(text, QString::fromUtf8(c.expected)) << c.text;
    }
}

TEST(clsInsertFieldsInRTBPlaceholdersTest, UnfoundPlaceholdersAreBlankedOnlyInRawForm) {
    QString plain = QStringLiteral("a \u00ABX\u00BB b \u00ABY\u00BB \u00ABX\u00BB c");
    Inserter::replaceUnfoundMergeFieldsWithBlanks(plain);
    EXPECT_EQ(plain, "a  b   c");
    QString escaped = QStringLiteral("a \\'abX\\'bb");
    Inserter::replaceUnfoundMergeFieldsWithBlanks(escaped);
    EXPECT_EQ(escaped, "a \\'abX\\'bb");
    QString broken = QStringLiteral("a \u00ABX");
    EXPECT_THROW(Inserter::replaceUnfoundMergeFieldsWithBlanks(broken), QmError);
    const QString text = QStringLiteral("x\\par \r\ny");
    EXPECT_EQ(Inserter::removeBlankLinesFromRTFText(text), text);
    EXPECT_EQ(Inserter::convertFieldName(QStringLiteral("\u00ABA\u00BB\u00AB")),
              "\\'abA\\'bb\\'ab");
}

TEST(clsInsertFieldsInRTBPlaceholdersTest, OpeningRewritesOldAndRegionalNames) {
    const QChar o(0x00AB);
    const QChar c(0x00BB);
    auto g = [&](const char* name) -> QString { return o + QString::fromUtf8(name) + c; };
    const struct {
        const char* name;
        int country;
        short province;
        QString input;
        QString expected;
    } cases[] = {
        {"Digraphs", 1, 3, "<<Company Name>> <<(Task Date, Short Date)>>",
         g("Company Name") + " " + g("(Task Date, dd/mm/yy)")},
        {"LongAndMedium", 1, 3, "Long Date|Medium Date", "dddd, mmmm d yyyy|mmm d yyyy"},
        {"OldNames", 1, 3,
         g("Notified Date") + g("Remittance Weekday Due Date") + g("Custom Remitt Field 3") +
             g("Task Date"),
         g("Calendar Date") + g("Task Calendar Date") + g("Custom Task Field 3") +
             g("Task Due Date")},
        {"OldNamesEscaped", 1, 3, "\\'abContact Full Name\\'bb \\'abTask Date,",
         "\\'abContact Display Name\\'bb \\'abTask Due Date,"},
        {"DatedTaskDateOnlyWithoutRound", 1, 3, g("(Task Date, d)"), g("(Task Date, d)")},
        {"OntarioWorkerNames", 1, 3,
         g("WCB Number") + g("NEQ Number") + g("wcb premium rate") + g("Quebec ID Number"),
         g("WSIB Number") + g("WSIB Number") + g("WSIB Premium Rate") + g("ON Corp. MCBS Number")},
        {"OntarioHstEndsAsGst", 1, 3, g("HST Number") + g("GST Number"),
         g("GST Number") + g("GST Number")},
        {"AlbertaCorpTax", 1, 0,
         g("ON Corp. Tax Number") + g("BC Corp. Tax Number") + g("WSIB Number"),
         g("Alberta Corp. Tax Number") + g("Alberta Corp. Tax Number") + g("WCB Number")},
        {"Quebec", 1, 8,
         g("WSIB Number") + g("WSIB Premium Rate") + g("ON Corp. MCBS Number") +
             g("wsib firm number"),
         g("NEQ Number") + g("CSST Premium Rate") + g("Quebec ID Number") + g("WSIB Firm Number")},
        {"NovaScotiaHst", 1, 9, g("GST Number"), g("HST Number")},
        {"NewBrunswick", 1, 10, g("WCB Number") + g("WSIB Premium Rate"),
         g("WHSCC Number") + g("WHSCC Premium Rate")},
        {"CanadaListC", 1, 3, g("State") + g("Contact Home Zip Code") + g("Spouse SSN"),
         g("Province") + g("Contact Home Postal Code") + g("Spouse SIN")},
        {"UnitedStatesListD", 2, 3,
         g("Province") + g("Your Postal Code") + g("Contact SIN") + g("WCB Number"),
         g("State") + g("Your Zip Code") + g("Contact SSN") + g("WCB Number")},
        {"RegionalNotEscaped", 1, 3, "\\'abState\\'bb", "\\'abState\\'bb"},
        {"OtherCountry", 3, 3, g("State") + g("HST Number"), g("State") + g("HST Number")},
    };
    for (const auto& t : cases) {
        ScopedAppContext context;
        context->currentCountry = t.country;
        context->currentProvince = t.province;
        context->clock.setFixed(QDateTime(QDate(2024, 3, 5), QTime(9, 0)));
        Inserter inserter;
        EXPECT_EQ(inserter.convertProvinceFields(t.input), t.expected) << t.name;
    }
}

TEST(clsInsertFieldsInRTBPlaceholdersTest, EmptyCatalogueAndNoRecordLeaveTheTextAlone) {
    ScopedAppContext context;
    Inserter inserter;
    const QString text = rtf("<Company Name>");
    EXPECT_EQ(inserter.parseRTBComment(text, -1, -1, -1, -1, -1, -1, -1, false, true, true), text);
    EXPECT_TRUE(inserter.fieldTable().isEmpty());
}

TEST(clsInsertFieldsInRTBPlaceholdersTest, SamplesFillATemplateWithoutData) {
    Checked k(1);
    const QString out = k.inserter.parseRTBComment(
        rtf("<Company Name>, <(Todays Date, mmmm d, yyyy)>, <(Year End Date, dd/mm/yy)>, "
            "<Contact & Spouse Name>"),
        -1, -1, -1, -1, -1, -1, -1, true, true, false);
    EXPECT_EQ(out, rtf("ABC Consulting, March 5, 2024, 31/Mar/24, John & Jane Smith"));
}

} // namespace
