#pragma once

#include <QStringView>
#include <span>
#include <string_view>

// The control words of the RTF this system reads and writes: one table
// gives each word its kind (the part of the reader that acts on it) and its
// meaning within that kind. The reader looks words up by name; the writer
// spells a meaning with the first name the table gives it, so that reading
// back what was written finds the same meaning.
namespace RtfWord {

enum class Kind : unsigned char {
    Document,
    Unicode,            // \uN
    Destination,        // meaning: an RtfDestination
    SkippedDestination, // ignored with everything inside
    Field,
    Character,
    Paragraph,
    Special, // meaning: the character it stands for
    FontTable,
    ColourTable,
    ListTable,
    OldNumbering,
    Picture,
    Table,
    Written, // written for other readers; ours passes it over
};

enum Document { AnsiCodePage, DefaultFont, UnicodeSkip, Ansi, Mac, Pc, Pca };

enum Field { FieldStart, FieldResult };

enum Character {
    Plain,
    Font,
    FontSize,
    Bold,
    Italic,
    Underline,
    UnderlineNone,
    Strike,
    Colour,
    Highlight,
    Up,
    Down,
    Super,
    Sub,
    NoSuperSub,
    Hidden,
};

enum Paragraph {
    Pard,
    AlignLeft,
    AlignRight,
    AlignCentre,
    AlignJustify,
    FirstLine,
    LeftIndent,
    RightIndent,
    SpaceBefore,
    SpaceAfter,
    LineSpacing,
    LineMultiple,
    TabStop,
    TabRight,
    TabCentre,
    TabDecimal,
    TabBar,
    InTable,
    ListOverride,
    ListLevelWord,
    ParagraphEnd,
    PageBreak,
};

// Skipped destinations the writer produces itself.
enum Skipped { OtherSkipped, NumberText, NumberTextAfter, NumberTextBefore };

enum FontTable { FontCharset, FontCodePage };
enum ColourTable { Red, Green, Blue };
enum ListTable {
    List,
    ListId,
    ListLevelDefinition,
    LevelFormat,
    LevelStart,
    ListOverrideDefinition
};

enum OldNumbering {
    NumberBullet,
    NumberBody,
    NumberDecimal,
    NumberUpperLetter,
    NumberLowerLetter,
    NumberUpperRoman,
    NumberLowerRoman,
    NumberStart,
};

enum Picture {
    PictureFormatPng,
    PictureFormatJpeg,
    PictureFormatOther,
    PictureWidth,
    PictureHeight,
    PictureGoalWidth,
    PictureGoalHeight,
    PictureScaleX,
    PictureScaleY,
};

enum Table { RowDefaults, CellEdge, CellEnd, RowEnd, RowLeft };

enum Written {
    RtfVersion,
    DefaultLanguage,
    ViewKind,
    FontFamilyNil,
    NumberFont,
    NumberIndent,
    CellGap,
};

struct Entry {
    std::u16string_view name;
    Kind kind;
    int meaning;
};

// Every word of the table, in its order.
std::span<const Entry> entries();

// The word of that name, or null for a word the table does not know.
const Entry* find(QStringView name);

// The name the writer gives a meaning. Every meaning the writer uses is in
// the table; asking for one that is not is a programming error (asserted;
// empty in a release build).
QStringView spelling(Kind kind, int meaning);

} // namespace RtfWord
