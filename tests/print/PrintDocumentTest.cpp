#include "print/PrintDocument.h"

#include "documents/DocumentModel.h"
#include "documents/PageLayout.h"
#include "platform/ProgressReporter.h"
#include "platform/richtext/RichTextBox.h"
#include "print/RecordingTarget.h"

#include <gtest/gtest.h>

namespace {

// RTF of `pages` sheets, each starting with "<name> page <n>".
QString sheetsRtf(const QString& name, int pages) {
    QString rtf =
        QStringLiteral("{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Liberation Serif;}}\\f0\\fs24 ");
    for (int page = 1; page <= pages; ++page) {
        if (page > 1) {
            rtf += QStringLiteral("\\page ");
        }
        rtf += QStringLiteral("%1 page %2\\par ").arg(name).arg(page);
    }
    return rtf + QLatin1Char('}');
}

struct Document {
    DocumentModel model;
    RichTextBox box;
    PageLayout layout{box, model};
    explicit Document(int pages) {
        if (pages > 0) {
            box.setTextRTF(sheetsRtf(QStringLiteral("Doc"), pages));
        }
    }
};

using Sheets = std::vector<QStringList>;
QStringList sheet(std::initializer_list<const char*> pages) {
    QStringList list;
    for (const char* p : pages) {
        list << QString::fromLatin1(p);
    }
    return list;
}

PrintOutcome printSingle(Document& doc, RecordingTarget& target, const PrintRequest& request) {
    NullProgress progress;
    return PrintDocument(&target, request, progress)
        .printDocument(doc.layout, doc.model, QStringLiteral("Doc"));
}

TEST(PrintDocumentTest, AnEmptyDocumentPrintsOneSheet) {
    Document doc(0);
    RecordingTarget target;
    const PrintOutcome outcome = printSingle(doc, target, PrintRequest{});
    EXPECT_TRUE(outcome.ok());
    EXPECT_EQ(outcome.pages, 1);
    EXPECT_EQ(target.sheets, Sheets({sheet({""})}));
    EXPECT_TRUE(target.ended);
}

TEST(PrintDocumentTest, ARangeOnOneDocumentStillFeedsASheetForEverySkippedPage) {
    Document doc(3);
    ASSERT_EQ(doc.layout.totalPages(), 3);
    RecordingTarget target;
    const PrintOutcome outcome = printSingle(doc, target, PrintRequest::fromDialog(1, 2, 2, 3));
    EXPECT_EQ(outcome.pages, 3) << "the document runs to its end whatever the range";
    EXPECT_EQ(target.sheets, Sheets({{}, sheet({"Doc page 2"}), {}}));
}

TEST(PrintDocumentTest, CopiesCountOnSoOnlyTheFirstCopyMeetsARange) {
    Document doc(3);
    RecordingTarget all;
    EXPECT_EQ(printSingle(doc, all, PrintRequest::fromDialog(2, 1, 3, 3)).pages, 6);
    const QStringList one = sheet({"Doc page 1"});
    const QStringList two = sheet({"Doc page 2"});
    const QStringList three = sheet({"Doc page 3"});
    EXPECT_EQ(all.sheets, Sheets({one, two, three, one, two, three}));

    RecordingTarget ranged;
    EXPECT_EQ(printSingle(doc, ranged, PrintRequest::fromDialog(2, 2, 3, 3)).pages, 6);
    EXPECT_EQ(ranged.sheets, Sheets({{}, two, three, {}, {}, {}}));
}

TEST(PrintDocumentTest, TheDialogsFullRangeMeansPrintAll) {
    EXPECT_TRUE(PrintRequest::fromDialog(1, 1, 5, 5).printAll);
    EXPECT_FALSE(PrintRequest::fromDialog(1, 1, 4, 5).printAll);
    EXPECT_FALSE(PrintRequest::fromDialog(1, 2, 5, 5).printAll);
    EXPECT_EQ(PrintRequest::fromDialog(0, 1, 5, 5).copies, 1);
}

std::vector<PrintLetter> letters(std::initializer_list<int> pages) {
    std::vector<PrintLetter> result;
    char name = 'A';
    for (int count : pages) {
        const QString letter = QString(QLatin1Char(name++));
        result.push_back({QStringLiteral("Client ") + letter, sheetsRtf(letter, count)});
    }
    return result;
}

TEST(PrintDocumentTest, AMergedBatchStartsEveryLetterOnANewSheet) {
    RecordingTarget target;
    RecordingProgress progress;
    DocumentModel geometry;
    const PrintOutcome outcome =
        PrintDocument(&target, PrintRequest{}, progress).printLetters(letters({2, 1, 3}), geometry);
    EXPECT_EQ(outcome.pages, 6) << "the batch's pages are the sum of its letters'";
    EXPECT_EQ(target.sheets,
              Sheets({sheet({"A page 1"}), sheet({"A page 2"}), sheet({"B page 1"}),
                      sheet({"C page 1"}), sheet({"C page 2"}), sheet({"C page 3"})}));
    EXPECT_EQ(progress.caption(), QStringLiteral("Printing Merge Documents"));
    EXPECT_EQ(progress.steps(), QStringList({QStringLiteral("Preparing to print: Client A"),
                                             QStringLiteral("Preparing to print: Client B"),
                                             QStringLiteral("Preparing to print: Client C")}));
}

TEST(PrintDocumentTest, AMergedRangeCountsThroughTheBatchAndSkippedPagesCostNoSheet) {
    RecordingTarget target;
    NullProgress progress;
    DocumentModel geometry;
    // Pages 3 and 4 of the run: B's only page and C's first.
    const PrintOutcome outcome =
        PrintDocument(&target, PrintRequest::fromDialog(1, 3, 4, 6), progress)
            .printLetters(letters({2, 1, 3}), geometry);
    EXPECT_EQ(outcome.pages, 4) << "C is left once the counter passed the range";
    EXPECT_EQ(target.sheets, Sheets({sheet({"B page 1"}), sheet({"C page 1"})}));
}

TEST(PrintDocumentTest, CancelDropsTheJob) {
    Document doc(3);
    RecordingTarget target;
    RecordingProgress progress;
    progress.cancelAfter(2);
    const PrintOutcome outcome = PrintDocument(&target, PrintRequest{}, progress)
                                     .printDocument(doc.layout, doc.model, QStringLiteral("Doc"));
    EXPECT_TRUE(outcome.cancelled);
    EXPECT_EQ(outcome.pages, 0);
    EXPECT_TRUE(target.aborted);
    EXPECT_FALSE(target.ended);
    EXPECT_TRUE(progress.ended());
}

TEST(PrintDocumentTest, APrinterThatFailsMidJobDropsItWithItsReason) {
    Document doc(3);
    RecordingTarget target;
    target.failOnNewPage = 2;
    const PrintOutcome outcome = printSingle(doc, target, PrintRequest{});
    EXPECT_FALSE(outcome.ok());
    EXPECT_EQ(outcome.error, QStringLiteral("The printer went away."));
    EXPECT_TRUE(target.aborted);
    EXPECT_FALSE(target.ended);

    RecordingTarget refusing;
    refusing.refuseBegin = true;
    EXPECT_EQ(printSingle(doc, refusing, PrintRequest{}).error,
              QStringLiteral("The printer went away."));
    EXPECT_EQ(refusing.sheets.size(), 1u);
    EXPECT_TRUE(refusing.sheets.front().isEmpty()) << "nothing painted after a refused start";
}

TEST(PrintDocumentTest, CountOnlyTouchesNoDevice) {
    Document doc(3);
    RecordingTarget target;
    PrintRequest request;
    request.countOnly = true;
    NullProgress progress;
    const PrintOutcome outcome = PrintDocument(&target, request, progress)
                                     .printDocument(doc.layout, doc.model, QStringLiteral("Doc"));
    EXPECT_EQ(outcome.pages, 3);
    EXPECT_FALSE(target.began);
}

struct EdgeCase {
    int left, right, top, bottom; // margins
    // expected: left, top, right, bottom
    int offX, offY;
    TextEdges expected;
};

class TextEdgesTest : public testing::TestWithParam<EdgeCase> {};

TEST_P(TextEdgesTest, FollowTheMarginsAgainstTheUnprintableOffsets) {
    const EdgeCase c = GetParam();
    DocumentModel model;
    model.putLeftMargin(c.left, false);
    model.putRightMargin(c.right, false);
    model.putTopMargin(c.top, false);
    model.putBottomMargin(c.bottom, false);
    const TextEdges edges = printTextEdges(model, QSize(12240, 15840), QPoint(c.offX, c.offY));
    EXPECT_EQ(edges.left, c.expected.left);
    EXPECT_EQ(edges.right, c.expected.right);
    EXPECT_EQ(edges.top, c.expected.top);
    EXPECT_EQ(edges.bottom, c.expected.bottom);
}

INSTANTIATE_TEST_SUITE_P(Offsets, TextEdgesTest,
                         testing::Values(
                             // No unprintable area: the margins themselves.
                             EdgeCase{1440, 1440, 1440, 1440, 0, 0, {1440, 1440, 10800, 14400}},
                             // A printer's offsets move every edge toward the printable corner.
                             EdgeCase{1440, 1440, 1440, 1440, 300, 200, {1140, 1240, 11100, 14600}},
                             // A right margin no wider than the offset: the text runs to the
                             // width less the left edge, as the left margin exceeds the offset.
                             EdgeCase{2000, 200, 2000, 100, 300, 200, {1700, 1800, 10540, 14040}},
                             // Both margins inside the offsets: out to the paper's width.
                             EdgeCase{100, 100, 150, 150, 300, 200, {300, 200, 12240, 15840}}));

} // namespace
