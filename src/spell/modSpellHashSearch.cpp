#include "spell/modSpellHashSearch.h"

#include "context/AppContext.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"
#include "platform/text/CodePage1252.h"
#include "spell/modSpellWordList.h"

#include <QFileInfo>
#include <QtEndian>
#include <algorithm>
#include <array>
#include <cstring>
#include <string>

namespace {

const QString kModule = QStringLiteral("QuillmerePad.exe-modSpellHashSearch-");

// XOR of all integers from 0 to n.
std::uint32_t xorOfIndices(std::uint64_t n) {
    switch (n % 4) {
    case 0:
        return std::uint32_t(n);
    case 1:
        return 1;
    case 2:
        return std::uint32_t(n + 1);
    default:
        return 0;
    }
}

[[noreturn]] void throwNoSlot() {
    throw QmError(QmError::SubscriptOutOfRange, QStringLiteral("Subscript out of range"));
}

// Calls `use` with the code page 1252 form of `text`; with `strict`, a text
// holding a character the code page lacks is reported as nullopt instead.
// Short words are converted on the stack, so a look-up does not allocate.
template <typename Use> auto withCodePageBytes(const QString& text, bool strict, Use use) {
    std::array<char, 128> small{};
    std::string large;
    char* out = small.data();
    if (text.size() > qsizetype(small.size())) {
        large.resize(size_t(text.size()));
        out = large.data();
    }
    bool complete = true;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const auto byte = CodePage1252::fromUnicode(text.at(i));
        complete = complete && byte.has_value();
        out[i] = byte ? char(*byte) : '?';
    }
    return use(std::string_view(out, size_t(text.size())), complete || !strict);
}

} // namespace

SpellWordArray SpellWordArray::fromListText(QByteArray text) {
    SpellWordArray result;
    const std::string_view all(text.constData(), size_t(text.size()));
    size_t start = 0;
    for (;;) {
        const size_t end = all.find("\r\n", start);
        if (end == std::string_view::npos) {
            break; // the rest stands behind the last line end: dropped
        }
        result.m_spans.push_back({std::uint32_t(start), std::uint32_t(end - start)});
        result.m_maxLength = std::max(result.m_maxLength, end - start);
        start = end + 2;
    }
    result.m_text = std::move(text);
    return result;
}

SpellWordArray SpellWordArray::fromWords(const QStringList& words) {
    QByteArray text;
    for (const QString& word : words) {
        text += CodePage1252::encode(word);
        text += "\r\n";
    }
    return fromListText(std::move(text));
}

QString SpellWordArray::wordAt(qsizetype index) const {
    const std::string_view word = at(index);
    return CodePage1252::decode(QByteArray(word.data(), qsizetype(word.size())));
}

std::int32_t GetFastXorHash(std::string_view text, int length) {
    if (text.empty()) {
        return -1;
    }
    const size_t n = (length < 0 || size_t(length) > text.size()) ? text.size() : size_t(length);
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
    std::uint32_t hash = 0;
    const size_t whole = n / 4;
    for (size_t i = 0; i < whole; ++i) {
        hash ^= qFromLittleEndian<std::uint32_t>(bytes + 4 * i);
    }
    std::uint32_t tail = 0;
    for (size_t k = 0; k < n % 4; ++k) {
        tail |= std::uint32_t(bytes[4 * whole + k]) << (8 * k);
    }
    hash ^= tail;
    // The integer array runs from 0 to n / 4 + 1; elements past the text are
    // zero and add only their index.
    hash ^= xorOfIndices(std::uint64_t(whole) + 1);
    return std::int32_t(hash & 0x7FFFFFFFu);
}

std::int32_t GetFastXorHash(const QString& text, int length) {
    return withCodePageBytes(text, false, [length](std::string_view bytes, bool) {
        return GetFastXorHash(bytes, length);
    });
}

void BuildHashTable(const SpellWordArray& words, SpellHashTable& table) {
    ProcedureScope scope(app().errors, kModule + QStringLiteral("BuildHashTable"));
    if (words.isEmpty()) {
        throwNoSlot();
    }
    const size_t size = size_t(words.size()) * 4;
    table.assign(size, EmptySlot);
    for (qsizetype i = 0; i < words.size(); ++i) {
        size_t slot = size_t(GetFastXorHash(words.at(i))) % size;
        while (table[slot] != EmptySlot) {
            slot = slot + 1 == size ? 0 : slot + 1;
        }
        table[slot] = std::int32_t(i);
    }
}

