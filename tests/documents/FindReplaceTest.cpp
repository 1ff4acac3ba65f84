#include "documents/FindReplace.h"

#include "platform/richtext/RichTextBox.h"

#include <gtest/gtest.h>

namespace {

FindReplace searchFor(const QString& text, const QString& with = {}) {
    FindReplace search;
    search.findText = text;
    search.replaceText = with;
    return search;
}

TEST(FindReplaceTest, FindNextWalksTheHitsAndStopsAtTheEndWithoutGoingRound) {
    RichTextBox box;
    box.setText(QStringLiteral("Tax return\r\ntax due\r\nsyntax"));
    FindReplace search = searchFor(QStringLiteral("tax"));
    EXPECT_EQ(search.findCaption(), QStringLiteral("&Find"));
    std::vector<int> hits;
    FindReplace::Result result;
    while ((result = search.find(box)).position >= 0) {
        hits.push_back(result.position);
        EXPECT_EQ(box.SelText().toLower(), QStringLiteral("tax"));
        EXPECT_EQ(search.findCaption(), QStringLiteral("&Find Next"));
        ASSERT_LT(hits.size(), 10u);
    }
    EXPECT_EQ(hits, (std::vector<int>{0, 12, 24})) << "line ends count two";
    EXPECT_EQ(result.message, QStringLiteral("The search text was not found"));
    EXPECT_EQ(search.findCaption(), QStringLiteral("&Find"));
    EXPECT_EQ(search.find(box).position, 0) << "after not found the search starts at the top";
}

struct OptionCase {
    const char* name;
    bool wholeWord;
    bool matchCase;
    std::vector<int> hits;
};

class FindOptionsTest : public ::testing::TestWithParam<OptionCase> {};

TEST_P(FindOptionsTest, OptionsNarrowTheHits) {
    RichTextBox box;
    box.setText(QStringLiteral("Tax tax syntax TAX"));
    FindReplace search = searchFor(QStringLiteral("tax"));
    search.wholeWord = GetParam().wholeWord;
    search.matchCase = GetParam().matchCase;
    std::vector<int> hits;
    for (int at; (at = search.find(box).position) >= 0 && hits.size() < 10;) {
        hits.push_back(at);
    }
    EXPECT_EQ(hits, GetParam().hits);
}

INSTANTIATE_TEST_SUITE_P(FindReplace, FindOptionsTest,
                         ::testing::Values(OptionCase{"none", false, false, {0, 4, 11, 15}},
                                           OptionCase{"wholeWord", true, false, {0, 4, 15}},
                                           OptionCase{"matchCase", false, true, {4, 11}},
                                           OptionCase{"both", true, true, {4}}),
                         [](const auto& testCase) { return std::string(testCase.param.name); });

TEST(FindReplaceTest, WithoutHighlightTheSelectionStaysAndTheSearchStillMovesOn) {
    RichTextBox box;
    box.setText(QStringLiteral("fee fee fee"));
    box.setSelStart(2);
    FindReplace search = searchFor(QStringLiteral("fee"));
    search.noHighlight = true;
    EXPECT_EQ(search.find(box).position, 0);
    EXPECT_EQ(search.find(box).position, 4);
    EXPECT_EQ(search.find(box).position, 8);
    EXPECT_EQ(box.SelStart(), 2);
    EXPECT_EQ(box.SelLength(), 0);
}

TEST(FindReplaceTest, ReplaceChangesOnlyAMatchingSelectionThenFindsTheNext) {
    RichTextBox box;
    box.setText(QStringLiteral("Dear «Name», «Name» owes"));
    FindReplace search = searchFor(QStringLiteral("«Name»"), QStringLiteral("Mr Smith"));
    EXPECT_EQ(search.replace(box).position, 5) << "nothing selected: only finds";
    EXPECT_EQ(box.Text(), QStringLiteral("Dear «Name», «Name» owes"));
    EXPECT_EQ(search.replace(box).position, 15);
    EXPECT_EQ(box.Text(), QStringLiteral("Dear Mr Smith, «Name» owes"));
    const FindReplace::Result last = search.replace(box);
    EXPECT_EQ(box.Text(), QStringLiteral("Dear Mr Smith, Mr Smith owes"));
    EXPECT_EQ(last.message, FindReplace::notFoundMessage());
}

TEST(FindReplaceTest, ReplaceAllCountsTakesCharactersLiterallyAndIsOneUndoStep) {
    RichTextBox box;
    const QString letter = QStringLiteral("Fee (1.5*) due.\r\nFEE (1.5*) paid; fee(1.5*)x");
    box.setText(letter);
    FindReplace search = searchFor(QStringLiteral("(1.5*)"), QStringLiteral("[2]"));
    const FindReplace::Result result = search.replaceAll(box);
    EXPECT_EQ(result.message, QStringLiteral("3 replacements have been made."));
    EXPECT_EQ(box.Text(), QStringLiteral("Fee [2] due.\r\nFEE [2] paid; fee[2]x"));
    EXPECT_EQ(box.SelStart(), box.Text().indexOf(QStringLiteral("]x")) + 1)
        << "the caret ends behind the last replacement";
    EXPECT_EQ(search.findCaption(), QStringLiteral("&Find"));
    box.undo();
    EXPECT_EQ(box.Text(), letter);
}

TEST(FindReplaceTest, ReplaceAllDoesNotLoopOnAReplacementHoldingTheSearchText) {
    RichTextBox box;
    box.setText(QStringLiteral("tax, tax and tax"));
    FindReplace search = searchFor(QStringLiteral("tax"), QStringLiteral("sales tax"));
    search.wholeWord = true;
    EXPECT_EQ(search.replaceAll(box).message, QStringLiteral("3 replacements have been made."));
    EXPECT_EQ(box.Text(), QStringLiteral("sales tax, sales tax and sales tax"));
}

TEST(FindReplaceTest, EmptyOrOverlongSearchTextFindsNothingAndChangesNothing) {
    RichTextBox box;
    box.setText(QStringLiteral("short"));
    for (const QString& text : {QString(), QStringLiteral("shorter than nothing at all")}) {
        FindReplace search = searchFor(text, QStringLiteral("x"));
        EXPECT_EQ(search.find(box).message, FindReplace::notFoundMessage());
        EXPECT_EQ(search.replaceAll(box).message, QStringLiteral("0 replacements have been made."));
        EXPECT_EQ(box.Text(), QStringLiteral("short"));
    }
    EXPECT_FALSE(box.canUndo());
}

TEST(FindReplaceTest, ALockedResultIsSearchedButNotChanged) {
    RichTextBox box;
    box.setText(QStringLiteral("fee fee"));
    box.setLocked(true);
    FindReplace search = searchFor(QStringLiteral("fee"), QStringLiteral("charge"));
    EXPECT_EQ(search.replaceAll(box).message, QStringLiteral("0 replacements have been made."));
    EXPECT_EQ(search.replace(box).position, 0);
    EXPECT_EQ(search.replace(box).position, 4);
    EXPECT_EQ(box.Text(), QStringLiteral("fee fee"));
}

} // namespace
