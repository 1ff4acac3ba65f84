#include "data/RecordsetFilter.h"

#include "data/Recordset.h"
#include "platform/errorClass.h"

#include <QStringList>
#include <gtest/gtest.h>

namespace {

// Five clients with the kinds of value the engine hands back: text, numbers
// stored as integers or reals, a Yes/No column, stored dates, and Nulls.
Recordset clients() {
    Recordset rs;
    rs.columns = {{"Name", "Clients", false, false},
                  {"Balance", "Clients", false, false},
                  {"Active", "Clients", true, false},
                  {"Due", "Clients", false, true},
                  {"City", "Clients", false, false}};
    const QVariant null;
    rs.rows = {
        {"Acme Widgets", 120, 1, "2024-03-05", "Leeds"},
        {"beta {Braces}", -4.5, 0, "2024-03-05 14:30:00", null},
        {"O'Brien & Sons", 0, -1, "2023-12-31", "leeds"},
        {"Gamma Ltd", null, null, null, "York"},
        {"50% Off", 12.25, 0, "2025-01-01", ""},
    };
    rs.buildColumnLookup();
    return rs;
}

// The names of the rows the filter lets through.
QStringList matching(const QString& filter) {
    Recordset rs = clients();
    RecordsetFilter f(filter);
    f.bind(rs);
    QStringList names;
    for (int r = 0; r < rs.rowCount(); ++r) {
        if (f.matches(rs, r)) {
            names << rs.value(r, 0).toString();
        }
    }
    return names;
}

struct Case {
    const char* filter;
    QStringList names;
};

void runCases(const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        SCOPED_TRACE(c.filter);
        EXPECT_EQ(matching(QString::fromUtf8(c.filter)), c.names);
    }
}

const QString acme = QStringLiteral("Acme Widgets");
const QString beta = QStringLiteral("beta {Braces}");
const QString obrien = QStringLiteral("O'Brien & Sons");
const QString gammaLtd = QStringLiteral("Gamma Ltd");
const QString off = QStringLiteral("50% Off");

} // namespace

TEST(RecordsetFilterTest, TextComparisons) {
    runCases({
        {"City = 'LEEDS'", {acme, obrien}},
        {"City = \"leeds\"", {acme, obrien}},
        {"Name = 'o''brien & sons'", {obrien}},
        {"City <> 'Leeds'", {gammaLtd, off}},
        {"City = ''", {off}},
        {"City > 'M'", {gammaLtd}},
        {"[City] = 'York'", {gammaLtd}},
        {"Clients.City = 'York'", {gammaLtd}},
        {"city = 'york' or name like 'a*'", {acme, gammaLtd}},
    });
}

TEST(RecordsetFilterTest, NullMatchesOnlyEqualsNull) {
    runCases({
        {"City = Null", {beta}},
        {"City <> Null", {acme, obrien, gammaLtd, off}},
        {"Balance < 1000", {acme, beta, obrien, off}},
        {"Due <= #12/31/2099#", {acme, beta, obrien, off}},
    });
}

TEST(RecordsetFilterTest, NumbersAndYesNo) {
    runCases({
        {"Balance > 10", {acme, off}},
        {"Balance = 0", {obrien}},
        {"Balance < 0", {beta}},
        {"Balance >= -4.5", {acme, beta, obrien, off}},
        {"Balance > +10.5", {acme, off}},
        {"Balance = '120'", {acme}},
        {"Active = True", {acme, obrien}},
        {"Active = false", {beta, off}},
        {"Active <> True", {beta, off}},
    });
}

TEST(RecordsetFilterTest, Dates) {
    runCases({
        {"Due = #3/5/2024#", {acme}},
        {"Due > #3/5/2024#", {beta, off}},
        {"Due < #2024-01-01#", {obrien}},
        {"Due >= #3/5/2024 2:30 PM#", {beta, off}},
        {"Due LIKE '2024*'", {acme, beta}},
    });
}

TEST(RecordsetFilterTest, LikePatterns) {
    runCases({
        {"Name LIKE 'a*'", {acme}},
        {"Name LIKE 'A%'", {acme}},
        {"Name LIKE '*S'", {acme, obrien}},
        {"Name LIKE '?amma*'", {gammaLtd}},
        {"Name LIKE '_amma ___'", {gammaLtd}},
        {"Name LIKE 'acme'", {}},
        {"Name LIKE '*{*}'", {beta}},
        {"Name LIKE '*(*'", {}},
        {"Name LIKE '*''*'", {obrien}},
        {"Name LIKE '*.*'", {}},
    });
}

TEST(RecordsetFilterTest, AndBindsTighterThanOr) {
    runCases({
        {"City = 'York' OR City = 'Leeds' AND Balance > 100", {acme, gammaLtd}},
        {"(City = 'York' OR City = 'Leeds') AND Balance > 100", {acme}},
        {"Balance > 100 AND City = 'Leeds' OR Name LIKE 'b*'", {acme, beta}},
        {"NOT (City = 'Leeds') AND Balance >= 0", {off}},
        {"NOT NOT Active = True", {acme, obrien}},
        {"((Balance = 0))", {obrien}},
    });
}

TEST(RecordsetFilterTest, EmptyFilterMatchesEverything) {
    for (const char* text : {"", "   "}) {
        SCOPED_TRACE(text);
        EXPECT_TRUE(RecordsetFilter(QString::fromLatin1(text)).isEmpty());
        EXPECT_EQ(matching(QString::fromLatin1(text)),
                  (QStringList{acme, beta, obrien, gammaLtd, off}));
    }
}

TEST(RecordsetFilterTest, SyntaxErrorsNameTheFault) {
    const struct {
        const char* filter;
        const char* message;
    } cases[] = {
        {"City = 'York", "unbalanced quote"},
        {"(City = 'York'", "unbalanced parenthesis"},
        {"City = 'York')", "unexpected text"},
        {"Due = #2/30/2024#", "bad date"},
        {"Due = #3/5/2024", "unterminated date"},
        {"[City = 'x'", "unterminated column name"},
        {"City = ", "expects a value"},
        {"City = York", "expects a value"},
        {"City 'York'", "expects an operator"},
        {"City = 'a' AND", "expects a column name"},
        {"= 'a'", "expects a column name"},
        {"City LIKE 5", "LIKE needs a text pattern"},
        {"Balance > Null", "Null can only be compared"},
        {"City ; 'x'", "unexpected character"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.filter);
        try {
            RecordsetFilter filter{QString::fromLatin1(c.filter)};
            ADD_FAILURE() << "no error";
        } catch (const QmError& e) {
            EXPECT_EQ(e.number(), QmError::DatabaseError);
            EXPECT_TRUE(e.description().contains(QLatin1String(c.message)))
                << e.description().toStdString();
        }
    }
}

TEST(RecordsetFilterTest, UnknownColumnFailsWhenBound) {
    Recordset rs = clients();
    RecordsetFilter filter(QStringLiteral("City = 'York' OR Country = 'UK'"));
    try {
        filter.bind(rs);
        ADD_FAILURE() << "no error";
    } catch (const QmError& e) {
        EXPECT_EQ(e.number(), QmError::DatabaseError);
        EXPECT_TRUE(e.description().contains(u"Country")) << e.description().toStdString();
    }
}
