#include "spell/modSpellHashSearch.h"

#include "QtPrinters.h"
#include "context/AppContext.h"
#include "platform/errorClass.h"
#include "spell/modSpellMDBResource.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <gtest/gtest.h>
#include <string>

namespace {

std::string bytes(const char* text, size_t size) {
    return std::string(text, size);
}

} // namespace

TEST(GetFastXorHashTest, HashesFourCharacterGroupsWithTheirIndices) {
    struct Case {
        const char* name;
        std::string text;
        int length;
        std::int32_t expected;
    };
    // Worked by hand: the groups as little-endian integers, XORed with each
    // index from 0 to length / 4 + 1.
    const Case cases[] = {
        {"empty text", "", -1, -1},
        {"one character", "a", -1, 0x61 ^ 0 ^ 1},
        {"one group", "abcd", -1, 0x64636261 ^ 0 ^ 1 ^ 2},
        {"group and a half", "abcdef", -1, 0x64636261 ^ 0x6665 ^ 0 ^ 1 ^ 2},
        {"length cuts the text", "abcdef", 4, 0x64636261 ^ 0 ^ 1 ^ 2},
        {"length beyond the text", "abcd", 100, 0x64636261 ^ 0 ^ 1 ^ 2},
        {"length zero still hashes", "abcd", 0, 0 ^ 1},
        {"sign bit cleared", bytes("\xff\xff\xff\xff", 4), -1, 0x7FFFFFFC},
        // The indices do not depend on the groups, so reordered groups
        // collide: the probe handles it.
        {"groups swapped", "efghabcd", -1, 0x64636261 ^ 0x68676665 ^ 0 ^ 1 ^ 2 ^ 3},
        {"groups in order", "abcdefgh", -1, 0x64636261 ^ 0x68676665 ^ 0 ^ 1 ^ 2 ^ 3},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(GetFastXorHash(std::string_view(c.text), c.length), c.expected) << c.name;
    }
}

TEST(GetFastXorHashTest, TextFormUsesTheCodePageBytes) {
    EXPECT_EQ(GetFastXorHash(QStringLiteral("caf\u00e9")), GetFastXorHash(bytes("caf\xe9", 4)));
    // A character outside the code page hashes as "?".
    EXPECT_EQ(GetFastXorHash(QStringLiteral("a\u4e00")), GetFastXorHash(std::string_view("a?")));
}

TEST(SpellWordArrayTest, SplitsAtCrLfAndDropsWhatFollowsTheLastLineEnd) {
    struct Case {
        const char* name;
        QByteArray text;
        QStringList words;
    };
    const Case cases[] = {
        {"zero bytes behind the end", QByteArray("alpha\r\nbeta\r\n\0\0", 15), {"alpha", "beta"}},
        {"no final line end loses the last word", "alpha\r\nbeta", {"alpha"}},
        {"line feeds alone are no line ends", "alpha\nbeta\n", {}},
        {"empty file", "", {}},
        {"empty lines are words", "a\r\n\r\nb\r\n", {"a", "", "b"}},
        {"code page characters", "caf\xe9\r\n", {QStringLiteral("caf\u00e9")}},
    };
    for (const Case& c : cases) {
        const SpellWordArray words = SpellWordArray::fromListText(c.text);
        QStringList got;
        for (qsizetype i = 0; i < words.size(); ++i) {
            got << words.wordAt(i);
        }
        EXPECT_EQ(got, c.words) << c.name;
        EXPECT_EQ(words.upperBound(), c.words.size() - 1) << c.name;
    }
}

TEST(HashSearchTest, FindsEachWordAtItsIndexAndNothingElse) {
    const QStringList list = {"account", "accounts",   "audit", "balance", "ledger",
                              "tax",     "accountant", "z",     "ledgers", "taxes"};
    const SpellWordArray words = SpellWordArray::fromWords(list);
    SpellHashTable table;
    BuildHashTable(words, table);
    ASSERT_EQ(table.size(), size_t(list.size() * 4));
    for (qsizetype i = 0; i < list.size(); ++i) {
        EXPECT_EQ(HashSearch(words, table, list.at(i)), i) << list.at(i).toStdString();
    }
    for (const char* missing : {"Account", "acount", "ledge", "taxesx", "y", "a"}) {
        EXPECT_EQ(HashSearch(words, table, QString::fromLatin1(missing)), -1) << missing;
    }
    // A word with a character the list's code page lacks is in no list.
    EXPECT_EQ(HashSearch(words, table, QStringLiteral("tax\u4e00")), -1);
}

TEST(HashSearchTest, CollidingWordsAreFoundByProbing) {
    // Same groups in another order: same hash, so the second word probes.
    const SpellWordArray words = SpellWordArray::fromWords({"abcdefgh", "efghabcd", "x"});
    SpellHashTable table;
    BuildHashTable(words, table);
    EXPECT_EQ(HashSearch(words, table, std::string_view("abcdefgh")), 0);
    EXPECT_EQ(HashSearch(words, table, std::string_view("efghabcd")), 1);
    EXPECT_EQ(HashSearch(words, table, std::string_view("ghefcdab")), -1);
}

