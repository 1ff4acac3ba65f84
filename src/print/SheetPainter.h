#pragma once

#include "documents/PageLayout.h"

#include <QColor>
#include <QPoint>
#include <QRect>
#include <vector>

class QPainter;

// The one routine that draws a sheet, on screen, in print preview, on a
// printer and into PDF. The painter's transform maps twips to the device;
// only the placement differs.

// What the screen adds to a sheet: its shadow, and the caret and selection.
struct SheetDecoration {
    QColor shadow{0x80, 0x80, 0x80};
    int caret = -1;
    std::vector<PageLayout::Highlight> selections;
};

// A sheet where it stands in the column of sheets (the page view): shadow,
// white paper and text, in the layout's column twips.
void paintSheetInColumn(QPainter& painter, const PageLayout& layout, int page,
                        const SheetDecoration& decoration);

// A sheet on paper: only the text, its top-left corner at `textOrigin` and
// clipped to `printable`, both in twips of the painter's coordinates.
void paintSheetOnPaper(QPainter& painter, const PageLayout& layout, int page, QPoint textOrigin,
                       const QRect& printable);
