#include "documents/DocumentModel.h"
#include "documents/PageLayout.h"
#include "platform/richtext/RichTextBox.h"
#include "support/TestEnvironment.h"

#include <QFile>
#include <QRegularExpression>
#include <QTextDocument>
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

Golden readGolden(const QString& path) {
    Golden golden;
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly | QIODevice::Text)) << path.toStdString();
    for (const QString& line : QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'))) {
        if (line.startsWith(QLatin1String("pages: "))) {
            golden.pages = line.mid(7).toInt();
        } else if (const qsizetype tab = line.indexOf(QLatin1Char('\t')); tab > 0) {
            golden.firstWords.push_back(wordsOf(line.mid(tab + 1)).mid(0, kWordsToMatch));
        }
    }
    return golden;
}

// Where a run of words first stands at or after `from`; -1 when nowhere.
qsizetype find(const QStringList& words, const QStringList& run, qsizetype from) {
    for (qsizetype i = from; i + run.size() <= words.size(); ++i) {
        if (words.mid(i, run.size()) == run) {
            return i;
        }
    }
    return -1;
}

class PaginationGoldenTest : public ::testing::TestWithParam<const char*> {};

TEST_P(PaginationGoldenTest, SheetsBreakWhereLibreOfficeBreaksThem) {
    const QString name = QString::fromLatin1(GetParam());
    const Golden golden =
        readGolden(testDataPath(QStringLiteral("pagination/%1.lo-pages.txt").arg(name)));
    ASSERT_GT(golden.pages, 0);
    ASSERT_EQ(int(golden.firstWords.size()), golden.pages);

    DocumentModel model; // the default page: Letter, 1" margins, as the files state
    RichTextBox box;
    PageLayout layout(box, model);
    layout.loadFile(testDataPath(QStringLiteral("pagination/%1.rtf").arg(name)));
    const int pages = layout.totalPages();
    EXPECT_LE(std::abs(pages - golden.pages), std::max(1, golden.pages / 50))
        << "ours " << pages << ", LibreOffice " << golden.pages;

    // Where each sheet starts, as an index into the document's words.
    const QStringList words = wordsOf(box.document()->toPlainText());
    std::vector<qsizetype> ours{0};
    for (int page = 1; page < pages; ++page) {
        ours.push_back(ours.back() + wordsOf(layout.sheetText(page)).size());
    }
    std::vector<qsizetype> theirs{0};
    for (size_t page = 1; page < golden.firstWords.size(); ++page) {
        theirs.push_back(find(words, golden.firstWords[page], theirs.back() + 1));
        ASSERT_GE(theirs.back(), 0) << "page " << page + 1 << " of LibreOffice not found";
    }
    // Every break of theirs has one of ours close by, but for the few a sheet
    // more or less makes; a letter's first sheet starts at the same word.
    int unmatched = 0;
    int worst = 0;
    for (size_t page = 0; page < theirs.size(); ++page) {
        qsizetype nearest = words.size();
        for (const qsizetype start : ours) {
            nearest = std::min(nearest, std::abs(start - theirs[page]));
        }
        if (golden.firstWords[page].mid(0, 4).join(QLatin1Char(' ')) ==
            QLatin1String("Harbour & Vale Accountants")) {
            EXPECT_EQ(nearest, 0) << "the letter on LibreOffice's page " << page + 1;
        }
        if (nearest > kWordsOfLeeway) {
            ++unmatched;
        } else {
            worst = std::max(worst, int(nearest));
        }
    }
    EXPECT_LE(unmatched, std::max(1, golden.pages / 50))
        << unmatched << " of LibreOffice's page breaks have none of ours within " << kWordsOfLeeway
        << " words";
    RecordProperty("worst_matched_break_in_words", worst);
    RecordProperty("unmatched_breaks", unmatched);
}

INSTANTIATE_TEST_SUITE_P(Letters, PaginationGoldenTest,
                         ::testing::Values("one-letter", "three-letters", "generated-letters"));

} // namespace
