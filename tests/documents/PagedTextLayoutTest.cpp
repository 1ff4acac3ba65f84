#include "documents/DocumentLifecycle.h"
#include "documents/DocumentModel.h"
#include "documents/PageLayout.h"
#include "platform/richtext/RichTextBox.h"

#include <QAbstractTextDocumentLayout>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>
#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <tuple>
#include <vector>

namespace {

struct Window {
    DocumentModel model;
    RichTextBox box;
    PageLayout layout{box, model};
};

// Letters of wrapped paragraphs, a sheet and a half each, each letter ending on
// a page break, as practices write them.
QString letters() {
    QString rtf = QStringLiteral("{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\froman Liberation Serif;}}"
                                 "\\f0\\fs24 ");
    for (int letter = 0; letter < 4; ++letter) {
        rtf +=
            QStringLiteral("{\\b Harbour & Vale\\b0}\\par Dear client %1,\\par\\par ").arg(letter);
        for (int p = 0; p < 14; ++p) {
            rtf += QStringLiteral("We have reviewed the accounts of your company for the year "
                                  "and enclose the draft return. The balance of 1,234.56 is due "
                                  "on the last day of the quarter; please send the invoices.");
            rtf += p == 3 ? QStringLiteral("\\line ") : QStringLiteral("\\par\\par ");
        }
        rtf += QStringLiteral("Yours sincerely,\\par Jordan Reyes\\par\\page ");
    }
    return rtf + QStringLiteral("}");
}

// Where every line of the document stands, laid out to the end: block, line,
// its characters, and its place and width in layout units.
using Line = std::tuple<int, int, int, int, qreal, qreal, qreal>;

std::vector<Line> lineGeometry(const PageLayout& layout) {
    QTextDocument* doc = layout.document();
    QAbstractTextDocumentLayout* docLayout = doc->documentLayout();
    docLayout->documentSize();
    std::vector<Line> lines;
    for (QTextBlock block = doc->begin(); block.isValid(); block = block.next()) {
        const QRectF rect = docLayout->blockBoundingRect(block);
        const QTextLayout* blockLayout = block.layout();
        for (int i = 0; i < blockLayout->lineCount(); ++i) {
            const QTextLine line = blockLayout->lineAt(i);
            lines.emplace_back(block.blockNumber(), i, line.textStart(), line.textLength(),
                               rect.top() + line.y(), line.x(), line.width());
        }
    }
    return lines;
}

// What the `pages` command prints of a layout.
QStringList pagesOutput(const PageLayout& layout) {
    QStringList out;
    const int pages = layout.totalPages();
    for (int page = 1; page <= pages; ++page) {
        out << QStringLiteral("%1\t%2").arg(page).arg(layout.sheetText(page).left(60));
    }
    return out;
}

// The status bar's line numbers counted over every paragraph's lines.
LineStatus countedLineStatus(const QTextDocument& doc, int position) {
    LineStatus status{0, 0};
    for (QTextBlock block = doc.begin(); block.isValid(); block = block.next()) {
        const QTextLayout* layout = block.layout();
        for (int i = 0; i < layout->lineCount(); ++i) {
            if (block.contains(position) &&
                position - block.position() >= layout->lineAt(i).textStart()) {
                status.current = status.total + i + 1;
            }
        }
        status.total += std::max(1, layout->lineCount());
    }
    return status;
}

// After each edit, once the layout has run to the end, the lines and sheets
// are those of a layout of the same text from scratch, and the line numbers
// those counted over all the lines.
void expectAsFresh(Window& w, const char* edit) {
    const std::vector<Line> edited = lineGeometry(w.layout);
    const QStringList editedPages = pagesOutput(w.layout);
    const QTextDocument& doc = *w.box.document();
    for (const int position : {0, w.box.textCursor().position(), doc.characterCount() - 1}) {
        const LineStatus kept = documentLineStatus(doc, position);
        const LineStatus counted = countedLineStatus(doc, position);
        EXPECT_EQ(kept.current, counted.current) << edit << " at " << position;
        EXPECT_EQ(kept.total, counted.total) << edit;
    }
    // Binding the page again lays everything out from the top.
    w.layout.setupDocument();
    EXPECT_EQ(edited, lineGeometry(w.layout)) << edit;
    EXPECT_EQ(editedPages, pagesOutput(w.layout)) << edit;
}

struct Edit {
    const char* name;
    std::function<void(Window&, QTextCursor&)> apply;
};

// Edits near the top of the second sheet, inside a paragraph that wraps:
// those that keep its lines are laid out in place, the rest by Qt's layout
// over the whole document; either way nothing may differ from a fresh layout.
TEST(PagedTextLayoutTest, EditsOnAnEarlySheetPaginateAsAFreshLayout) {
    Window edited;
    edited.layout.beginLoad();
    edited.box.setTextRTF(letters());
    edited.layout.endLoad();
    ASSERT_GE(edited.layout.totalPages(), 5);
    const int start = edited.layout.firstPositionOfSheet(2) + 40;
    const std::vector<Edit> edits = {
        {"type a letter", [](Window& w, QTextCursor&) { w.box.typeText(QStringLiteral("x")); }},
        {"backspace", [](Window&, QTextCursor& c) { c.deletePreviousChar(); }},
        {"type a word that wraps a line",
         [](Window& w, QTextCursor&) {
             w.box.typeText(QStringLiteral(" supplementary schedules of depreciation"));
         }},
        {"delete the word again",
         [](Window&, QTextCursor& c) {
             for (int i = 0; i < 40; ++i) {
                 c.deletePreviousChar();
             }
         }},
        {"a taller letter",
         [](Window&, QTextCursor& c) {
             QTextCharFormat big;
             big.setFontPointSize(40);
             c.insertText(QStringLiteral("B"), big);
         }},
        {"undo", [](Window& w, QTextCursor&) { w.box.document()->undo(); }},
        {"a paragraph end", [](Window& w, QTextCursor&) { w.box.typeText(QStringLiteral("\n")); }},
        {"join the paragraphs", [](Window&, QTextCursor& c) { c.deletePreviousChar(); }},
        {"a line break inside the paragraph",
         [](Window&, QTextCursor& c) { c.insertText(QString(QChar::LineSeparator)); }},
        {"replace a selection within the paragraph",
         [](Window&, QTextCursor& c) {
             c.movePosition(QTextCursor::NextWord, QTextCursor::KeepAnchor, 2);
             c.insertText(QStringLiteral("xy"));
         }},
        {"delete the last paragraph end before a page break",
         [](Window& w, QTextCursor& c) {
             c.setPosition(w.layout.firstPositionOfSheet(2));
             c.movePosition(QTextCursor::EndOfBlock);
             c.deleteChar();
         }},
    };
    for (const Edit& edit : edits) {
        QTextCursor cursor = edited.box.textCursor();
        if (!cursor.hasSelection() && edit.name != std::string("undo")) {
            cursor.setPosition(start);
        }
        edited.box.setTextCursor(cursor);
        QTextCursor c = edited.box.textCursor();
        edit.apply(edited, c);
        edited.box.setTextCursor(c);
        expectAsFresh(edited, edit.name);
    }
    // Both ways were taken: the test would prove nothing otherwise.
    EXPECT_GE(edited.layout.editsInPlace(), 3);
    EXPECT_GE(edited.layout.editsPassedOn(), 3);
}

// A letter typed on an early sheet changes no line after its paragraph, so
// nothing after it is laid out again; a paragraph end moves the sheets
// after it.
TEST(PagedTextLayoutTest, OnlyAParagraphThatChangesHeightMovesTheSheetsAfterIt) {
    Window w;
    w.box.setTextRTF(letters());
    const int pages = w.layout.totalPages();
    const QString second = w.layout.sheetText(2);
    QTextCursor cursor(w.box.document());
    cursor.setPosition(30);
    const int inPlace = w.layout.editsInPlace();
    cursor.insertText(QStringLiteral("x"));
    EXPECT_EQ(w.layout.editsInPlace(), inPlace + 1);
    EXPECT_EQ(w.layout.totalPages(), pages);
    EXPECT_EQ(w.layout.sheetText(2), second);

    const int passed = w.layout.editsPassedOn();
    cursor.insertText(QStringLiteral("\n"));
    EXPECT_EQ(w.layout.editsPassedOn(), passed + 1);
    EXPECT_NE(w.layout.sheetText(2), second);
}

// Without wrapping a longer line widens the document, which only Qt's
// layout reports: edits are not laid out in place then.
TEST(PagedTextLayoutTest, NoWrapLeavesEveryEditToQtsLayout) {
    Window w;
    w.box.setText(QStringLiteral("A short line\r\nAnother"));
    w.layout.setViewMode(PageLayout::NoWrap);
    w.layout.document()->documentLayout()->documentSize();
    const int before = w.layout.editsInPlace();
    QTextCursor cursor(w.box.document());
    cursor.setPosition(3);
    cursor.insertText(QStringLiteral("much longer "));
    EXPECT_EQ(w.layout.editsInPlace(), before);
}

} // namespace
