#include "documents/DocumentModel.h"
#include "documents/PageLayout.h"
#include "platform/richtext/RichTextBox.h"
#include "support/GeneratedLetters.h"
#include "support/TestEnvironment.h"

#include <QFile>
#include <QRegularExpression>
#include <QTextDocument>
#include <algorithm>
#include <gtest/gtest.h>

// Page breaks against LibreOffice's for the same letters on the same page and
// fonts (golden files by scripts/make-pagination-goldens.sh). Two layout
// engines differ by a line here and there: a break may fall a line or two
// away, never a paragraph; a long file may differ by a sheet or two in 100.
namespace {

constexpr int kWordsToMatch = 6;
// Two full lines of 12-point text on a letter page with 1" margins.
constexpr int kWordsOfLeeway = 34;

struct Golden {
    int pages = 0;
    std::vector<QStringList> firstWords; // per page
};

QStringList wordsOf(const QString& text) {
    static const QRegularExpression space(QStringLiteral("\\s+"));
    return text.split(space, Qt::SkipEmptyParts);
}

// Up to twelve words of each page: as many as the golden has.
Golden readGolden(const QString& path) {
    Golden golden;
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly | QIODevice::Text)) << path.toStdString();
    for (const QString& line : QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'))) {
        if (line.startsWith(QLatin1String("pages: "))) {
            golden.pages = line.mid(7).toInt();
        } else if (const qsizetype tab = line.indexOf(QLatin1Char('\t')); tab > 0) {
            golden.firstWords.push_back(wordsOf(line.mid(tab + 1)).mid(0, 12));
        }
    }
    return golden;
}

// Where a run of words first stands at or after `from`; -1 when nowhere.
qsizetype find(const QStringList& words, const QStringList& run, qsizetype from) {
    for (qsizetype i = from; i + run.size() <= words.size(); ++i) {
        if ((run.isEmpty() || words[i] == run.front()) && words.mid(i, run.size()) == run) {
            return i;
        }
    }
    return -1;
}

// Compares the sheets of a laid-out document with LibreOffice's pages,
// finding each of theirs by its first `wordsToMatch` words.
void expectBreaksNearLibreOffices(const PageLayout& layout, const Golden& golden,
                                  int wordsToMatch) {
    ASSERT_GT(golden.pages, 0);
    ASSERT_EQ(int(golden.firstWords.size()), golden.pages);
    const int pages = layout.totalPages();
    EXPECT_LE(std::abs(pages - golden.pages), std::max(1, golden.pages / 50))
        << "ours " << pages << ", LibreOffice " << golden.pages;

    // Where each sheet starts, as an index into the document's words.
    const QStringList words = wordsOf(layout.document()->toPlainText());
    std::vector<qsizetype> ours{0};
    for (int page = 1; page < pages; ++page) {
        ours.push_back(ours.back() + wordsOf(layout.sheetText(page)).size());
    }
    std::vector<qsizetype> theirs{0};
    for (size_t page = 1; page < golden.firstWords.size(); ++page) {
        const QStringList run = golden.firstWords[page].mid(0, wordsToMatch);
        theirs.push_back(find(words, run, theirs.back() + 1));
        ASSERT_GE(theirs.back(), 0) << "page " << page + 1 << " of LibreOffice not found";
    }
    // Every break of theirs has one of ours close by, but for the few a sheet
    // more or less makes; a letter's first sheet starts at the same word.
    int unmatched = 0;
    int worst = 0;
    for (size_t i = 0; i < theirs.size(); ++i) {
        // Sheets start in order: the nearest of ours is next to where it would go.
        const auto at = std::lower_bound(ours.begin(), ours.end(), theirs[i]);
        qsizetype nearest = words.size();
        if (at != ours.end()) {
            nearest = *at - theirs[i];
        }
        if (at != ours.begin()) {
            nearest = std::min(nearest, theirs[i] - *(at - 1));
        }
        if (golden.firstWords[i].mid(0, 4).join(QLatin1Char(' ')) ==
            QLatin1String("Harbour & Vale Accountants")) {
            EXPECT_EQ(nearest, 0) << "the letter on LibreOffice's page " << i + 1;
        }
        if (nearest > kWordsOfLeeway) {
            ++unmatched;
        } else {
            worst = std::max(worst, int(nearest));
        }
    }
    const int allowed = std::max(1, int(theirs.size()) / 50);
    EXPECT_LE(unmatched, allowed) << unmatched << " of " << theirs.size()
                                  << " of LibreOffice's page breaks have none of ours within "
                                  << kWordsOfLeeway << " words";
    ::testing::Test::RecordProperty("worst_matched_break_in_words", worst);
    ::testing::Test::RecordProperty("unmatched_breaks", unmatched);
}

class PaginationGoldenTest : public ::testing::TestWithParam<const char*> {};

TEST_P(PaginationGoldenTest, SheetsBreakWhereLibreOfficeBreaksThem) {
    const QString name = QString::fromLatin1(GetParam());
    const Golden golden =
        readGolden(testDataPath(QStringLiteral("pagination/%1.lo-pages.txt").arg(name)));
    DocumentModel model; // the default page: Letter, 1" margins, as the files state
    RichTextBox box;
    PageLayout layout(box, model);
    layout.loadFile(testDataPath(QStringLiteral("pagination/%1.rtf").arg(name)));
    expectBreaksNearLibreOffices(layout, golden, kWordsToMatch);
}

// The generated letters file of the benchmarks, some 2,900 sheets, is made
// again here rather than kept; its golden is committed. Each letter starts a
// sheet with the same heading, so a page is found by its first twelve words,
// which reach the client's number. Every page is compared: some 5 s in a
// Debug build.
TEST(LongPaginationGoldenTest, TheGeneratedLettersFileBreaksWhereLibreOfficeBreaksIt) {
    const Golden golden =
        readGolden(testDataPath(QStringLiteral("pagination/letters-5mb.lo-pages.txt")));
    TestEnvironment env;
    const QString path = env.path(QStringLiteral("letters-5mb.rtf"));
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(generatedLetters());
    }
    DocumentModel model;
    RichTextBox box;
    PageLayout layout(box, model);
    layout.loadFile(path);
    expectBreaksNearLibreOffices(layout, golden, 12);
}

INSTANTIATE_TEST_SUITE_P(Letters, PaginationGoldenTest,
                         ::testing::Values("one-letter", "three-letters", "generated-letters"));

} // namespace
