#include "app/SelectionState.h"

#include "platform/richtext/RichTextBox.h"

#include <gtest/gtest.h>

namespace {

using Alignment = ActiveDocumentState::Alignment;

// "Title" bold and centred in 14 points over a plain left-aligned body.
struct Letter {
    Letter() {
        box.setText(QStringLiteral("Title\r\nBody text"));
        box.setSelStart(0);
        box.setSelLength(5);
        box.setSelBold(true);
        box.setSelFontSize(14);
        box.setSelAlignment(RichTextBox::rtfCenter);
    }
    ActiveDocumentState state(int start, int length) {
        box.setSelStart(start);
        box.setSelLength(length);
        return readSelectionState(box, 1, false, false);
    }
    RichTextBox box;
};

TEST(SelectionStateTest, AUniformSelectionShowsItsFormat) {
    Letter letter;
    const ActiveDocumentState title = letter.state(0, 5);
    EXPECT_TRUE(title.bold);
    EXPECT_EQ(title.alignment, Alignment::Center);
    EXPECT_EQ(title.fontSize, QStringLiteral("14"));
    EXPECT_TRUE(title.hasSelection);

    const ActiveDocumentState body = letter.state(9, 0);
    EXPECT_FALSE(body.bold);
    EXPECT_FALSE(body.hasSelection);
    EXPECT_EQ(body.alignment, Alignment::Left);
    EXPECT_EQ(body.fontName, letter.box.SelFontName().value());
}

TEST(SelectionStateTest, AMixedSelectionReadsAsOffAndLeavesTheFontBarBlank) {
    Letter letter;
    const ActiveDocumentState both = letter.state(0, 12);
    EXPECT_FALSE(both.bold) << "bold and plain read as off";
    EXPECT_EQ(both.alignment, Alignment::Mixed);
    EXPECT_TRUE(both.fontSize.isEmpty());
    EXPECT_FALSE(both.fontName.isEmpty()) << "one font throughout";

    letter.box.setSelFontName(QStringLiteral("Liberation Serif"));
    letter.box.setSelStart(3);
    letter.box.setSelLength(6);
    letter.box.setSelFontName(QStringLiteral("Liberation Sans"));
    EXPECT_TRUE(letter.state(0, 12).fontName.isEmpty());
}

} // namespace
