#include "spell/modSpellWordList.h"

#include "QtPrinters.h"

#include <QRandomGenerator>
#include <algorithm>
#include <gtest/gtest.h>

namespace {

QStringList randomWords(QRandomGenerator& random, int count, int alphabet) {
    QStringList words;
    for (int i = 0; i < count; ++i) {
        QString word;
        const int length = random.bounded(0, 6);
        for (int k = 0; k < length; ++k) {
            word += QChar(u'a' + random.bounded(alphabet));
        }
        words << word;
    }
    return words;
}

} // namespace

TEST(TriQuickSortStringTest, SortsLikeABinaryComparison) {
    struct Case {
        const char* name;
        QStringList input;
    };
    QRandomGenerator random(20240601);
    const Case cases[] = {
        {"empty", {}},
        {"one", {"b"}},
        {"below the cutoff", {"d", "a", "c", "b", "a"}},
        {"sorted", {"a", "b", "c", "d", "e", "f", "g", "h", "i"}},
        {"reversed", {"i", "h", "g", "f", "e", "d", "c", "b", "a"}},
        {"all equal", QStringList(40, QStringLiteral("x"))},
        {"case and code units",
         {"b", "B", "a", "A", QStringLiteral("\u00e9"), "z", QStringLiteral("\u20ac"), "", "aa"}},
        {"few distinct values", randomWords(random, 500, 2)},
        {"many values", randomWords(random, 3000, 26)},
    };
    for (const Case& c : cases) {
        QStringList sorted = c.input;
        TriQuickSortString(sorted);
        QStringList expected = c.input;
        std::sort(expected.begin(), expected.end());
        EXPECT_EQ(sorted, expected) << c.name;
    }
}

TEST(TriQuickSortStringTest, QuicksortPartAloneLeavesOnlySmallRunsUnsorted) {
    QRandomGenerator random(7);
    QStringList words = randomWords(random, 200, 26);
    TriQuickSortString2(words, 4, 0, words.size() - 1);
    // Every element is at most four places from where it belongs, so the
    // insertion pass has little to do.
    QStringList sorted = words;
    std::sort(sorted.begin(), sorted.end());
    for (qsizetype i = 0; i < words.size(); ++i) {
        const auto first = std::lower_bound(sorted.begin(), sorted.end(), words.at(i));
        const auto last = std::upper_bound(sorted.begin(), sorted.end(), words.at(i));
        const qsizetype low = first - sorted.begin();
        const qsizetype high = last - sorted.begin() - 1;
        EXPECT_TRUE(i >= low - 4 && i <= high + 4) << i;
    }
    InsertionSortString(words, 0, words.size() - 1);
    EXPECT_EQ(words, sorted);
}

TEST(AddToStringArrayTest, InsertsAppendsOrStartsTheArray) {
    struct Case {
        const char* name;
        QStringList array;
        bool started;
        qsizetype position;
        QStringList expected;
    };
    const Case cases[] = {
        {"not started replaces", {"old", "stuff"}, false, 0, {"new"}},
        {"append", {"a", "b"}, true, -1, {"a", "b", "new"}},
        {"at the head", {"a", "b"}, true, 0, {"new", "a", "b"}},
        {"at the last element", {"a", "b"}, true, 1, {"a", "new", "b"}},
        {"behind the end appends", {"a", "b"}, true, 2, {"a", "b", "new"}},
        {"far negative appends", {"a"}, true, -7, {"a", "new"}},
    };
    for (const Case& c : cases) {
        QStringList array = c.array;
        bool started = c.started;
        AddToStringArray(array, QStringLiteral("new"), c.position, started);
        EXPECT_EQ(array, c.expected) << c.name;
        EXPECT_TRUE(started) << c.name;
    }
}
