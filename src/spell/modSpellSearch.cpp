#include "spell/modSpellSearch.h"

#include "context/AppContext.h"
#include "platform/text/CodePage1252.h"
#include "platform/errorClass.h"
#include "platform/text/ShellStringCompare.h"
#include "spell/SpellTextTarget.h"
#include "spell/modSpellHashSearch.h"

#include <QByteArray>
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string>

namespace {

const QString kModule = QStringLiteral("QuillmerePad.exe-modSpellSearch-");

// The closed library's word-form operation on a suggestion: a pass-through.
QString wordForm(const QString& candidate) {
    return candidate;
}

// Lower-cases `word` into code page 1252 bytes; false when a character has
// no byte there (no word of the list can then match).
bool lowerCodePageBytes(QStringView word, std::string& out) {
    out.resize(size_t(word.size()));
    for (qsizetype i = 0; i < word.size(); ++i) {
        const auto byte = CodePage1252::fromUnicode(word.at(i).toLower());
        if (!byte) {
            return false;
        }
        out[size_t(i)] = char(*byte);
    }
    return true;
}

QString fromCodePage(const std::string& bytes) {
    return CodePage1252::decode(QByteArray(bytes.data(), qsizetype(bytes.size())));
}

bool isKnown(SpellWordDatabase& database, const std::string& candidate) {
    return !candidate.empty() && database.find(std::string_view(candidate)) >= 0;
}

void suggestByPatterns(SpellWordDatabase& database, const QString& word, int mode,
                       QStringList& suggestions);

// Mode 0 and 1 over the bytes of the word: the same candidates, in the same
// order, as replacing the wildcards of the patterns, without building them.
void suggestFast(SpellWordDatabase& database, std::string& bytes, int mode,
                 QStringList& suggestions) {
    const size_t n = bytes.size();
    if (mode == 0) {
        for (size_t i = 0; i < n; ++i) {
            const char original = bytes[i];
            for (char c = 'a'; c <= 'z'; ++c) {
                bytes[i] = c;
                if (isKnown(database, bytes)) {
                    suggestions << wordForm(fromCodePage(bytes));
                }
            }
            bytes[i] = original;
        }
        return;
    }
    for (size_t i = 0; i + 1 < n; ++i) {
        const char first = bytes[i];
        const char second = bytes[i + 1];
        for (char c1 = 'a'; c1 <= 'z'; ++c1) {
            bytes[i] = c1;
            for (char c2 = 'a'; c2 <= 'z'; ++c2) {
                bytes[i + 1] = c2;
                if (isKnown(database, bytes)) {
                    suggestions << wordForm(fromCodePage(bytes));
                }
            }
        }
        bytes[i] = first;
        bytes[i + 1] = second;
        doEventsIfInputPending();
    }
}

// The literal procedure: every wildcard of a pattern is replaced, also one
// that was in the word itself. Used when the word holds "*" or a character
// outside the code page, where the shortcut above would differ.
void suggestByPatterns(SpellWordDatabase& database, const QString& word, int mode,
                       QStringList& suggestions) {
    const QStringList patterns = Word_Wildcards(word, mode);
    const qsizetype used = mode == 1 ? patterns.size() - 1 : patterns.size();
    for (qsizetype k = 0; k < used; ++k) {
        for (char16_t c1 = u'a'; c1 <= u'z'; ++c1) {
            if (mode == 0) {
                QString candidate = patterns.at(k);
                candidate.replace(QLatin1Char('*'), QChar(c1));
                if (!candidate.isEmpty() && database.find(candidate) >= 0) {
                    suggestions << wordForm(candidate);
                }
                continue;
            }
            for (char16_t c2 = u'a'; c2 <= u'z'; ++c2) {
                QString candidate = patterns.at(k);
                const QChar pair[2] = {QChar(c1), QChar(c2)};
                candidate.replace(QStringLiteral("**"), QString(pair, 2));
                if (!candidate.isEmpty() && database.find(candidate) >= 0) {
                    suggestions << wordForm(candidate);
                }
            }
        }
        if (mode == 1) {
            doEventsIfInputPending();
        }
    }
}

void suggestOneMode(SpellWordDatabase& database, const QString& lowered, int mode,
                    QStringList& suggestions) {
    std::string bytes;
    if (!lowered.contains(QLatin1Char('*')) && lowerCodePageBytes(lowered, bytes)) {
        suggestFast(database, bytes, mode, suggestions);
    } else {
        suggestByPatterns(database, lowered, mode, suggestions);
    }
}

} // namespace

