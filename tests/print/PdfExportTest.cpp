#include "print/PdfExport.h"

#include "documents/DocumentFile.h"
#include "platform/FullDiskFolder.h"
#include "platform/ProgressReporter.h"
#include "print/PdfText.h"
#include "support/TestEnvironment.h"

#include <QFile>
#include <QProcess>
#include <gtest/gtest.h>

namespace {

QStringList words(const QString& text) {
    return text.split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts);
}

class PdfExportTest : public testing::Test {
protected:
    void SetUp() override {
        if (!PdfText::available()) {
            GTEST_SKIP() << "poppler-utils (pdfinfo, pdftotext) are not installed";
        }
    }
    TestEnvironment env;
};

TEST_F(PdfExportTest, EverySheetsTextIsThePaginationsOnPaperOfThePageSetup) {
    const auto document =
        PaginatedDocument::open(testDataPath(QStringLiteral("documents/three-page-letter.rtf")));
    const int pages = document->layout.totalPages();
    ASSERT_EQ(pages, 3);
    const QString pdf = env.path(QStringLiteral("letter.pdf"));
    NullProgress progress;
    const PrintOutcome outcome = writeDocumentPdf(document->layout, document->model, pdf,
                                                  PageRange{}, QStringLiteral("Letter"), progress);
    ASSERT_TRUE(outcome.ok()) << outcome.error.toStdString();
    EXPECT_EQ(outcome.pages, 3);
    EXPECT_EQ(PdfText::info(pdf, QStringLiteral("Pages")), QStringLiteral("3"));
    EXPECT_TRUE(
        PdfText::info(pdf, QStringLiteral("Page size")).startsWith(QLatin1String("612 x 792")));
    for (int page = 1; page <= pages; ++page) {
        EXPECT_EQ(PdfText::pageWords(pdf, page), words(document->layout.sheetText(page)))
            << "page " << page;
    }
    // The first line stands at the margins: one inch from the left, and its
    // box starts at the top margin.
    const QPointF first = PdfText::firstWord(pdf, 1);
    EXPECT_NEAR(first.x(), 72.0, 0.5);
    EXPECT_NEAR(first.y(), 72.0, 2.0);
}

TEST_F(PdfExportTest, PageSizeAndMarginsComeFromTheDocumentsTrailer) {
    // An A4 landscape letter with a two-inch left margin.
    const QString source = env.path(QStringLiteral("wide.rtf"));
    {
        RichTextBox box;
        box.setText(QStringLiteral("Wide sheet of the practice"));
        DocumentModel model;
        model.PaperSize = 9;
        model.putDocumentOrientation(2, false);
        model.putPageWidth(16838, false);
        model.putPageHeight(11906, false);
        model.putLeftMargin(2880, false);
        DocumentFile::save(source, box, model);
    }
    const auto document = PaginatedDocument::open(source);
    const QString pdf = env.path(QStringLiteral("wide.pdf"));
    NullProgress progress;
    ASSERT_TRUE(
        writeDocumentPdf(document->layout, document->model, pdf, PageRange{}, {}, progress).ok());
    // The PDF writer keeps sheet sizes in whole points.
    EXPECT_TRUE(
        PdfText::info(pdf, QStringLiteral("Page size")).startsWith(QLatin1String("842 x 595 pts")))
        << PdfText::info(pdf, QStringLiteral("Page size")).toStdString();
    EXPECT_NEAR(PdfText::firstWord(pdf, 1).x(), 144.0, 0.5);
}

TEST_F(PdfExportTest, ARangeWritesOnlyItsPages) {
    const auto document =
        PaginatedDocument::open(testDataPath(QStringLiteral("documents/three-page-letter.rtf")));
    const QString pdf = env.path(QStringLiteral("two.pdf"));
    NullProgress progress;
    const PrintOutcome outcome =
        writeDocumentPdf(document->layout, document->model, pdf, PageRange{2, 3}, {}, progress);
    ASSERT_TRUE(outcome.ok());
    EXPECT_EQ(PdfText::info(pdf, QStringLiteral("Pages")), QStringLiteral("2"));
    EXPECT_EQ(PdfText::pageWords(pdf, 1), words(document->layout.sheetText(2)));
}

// Paragraphs long enough to run from one sheet onto the next (one over two
// breaks), short ones
// between, and blank lines at the end that make no sheet of their own.
QString runOnLetter() {
    QString text;
    for (int i = 0; i < 14; ++i) {
        text += QStringLiteral("Paragraph %1 begins.").arg(i);
        for (int s = 0; s < (i == 4 ? 240 : i % 3 == 0 ? 80 : 3); ++s) {
            text += QStringLiteral(" The accounts for sentence %1 are in order.").arg(s);
        }
        text += QStringLiteral("\r\n");
    }
    return text + QStringLiteral("\r\n\r\n   \r\n");
}

