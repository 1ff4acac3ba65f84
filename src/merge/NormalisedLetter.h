#pragma once

#include <QString>
#include <QStringList>
#include <optional>

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

    // True when the round trip would give `letter` back unchanged.
    bool isFixedPoint(const QString& letter) const;

    // Plain ASCII text as the check above understands it.
    static bool isPlainValue(QStringView value);

private:
    bool isValueCharacter(QChar c) const;

    // The template's text between placeholder spans; one more than spans.
    QStringList m_segments;
    // The probe showed accented letters written as escapes in every span.
    bool m_escapesAccents = false;
};
