#include "documents/PageLayout.h"

#include "documents/DocumentModel.h"
#include "documents/NumberedLines.h"
#include "platform/richtext/RichTextBox.h"

#include <QImage>
#include <QPainter>
#include <QTextCursor>
#include <QTextDocument>
#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

namespace {

struct Window {
    DocumentModel model;
    RichTextBox box;
    PageLayout layout{box, model};
};

TEST(PageLayoutTest, LinesFlowOntoFollowingSheetsAndEverySheetKeepsItsText) {
    Window w;
    w.box.setText(numberedLines(5));
    EXPECT_EQ(w.layout.totalPages(), 1);

    w.box.setText(numberedLines(120)); // 12-point lines: about 45 to a letter sheet
    const int pages = w.layout.totalPages();
    EXPECT_EQ(pages, 3);
    QString joined;
    for (int page = 1; page <= pages; ++page) {
        const QString text = w.layout.sheetText(page);
        EXPECT_FALSE(text.isEmpty()) << page;
        joined += text;
        if (page > 1) {
            EXPECT_TRUE(text.startsWith(QLatin1String("Line "))) << "sheet starts mid-line";
            EXPECT_EQ(w.layout.firstPositionOfSheet(page), w.layout.endPositionOfSheet(page - 1));
        }
    }
    EXPECT_EQ(joined, w.box.document()->toPlainText());
}

// The sheets break where the box's own range measurement on the same device
// breaks, give or take the last line: Qt's pagination lets a line's leading
// run past the text area, the measurement does not.
TEST(PageLayoutTest, SheetBreakAgreesWithTheRangeMeasurement) {
    Window w;
    w.box.setText(numberedLines(100));
    ASSERT_GE(w.layout.totalPages(), 2);

    RichTextBox probe;
    probe.document()->setUseDesignMetrics(true);
    probe.setText(numberedLines(100));
    RichTextBox::FormatRange range;
    range.hdcTarget = w.layout.device();
    range.rc = QRect(1440, 1440, 12240 - 2880, 15840 - 2880);
    range.rcPage = QRect(0, 0, 12240, 15840);
    const int textBreak = probe.formatRange(range, false);
    const int lineLength = 23; // "Line nnn of the letter" and its paragraph end
    const int sheetBreak = w.layout.firstPositionOfSheet(2);
    EXPECT_LE(std::abs(sheetBreak - probe.toDocumentPosition(textBreak)), lineLength);
    EXPECT_EQ(sheetBreak % lineLength, 0) << "a sheet starts at a line start";
}

TEST(PageLayoutTest, DeletingTextTakesTheEmptySheetsAway) {
    Window w;
    w.box.setText(numberedLines(120));
    ASSERT_EQ(w.layout.totalPages(), 3);
    QTextCursor cursor(w.box.document());
    cursor.setPosition(w.layout.firstPositionOfSheet(2));
    cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
    EXPECT_EQ(w.layout.totalPages(), 1);
    EXPECT_EQ(w.layout.laidOutPages(), 1);
}

TEST(PageLayoutTest, CurrentPageFollowsTheCaret) {
    Window w;
    w.box.setText(numberedLines(120));
    const int third = w.layout.firstPositionOfSheet(3);
    QTextCursor cursor(w.box.document());
    struct Case {
        int position;
        int page;
    };
    for (const Case c : {Case{0, 1}, Case{third - 1, 2}, Case{third, 3},
                         Case{w.box.document()->characterCount() - 1, 3}}) {
        cursor.setPosition(c.position);
        w.box.setTextCursor(cursor);
        EXPECT_EQ(w.layout.currentPage(), c.page) << c.position;
    }
}

TEST(PageLayoutTest, SheetGeometryInTwips) {
    Window w;
    EXPECT_EQ(w.layout.sheetRect(1), QRect(45, 90, 12240, 15840));
    EXPECT_EQ(w.layout.sheetRect(2).top(), 90 + 15840 + 150);
    EXPECT_EQ(w.layout.shadowRect(2), w.layout.sheetRect(2).translated(75, 75));
    EXPECT_EQ(w.layout.textRect(1), QRect(45 + 1440, 90 + 1440, 12240 - 2880, 15840 - 2880));
    EXPECT_EQ(w.layout.sheetAtY(90 + 15840 + 150 + 10, 3), 2);
    EXPECT_EQ(w.layout.sheetAtY(1'000'000, 3), 3);

    // A landscape document with a portrait size is shown landscape.
    w.model.putDocumentOrientation(2, false);
    w.layout.setupDocument();
    EXPECT_EQ(w.layout.sheetRect(1).size(), QSize(15840, 12240));
}

TEST(PageLayoutTest, ContinuousDisplayIsOneSheetAsLongAsTheText) {
    Window w;
    w.box.setText(numberedLines(150));
    w.layout.setDisplayType(PageLayout::ContinuousDisplay);
    EXPECT_EQ(w.layout.totalPages(), 1);
    // The sheet is as long as the text laid out so far: finding the last
    // line lays all of it out.
    const int end = w.box.document()->characterCount() - 1;
    const QRectF last = w.layout.caretRect(end);
    EXPECT_GT(w.layout.sheetRect(1).height(), 2 * 15840);
    EXPECT_LT(last.top(), w.layout.textRect(1).bottom());
    EXPECT_EQ(w.layout.sheetText(1), w.box.document()->toPlainText());

    w.layout.setDisplayType(PageLayout::PageDisplay);
    EXPECT_GE(w.layout.totalPages(), 3);
}

TEST(PageLayoutTest, NoWrapKeepsALongParagraphOnOneLine) {
    Window w;
    w.box.setText(
        QString(400, QLatin1Char('x')).replace(QLatin1String("xxxx"), QLatin1String("xxx ")));
    w.layout.setViewMode(PageLayout::PrinterWrap);
    EXPECT_GT(w.box.lineCount(), 1);
    w.layout.setViewMode(PageLayout::NoWrap);
    EXPECT_EQ(w.box.lineCount(), 1);
    EXPECT_GT(w.layout.sheetRect(1).width(), 12240);
    w.layout.setViewMode(PageLayout::PrinterWrap);
    EXPECT_GT(w.box.lineCount(), 1);
}

// Paragraph spacing of half an inch must stand half an inch on the sheet,
// not six times that, although the layout runs at printer resolution.
TEST(PageLayoutTest, ParagraphSpacingIsNotScaledTwiceOnTheDevice) {
    Window w;
    w.box.setText(QStringLiteral("{\\rtf1\\ansi\\deff0\\fs24 One\\par Two\\par\\pard\\sa720 Three"
                                 "\\par Four\\par}"));
    auto topOf = [&](const char* word) {
        const int at = w.box.document()->toPlainText().indexOf(QLatin1String(word));
        return w.layout.caretRect(at).top();
    };
    const double line = topOf("Two") - topOf("One");
    const double spaced = topOf("Four") - topOf("Three");
    EXPECT_NEAR(spaced - line, 720, 30);
}

// Margins wider than the page must not stop pagination or hang it.
TEST(PageLayoutTest, MarginsWiderThanThePageStillLayOut) {
    Window w;
    w.model.putLeftMargin(8000, false);
    w.model.putRightMargin(8000, false);
    w.model.putTopMargin(9000, false);
    w.model.putBottomMargin(9000, false);
    w.layout.setupDocument();
    w.box.setText(numberedLines(3));
    EXPECT_GE(w.layout.totalPages(), 1);
    EXPECT_GE(w.layout.textRect(1).width(), 1);
}

TEST(PageLayoutTest, LoadingSwitchesTheLayoutOffUntilTheEnd) {
    Window reference;
    reference.box.setText(numberedLines(200));
    Window w;
    w.layout.beginLoad();
    w.box.setText(numberedLines(200));
    EXPECT_EQ(w.layout.laidOutPages(), 1);
    w.layout.endLoad();
    EXPECT_EQ(w.layout.totalPages(), reference.layout.totalPages());
    EXPECT_GT(w.layout.totalPages(), 1);
}

// Long paragraphs that run over sheet breaks (one over two), short ones, and blank lines
// at the end that make no sheet.
QString runOnText() {
    QString text;
    for (int i = 0; i < 20; ++i) {
        text += QStringLiteral("Paragraph %1.").arg(i);
        // Paragraph 5 runs over two sheet breaks.
        for (int s = 0; s < (i == 5 ? 300 : i % 4 == 1 ? 100 : 2); ++s) {
            text += QStringLiteral(" Sentence %1 of the accounts.").arg(s);
        }
        text += QStringLiteral("\r\n");
    }
    return text + QStringLiteral("\r\n \r\n\r\n");
}

// Sheets are looked for on from the last one asked for; asked for in any
// order, on a layout not yet run, each starts where it does when everything
// is laid out first and asked for in order.
TEST(PageLayoutTest, SheetsAskedForInAnyOrderStartWhereTheyDo) {
    Window all;
    all.box.setText(runOnText());
    const int pages = all.layout.totalPages();
    ASSERT_GE(pages, 5);
    std::vector<int> starts;
    for (int page = 1; page <= pages + 2; ++page) {
        starts.push_back(all.layout.firstPositionOfSheet(page));
    }
    EXPECT_EQ(starts[size_t(pages)], all.box.document()->characterCount() - 1);

    for (const std::vector<int>& order :
         {std::vector<int>{pages + 2, 1, 3, 2, pages, 4}, std::vector<int>{5, 4, 3, 2, 1, 6}}) {
        Window lazy;
        lazy.box.setText(runOnText());
        for (int page : order) {
            EXPECT_EQ(lazy.layout.firstPositionOfSheet(page), starts[size_t(page - 1)])
                << "sheet " << page;
        }
    }
}

// hasSheet() and pagesUpTo() count as totalPages() does, blank tail and all,
// asked before anything has laid the document out to its end.
TEST(PageLayoutTest, SheetsAreCountedAsFarAsAskedAsTheTotalCountsThem) {
    Window all;
    all.box.setText(runOnText());
    const int pages = all.layout.totalPages();
    for (int page = -1; page <= pages + 2; ++page) {
        Window lazy;
        lazy.box.setText(runOnText());
        EXPECT_EQ(lazy.layout.hasSheet(page), page >= 1 && page <= pages) << page;
        EXPECT_EQ(lazy.layout.pagesUpTo(page), std::clamp(page, 1, pages)) << page;
    }
}

// Keeping glyphs until drawn changes nothing that is drawn: every sheet,
// drawn in order as a PDF is written, looks as the window's layout draws it.
TEST(PageLayoutTest, KeepingGlyphsUntilDrawnDrawsTheSameSheets) {
    Window plain;
    plain.box.setText(runOnText());
    Window once;
    once.layout.beginLoad();
    once.box.setText(runOnText());
    once.layout.keepGlyphsUntilDrawn();
    once.layout.endLoad();
    const auto draw = [](const PageLayout& layout, int page) {
        const QRect text = layout.textRect(page);
        QImage image(text.width() / 10, text.height() / 10, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.scale(0.1, 0.1);
        painter.translate(-text.topLeft());
        layout.paintSheetText(painter, page, -1, {});
        return image;
    };
    int page = 1;
    for (; once.layout.hasSheet(page); ++page) {
        const QImage drawn = draw(once.layout, page);
        EXPECT_EQ(drawn, draw(plain.layout, page)) << "sheet " << page;
        EXPECT_NE(drawn, draw(plain.layout, page + 1)) << "sheet " << page << " is blank";
    }
    EXPECT_EQ(page - 1, plain.layout.totalPages());
}

} // namespace
