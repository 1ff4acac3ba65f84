#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <optional>
#include <utility>
#include <vector>

class RichTextBox;

// The form the rich text box would write a merged letter in, found without
// the box when possible, so that filing can skip reading the letter into a
// box and writing it out again (most of the cost of filing a letter).
//
// The reasoning: when the template is a fixed point of that round trip, a
// letter that is the template with each placeholder span replaced by plain
// text (printable ASCII without backslash or braces, at least one
// character) is a fixed point too: the replaced text sits inside the run
// that held the placeholder, keeps it non-empty, and is written character
// for character as it stands. Accented Latin letters (U+00A1 to U+00FF) are
// plain too once a probe letter has shown, for every placeholder of this
// template, that the box writes each of them as its code-page escape;
// the run's font decides how they are read, and it is the same for every
// value. Anything else (an empty value, a line break, other characters, RTF
// in a value, text that moved around a blank line) fails the check and takes
// the round trip, so the bytes filed never depend on the shortcut.
class NormalisedLetter {
public:
    // Reads the template (and one probe letter) through `scratch`. Empty when
    // the template is not a fixed point, or has no placeholder; then every
    // letter takes the round trip.
    static std::optional<NormalisedLetter> fromTemplate(RichTextBox& scratch,
                                                        const QString& templateRtf);

    // What the round trip would make of `letter`, when it is the template
    // with every placeholder span replaced by plain text; otherwise nothing.
    std::optional<QString> normalisedText(const QString& letter) const;
    // The same as the Latin-1 bytes the box's text is written in, with room
    // for `spare` more bytes.
    std::optional<QByteArray> normalisedLatin1(const QString& letter, qsizetype spare = 0) const;

    // True when the round trip would give `letter` back unchanged.
    bool isFixedPoint(const QString& letter) const;

    // Plain ASCII text as the check above understands it.
    static bool isPlainValue(QStringView value);

private:
    bool isValueCharacter(QChar c) const;
    // Where each value lies in `letter` (start, end), one fewer than the
    // segments; false when the letter is not the template with plain values.
    bool findValues(QStringView letter, std::vector<std::pair<qsizetype, qsizetype>>& values) const;

    // The template's text between placeholder spans; one more than spans.
    QStringList m_segments;
    QList<QByteArray> m_latin1Segments;
    // The probe showed accented letters written as escapes in every span.
    bool m_escapesAccents = false;
};
