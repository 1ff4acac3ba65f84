#include "app/TipOfTheDay.h"

#include <gtest/gtest.h>

namespace {

TEST(TipOfTheDayTest, TipsAreParagraphsWithoutTheEditorsNotes) {
    const QStringList tips = TipOfTheDay::parseTips(QStringLiteral("# notes for the editor\n"
                                                                   "\n\n"
                                                                   "First tip\n  continues here.\n"
                                                                   "   \n"
                                                                   "# between tips\n"
                                                                   "Second tip.\r\n"
                                                                   "\r\n"
                                                                   "Third tip."));
    EXPECT_EQ(tips, QStringList({"First tip continues here.", "Second tip.", "Third tip."}));
    EXPECT_TRUE(TipOfTheDay::parseTips(QStringLiteral("# only notes\n\n")).isEmpty());
}

TEST(TipOfTheDayTest, EachOpeningShowsTheTipAfterTheLastOne) {
    const TipOfTheDay tips({"a", "b", "c"});
    struct Case {
        const char* stored;
        int first;
    };
    for (const Case& c : {Case{"-1", 0}, Case{"0", 1}, Case{"1", 2}, Case{"2", 0}, Case{"3", 0},
                          Case{"garbage", 0}, Case{"", 0}, Case{" 1 ", 2}}) {
        EXPECT_EQ(tips.firstIndex(QLatin1String(c.stored)), c.first) << c.stored;
    }
    EXPECT_EQ(tips.next(2), 0);
    EXPECT_EQ(tips.tip(4), QStringLiteral("b"));
    EXPECT_EQ(tips.tip(-1), QStringLiteral("c"));

    const TipOfTheDay none({});
    EXPECT_EQ(none.firstIndex(QStringLiteral("5")), 0);
    EXPECT_TRUE(none.tip(0).isEmpty());
    EXPECT_EQ(none.next(0), 0);
}

} // namespace