TEST(HashSearchTest, BuildsAnUnfilledTableAndRefusesTheEmptyWord) {
    const SpellWordArray words = SpellWordArray::fromWords({"one", "two"});
    SpellHashTable never;
    EXPECT_EQ(HashSearch(words, never, std::string_view("two")), 1);
    EXPECT_EQ(never.size(), 8u);

    // Both end slots alike marks a table as never filled: it is built anew.
    SpellHashTable stale(8, EmptySlot);
    EXPECT_EQ(HashSearch(words, stale, std::string_view("one")), 0);

    SpellHashTable table;
    BuildHashTable(words, table);
    EXPECT_THROW(HashSearch(words, table, std::string_view()), QmError);
    EXPECT_THROW(HashSearch(words, table, QString()), QmError);

    SpellHashTable none;
    EXPECT_THROW(BuildHashTable(SpellWordArray(), none), QmError);
}

TEST(SpellWordDatabaseTest, ShippedListIsWellFormedAndFullyIndexed) {
    const QByteArray list = loadResourceBytes(101, QStringLiteral("CUSTOM"));
    ASSERT_GT(list.size(), 900'000);
    EXPECT_TRUE(list.endsWith(QByteArray("\r\n\0\0", 4)));

    const SpellWordArray words = SpellWordArray::fromListText(list);
    ASSERT_GT(words.size(), 90'000);
    SpellHashTable table;
    BuildHashTable(words, table);
    // The table must not look unfilled, or every search would rebuild it.
    EXPECT_NE(table.front(), table.back());

    for (qsizetype i = 0; i < words.size(); ++i) {
        const std::string_view word = words.at(i);
        ASSERT_FALSE(word.empty()) << "line " << i;
        ASSERT_EQ(word.find('\n'), std::string_view::npos) << "line " << i;
        if (i > 0) {
            // Sorted by character code, no duplicates, lower case.
            ASSERT_LT(words.wordAt(i - 1), words.wordAt(i)) << "line " << i;
        }
        ASSERT_EQ(words.wordAt(i), words.wordAt(i).toLower()) << "line " << i;
        ASSERT_EQ(HashSearch(words, table, word), i) << "line " << i;
    }
}

TEST(SpellWordDatabaseTest, LoadReportsFilesItCannotIndex) {
    TestEnvironment env;
    ScopedAppContext context;
    struct Case {
        const char* name;
        QByteArray content; // null: no file at all
        qsizetype words;    // -1: the load throws
    };
    const Case cases[] = {
        {"missing file", QByteArray(), -1},
        {"empty file", QByteArray(""), -1},
        {"line feeds only", "one\ntwo\n", -1},
        {"no final line end", "one\r\ntwo", 1},
        {"binary with a line end", QByteArray("\x00\x01\xff\r\n\x7f", 6), 1},
        {"shipped format", QByteArray("one\r\ntwo\r\n\0\0", 12), 2},
    };
    for (const Case& c : cases) {
        const QString path = env.path(QStringLiteral("lists/%1.db").arg(c.name));
        if (!c.content.isNull()) {
            writeTestFile(path, c.content);
        }
        SpellWordDatabase database;
        if (c.words < 0) {
            EXPECT_THROW(database.loadWordDatabaseIntoHashTable(path), QmError) << c.name;
            EXPECT_FALSE(database.isLoaded()) << c.name;
        } else {
            database.loadWordDatabaseIntoHashTable(path);
            EXPECT_EQ(database.WordArray().size(), c.words) << c.name;
            EXPECT_EQ(database.WordCount(), c.words - 1) << c.name;
            EXPECT_EQ(database.DatabaseFile(), path) << c.name;
            EXPECT_EQ(database.Separator(), QStringLiteral("\r\n")) << c.name;
        }
    }
}

TEST(SpellWordDatabaseTest, AddRewritesTheFileSortedAndLeavesTheIndexAlone) {
    TestEnvironment env;
    ScopedAppContext context;
    const QString path = env.path(QStringLiteral("list.db"));
    writeTestFile(path, QByteArray("apple\r\ncherry\r\nmango\r\n") + QByteArray(2, '\0'));

    SpellWordDatabase database;
    EXPECT_THROW(database.Database_Add(QStringLiteral("early")), QmError);

    database.loadWordDatabaseIntoHashTable(path);
    database.Database_Add(QStringLiteral("banana"));
    database.Database_Add(QStringLiteral("cherry"));
    database.Database_Add(QStringLiteral("caf\u00e9"));

    // The zero bytes behind the old last line end were an element of their
    // own; being non-empty they are kept, and sort first.
    const QByteArray expected =
        QByteArray(2, '\0') + QByteArray("\r\napple\r\nbanana\r\ncaf\xe9\r\ncherry\r\n"
                                         "cherry\r\nmango\r\n");
    EXPECT_EQ(readTestFile(path), expected);
    EXPECT_EQ(database.find(std::string_view("banana")), -1);

    SpellWordDatabase reloaded;
    reloaded.loadWordDatabaseIntoHashTable(path);
    EXPECT_GE(reloaded.find(std::string_view("banana")), 0);
    EXPECT_GE(reloaded.find(QStringLiteral("caf\u00e9")), 0);
    EXPECT_EQ(QDir(env.root()).entryList(QDir::Files), QStringList{"list.db"});
}
