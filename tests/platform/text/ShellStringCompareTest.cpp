#include "platform/text/ShellStringCompare.h"

#include <QString>
#include <gtest/gtest.h>

TEST(StrCmpLogicalWTest, IgnoresCaseAndComparesDigitRunsByValue) {
    struct Case {
        const char* a;
        const char* b;
        int expected;
    };
    const Case cases[] = {
        {"a", "A", 0},          {"a", "b", -1},
        {"B", "a", 1},          {"", "", 0},
        {"", "a", -1},          {"abc", "ab", 1},
        {"2", "10", -1},        {"file9", "File10", -1},
        {"file10", "file9", 1}, {"x10y2", "x10y10", -1},
        {"x007", "x7", -1},                           // same value: more leading zeros first
        {"x7", "x007", 1},      {"x007a", "x7b", -1}, // the value ties, the letters decide
        {"1", "a", -1},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(StrCmpLogicalW(QString::fromUtf8(c.a), QString::fromUtf8(c.b)), c.expected)
            << c.a << " vs " << c.b;
    }
    EXPECT_EQ(StrCmpLogicalW(QStringLiteral("\u00e9t\u00e9"), QStringLiteral("\u00c9T\u00c9")), 0);
    EXPECT_NE(StrCmpLogicalW(QStringLiteral("\u00e9"), QStringLiteral("e")), 0);
}
