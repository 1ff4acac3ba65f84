#include "platform/richtext/RichTextBox.h"

#include <QBuffer>
#include <QImage>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <gtest/gtest.h>

namespace {

constexpr int kLetterWidth = 12240;
constexpr int kLetterHeight = 15840;
constexpr int kTextWidth = kLetterWidth - 2 * 1440;
constexpr int kTextHeight = kLetterHeight - 2 * 1440;

// A PDF writer of letter size stands in for the printer.
class LayoutTest : public ::testing::Test {
protected:
    LayoutTest() : m_buffer(), m_pdf(&m_buffer) {
        m_buffer.open(QIODevice::WriteOnly);
        m_pdf.setPageSize(QPageSize(QPageSize::Letter));
        m_pdf.setResolution(1200);
    }

    RichTextBox::FormatRange page(int cpMin = 0) {
        RichTextBox::FormatRange range;
        range.hdc = &m_pdf;
        range.hdcTarget = &m_pdf;
        range.rc = QRect(1440, 1440, kTextWidth, kTextHeight);
        range.rcPage = QRect(0, 0, kLetterWidth, kLetterHeight);
        range.cpMin = cpMin;
        return range;
    }

    static QString lines(int count) {
        QStringList all;
        for (int i = 0; i < count; ++i) {
            all << QStringLiteral("Line %1").arg(i, 3, 10, QLatin1Char('0'));
        }
        return all.join(QLatin1String("\r\n"));
    }

    QBuffer m_buffer;
    QPdfWriter m_pdf;
};

TEST_F(LayoutTest, ShortTextFitsAndAnswersItsLength) {
    RichTextBox box;
    box.setTargetDevice(&m_pdf, kTextWidth);
    box.setText(lines(5));
    EXPECT_EQ(box.formatRange(page(), false), box.TextLength());
    EXPECT_EQ(box.lineCount(), 5);
}

TEST_F(LayoutTest, LongTextBreaksAtALineStart) {
    RichTextBox box;
    box.setTargetDevice(&m_pdf, kTextWidth);
    box.setText(lines(200)); // 12-point lines: about 45 fit 9 inches
    const int first = box.formatRange(page(), false);
    ASSERT_LT(first, box.TextLength());
    ASSERT_GT(first, 0);
    // The break is the first character of a line of Text.
    EXPECT_EQ(box.lineIndex(box.lineFromChar(first)), first);
    const QString text = box.Text();
    EXPECT_EQ(text.mid(first - 2, 2), QStringLiteral("\r\n"));
    const int linesOnPage = box.lineFromChar(first);
    EXPECT_GT(linesOnPage, 30);
    EXPECT_LT(linesOnPage, 70);
    // The next page starts there and holds as many lines.
    const int second = box.formatRange(page(first), false);
    EXPECT_EQ(box.lineFromChar(second) - linesOnPage, linesOnPage);
    // A page of double height takes the lines of both, and at most the one
    // more line that the two pages' leftover space holds.
    RichTextBox::FormatRange tall = page();
    tall.rc.setHeight(kTextHeight * 2);
    const int both = box.lineFromChar(box.formatRange(tall, false));
    EXPECT_GE(both, box.lineFromChar(second));
    EXPECT_LE(both, box.lineFromChar(second) + 1);
}

TEST_F(LayoutTest, LinesWrapAtTheTargetWidth) {
    RichTextBox box;
    box.setText(QString(QStringLiteral("word ")).repeated(400));
    box.setViewMode(0);
    EXPECT_EQ(box.lineCount(), 1);
    box.setTargetDevice(&m_pdf, kTextWidth);
    const int wide = box.lineCount();
    EXPECT_GT(wide, 10);
    box.setTargetDevice(&m_pdf, kTextWidth / 2);
    EXPECT_GT(box.lineCount(), wide * 3 / 2);
    // Every line but the last ends after a blank: words are not cut.
    for (int line = 0; line + 1 < box.lineCount(); ++line) {
        const int start = box.lineIndex(line);
        const int length = box.lineLength(start);
        ASSERT_EQ(box.Text().at(start + length - 1), QLatin1Char(' ')) << line;
    }
    box.setWindowWidth(kTextWidth);
    box.setViewMode(1);
    EXPECT_GT(box.lineCount(), 10);
}

TEST_F(LayoutTest, NothingFitsAnswersTheStart) {
    RichTextBox box;
    box.setTargetDevice(&m_pdf, kTextWidth);
    box.setText(QStringLiteral("one\r\ntwo"));
    RichTextBox::FormatRange tiny = page();
    tiny.rc.setHeight(20);
    EXPECT_EQ(box.formatRange(tiny, false), 0);
}

TEST_F(LayoutTest, LineQuestionsAndSelectors) {
    RichTextBox box;
    box.setTargetDevice(&m_pdf, kTextWidth);
    box.setText(QStringLiteral("first\r\nsecond line\r\nend"));
    EXPECT_EQ(box.lineCount(), 3);
    EXPECT_EQ(box.lineIndex(1), 7);
    EXPECT_EQ(box.lineIndex(2), 20);
    EXPECT_EQ(box.lineIndex(3), -1);
    EXPECT_EQ(box.lineFromChar(8), 1);
    EXPECT_EQ(box.lineFromChar(5), 0); // the CR belongs to its line
    box.setSelStart(10);
    EXPECT_EQ(box.lineFromChar(-1), 1);
    EXPECT_EQ(RTBCtrl::getValue(box, 3), 2);
    EXPECT_EQ(RTBCtrl::getValue(box, 4), 10);
    EXPECT_EQ(RTBCtrl::getValue(box, 5), 7);
    EXPECT_EQ(RTBCtrl::getValue(box, 6), 11);
    EXPECT_EQ(RTBCtrl::getValue(box, 7), 3);
    EXPECT_EQ(RTBCtrl::getValue(box, 8), 3);
    EXPECT_EQ(RTBCtrl::getValue(box, 99), 0);
}

TEST_F(LayoutTest, RenderingDrawsTheFittingText) {
    RichTextBox box;
    box.setText(QStringLiteral("ink"));
    QImage image(816, 1056, QImage::Format_RGB32); // letter at 96 dpi
    image.fill(Qt::white);
    RichTextBox::FormatRange range = page();
    range.hdc = &image;
    range.hdcTarget = &image;
    EXPECT_EQ(box.formatRange(range, true), box.TextLength());
    bool inked = false;
    for (int y = 96; y < 140 && !inked; ++y) {
        for (int x = 96; x < 200 && !inked; ++x) {
            inked = image.pixelColor(x, y) != QColor(Qt::white);
        }
    }
    EXPECT_TRUE(inked);
    // Nothing outside the rectangle.
    for (int x = 0; x < 90; ++x) {
        ASSERT_EQ(image.pixelColor(x, 100), QColor(Qt::white));
    }
}

} // namespace
