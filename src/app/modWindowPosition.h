#pragma once

#include "app/modMain.h"

#include <QString>
#include <vector>

class clsINI;

// Where the main window comes up, from what the settings file remembers.
// All lengths are twips, as the file keeps them.

constexpr int TwipsPerPixel = 15; // at the usual 96 dots per inch
// The smallest the main window may be made.
constexpr int MinimumWindowWidth = 11640;
constexpr int MinimumWindowHeight = 8340;
// The size of a window with nothing remembered.
constexpr int DefaultWindowWidth = 13020;
constexpr int DefaultWindowHeight = 9465;

// The five values of section QuillmerePadWindowSettings as read, any of them
// possibly "<not_set>" or junk.
struct StoredWindowPosition {
    QString state;
    QString top;
    QString left;
    QString width;
    QString height;
};

// Reads the five keys (each missing one is written back as "<not_set>").
StoredWindowPosition readStoredWindowPosition(clsINI& ini);

struct MDIPosition {
    bool maximized = false;
    // The normal-state rectangle; also what a maximised window restores to.
    FormRect normal;
};

// positionMDI. `screens` are the available areas of the screens, the
// primary first (none: a 1024 x 768 one is assumed). With any value unset or not a plain number
// (or a width or height under 1): the default size centred on the primary
// screen. State 2 is maximised. The stored rectangle goes to the screen
// that holds its centre, else the primary, and is made to fit there: raised
// to the minimum size, cut to the screen's size, and moved so that no edge
// lies outside (a left or top before the screen's becomes the screen's).
MDIPosition positionMDI(const StoredWindowPosition& stored, const std::vector<FormRect>& screens);