qsizetype HashSearch(const SpellWordArray& words, SpellHashTable& table, std::string_view word) {
    if (table.empty() || table.front() == table.back()) {
        BuildHashTable(words, table);
    }
    if (word.empty()) {
        throwNoSlot(); // hashes to -1, which has no slot
    }
    if (word.size() > words.maxWordLength()) {
        return -1; // saves hashing a long candidate that cannot match
    }
    const std::int32_t hash = GetFastXorHash(word);
    const size_t size = table.size();
    size_t slot = size_t(hash) % size;
    // A table made by BuildHashTable is at most a quarter full; the bound
    // only guards against a table that does not belong to these words.
    for (size_t probes = 0; probes < size; ++probes) {
        const std::int32_t entry = table[slot];
        if (entry == EmptySlot) {
            return -1;
        }
        if (entry >= 0 && entry < words.size() && words.at(entry) == word) {
            return entry;
        }
        slot = slot + 1 == size ? 0 : slot + 1;
    }
    return -1;
}

qsizetype HashSearch(const SpellWordArray& words, SpellHashTable& table, const QString& word) {
    if (word.isEmpty()) {
        return HashSearch(words, table, std::string_view());
    }
    return withCodePageBytes(word, true, [&](std::string_view bytes, bool encodable) {
        if (!encodable) {
            // Every word of the list came from the code page, so a word
            // with any other character equals none of them.
            if (table.empty() || table.front() == table.back()) {
                BuildHashTable(words, table);
            }
            return qsizetype(-1);
        }
        return HashSearch(words, table, bytes);
    });
}

QByteArray Database_Extract(const QString& file) {
    ProcedureScope scope(app().errors, kModule + QStringLiteral("Database_Extract"));
    if (!fileControl::FileExists(file)) {
        throw QmError(QmError::FileNotFound, QStringLiteral("File not found: ") + file);
    }
    std::optional<QByteArray> bytes = fileControl::readWholeFile(file);
    if (!bytes) {
        throw QmError(QmError::PathFileAccessError,
                      QStringLiteral("Path/File access error: ") + file);
    }
    return std::move(*bytes);
}

void SpellWordDatabase::loadWordDatabaseIntoHashTable(const QString& file) {
    ProcedureScope scope(app().errors, kModule + QStringLiteral("loadWordDatabaseIntoHashTable"));
    m_databaseFile = file;
    loadWordList(file, Database_Extract(file));
}

void SpellWordDatabase::loadWordList(const QString& file, QByteArray text) {
    m_databaseFile = file;
    m_separator = QStringLiteral("\r\n");
    SpellWordArray words = SpellWordArray::fromListText(std::move(text));
    SpellHashTable table;
    BuildHashTable(words, table);
    m_words = std::move(words);
    m_table = std::move(table);
}

void SpellWordDatabase::Database_Add(const QString& word) {
    ProcedureScope scope(app().errors, kModule + QStringLiteral("Database_Add"));
    if (m_databaseFile.isEmpty()) {
        throw QmError(QmError::BadFileNameOrNumber, QStringLiteral("Bad file name or number"));
    }
    // Writing goes through a temporary file renamed over the list, which a
    // read-only list would not stop.
    if (fileControl::FileExists(m_databaseFile) && !QFileInfo(m_databaseFile).isWritable()) {
        throw QmError(QmError::PermissionDenied,
                      QStringLiteral("Permission denied: ") + m_databaseFile);
    }
    QStringList lines =
        CodePage1252::decode(Database_Extract(m_databaseFile)).split(QStringLiteral("\r\n"));
    m_arrayStarted = true;
    AddToStringArray(lines, word, -1, m_arrayStarted);
    TriQuickSortString(lines);

    QByteArray out;
    out.reserve(fileControl::FileSize(m_databaseFile) + word.size() + 2);
    for (const QString& line : lines) {
        if (!line.isEmpty()) {
            out += CodePage1252::encode(line);
            out += "\r\n";
        }
    }
    if (!fileControl::writeFileAtomically(m_databaseFile, out)) {
        throw QmError(QmError::PathFileAccessError,
                      QStringLiteral("Path/File access error: ") + m_databaseFile);
    }
}
