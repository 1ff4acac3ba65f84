#pragma once

// The formatting state shared by the RTF reader and writer.

#include <utility>
#include <vector>

enum class RtfDestination {
    Text, // shown text
    Skip, // ignored with everything inside
    FontTable,
    ColorTable,
    ListTable,
    ListOverrideTable,
    Picture,
    FieldInstruction,
    OldNumbering, // \pn: paragraph numbering of the old form
    Unicode,      // \upr: only its \ud part is read
};

// The character format in force, as the reader tracks it in each group and
// the writer compares it from run to run.
struct RtfCharState {
    int font = -1;
    int halfPoints = 24;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strike = false;
    bool hidden = false;
    int colour = 0;
    int highlight = 0;
    int offsetHalfPoints = 0; // \up positive, \dn negative
    int superSub = 0;         // 1 \super, 2 \sub
    bool operator==(const RtfCharState&) const = default;
};

// The paragraph format in force, likewise.
struct RtfParaState {
    int alignment = 0; // 0 left, 1 right, 2 centre, 3 justify
    int firstLine = 0;
    int left = 0;
    int right = 0;
    int spaceBefore = 0;
    int spaceAfter = 0;
    int lineSpacing = 0;
    bool lineMultiple = false;
    std::vector<std::pair<int, int>> tabs; // twips, kind
    int pendingTabKind = 0;
    bool inTable = false;
    int listOverride = 0; // \ls
    int listLevel = 0;    // \ilvl
    int oldNumbering = 0; // \pn: 0 none, else a QTextListFormat style
    int oldNumberingStart = 1;
    bool operator==(const RtfParaState&) const = default;
};
