#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>
#include <optional>

class SpellWordDatabase;
class SpellTextTarget;

// Deciding whether a token is a misspelling, and generating replacements
// for one by trying every letter (mode 0) or pair of letters (mode 1) in
// each position against the word index.

// False for tokens that are not to be checked: those containing "@",
// "http", "ftp", "1st", "2nd", "3rd", or an ordinal "4th" to "30th".
// Case-sensitive.
bool Filter_Word(QStringView token);

// The token without leading and trailing characters that are neither
// letters nor digits; empty when nothing else is left.
QStringView Filter_Punctuation(QStringView token);

// True when the lower-cased word is in the list, or, failing that, when it
// ends in "'s" or "s'" and is in the list without those two characters.
// The empty word is never known.
bool Word_Compare(SpellWordDatabase& database, QStringView word);

// The wildcard patterns of a word; element k stands for position k + 1.
// Mode 0: one character replaced by "*". Mode 1: the characters at k + 1
// and k + 2 replaced by "**", so the last pattern replaces one character.
// Other modes give no patterns.
QStringList Word_Wildcards(const QString& word, int mode);

// Appends to `suggestions` every word of the list that the lower-cased
// word becomes when one letter (mode 0), or two neighbouring letters
// (mode 1, every position but the last), are replaced by letters "a" to
// "z"; mode 2 does mode 0, then mode 1. Found words are appended in the
// order they are tried, so mode 1 and 2 may yield duplicates. Waiting
// input is handled after each pattern of mode 1.
void Word_Suggest(SpellWordDatabase& database, const QString& word, int mode,
                  QStringList& suggestions);

// The platform's logical comparison (StrCmpLogicalW): case-insensitive,
// digits by value. -1, 0 or 1.
int StrCmpLogical(QStringView a, QStringView b);

// The score of a candidate for a word, in percent: the share of the word's
// positions where the candidate has the same character (case ignored), less
// one for each character the candidate has beyond the word's length,
// rounded half to even. Nothing for the empty word, which has no score.
// Throws QmError Overflow when the score leaves the 16-bit range.
std::optional<int> Match_Score(QStringView word, QStringView candidate);

// True when the candidate scores at least `percent`; false for the empty
// word.
bool Match_Tolerance(QStringView word, QStringView candidate, int percent);

// One pass over the suggestions: each goes to the head of the new order if
// it scores lower than the suggestion before it, to the end otherwise. With
// relevanceOrder 2 the result is reversed, so that high scores tend to come
// first. An empty word leaves the list as it is.
void Suggest_Sort(const QString& word, QStringList& suggestions, int relevanceOrder);

// Mode 0, on the module's copy of the text: wraps each occurrence of `word`
// at or behind `position` (case-insensitive search) whose lower-cased form
// equals `word` and which follows a blank as "\cf1 " word "\cf0 ", and moves
// `position` behind the last one marked.
void Word_Highlight(QString& errorText, qsizetype& position, const QString& word);
// Mode 1, on the control: colours the last occurrence of `word` in
// `errorText` red, then leaves the caret at the end of the text in black.
void Word_Highlight(SpellTextTarget& rtb, const QString& errorText, const QString& word);
