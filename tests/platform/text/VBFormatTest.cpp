#include "platform/text/VBFormat.h"

#include <gtest/gtest.h>

namespace {

struct DateCase {
    const char* name;
    const char* format;
    const char* expected;
};

// Tuesday 5 March 2024, 14:07:09, and a morning time of the old "time only"
// storage.
const QDateTime kAfternoon(QDate(2024, 3, 5), QTime(14, 7, 9));

class DateFormats : public ::testing::TestWithParam<DateCase> {};

TEST_P(DateFormats, FormatsTheMomentAsTheOldRuntimeDid) {
    const DateCase& c = GetParam();
    EXPECT_EQ(VBFormat::formatDate(kAfternoon, QString::fromUtf8(c.format)),
              QString::fromUtf8(c.expected));
}

INSTANTIATE_TEST_SUITE_P(
    AllMergeFormats, DateFormats,
    ::testing::Values(
        DateCase{"LongWithComma", "dddd, mmmm d yyyy", "Tuesday, March 5 2024"},
        DateCase{"LongNoComma", "dddd mmmm d yyyy", "Tuesday March 5 2024"},
        DateCase{"MonthDayCommaYear", "mmmm d, yyyy", "March 5, 2024"},
        DateCase{"MonthDayYear", "mmmm d yyyy", "March 5 2024"},
        DateCase{"AbbrevMonth", "mmm d yyyy", "Mar 5 2024"},
        DateCase{"DayMonthYearDigits", "dd/mm/yy", "05/03/24"},
        DateCase{"DayAbbrevMonthYear", "dd/mmm/yy", "05/Mar/24"},
        DateCase{"MonthDayYearDigits", "mm/dd/yy", "03/05/24"}, DateCase{"DayAlone", "d", "5"},
        DateCase{"WeekdayAlone", "dddd", "Tuesday"}, DateCase{"MonthAlone", "mmmm", "March"},
        DateCase{"AbbrevMonthAlone", "mmm", "Mar"}, DateCase{"YearAlone", "yyyy", "2024"},
        DateCase{"MonthYear", "mmmm yyyy", "March 2024"}, DateCase{"MonthDay", "mmmm d", "March 5"},
        DateCase{"SampleForm", "mmm d, yyyy", "Mar 5, 2024"},
        DateCase{"TimeLowerMarker", "h:Nn am/pm", "2:07 pm"},
        DateCase{"TimeUpperMarker", "hh:mm AMPM", "02:07 PM"},
        DateCase{"MinutesAfterHourNotMonth", "h:mm", "14:07"},
        DateCase{"UpperCaseTokens", "MMMM D YYYY", "March 5 2024"},
        DateCase{"QuotedLiteral", "\"on\" d", "on 5"}),
    [](const ::testing::TestParamInfo<DateCase>& p) { return std::string(p.param.name); });

TEST(VBFormatTest, TwelveHourClockAroundMidnightAndNoon) {
    EXPECT_EQ(VBFormat::formatDate(QDateTime(QDate(1899, 12, 30), QTime(0, 5)), "h:Nn am/pm"),
              "12:05 am");
    EXPECT_EQ(VBFormat::formatDate(QDateTime(QDate(1899, 12, 30), QTime(12, 0)), "h:Nn am/pm"),
              "12:00 pm");
    EXPECT_EQ(VBFormat::formatDate(QDateTime(QDate(1899, 12, 30), QTime(9, 30)), "h:Nn AM/PM"),
              "9:30 AM");
}

TEST(VBFormatTest, MoneyFormat) {
    const struct {
        double value;
        const char* expected;
    } cases[] = {{0.0, "$0.00"},
                 {25.0, "$25.00"},
                 {1234.5, "$1,234.50"},
                 {-1234.5, "$-1,234.50"},
                 {1234567.891, "$1,234,567.89"},
                 {0.005, "$0.01"},
                 {-0.004, "$0.00"},
                 {999.995, "$1,000.00"}};
    for (const auto& c : cases) {
        EXPECT_EQ(VBFormat::formatMoney(c.value), QString::fromUtf8(c.expected)) << c.value;
    }
}

TEST(VBFormatTest, DateConversionOfStoredAndSampleValues) {
    const struct {
        const char* text;
        std::optional<QDateTime> expected;
    } cases[] = {
        {"2024-03-31", QDateTime(QDate(2024, 3, 31), QTime(0, 0))},
        {"2024-03-31 09:15:00", QDateTime(QDate(2024, 3, 31), QTime(9, 15))},
        {"2024-03-31T09:15:30", QDateTime(QDate(2024, 3, 31), QTime(9, 15, 30))},
        {"1899-12-30 13:45:00", QDateTime(QDate(1899, 12, 30), QTime(13, 45))},
        {"13:45:00", QDateTime(QDate(1899, 12, 30), QTime(13, 45))},
        {"9:00 AM", QDateTime(QDate(1899, 12, 30), QTime(9, 0))},
        {"12:30 PM", QDateTime(QDate(1899, 12, 30), QTime(12, 30))},
        {"03/31/2024", QDateTime(QDate(2024, 3, 31), QTime(0, 0))},
        {"Mar 5, 2024", QDateTime(QDate(2024, 3, 5), QTime(0, 0))},
        {"March 5 2024", QDateTime(QDate(2024, 3, 5), QTime(0, 0))},
        {"2024-02-30", std::nullopt},
        {"31/03/2024", std::nullopt},
        {"ABC Consulting", std::nullopt},
        {"30 min", std::nullopt},
        {"", std::nullopt},
        {"25:00", std::nullopt},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(VBFormat::toDateTime(QString::fromUtf8(c.text)), c.expected) << c.text;
    }
    EXPECT_FALSE(VBFormat::isDate(QVariant()));
    EXPECT_TRUE(VBFormat::isDate(QDate(2020, 1, 1)));
}

TEST(VBFormatTest, TruthOfStoredValues) {
    const struct {
        QVariant value;
        const char* expected;
    } cases[] = {{QVariant(1), "Yes"},      {QVariant(0), "No"},      {QVariant(-1), "Yes"},
                 {QVariant("1"), "Yes"},    {QVariant("0"), "No"},    {QVariant("True"), "Yes"},
                 {QVariant("false"), "No"}, {QVariant(), "No"},       {QVariant(""), "No"},
                 {QVariant(true), "Yes"},   {QVariant("maybe"), "No"}};
    for (const auto& c : cases) {
        EXPECT_EQ(VBFormat::yesNo(c.value), QString::fromUtf8(c.expected))
            << c.value.toString().toStdString();
    }
}

TEST(VBFormatTest, Minutes) {
    EXPECT_EQ(VBFormat::formatMinutes(30), "30 min");
    EXPECT_EQ(VBFormat::formatMinutes(0), "0 min");
    EXPECT_EQ(VBFormat::formatMinutes(60), "1 hr");
    EXPECT_EQ(VBFormat::formatMinutes(125), "2 hrs 5 min");
}

} // namespace
