#pragma once

#include <vector>

// What the ruler above a page shows, in twips from the sheet's left edge:
// tick marks every eighth of an inch counted from the left margin (where
// text starts, the ruler's zero), the margins, and the current paragraph's
// indents. Pure arithmetic, so the window only paints it.
struct RulerTick {
    enum class Kind { Eighth, Quarter, Half, Inch };
    int twips = 0; // from the sheet's left edge
    Kind kind = Kind::Eighth;
    int inch = 0; // whole inches from the left margin; labels the Inch kind
};

struct RulerMarkers {
    int textLeft = 0;  // left margin
    int textRight = 0; // page width less the right margin
    int firstLine = 0; // where the paragraph's first line starts
    int hanging = 0;   // where its other lines start
    int rightIndent = 0;
};

class RulerScale {
public:
    static constexpr int TwipsPerInch = 1440;

    // Ticks over the whole sheet, left of the margin too (labelled by their
    // distance, as a ruler reads both ways). A sheet of no width has none.
    static std::vector<RulerTick> ticks(int pageWidth, int leftMargin);

    // The margin and indent markers of a paragraph; indents are twips from
    // the margins (a negative first-line indent hangs left of the others).
    // Markers never leave the sheet.
    static RulerMarkers markers(int pageWidth, int leftMargin, int rightMargin, int leftIndent,
                                int firstLineIndent, int rightIndent);
};
