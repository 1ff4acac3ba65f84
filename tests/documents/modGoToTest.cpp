#include "documents/modGoTo.h"

#include "documents/DocumentModel.h"
#include "documents/NumberedLines.h"
#include "documents/PageLayout.h"
#include "platform/richtext/RichTextBox.h"

#include <gtest/gtest.h>

namespace {

struct Window {
    Window() { box.setText(numberedLines(120)); } // three letter sheets
    void caretOnPage(int page) {
        box.setSelStart(box.toTextPosition(layout.firstPositionOfSheet(page)) + 3);
    }
    DocumentModel model;
    RichTextBox box;
    PageLayout layout{box, model};
};

constexpr int kLine = 24; // "Line nnn of the letter" and CR LF

TEST(modGoToTest, PagesAndLinesLandOnTheirFirstCharacter) {
    Window w;
    ASSERT_EQ(w.layout.totalPages(), 3);
    const int secondSheet = w.box.toTextPosition(w.layout.firstPositionOfSheet(2));
    const GoToAnswer page = goToTarget(w.box, w.layout, GoToWhat::Page, QStringLiteral("2"));
    EXPECT_EQ(page.selStart, secondSheet);
    EXPECT_TRUE(page.message.isEmpty());

    // Lines count within the caret's sheet.
    w.caretOnPage(2);
    EXPECT_EQ(goToTarget(w.box, w.layout, GoToWhat::Line, QStringLiteral("1")).selStart,
              secondSheet);
    EXPECT_EQ(goToTarget(w.box, w.layout, GoToWhat::Line, QStringLiteral("5")).selStart,
              secondSheet + 4 * kLine);
    EXPECT_EQ(goToTarget(w.box, w.layout, GoToWhat::Start, {}).selStart, secondSheet);
    const int end = goToTarget(w.box, w.layout, GoToWhat::End, {}).selStart;
    EXPECT_EQ(w.layout.pageOfPosition(w.box.toDocumentPosition(end)), 2)
        << "the end of the sheet stays on it";
    EXPECT_EQ(w.box.Text().mid(end, 2), QStringLiteral("\r\n"));

    w.caretOnPage(3);
    EXPECT_EQ(goToTarget(w.box, w.layout, GoToWhat::End, {}).selStart, w.box.TextLength());
}

struct BadCase {
    const char* name;
    GoToWhat what;
    const char* typed;
    const char* message;
};

class GoToRefusalTest : public ::testing::TestWithParam<BadCase> {};

TEST_P(GoToRefusalTest, OutOfRangeIsRefusedWithTheMessage) {
    Window w;
    w.caretOnPage(1);
    const GoToAnswer answer =
        goToTarget(w.box, w.layout, GetParam().what, QLatin1String(GetParam().typed));
    EXPECT_EQ(answer.selStart, -1);
    EXPECT_EQ(answer.message, QLatin1String(GetParam().message));
}

INSTANTIATE_TEST_SUITE_P(
    modGoTo, GoToRefusalTest,
    ::testing::Values(BadCase{"page0", GoToWhat::Page, "0", "Invalid page number!"},
                      BadCase{"page99999", GoToWhat::Page, "99999", "Invalid page number!"},
                      BadCase{"pageText", GoToWhat::Page, "two", "Invalid page number!"},
                      BadCase{"lineMinus5", GoToWhat::Line, "-5", "Invalid line number!"},
                      BadCase{"line0", GoToWhat::Line, "0", "Invalid line number!"},
                      BadCase{"lineEmpty", GoToWhat::Line, "", "Invalid line number!"},
                      BadCase{"lineOnNextSheet", GoToWhat::Line, "100", "Invalid line number!"}),
    [](const auto& testCase) { return std::string(testCase.param.name); });

} // namespace
