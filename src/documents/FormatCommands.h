#pragma once

#include <QColor>
#include <QString>
#include <optional>

class RichTextBox;

// The Format menu's commands on the selection of a document's text box.
// A selection of mixed format reads as null and counts as off. None of them
// touches a locked box: a locked merge result is kept as it was filed.
namespace FormatCommands {

enum class CharStyle { Bold, Italic, Underline, StrikeThru };
// Turns the style off when the whole selection has it, on otherwise.
// Returns the new state.
bool toggleCharStyle(RichTextBox& box, CharStyle style);

// SelAlignment 0 left, 1 right, 2 centre.
void setAlignment(RichTextBox& box, int alignment);

// The room a bullet takes left of its text, in twips.
constexpr int BulletHangingIndent = 360;
// Bullets on (with their hanging indent) unless every paragraph has one;
// off takes the hanging indent away again. Returns the new state.
bool toggleBullet(RichTextBox& box);

constexpr int IndentStep = 720;
enum class Indent { Left, Right, Hanging };
// Reads the indent, adds `twips` and writes it back. A mixed selection
// counts as 0. No lower limit: the text box takes a negative indent.
void changeIndent(RichTextBox& box, Indent which, int twips);

// Upper- or lower-cases the selected text, keeping each run's format and
// the selection around the changed text.
void changeCase(RichTextBox& box, bool upper);

constexpr int ScriptOffset = 55;
enum class Script { None, Super, Sub };
// Sets the baseline offset: 0, +55 or -55 twips. No toggle.
void setScript(RichTextBox& box, Script script);

// What the font dialog shows and gives back; an empty value stands for a
// mixed selection and is left alone when written back.
struct FontChoice {
    std::optional<QString> name;
    std::optional<double> size; // points
    std::optional<bool> bold;
    std::optional<bool> italic;
    std::optional<bool> underline;
    std::optional<bool> strikeThru;
    std::optional<QColor> colour;
};
FontChoice fontChoiceOf(const RichTextBox& box);
// Writes name, bold, italic, size, strike-through, underline and colour, in
// that order, as one undo step.
void applyFontChoice(RichTextBox& box, const FontChoice& choice);

// The font bar. A name that is blank, or a size that is no number from 1 to
// 1638 points, changes nothing and answers false.
bool applyFontName(RichTextBox& box, const QString& name);
bool applyFontSize(RichTextBox& box, const QString& sizeText);

} // namespace FormatCommands
