#pragma once

#include <QTextFormat>

class QTextBlockFormat;
class QTextCharFormat;
class QTextDocument;

// Lengths of the rich text model are kept in twips in properties of their
// own, because the document's layout units depend on the device it is laid
// out for. applyScale() turns them into layout units for a device.
namespace RichTextFormat {

enum Property : int {
    CharOffsetTwips = QTextFormat::UserProperty + 101, // int, + raises
    LeftIndentTwips,                                   // block: \li
    RightIndentTwips,                                  // block: \ri
    FirstLineTwips,                                    // block: \fi (negative hangs)
    SpaceBeforeTwips,                                  // block: \sb
    SpaceAfterTwips,                                   // block: \sa
    LineSpacingTwips,                                  // block: \sl (negative: exact)
    LineSpacingMultiple,                               // block: bool, \slmult1
    TabStopsTwips,                                     // block: QList<QVariant> of ints
    TabStopKinds,       // block: QList<QVariant> of ints (0 l, 1 r, 2 c, 3 dec)
    PictureWidthTwips,  // image: shown width
    PictureHeightTwips, // image: shown height
    ColumnWidthsTwips,  // table: QList<QVariant> of ints
    PageBreakAfter,     // block: ended by \page
    ListStartNumber,    // list: first number (\pnstart)
};

// Layout units per twip of the document, as last applied (the screen's
// when nothing was applied yet).
double unitsPerTwip(const QTextDocument& document);
// Rewrites every length of the document for `unitsPerTwip` and remembers it.
void applyScale(QTextDocument& document, double unitsPerTwip);
// Sets the twips lengths of a block format and its layout values for the
// document's current scale.
void setBlockTwips(QTextBlockFormat& format, int property, int twips, double unitsPerTwip);
// Fills the layout values of a block format from its twips properties.
void scaleBlockFormat(QTextBlockFormat& format, double unitsPerTwip);
// Baseline offset and vertical alignment from CharOffsetTwips.
void setCharOffset(QTextCharFormat& format, int twips);
int charOffsetTwips(const QTextCharFormat& format);

// The document's default layout scale: the default paint device's dpi.
double screenUnitsPerTwip();

} // namespace RichTextFormat