bool Filter_Word(QStringView token) {
    static const std::array<QLatin1String, 6> skipped = {
        QLatin1String("@"),   QLatin1String("http"), QLatin1String("ftp"),
        QLatin1String("1st"), QLatin1String("2nd"),  QLatin1String("3rd")};
    for (const QLatin1String& marker : skipped) {
        if (token.contains(marker)) {
            return false;
        }
    }
    if (!token.contains(QLatin1String("th"))) {
        return true;
    }
    // Most tokens with "th" are words without digits, which no ordinal
    // pattern can match; they need not be searched 27 times.
    const bool hasDigit =
        std::any_of(token.begin(), token.end(), [](QChar c) { return c.isDigit(); });
    if (!hasDigit) {
        return true;
    }
    static const QStringList ordinals = [] {
        QStringList list;
        for (int n = 4; n <= 30; ++n) {
            list << QString::number(n) + QLatin1String("th");
        }
        return list;
    }();
    for (const QString& ordinal : ordinals) {
        if (token.contains(ordinal)) {
            return false;
        }
    }
    return true;
}

QStringView Filter_Punctuation(QStringView token) {
    const auto isWordCharacter = [](QChar c) { return c.isLetter() || c.isDigit(); };
    qsizetype start = 0;
    qsizetype end = token.size();
    while (start < end && !isWordCharacter(token.at(start))) {
        ++start;
    }
    while (end > start && !isWordCharacter(token.at(end - 1))) {
        --end;
    }
    return token.mid(start, end - start);
}

bool Word_Compare(SpellWordDatabase& database, QStringView word) {
    thread_local std::string bytes;
    if (word.isEmpty() || !lowerCodePageBytes(word, bytes)) {
        return false;
    }
    if (database.find(std::string_view(bytes)) >= 0) {
        return true;
    }
    const std::string_view all(bytes);
    if (all.size() > 2 && (all.ends_with("'s") || all.ends_with("s'"))) {
        return database.find(all.substr(0, all.size() - 2)) >= 0;
    }
    return false;
}

QStringList Word_Wildcards(const QString& word, int mode) {
    QStringList patterns;
    if (mode != 0 && mode != 1) {
        return patterns;
    }
    const QString wildcard = mode == 0 ? QStringLiteral("*") : QStringLiteral("**");
    const qsizetype replaced = mode == 0 ? 1 : 2;
    patterns.reserve(word.size());
    for (qsizetype i = 0; i < word.size(); ++i) {
        patterns << word.left(i) + wildcard + word.mid(i + replaced);
    }
    return patterns;
}

void Word_Suggest(SpellWordDatabase& database, const QString& word, int mode,
                  QStringList& suggestions) {
    ProcedureScope scope(app().errors, kModule + QStringLiteral("Word_Suggest"));
    if (word.isEmpty()) {
        return;
    }
    // Every candidate has the word's length; past the longest word of the
    // list none can be found, and a pasted run of 10,000 characters would
    // otherwise cost millions of look-ups.
    if (database.isLoaded() && size_t(word.size()) > database.WordArray().maxWordLength()) {
        return;
    }
    const QString lowered = word.toLower();
    if (mode == 0 || mode == 2) {
        suggestOneMode(database, lowered, 0, suggestions);
    }
    if (mode == 1 || mode == 2) {
        suggestOneMode(database, lowered, 1, suggestions);
    }
}

