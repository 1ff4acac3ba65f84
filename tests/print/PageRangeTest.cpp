#include "print/PageRange.h"

#include <gtest/gtest.h>

namespace {

struct RangeCase {
    const char* text;
    int from; // 0: refused
    int to;
    const char* errorPart;
};

class ParsePageRange : public testing::TestWithParam<RangeCase> {};

TEST_P(ParsePageRange, ReadsOrRefusesWithAClearMessage) {
    const RangeCase c = GetParam();
    const PageRangeResult result = parsePageRange(QString::fromLatin1(c.text));
    if (c.from == 0) {
        EXPECT_FALSE(result.range) << c.text;
        EXPECT_TRUE(result.error.contains(QLatin1String(c.errorPart)))
            << result.error.toStdString();
    } else {
        ASSERT_TRUE(result.range) << c.text << ": " << result.error.toStdString();
        EXPECT_EQ(result.range->fromPage, c.from);
        EXPECT_EQ(result.range->toPage, c.to);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Ranges, ParsePageRange,
    testing::Values(
        RangeCase{"3", 3, 3, ""}, RangeCase{"2-5", 2, 5, ""}, RangeCase{" 2 - 5 ", 2, 5, ""},
        RangeCase{"4-", 4, 0, ""}, RangeCase{"-2", 1, 2, ""}, RangeCase{"1-99999", 1, 99999, ""},
        RangeCase{"7-3", 0, 0, "runs backwards: write the first page first (3-7)"},
        RangeCase{"0", 0, 0, "numbered from 1"}, RangeCase{"0-4", 0, 0, "numbered from 1"},
        RangeCase{"2-0", 0, 0, "numbered from 1"}, RangeCase{"-2-5", 0, 0, "numbered from 1"},
        RangeCase{"", 0, 0, "not a page range"}, RangeCase{"two", 0, 0, "not a page range"},
        RangeCase{"1,3", 0, 0, "not a page range"}, RangeCase{"99999999999", 0, 0, "too large"}));

TEST(FitPageRange, CutsTheEndToTheDocumentAndRefusesAStartBeyondIt) {
    const PageRangeResult all = fitPageRange(PageRange{1, 99999}, 3);
    ASSERT_TRUE(all.range);
    EXPECT_EQ(all.range->toPage, 3);
    const PageRangeResult open = fitPageRange(PageRange{2, 0}, 3);
    ASSERT_TRUE(open.range);
    EXPECT_EQ(open.range->toPage, 3);
    const PageRangeResult beyond = fitPageRange(PageRange{5, 9}, 3);
    EXPECT_FALSE(beyond.range);
    EXPECT_EQ(beyond.error, QStringLiteral("The document has only 3 pages: there is no page 5."));
    EXPECT_EQ(fitPageRange(PageRange{2, 2}, 1).error,
              QStringLiteral("The document has only 1 page: there is no page 2."));
}

TEST(Copies, OneToNineHundredNinetyNine) {
    QString error;
    EXPECT_EQ(parseCopies(QStringLiteral("2"), &error), 2);
    EXPECT_EQ(parseCopies(QStringLiteral("999"), &error), 999);
    for (const char* bad : {"0", "1000", "-1", "two", ""}) {
        error.clear();
        EXPECT_FALSE(parseCopies(QString::fromLatin1(bad), &error)) << bad;
        EXPECT_FALSE(error.isEmpty()) << bad;
    }
    EXPECT_EQ(*checkCopies(1000),
              QStringLiteral("The number of copies must be from 1 to 999; 1000 was asked for."));
}

} // namespace
