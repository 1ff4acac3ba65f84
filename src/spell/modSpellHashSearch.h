#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <string_view>
#include <vector>

// The word list in memory: every word of the list file, in file order, as
// 8-bit text (code page 1252). The words live in one buffer and are reached
// through an offset table, so that a look-up touches two arrays and never
// allocates.
class SpellWordArray {
public:
    SpellWordArray() = default;

    // Splits 8-bit text at CR LF. The element behind the last line end is
    // dropped, whatever it holds, so a text without a final line end loses
    // its last word and a text without any CR LF gives no words at all.
    static SpellWordArray fromListText(QByteArray text);
    // The words as given, encoded in code page 1252.
    static SpellWordArray fromWords(const QStringList& words);

    qsizetype size() const { return qsizetype(m_spans.size()); }
    bool isEmpty() const { return m_spans.empty(); }
    // UBound: -1 when empty.
    qsizetype upperBound() const { return size() - 1; }
    // Precondition: 0 <= index < size().
    std::string_view at(qsizetype index) const {
        const Span& s = m_spans[size_t(index)];
        return {m_text.constData() + s.offset, s.length};
    }
    QString wordAt(qsizetype index) const;
    // The length of the longest word: nothing longer can be in the list.
    size_t maxWordLength() const { return m_maxLength; }

private:
    struct Span {
        std::uint32_t offset;
        std::uint32_t length;
    };
    QByteArray m_text;
    std::vector<Span> m_spans;
    size_t m_maxLength = 0;
};

using SpellHashTable = std::vector<std::int32_t>;

// A slot of the hash table that holds no word.
inline constexpr std::int32_t EmptySlot = INT32_MIN;

// Four 8-bit characters make one little-endian integer; the integers are
// XORed together with their indices and the sign bit is cleared. `length`
// -1 (or any negative value) hashes the whole text; a length beyond the
// text is cut down to it. The empty text hashes to -1.
std::int32_t GetFastXorHash(std::string_view text, int length = -1);
// The same over the text's code page 1252 form (characters outside the code
// page count as "?").
std::int32_t GetFastXorHash(const QString& text, int length = -1);

// Fills `table` with four slots a word and linear probing. Throws QmError
// SubscriptOutOfRange for an empty word array, which cannot be indexed.
void BuildHashTable(const SpellWordArray& words, SpellHashTable& table);

// The index of `word` in `words`, or -1. A table that is empty, or whose
// first and last slot hold the same value, is taken for one never filled
// and built anew first. The comparison is binary: look-ups are made in
// lower case. Throws QmError SubscriptOutOfRange for the empty word, which
// hashes to -1 and has no slot.
qsizetype HashSearch(const SpellWordArray& words, SpellHashTable& table, std::string_view word);
// The same for a word of the document; a word with a character outside the
// code page cannot be in the list and is not found.
qsizetype HashSearch(const SpellWordArray& words, SpellHashTable& table, const QString& word);

// The whole file, or a QmError FileNotFound / PathFileAccessError when it
// cannot be read.
QByteArray Database_Extract(const QString& file);

// The word list of a spell-check session: the file it came from, the words
// and the index over them.
class SpellWordDatabase {
public:
    // Reads `file` and builds the index. Throws QmError when the file cannot
    // be read or holds no complete line (an empty list cannot be indexed).
    void loadWordDatabaseIntoHashTable(const QString& file);
    // The same from a list text already read; `file` is where additions go.
    void loadWordList(const QString& file, QByteArray text);

    // Adds `word` to the list file named by the last load: the file is read
    // again, the word appended, the whole sorted and written back (empty
    // lines dropped, duplicates kept) through a temporary file. The tables
    // in memory are not touched; the word is known from the next load on.
    // Throws QmError when no list was loaded or the file cannot be
    // read or written (PermissionDenied for a read-only list).
    void Database_Add(const QString& word);

    // The index of the word, or -1; see HashSearch.
    qsizetype find(std::string_view word) { return HashSearch(m_words, m_table, word); }
    qsizetype find(const QString& word) { return HashSearch(m_words, m_table, word); }

    const QString& DatabaseFile() const { return m_databaseFile; }
    const QString& Separator() const { return m_separator; }
    const SpellWordArray& WordArray() const { return m_words; }
    qsizetype WordCount() const { return m_words.upperBound(); }
    const SpellHashTable& HashTable() const { return m_table; }
    bool isLoaded() const { return !m_words.isEmpty(); }

private:
    QString m_databaseFile;
    QString m_separator;
    SpellWordArray m_words;
    SpellHashTable m_table;
    bool m_arrayStarted = false;
};
