#include "spell/LiveSpelling.h"

#include "context/AppContext.h"
#include "spell/modSpellHashSearch.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

namespace {

class LiveSpellingTest : public ::testing::Test {
protected:
    LiveSpellingTest() {
        const QString path = m_env.path(QStringLiteral("list.db"));
        writeTestFile(path, "and\r\nclient\r\ndear\r\nfees\r\nis\r\nmarch\r\nthe\r\nyear\r\n");
        m_words.loadWordDatabaseIntoHashTable(path);
    }

    // The marked words, as text.
    QStringList marked(const QString& paragraph, const QSet<QString>& accepted = {}) {
        QStringList words;
        for (const auto& r : LiveSpelling::misspelledWords(m_words, paragraph, accepted)) {
            words << paragraph.mid(r.start, r.length);
        }
        return words;
    }

    TestEnvironment m_env;
    ScopedAppContext m_context;
    SpellWordDatabase m_words;
};

} // namespace

TEST_F(LiveSpellingTest, MarksOnlyRealWordsOfTheLetter) {
    struct Case {
        const char* name;
        QString paragraph;
        QStringList expected;
    };
    const Case cases[] = {
        {"plain slips", "Dear clinet, the fess", {"clinet", "fess"}},
        {"punctuation trimmed", "(clinet)! \"fess\"", {"clinet", "fess"}},
        {"amounts", "The fees: $1,250.00, 12.5% and -300", {}},
        {"dates", "31/03/2026, March 5, 2026 and 2026-03-31", {}},
        {"ordinals and ids", "the 31st year, the 2nd, BN123456RT0001", {}},
        {"placeholders",
         "Dear \u00ABContact Frist Name\u00BB, \u00AB(Year End Date, mmmm d yyyy)\u00BB",
         {}},
        {"placeholder glued to text", "the \u00ABFrist\u00BBs clinet", {"s", "clinet"}},
        {"unclosed placeholder is text", "Dear \u00ABclinet", {"clinet"}},
        {"addresses", "ann@example.com http://example.com", {}},
        {"empty", "", {}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(marked(c.paragraph), c.expected) << c.name;
    }
}

TEST_F(LiveSpellingTest, RangesPointIntoTheParagraphAndAcceptedWordsPass) {
    const QString text = QStringLiteral("  Clinet fees clinet.");
    const auto ranges = LiveSpelling::misspelledWords(m_words, text);
    ASSERT_EQ(ranges.size(), 2u);
    EXPECT_EQ(ranges[0], (LiveSpelling::Range{2, 6}));
    EXPECT_EQ(ranges[1], (LiveSpelling::Range{14, 6}));
    EXPECT_TRUE(marked(text, {QStringLiteral("clinet")}).isEmpty());
}

TEST_F(LiveSpellingTest, NothingIsMarkedWithoutAList) {
    SpellWordDatabase none;
    EXPECT_TRUE(LiveSpelling::misspelledWords(none, QStringLiteral("zzzz qqqq")).empty());
}
