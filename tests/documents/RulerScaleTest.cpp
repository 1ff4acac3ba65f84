#include "documents/RulerScale.h"

#include "documents/ZoomText.h"

#include <gtest/gtest.h>

TEST(RulerScaleTest, TicksCountInchesFromTheLeftMarginBothWays) {
    // Letter paper, 1.25" margin: zero stands on the margin.
    const auto ticks = RulerScale::ticks(12240, 1800);
    ASSERT_FALSE(ticks.empty());
    EXPECT_GE(ticks.front().twips, 0);
    EXPECT_LE(ticks.back().twips, 12240);
    const auto zero = std::find_if(ticks.begin(), ticks.end(),
                                   [](const RulerTick& t) { return t.twips == 1800; });
    ASSERT_NE(zero, ticks.end());
    EXPECT_EQ(zero->kind, RulerTick::Kind::Inch);
    EXPECT_EQ(zero->inch, 0);
    // Every eighth, with halves and quarters where a ruler has them.
    for (size_t i = 1; i < ticks.size(); ++i) {
        EXPECT_EQ(ticks[i].twips - ticks[i - 1].twips, 180);
    }
    const RulerTick& oneInch = *(zero + 8);
    EXPECT_EQ(oneInch.kind, RulerTick::Kind::Inch);
    EXPECT_EQ(oneInch.inch, 1);
    EXPECT_EQ((zero + 4)->kind, RulerTick::Kind::Half);
    EXPECT_EQ((zero + 2)->kind, RulerTick::Kind::Quarter);
    EXPECT_EQ((zero + 1)->kind, RulerTick::Kind::Eighth);
    // Left of the margin the ruler reads outwards: one inch left is "1".
    EXPECT_EQ((zero - 8)->inch, 1);
    EXPECT_EQ((zero - 8)->twips, 360);
    // A margin that is not a whole number of eighths still has its zero.
    const auto odd = RulerScale::ticks(12240, 1000);
    EXPECT_TRUE(std::any_of(odd.begin(), odd.end(), [](const RulerTick& t) {
        return t.twips == 1000 && t.kind == RulerTick::Kind::Inch;
    }));
    EXPECT_TRUE(RulerScale::ticks(0, 0).empty());
    EXPECT_TRUE(RulerScale::ticks(-5, 100).empty());
}

TEST(RulerScaleTest, IndentMarkersFollowTheParagraphAndStayOnTheSheet) {
    const RulerMarkers plain = RulerScale::markers(12240, 1800, 1800, 0, 0, 0);
    EXPECT_EQ(plain.textLeft, 1800);
    EXPECT_EQ(plain.textRight, 10440);
    EXPECT_EQ(plain.firstLine, 1800);
    EXPECT_EQ(plain.hanging, 1800);
    EXPECT_EQ(plain.rightIndent, 10440);

    // A hanging indent: the first line stands left of the others.
    const RulerMarkers hanging = RulerScale::markers(12240, 1800, 1800, 720, -720, 360);
    EXPECT_EQ(hanging.hanging, 2520);
    EXPECT_EQ(hanging.firstLine, 1800);
    EXPECT_EQ(hanging.rightIndent, 10080);

    // Margins wider than the page, indents past the edge: on the sheet.
    const RulerMarkers wild = RulerScale::markers(12240, 20000, -100, -5000, -5000, 99999);
    EXPECT_EQ(wild.textLeft, 12240);
    EXPECT_EQ(wild.textRight, 12240);
    EXPECT_GE(wild.firstLine, 0);
    EXPECT_EQ(wild.rightIndent, 0);
}

TEST(ZoomTextTest, ReadsWhatAUserTypesAndRefusesTheRest) {
    EXPECT_EQ(ZoomText::parse(QStringLiteral("125%")), 125);
    EXPECT_EQ(ZoomText::parse(QStringLiteral(" 80 % ")), 80);
    EXPECT_EQ(ZoomText::parse(QStringLiteral("150")), 150);
    EXPECT_EQ(ZoomText::parse(QStringLiteral("10")), ZoomText::Min);
    EXPECT_EQ(ZoomText::parse(QStringLiteral("900%")), ZoomText::Max);
    EXPECT_FALSE(ZoomText::parse(QStringLiteral("big")).has_value());
    EXPECT_FALSE(ZoomText::parse(QStringLiteral("12.5%")).has_value());
    EXPECT_FALSE(ZoomText::parse(QString()).has_value());
    EXPECT_EQ(ZoomText::choices().front(), QStringLiteral("50%"));
    EXPECT_EQ(ZoomText::choices().back(), QStringLiteral("200%"));
    EXPECT_TRUE(ZoomText::choices().contains(ZoomText::format(100)));
}