int StrCmpLogical(QStringView a, QStringView b) {
    return StrCmpLogicalW(a, b);
}

std::optional<int> Match_Score(QStringView word, QStringView candidate) {
    const qsizetype length = word.size();
    if (length == 0) {
        return std::nullopt;
    }
    qsizetype mismatches = 0;
    for (qsizetype i = 0; i < length; ++i) {
        if (i >= candidate.size()) {
            ++mismatches;
        } else if (StrCmpLogical(word.mid(i, 1), candidate.mid(i, 1)) != 0) {
            ++mismatches;
        }
    }
    if (candidate.size() > length) {
        mismatches += candidate.size() - length;
    }
    // Rounded the way the old runtime converts to a 16-bit integer: half to
    // even, and out of range is an overflow.
    const double score = std::nearbyint(100.0 / double(length) * double(length - mismatches));
    if (score < std::numeric_limits<qint16>::min() || score > std::numeric_limits<qint16>::max()) {
        throw QmError(QmError::Overflow, QStringLiteral("Overflow"));
    }
    return int(score);
}

bool Match_Tolerance(QStringView word, QStringView candidate, int percent) {
    const std::optional<int> score = Match_Score(word, candidate);
    return score && *score >= percent;
}

void Suggest_Sort(const QString& word, QStringList& suggestions, int relevanceOrder) {
    ProcedureScope scope(app().errors, kModule + QStringLiteral("Suggest_Sort"));
    if (suggestions.isEmpty()) {
        return;
    }
    QStringList ordered;
    ordered.reserve(suggestions.size());
    int previous = 0;
    for (const QString& suggestion : std::as_const(suggestions)) {
        const std::optional<int> score = Match_Score(word, suggestion);
        if (!score) {
            return;
        }
        if (*score < previous) {
            ordered.prepend(suggestion);
        } else {
            ordered.append(suggestion);
        }
        previous = *score;
    }
    if (relevanceOrder == 2) {
        std::reverse(ordered.begin(), ordered.end());
    }
    suggestions = std::move(ordered);
}

void Word_Highlight(QString& errorText, qsizetype& position, const QString& word) {
    ProcedureScope scope(app().errors, kModule + QStringLiteral("Word_Highlight"));
    if (word.isEmpty()) {
        return;
    }
    static const QString open = QStringLiteral("\\cf1 ");
    static const QString close = QStringLiteral("\\cf0 ");
    qsizetype at = std::clamp<qsizetype>(position, 0, errorText.size());
    for (;;) {
        at = errorText.indexOf(word, at, Qt::CaseInsensitive);
        if (at < 0) {
            break;
        }
        const bool counts =
            at > 0 && errorText.at(at - 1) == QLatin1Char(' ') &&
            QStringView(errorText).mid(at, word.size()).toString().toLower() == word;
        if (counts) {
            errorText.insert(at + word.size(), close);
            errorText.insert(at, open);
            at += open.size() + word.size() + close.size();
            position = at;
        } else {
            at += word.size();
        }
        doEventsIfInputPending();
    }
}

void Word_Highlight(SpellTextTarget& rtb, const QString& errorText, const QString& word) {
    ProcedureScope scope(app().errors, kModule + QStringLiteral("Word_Highlight"));
    const qsizetype at = word.isEmpty() ? -1 : errorText.lastIndexOf(word);
    if (at < 0) {
        return;
    }
    const bool wasLocked = rtb.Locked();
    rtb.setLocked(true);
    rtb.select(int(at), int(word.size()));
    rtb.setSelColor(QColor(255, 0, 0));
    rtb.select(int(rtb.Text().size()), 0);
    rtb.setSelColor(QColor(0, 0, 0));
    rtb.setLocked(wasLocked);
}
