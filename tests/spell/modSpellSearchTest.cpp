#include "spell/modSpellSearch.h"

#include "QtPrinters.h"
#include "context/AppContext.h"
#include "platform/errorClass.h"
#include "spell/SpellTextTarget.h"
#include "spell/modSpellHashSearch.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

namespace {

// A word list file in a temporary folder, loaded.
class SpellSearchTest : public ::testing::Test {
protected:
    void load(const QStringList& words) {
        const QString path = m_env.path(QStringLiteral("list.db"));
        QByteArray text;
        for (const QString& word : words) {
            text += word.toLatin1() + "\r\n";
        }
        writeTestFile(path, text + QByteArray("\0\0", 2));
        m_database.loadWordDatabaseIntoHashTable(path);
    }

    QStringList suggest(const QString& word, int mode) {
        QStringList found;
        Word_Suggest(m_database, word, mode, found);
        return found;
    }

    TestEnvironment m_env;
    ScopedAppContext m_context;
    SpellWordDatabase m_database;
};

} // namespace

TEST(FilterWordTest, SkipsAddressesAndOrdinals) {
    struct Case {
        const char* token;
        bool checked;
    };
    const Case cases[] = {
        {"invoice", true},
        {"me@example.com", false},
        {"@", false},
        {"http://portal", false},
        {"HTTP://portal", true}, // the searches are case-sensitive
        {"ftp.example.org", false},
        {"softphone", false}, // "ftp" inside a word
        {"software", true},
        {"1st", false},
        {"21st", false},
        {"31st", false}, // "1st" inside a longer token
        {"22nd", false},
        {"(3rd)", false},
        {"4th", false},
        {"17th,", false},
        {"30th", false},
        {"31th", true},
        {"40th", true},
        {"104th", false},
        {"4TH", true},
        {"3th", true},
        {"month", true},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Filter_Word(QString::fromUtf8(c.token)), c.checked) << c.token;
    }
}

TEST(FilterPunctuationTest, TrimsEverythingButLettersAndDigitsAtTheEnds) {
    struct Case {
        const char* token;
        const char* expected;
    };
    const Case cases[] = {
        {"", ""},
        {"(hello)", "hello"},
        {"--", ""},
        {"&", ""},
        {"\"Schedule", "Schedule"},
        {"B\").", "B"},
        {"don't", "don't"},
        {"clients'", "clients"},
        {"...a...", "a"},
        {"$250", "250"},
        {"2024.", "2024"},
        {"caf\xc3\xa9.", "caf\xc3\xa9"},
        {"declining-balance", "declining-balance"},
        {"\xe2\x80\x9cquoted\xe2\x80\x9d", "quoted"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Filter_Punctuation(QString::fromUtf8(c.token)).toString(),
                  QString::fromUtf8(c.expected))
            << c.token;
    }
}

TEST_F(SpellSearchTest, WordCompareLowersAndStripsPossessiveEndings) {
    load({"class", "client", "clients", "don't", "tax"});
    struct Case {
        const char* word;
        bool known;
    };
    const Case cases[] = {
        {"client", true},   {"Client", true},
        {"CLIENTS", true},  {"clients'", true},
        {"client's", true}, {"TAX'S", true},
        {"class'", false},  {"don't", true},
        {"dont", false},    {"clientx", false},
        {"", false},        {"'s", false},
        {"s'", false},      {"tax\xe4\xb8\x80", false},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Word_Compare(m_database, QString::fromUtf8(c.word)), c.known) << c.word;
    }
}

TEST(WordWildcardsTest, ReplacesOneOrTwoCharactersPerPosition) {
    EXPECT_EQ(Word_Wildcards(QStringLiteral("abc"), 0), QStringList({"*bc", "a*c", "ab*"}));
    EXPECT_EQ(Word_Wildcards(QStringLiteral("abc"), 1), QStringList({"**c", "a**", "ab**"}));
    EXPECT_EQ(Word_Wildcards(QStringLiteral("a"), 1), QStringList({"**"}));
    EXPECT_TRUE(Word_Wildcards(QString(), 0).isEmpty());
    EXPECT_TRUE(Word_Wildcards(QStringLiteral("abc"), 2).isEmpty());
}

TEST_F(SpellSearchTest, WordSuggestTriesLettersInPositionOrder) {
    load({"bad", "bat", "bet", "bit", "bog", "but", "cat", "hat", "b", "c"});
    struct Case {
        const char* name;
        QString word;
        int mode;
        QStringList expected;
    };
    const QStringList oneLetter = {"bat", "bet", "bit", "but"};
    const QStringList twoLetters = {"bat", "bet", "bit", "but", "cat", "hat",
                                    "bad", "bat", "bet", "bit", "bog", "but"};
    const Case cases[] = {
        {"mode 0", "bxt", 0, oneLetter},
        {"mode 1 skips the last pattern", "bxt", 1, twoLetters},
        {"mode 2 is 0 then 1", "bxt", 2, oneLetter + twoLetters},
        {"upper case is looked up lower", "BXT", 0, oneLetter},
        {"single letter, mode 0", "x", 0, {"b", "c"}},
        {"single letter, mode 1", "x", 1, {}},
        {"empty word", "", 2, {}},
        {"other modes find nothing", "bxt", 7, {}},
        // A "*" of the word is a wildcard too: the pattern "**t" becomes
        // "aat", "bbt", ...; "b*t" gives the one-letter words.
        {"star in the word", "b*t", 0, oneLetter},
        {"character outside the code page", QStringLiteral("b\u4e00t"), 0, oneLetter},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(suggest(c.word, c.mode), c.expected) << c.name;
    }
}

