#pragma once

#include <QString>
#include <QStringList>
#include <optional>

class RichTextBox;

// Whether a merged letter is already in the form the rich text box writes,
// so that filing it can skip reading it into a box and writing it out again
// (most of the cost of filing a letter).
//
// The reasoning: when the template is a fixed point of that round trip, a
// letter that is the template with each placeholder span replaced by plain
// text (printable ASCII without backslash or braces, at least one
// character) is a fixed point too: the replaced text sits inside the run
// that held the placeholder, keeps it non-empty, and is written character
// for character as it stands. Anything else (an empty value, a line break,
// accented letters, RTF in a value, text that moved around a blank line)
// fails the check and takes the round trip, so the bytes filed never depend
// on the shortcut.
class NormalisedLetter {
public:
    // Reads the template once through `scratch`. Empty when the template is
    // not a fixed point, or has no placeholder; then every letter takes the
    // round trip.
    static std::optional<NormalisedLetter> fromTemplate(RichTextBox& scratch,
                                                        const QString& templateRtf);

    // True when `letter` is the template with every placeholder span replaced
    // by plain text; then the round trip would give `letter` back unchanged.
    bool isFixedPoint(const QString& letter) const;

    // Plain text as the check above understands it.
    static bool isPlainValue(QStringView value);

private:
    // The template's text between placeholder spans; one more than spans.
    QStringList m_segments;
};
