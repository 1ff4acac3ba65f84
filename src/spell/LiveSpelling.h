#pragma once

#include <QSet>
#include <QString>
#include <QStringView>
#include <vector>

class SpellWordDatabase;

// Spelling as the user types: which words of one paragraph to underline.
// Stricter than the dialog about what is no word at all, because a
// practice's letters are full of figures and fields: a token with a digit
// (numbers, amounts, dates such as 31/03/2026, ordinals), anything inside a
// placeholder «...», e-mail and web addresses are never marked.
namespace LiveSpelling {

struct Range {
    int start = 0; // in the paragraph's characters
    int length = 0;
    bool operator==(const Range&) const = default;
};

// The misspelled words of `paragraph`, in order. `accepted` holds words
// (lower case) added this session, which count as known before the list
// file is read again.
std::vector<Range> misspelledWords(SpellWordDatabase& words, QStringView paragraph,
                                   const QSet<QString>& accepted = {});

} // namespace LiveSpelling
