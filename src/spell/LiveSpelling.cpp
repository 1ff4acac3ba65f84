#include "spell/LiveSpelling.h"

#include "spell/modSpellHashSearch.h"
#include "spell/modSpellSearch.h"

namespace LiveSpelling {

namespace {

constexpr QChar kOpen(0x00AB);
constexpr QChar kClose(0x00BB);

bool isBlank(QChar c) {
    return c.isSpace() || c == QChar::ObjectReplacementCharacter || c == QChar::LineSeparator ||
           c == QChar::ParagraphSeparator;
}

} // namespace

std::vector<Range> misspelledWords(SpellWordDatabase& words, QStringView paragraph,
                                   const QSet<QString>& accepted) {
    std::vector<Range> found;
    if (!words.isLoaded()) {
        return found;
    }
    const qsizetype size = paragraph.size();
    qsizetype i = 0;
    while (i < size) {
        const QChar c = paragraph.at(i);
        if (c == kOpen) {
            // A placeholder runs to its closing mark; an unclosed one is text.
            const qsizetype close = paragraph.indexOf(kClose, i + 1);
            if (close > i) {
                i = close + 1;
                continue;
            }
        }
        if (isBlank(c)) {
            ++i;
            continue;
        }
        // An unclosed mark opens a token of its own, so the scan always moves on.
        qsizetype end = i + 1;
        while (end < size && !isBlank(paragraph.at(end)) && paragraph.at(end) != kOpen) {
            ++end;
        }
        const QStringView token = paragraph.mid(i, end - i);
        const bool hasDigit =
            std::any_of(token.begin(), token.end(), [](QChar t) { return t.isDigit(); });
        if (!hasDigit && Filter_Word(token)) {
            const QStringView word = Filter_Punctuation(token);
            if (!word.isEmpty() && !Word_Compare(words, word) &&
                !accepted.contains(word.toString().toLower())) {
                const qsizetype at = word.data() - paragraph.data();
                found.push_back({int(at), int(word.size())});
            }
        }
        i = end;
    }
    return found;
}

} // namespace LiveSpelling