// A document opened to be written once is laid out as its sheets are drawn,
// keeping glyphs only until then: its PDF must hold the sheets, and the
// text of each, that the window's layout of the same file shows.
TEST_F(PdfExportTest, WritingAsTheLayoutGoesGivesTheWindowsSheets) {
    const QString source = env.path(QStringLiteral("run-on.rtf"));
    {
        RichTextBox box;
        box.setText(runOnLetter());
        DocumentFile::save(source, box, DocumentModel());
    }
    const auto window = PaginatedDocument::open(source);
    const int pages = window->layout.totalPages();
    ASSERT_GE(pages, 5);
    for (const PageRange range : {PageRange{}, PageRange{2, 0}, PageRange{3, 4}}) {
        const auto once = PaginatedDocument::openToWrite(source);
        ASSERT_TRUE(once->layout.keepsGlyphsUntilDrawn());
        const QString pdf = env.path(QStringLiteral("once-%1.pdf").arg(range.fromPage));
        NullProgress progress;
        const PrintOutcome outcome =
            writeDocumentPdf(once->layout, once->model, pdf, range, {}, progress);
        ASSERT_TRUE(outcome.ok()) << outcome.error.toStdString();
        const int last = range.toPage == 0 ? pages : range.toPage;
        EXPECT_EQ(outcome.pages, last - range.fromPage + 1) << range.fromPage;
        EXPECT_EQ(PdfText::info(pdf, QStringLiteral("Pages")).toInt(), outcome.pages);
        for (int page = range.fromPage; page <= last; ++page) {
            EXPECT_EQ(PdfText::pageWords(pdf, page - range.fromPage + 1),
                      words(window->layout.sheetText(page)))
                << "range from " << range.fromPage << ", page " << page;
        }
        EXPECT_EQ(once->layout.totalPages(), pages);
    }
}

TEST_F(PdfExportTest, AMergedBatchHasTheSumOfItsLettersPages) {
    std::vector<PrintLetter> letters;
    int expected = 0;
    for (int i = 1; i <= 3; ++i) {
        QString rtf =
            QStringLiteral("{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Liberation Serif;}}\\f0 ");
        for (int page = 1; page <= i; ++page) {
            rtf += QStringLiteral("Letter %1 sheet %2\\par%3")
                       .arg(i)
                       .arg(page)
                       .arg(page < i ? QStringLiteral("\\page ") : QString());
        }
        letters.push_back({QStringLiteral("Client %1").arg(i), rtf + QLatin1Char('}')});
        expected += i;
    }
    const QString pdf = env.path(QStringLiteral("batch.pdf"));
    RecordingProgress progress;
    const PrintOutcome outcome = writeLettersPdf(letters, DocumentModel(), pdf, {}, progress);
    ASSERT_TRUE(outcome.ok()) << outcome.error.toStdString();
    EXPECT_EQ(outcome.pages, expected);
    EXPECT_EQ(PdfText::info(pdf, QStringLiteral("Pages")), QString::number(expected));
    EXPECT_EQ(PdfText::pageWords(pdf, 4), words(QStringLiteral("Letter 3 sheet 1")));
}

TEST_F(PdfExportTest, AFullDiskLeavesNoPdfAndSaysWhy) {
    FullDiskFolder disk;
    if (!disk.available()) {
        GTEST_SKIP() << disk.whySkipped().toStdString();
    }
    const auto document =
        PaginatedDocument::open(testDataPath(QStringLiteral("documents/three-page-letter.rtf")));
    const QString pdf = disk.path(QStringLiteral("letter.pdf"));
    disk.fill();
    NullProgress progress;
    const PrintOutcome outcome =
        writeDocumentPdf(document->layout, document->model, pdf, PageRange{}, {}, progress);
    EXPECT_FALSE(outcome.ok());
    EXPECT_TRUE(outcome.error.contains(QLatin1String("could not be written")))
        << outcome.error.toStdString();
    EXPECT_FALSE(QFile::exists(pdf));
    EXPECT_TRUE(QDir(disk.path({})).entryList({QStringLiteral("*.pdf*")}, QDir::Files).isEmpty());
}

TEST_F(PdfExportTest, MarginsThatLeaveNoTextAreaWriteNothingAndSaySo) {
    // Paper Setup lets a paper size through that its margins fill.
    PaginatedDocument document;
    document.box.setText(QStringLiteral("A letter on a label"));
    document.model.putPageWidth(2 * 1440, false);
    document.model.putPageHeight(3 * 1440, false);
    document.layout.setupDocument();
    const QString pdf = env.path(QStringLiteral("label.pdf"));
    writeTestFile(pdf, "old");
    NullProgress progress;
    const PrintOutcome outcome =
        writeDocumentPdf(document.layout, document.model, pdf, PageRange{1, 1}, {}, progress);
    EXPECT_FALSE(outcome.ok());
    EXPECT_TRUE(outcome.error.startsWith(QLatin1String("The margins leave no room for text")))
        << outcome.error.toStdString();
    EXPECT_TRUE(outcome.error.contains(QLatin1String("no PDF was written")));
    EXPECT_EQ(readTestFile(pdf), QByteArray("old"));
}

