#include "merge/MergeSubstitution.h"

#include "context/AppContext.h"
#include "merge/ReferenceSubstitution.h"
#include "merge/clsInsertFieldsInRTB.h"
#include "platform/FieldTable.h"
#include "platform/text/VBFormat.h"

#include <QRandomGenerator>
#include <gtest/gtest.h>

namespace {

const QChar kOpen(0x00AB);
const QChar kClose(0x00BB);

// Values held in memory; every request is logged so that the order and
// number of lookups can be compared.
class MemoryValues : public PlaceholderValues {
public:
    QHash<QString, QString> text;
    QHash<QString, QDate> dates;
    QStringList log;

    QString dataField(const QString& name) override {
        log << QStringLiteral("F:") + name;
        return text.value(name);
    }
    QString dataDateField(const QString& name, const QString& format) override {
        log << QStringLiteral("D:") + name + QLatin1Char('|') + format;
        if (name.compare(QLatin1String("Todays Date"), Qt::CaseInsensitive) == 0) {
            return VBFormat::formatDate(QDate(2024, 3, 5), format);
        }
        const QDate date = dates.value(name);
        return date.isValid() ? VBFormat::formatDate(date, format) : QString();
    }
};

FieldTable catalogueForType(int type) {
    ScopedAppContext context;
    context->clock.setFixed(QDateTime(QDate(2024, 3, 5), QTime(9, 0)));
    clsInsertFieldsInRTB inserter;
    inserter.createDefaultFieldListStructure(informationKindFromInt(type), true, false);
    FieldTable copy;
    inserter.fieldTable().copyEntireListToSecondList(copy);
    // Two rows of one name, as custom labels can make them: the first wins.
    copy.addRow(copy.rowCount() + 1, {"Custom1", "Company Name", "CompanyInfo", "Text", ""});
    return copy;
}

// Random RTF-like templates built from catalogue names, odd spellings and
// the control words a writer puts around them.
QString generateTemplate(QRandomGenerator& rng, const FieldTable& table) {
    const QStringList formats = MergeSyntax::dateFormats();
    const QStringList extras = {
        "Contact Full Name", "Todays Date",   "Unknown Field", "company name",
        "COMPANY NAME",      "Year End Date", " Number",       "(Year End Date,mmmm d yyyy)"};
    const QStringList glue = {" ", "\\b ",  "\\b",  "\\par\r\n", "\\pard ", "x",
                              "",  "\\'e9", "\\\\", "{",         "}",       "\\i0 "};
    QString text = QStringLiteral("{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0 Arial;}}"
                                  "\\viewkind4\\uc1\\pard\\f0\\fs20 ");
    const int pieces = 5 + int(rng.bounded(40));
    for (int i = 0; i < pieces; ++i) {
        text += glue.at(int(rng.bounded(glue.size())));
        QString body;
        const int pick = int(rng.bounded(10));
        if (pick < 5) {
            const int row = 1 + int(rng.bounded(table.rowCount()));
            body = table.value(row, 2);
            if (table.value(row, 4) == QLatin1String("Date") && rng.bounded(4) != 0) {
                body = QStringLiteral("(") + body + QStringLiteral(", ") +
                       formats.at(int(rng.bounded(formats.size()))) + QStringLiteral(")");
            }
        } else if (pick < 7) {
            body = QStringLiteral("(Todays Date, ") + formats.at(int(rng.bounded(formats.size()))) +
                   QStringLiteral(")");
        } else {
            body = extras.at(int(rng.bounded(extras.size())));
        }
        const int spelling = int(rng.bounded(12));
        if (spelling == 0) {
            text += QStringLiteral("\\'AB") + body + QStringLiteral("\\'BB");
        } else if (spelling == 1) {
            text += kOpen + body + kClose;
        } else if (spelling == 2) {
            text += QStringLiteral("\\'ab") + body; // no closing escape here
        } else if (spelling == 3) {
            text += QStringLiteral("\\'ab\\'ab") + body + QStringLiteral("\\'bb\\'bb");
        } else {
            text += QStringLiteral("\\'ab") + body + QStringLiteral("\\'bb");
        }
        if (rng.bounded(3) == 0) {
            text += QStringLiteral(" words here");
        }
    }
    text += QStringLiteral("\\'bb\\par\r\n}");
    return text;
}

void fillValues(QRandomGenerator& rng, const FieldTable& table, MemoryValues& values) {
    const QStringList pool = {
        "",       "Acme",       "O'Brien", "a\\b", "{x}",    "12 Main St, \r\nUnit 4", "  ",
        "1250.5", "-3",         "True",    "0",    "Number", "\\'abCity\\'bb",         "\\",
        "'ab",    "Jos\xc3\xa9"};
    for (int row = 1; row <= table.rowCount(); ++row) {
        const QString name = table.value(row, 2);
        if (rng.bounded(5) != 0) {
            values.text.insert(name,
                               QString::fromUtf8(pool.at(int(rng.bounded(pool.size()))).toUtf8()));
        }
        if (rng.bounded(3) != 0) {
            values.dates.insert(name, QDate(2000 + int(rng.bounded(30)), 1 + int(rng.bounded(12)),
                                            1 + int(rng.bounded(28))));
        }
    }
}

TEST(MergeSubstitutionTest, FastPathMatchesTheStepByStepProcedureOnGeneratedTemplates) {
    for (int type : {2, 4, 5, 6}) {
        const FieldTable table = catalogueForType(type);
        MergeSubstitution fast;
        for (quint32 seed = 1; seed <= 150; ++seed) {
            QRandomGenerator rng(seed * 7919u + quint32(type));
            const QString text = generateTemplate(rng, table);
            MemoryValues values;
            fillValues(rng, table, values);
            for (bool contactForCompany : {false, true}) {
                MemoryValues expectedValues = values;
                QString expected;
                bool referenceFailed = false;
                try {
                    expected =
                        referenceSubstitution(text, table, contactForCompany, expectedValues);
                } catch (const std::exception&) {
                    referenceFailed = true;
                }
                MemoryValues actualValues = values;
                QString actual;
                bool fastFailed = false;
                try {
                    fast.substitute(text, table, quint64(type), contactForCompany, actualValues,
                                    actual);
                } catch (const std::exception&) {
                    fastFailed = true;
                }
                ASSERT_EQ(fastFailed, referenceFailed) << "type " << type << " seed " << seed;
                if (!referenceFailed) {
                    ASSERT_EQ(actual, expected) << "type " << type << " seed " << seed << "\n"
                                                << text.toStdString();
                }
                ASSERT_EQ(actualValues.log, expectedValues.log)
                    << "type " << type << " seed " << seed;
            }
        }
    }
}

struct BlankCase {
    const char* name;
    const char* text;
    const char* expected;
};

TEST(MergeSubstitutionTest, BlankBeforeTheValueFollowsTheFirstOccurrence) {
    FieldTable table;
    table.addRow(1, {"CompanyName", "Company Name", "CompanyInfo", "Text", ""});
    table.addRow(2, {"City", "City", "CompanyInfo", "Text", ""});
    const BlankCase cases[] = {
        {"AfterBlank", "x \\'abCompany Name\\'bb.", "x Acme."},
        {"AfterControlWord", "\\b\\'abCompany Name\\'bb.", "\\b Acme."},
        {"AfterPard", "\\pard \\'abCompany Name\\'bb", "\\pard Acme"},
        {"FirstDecidesForAll", "\\b\\'abCity\\'bb and \\'abCity\\'bb", "\\b Paris and  Paris"},
        {"EmptyValueLeavesTheBlankItAdds", "\\b\\'abCompany Name\\'bb\\'abNothing\\'bb",
         "\\b Acme\\'abNothing\\'bb"},
        {"EarlierRowDecidesTheLaterOnesBlank", "x\\'abCompany Name\\'bb\\'abCity\\'bb",
         "x Acme Paris"},
        {"UpperCaseEscapesAreReplacedWhenAnotherIsPresent", "\\'ABCity\\'BB \\'abCity\\'bb",
         " Paris  Paris"},
        {"UpperCaseEscapesAloneStay", "\\'ABCity\\'BB", "\\'ABCity\\'BB"},
    };
    for (const BlankCase& c : cases) {
        MemoryValues values;
        values.text = {{"Company Name", "Acme"}, {"City", "Paris"}};
        MergeSubstitution fast;
        QString result;
        fast.substitute(QString::fromUtf8(c.text), table, 1, false, values, result);
        EXPECT_EQ(result, QString::fromUtf8(c.expected)) << c.name;
    }
}

TEST(MergeSubstitutionTest, ReportsPlaceholdersThatGotNoValue) {
    FieldTable table;
    table.addRow(1, {"CompanyName", "Company Name", "CompanyInfo", "Text", ""});
    table.addRow(2, {"City", "City", "CompanyInfo", "Text", ""});
    table.addRow(3, {"YearEndDate", "Year End Date", "ClientInfo", "Date", ""});
    MemoryValues values;
    values.text = {{"Company Name", "Acme"}};
    QStringList empty;
    QString result;
    MergeSubstitution fast;
    fast.substitute(QStringLiteral("\\'abCompany Name\\'bb \\'abCity\\'bb "
                                   "\\'ab(Year End Date, yyyy)\\'bb"),
                    table, 1, false, values, result, &empty);
    EXPECT_EQ(empty, QStringList({"City", "(Year End Date, yyyy)"}));
    EXPECT_EQ(result, QStringLiteral(" Acme  "));
}

TEST(MergeSubstitutionTest, LooksUpOnlyWhatTheTemplateHolds) {
    const FieldTable table = catalogueForType(2);
    MemoryValues values;
    MergeSubstitution fast;
    QString result;
    fast.substitute(QStringLiteral("Dear \\'abContact First Name\\'bb, \\'ab(Todays Date, "
                                   "dd/mm/yy)\\'bb \\'ab(Year End Date, dd/mm/yy)\\'bb"),
                    table, 7, false, values, result);
    EXPECT_EQ(values.log, QStringList({"D:Todays Date|dd/mm/yy", "F:Contact First Name",
                                       "D:Year End Date|dd/mmm/yy"}));
}

} // namespace