TEST(MatchScoreTest, ScoresPositionalMatchesRoundedHalfToEven) {
    struct Case {
        const char* word;
        const char* candidate;
        std::optional<int> score;
    };
    const Case cases[] = {
        {"abcd", "abcd", 100},
        {"abcd", "abce", 75},
        {"abcdefgh", "abcdefgx", 88}, // 87.5
        {"abcdefgh", "abcdexxx", 62}, // 62.5
        {"abc", "abd", 67},
        {"abc", "ab", 67},   // a missing position is a mismatch
        {"abc", "abcd", 67}, // so is each extra character
        {"abc", "xyz", 0},
        {"ab", "xyzw", -100},
        {"ABC", "abc", 100},
        {"file1", "FILE1", 100},
        {"", "x", std::nullopt},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Match_Score(QString::fromUtf8(c.word), QString::fromUtf8(c.candidate)), c.score)
            << c.word << " / " << c.candidate;
    }
    EXPECT_THROW(Match_Score(QStringLiteral("a"), QString(400, QLatin1Char('b'))), QmError);

    EXPECT_TRUE(Match_Tolerance(QStringLiteral("abc"), QStringLiteral("abd"), 67));
    EXPECT_FALSE(Match_Tolerance(QStringLiteral("abc"), QStringLiteral("abd"), 68));
    EXPECT_FALSE(Match_Tolerance(QString(), QString(), 0));
}

TEST(SuggestSortTest, OnePassPutsDropsInScoreAtTheHead) {
    struct Case {
        const char* name;
        QString word;
        QStringList input;
        int order;
        QStringList expected;
    };
    // Scores against "abcd": abcd 100, abcx 75, abxx 50, xbcd 75.
    const QStringList input = {"abcd", "abcx", "abxx", "xbcd"};
    const Case cases[] = {
        {"ascending pass", "abcd", input, 1, {"abxx", "abcx", "abcd", "xbcd"}},
        {"order 2 reverses", "abcd", input, 2, {"xbcd", "abcd", "abcx", "abxx"}},
        {"rising scores keep their order",
         "abcd",
         {"abxx", "abcx", "abcd"},
         1,
         {"abxx", "abcx", "abcd"}},
        {"empty list", "abcd", {}, 1, {}},
        {"empty word leaves the list", "", input, 2, input},
    };
    for (const Case& c : cases) {
        QStringList list = c.input;
        Suggest_Sort(c.word, list, c.order);
        EXPECT_EQ(list, c.expected) << c.name;
    }
}

TEST(WordHighlightTest, MarksLowerCaseOccurrencesBehindABlank) {
    struct Case {
        const char* name;
        QString text;
        qsizetype position;
        QString word;
        QString expected;
        qsizetype positionAfter;
    };
    const QString w = QStringLiteral("\\cf1 teh\\cf0 ");
    const Case cases[] = {
        {"every occurrence", "a teh b teh", 0, "teh", "a " + w + " b " + w, 2 * w.size() + 5},
        {"not at the start", "teh x", 0, "teh", "teh x", 0},
        {"not behind a line end", "x\r\nteh", 0, "teh", "x\r\nteh", 0},
        {"upper-case word never counts", "a Teh", 0, "Teh", "a Teh", 0},
        {"found without regard to case", "a TEH", 0, "teh", "a \\cf1 TEH\\cf0 ", 15},
        {"inside a longer word", "a tehran", 0, "teh", "a " + w + "ran", 2 + w.size()},
        {"only behind the position", "a teh b teh", 4, "teh", "a teh b " + w, 8 + w.size()},
    };
    for (const Case& c : cases) {
        QString text = c.text;
        qsizetype position = c.position;
        Word_Highlight(text, position, c.word);
        EXPECT_EQ(text, c.expected) << c.name;
        EXPECT_EQ(position, c.positionAfter) << c.name;
    }
}

TEST(WordHighlightTest, ColoursTheLastOccurrenceOnTheControl) {
    PlainSpellText box(QStringLiteral("teh and teh again"));
    Word_Highlight(box, box.Text(), QStringLiteral("teh"));
    ASSERT_EQ(box.colourMarks().size(), 2u);
    EXPECT_EQ(box.colourMarks()[0].start, 8);
    EXPECT_EQ(box.colourMarks()[0].length, 3);
    EXPECT_EQ(box.colourMarks()[0].colour, QColor(255, 0, 0));
    EXPECT_EQ(box.colourMarks()[1].start, 17);
    EXPECT_EQ(box.colourMarks()[1].length, 0);
    EXPECT_EQ(box.colourMarks()[1].colour, QColor(0, 0, 0));
    EXPECT_FALSE(box.Locked());

    Word_Highlight(box, box.Text(), QStringLiteral("absent"));
    EXPECT_EQ(box.colourMarks().size(), 2u);
}