TEST_F(PdfExportTest, ACancelledExportKeepsTheOldFile) {
    const auto document =
        PaginatedDocument::open(testDataPath(QStringLiteral("documents/three-page-letter.rtf")));
    const QString pdf = env.path(QStringLiteral("kept.pdf"));
    writeTestFile(pdf, "old");
    RecordingProgress progress;
    progress.cancelAfter(2);
    const PrintOutcome outcome =
        writeDocumentPdf(document->layout, document->model, pdf, PageRange{}, {}, progress);
    EXPECT_TRUE(outcome.cancelled);
    EXPECT_EQ(readTestFile(pdf), QByteArray("old"));
}

struct ProgramRun {
    int status;
    QString out;
    QString err;
};

ProgramRun runProgram(const QStringList& args) {
    QProcess process;
    process.start(QStringLiteral(QM_EXECUTABLE), args);
    process.waitForFinished(120000);
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

TEST_F(PdfExportTest, ThePdfCommandAgreesWithThePagesCommand) {
    const QString doc = testDataPath(QStringLiteral("documents/three-page-letter.rtf"));
    const QString pdf = env.path(QStringLiteral("cli.pdf"));
    const ProgramRun made = runProgram(
        {QStringLiteral("pdf"), doc, pdf, QStringLiteral("--pages"), QStringLiteral("2-99999")});
    ASSERT_EQ(made.status, 0) << made.err.toStdString();
    EXPECT_TRUE(made.out.endsWith(QLatin1String(": 2 pages\n")));
    const ProgramRun pages = runProgram({QStringLiteral("pages"), doc});
    const QStringList lines = pages.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 4);
    for (int page = 2; page <= 3; ++page) {
        const QStringList head = words(lines[page - 1].section(QLatin1Char('\t'), 1));
        const QStringList text = PdfText::pageWords(pdf, page - 1);
        // The pages command shows the first 60 characters: its last word may be cut.
        ASSERT_GE(text.size(), head.size());
        EXPECT_EQ(text.mid(0, head.size() - 1), head.mid(0, head.size() - 1)) << page;
    }
}

TEST_F(PdfExportTest, ThePdfCommandCountsOnlyAsFarAsItsRange) {
    const QString source = env.path(QStringLiteral("run-on.rtf"));
    {
        RichTextBox box;
        box.setText(runOnLetter());
        DocumentFile::save(source, box, DocumentModel());
    }
    const int pages = PaginatedDocument::open(source)->layout.totalPages();
    const QString pdf = env.path(QStringLiteral("cli.pdf"));
    const ProgramRun all = runProgram({QStringLiteral("pdf"), source, pdf});
    ASSERT_EQ(all.status, 0) << all.err.toStdString();
    EXPECT_EQ(all.out, QStringLiteral("%1: %2 pages\n").arg(pdf).arg(pages));
    const ProgramRun tail =
        runProgram({QStringLiteral("pdf"), source, pdf, QStringLiteral("--pages"),
                    QStringLiteral("%1-99999").arg(pages - 1)});
    ASSERT_EQ(tail.status, 0) << tail.err.toStdString();
    EXPECT_EQ(tail.out, QStringLiteral("%1: 2 pages\n").arg(pdf));
    const ProgramRun beyond = runProgram({QStringLiteral("pdf"), source, pdf,
                                          QStringLiteral("--pages"), QString::number(pages + 1)});
    EXPECT_EQ(beyond.status, 2);
    EXPECT_TRUE(beyond.err.contains(QStringLiteral("only %1 pages").arg(pages)))
        << beyond.err.toStdString();
}

TEST_F(PdfExportTest, TheCommandRefusesBadRangesAndWritesNothing) {
    const QString doc = testDataPath(QStringLiteral("documents/three-page-letter.rtf"));
    const QString pdf = env.path(QStringLiteral("none.pdf"));
    for (const char* range : {"7-3", "0", "5"}) {
        const ProgramRun run = runProgram(
            {QStringLiteral("pdf"), doc, pdf, QStringLiteral("--pages"), QLatin1String(range)});
        EXPECT_EQ(run.status, 2) << range;
        EXPECT_FALSE(run.err.isEmpty()) << range;
        EXPECT_FALSE(QFile::exists(pdf)) << range;
    }
    const ProgramRun missing =
        runProgram({QStringLiteral("pdf"), env.path(QStringLiteral("no.rtf")), pdf});
    EXPECT_EQ(missing.status, 1);
    EXPECT_TRUE(missing.err.contains(QLatin1String("File not found")));
}

} // namespace
