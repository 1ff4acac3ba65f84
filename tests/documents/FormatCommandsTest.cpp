#include "documents/FormatCommands.h"

#include "platform/richtext/RichTextBox.h"

#include <QTextDocument>
#include <gtest/gtest.h>

using namespace FormatCommands;

namespace {

// "Dear Client" / "Your return is ready" / "Regards": each command runs on a
// selection and the result is read back from the RTF the box writes.
const QString kLetter = QStringLiteral("Dear Client\r\nYour return is ready\r\nRegards");

void select(RichTextBox& box, int start, int length) {
    box.setSelStart(start);
    box.setSelLength(length);
}

// A second box loaded from the first one's RTF, with the same selection.
std::unique_ptr<RichTextBox> reread(const RichTextBox& box) {
    auto copy = std::make_unique<RichTextBox>();
    copy->setTextRTF(box.TextRTF());
    select(*copy, box.SelStart(), box.SelLength());
    return copy;
}

TEST(FormatCommandsTest, AStyleTogglesAndAMixedSelectionCountsAsOff) {
    RichTextBox box;
    box.setText(kLetter);
    select(box, 0, 4); // "Dear"
    EXPECT_TRUE(toggleCharStyle(box, CharStyle::Bold));
    select(box, 0, 11); // "Dear Client": half bold
    EXPECT_EQ(box.SelBold(), std::nullopt);
    EXPECT_TRUE(toggleCharStyle(box, CharStyle::Bold)) << "mixed reads as off: first press sets";
    EXPECT_EQ(reread(box)->SelBold(), std::optional<bool>(true));
    EXPECT_FALSE(toggleCharStyle(box, CharStyle::Bold));
    EXPECT_EQ(reread(box)->SelBold(), std::optional<bool>(false));

    for (const CharStyle style : {CharStyle::Italic, CharStyle::Underline, CharStyle::StrikeThru}) {
        EXPECT_TRUE(toggleCharStyle(box, style));
    }
    const auto copy = reread(box);
    EXPECT_EQ(copy->SelItalic(), std::optional<bool>(true));
    EXPECT_EQ(copy->SelUnderline(), std::optional<bool>(true));
    EXPECT_EQ(copy->SelStrikeThru(), std::optional<bool>(true));
    select(*copy, 13, 4); // the next paragraph is untouched
    EXPECT_EQ(copy->SelItalic(), std::optional<bool>(false));
}

TEST(FormatCommandsTest, IndentsMoveByHalfAnInchWithoutALowerLimit) {
    RichTextBox box;
    box.setText(kLetter);
    select(box, 14, 3);
    changeIndent(box, Indent::Left, IndentStep);
    changeIndent(box, Indent::Left, IndentStep);
    changeIndent(box, Indent::Right, IndentStep);
    changeIndent(box, Indent::Hanging, IndentStep);
    auto copy = reread(box);
    EXPECT_EQ(copy->SelIndent(), std::optional<int>(1440));
    EXPECT_EQ(copy->SelRightIndent(), std::optional<int>(720));
    EXPECT_EQ(copy->SelHangingIndent(), std::optional<int>(720));
    changeIndent(box, Indent::Right, -IndentStep);
    changeIndent(box, Indent::Right, -IndentStep);
    EXPECT_EQ(reread(box)->SelRightIndent(), std::optional<int>(-720));
    select(box, 0, 2); // the first paragraph kept its indents
    EXPECT_EQ(box.SelIndent(), std::optional<int>(0));
}

TEST(FormatCommandsTest, BulletComesWithItsHangingIndentAndGoesWithIt) {
    RichTextBox box;
    box.setText(kLetter);
    select(box, 0, 20); // two paragraphs
    EXPECT_TRUE(toggleBullet(box));
    auto copy = reread(box);
    EXPECT_EQ(copy->SelBullet(), std::optional<bool>(true));
    EXPECT_EQ(copy->SelHangingIndent(), std::optional<int>(BulletHangingIndent));
    EXPECT_EQ(copy->SelIndent(), std::optional<int>(0));
    box.undo();
    EXPECT_EQ(box.SelBullet(), std::optional<bool>(false)) << "one undo step takes it all";
    EXPECT_TRUE(toggleBullet(box));
    EXPECT_FALSE(toggleBullet(box));
    copy = reread(box);
    EXPECT_EQ(copy->SelBullet(), std::optional<bool>(false));
    EXPECT_EQ(copy->SelHangingIndent(), std::optional<int>(0));
    EXPECT_EQ(copy->SelIndent(), std::optional<int>(0));
}

TEST(FormatCommandsTest, CaseChangeKeepsEachRunsFormatAndTheSelection) {
    RichTextBox box;
    box.setText(QStringLiteral("Dear Client, straße"));
    select(box, 5, 6);
    box.setSelBold(true); // "Client" bold
    select(box, 0, 19);
    changeCase(box, true);
    EXPECT_EQ(box.Text(), QStringLiteral("DEAR CLIENT, STRASSE"));
    EXPECT_EQ(box.SelStart(), 0);
    EXPECT_EQ(box.SelLength(), 20) << "the selection grows with ß becoming SS";
    auto copy = reread(box);
    select(*copy, 5, 6);
    EXPECT_EQ(copy->SelBold(), std::optional<bool>(true));
    select(*copy, 0, 4);
    EXPECT_EQ(copy->SelBold(), std::optional<bool>(false));
    changeCase(box, false);
    EXPECT_EQ(box.Text(), QStringLiteral("dear client, strasse"));
}

TEST(FormatCommandsTest, ScriptSetsTheOffsetAndReplacesRatherThanToggles) {
    RichTextBox box;
    box.setText(QStringLiteral("E = mc2"));
    select(box, 6, 1);
    // RTF keeps the offset in half points: 55 twips come back to within 5.
    const auto offsetAfterSaving = [&box] { return reread(box)->SelCharOffset().value_or(0); };
    setScript(box, Script::Sub);
    EXPECT_EQ(box.SelCharOffset(), std::optional<int>(-ScriptOffset));
    EXPECT_NEAR(offsetAfterSaving(), -ScriptOffset, 5);
    setScript(box, Script::Super);
    EXPECT_EQ(box.SelCharOffset(), std::optional<int>(ScriptOffset));
    EXPECT_NEAR(offsetAfterSaving(), ScriptOffset, 5);
    setScript(box, Script::Super);
    EXPECT_EQ(box.SelCharOffset(), std::optional<int>(ScriptOffset));
    setScript(box, Script::None);
    EXPECT_EQ(offsetAfterSaving(), 0);
}

TEST(FormatCommandsTest, FontChoiceWritesWhatWasChosenAndLeavesMixedValuesAlone) {
    RichTextBox box;
    box.setText(kLetter);
    select(box, 0, 4);
    box.setSelFontSize(14);
    select(box, 0, 11);
    FontChoice seed = fontChoiceOf(box);
    EXPECT_EQ(seed.size, std::nullopt) << "14 and 10 points mixed";
    seed.name = QStringLiteral("Liberation Serif");
    seed.bold = true;
    seed.colour = QColor(128, 0, 0);
    applyFontChoice(box, seed);
    const auto copy = reread(box);
    EXPECT_EQ(copy->SelFontName(), std::optional<QString>(QStringLiteral("Liberation Serif")));
    EXPECT_EQ(copy->SelBold(), std::optional<bool>(true));
    EXPECT_EQ(copy->SelColor(), std::optional<QColor>(QColor(128, 0, 0)));
    EXPECT_EQ(copy->SelFontSize(), std::nullopt) << "sizes stay as they were";
    box.undo();
    EXPECT_EQ(box.SelBold(), std::optional<bool>(false)) << "the dialog's writes are one step";
}

TEST(FormatCommandsTest, FontBarTakesOnlySensibleValues) {
    RichTextBox box;
    box.setText(kLetter);
    select(box, 0, 4);
    EXPECT_TRUE(applyFontSize(box, QStringLiteral("11.5")));
    EXPECT_EQ(reread(box)->SelFontSize(), std::optional<double>(11.5));
    for (const char* bad : {"", "abc", "0", "-4", "5000"}) {
        EXPECT_FALSE(applyFontSize(box, QLatin1String(bad))) << bad;
    }
    EXPECT_EQ(box.SelFontSize(), std::optional<double>(11.5));
    EXPECT_FALSE(applyFontName(box, QStringLiteral("  ")));
    EXPECT_TRUE(applyFontName(box, QStringLiteral("Liberation Sans")));
    EXPECT_EQ(reread(box)->SelFontName(),
              std::optional<QString>(QStringLiteral("Liberation Sans")));
}

TEST(FormatCommandsTest, ALockedResultIsNotReformatted) {
    RichTextBox box;
    box.setText(kLetter);
    const QString before = box.TextRTF();
    box.setLocked(true);
    select(box, 0, 11);
    toggleCharStyle(box, CharStyle::Bold);
    toggleBullet(box);
    changeIndent(box, Indent::Left, IndentStep);
    changeCase(box, true);
    setScript(box, Script::Super);
    applyFontSize(box, QStringLiteral("20"));
    EXPECT_EQ(box.TextRTF(), before);
}

} // namespace
