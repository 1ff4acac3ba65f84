#include "print/SheetPainter.h"

#include <QPainter>

void paintSheetInColumn(QPainter& painter, const PageLayout& layout, int page,
                        const SheetDecoration& decoration) {
    painter.fillRect(layout.shadowRect(page), decoration.shadow);
    painter.fillRect(layout.sheetRect(page), Qt::white);
    layout.paintSheetText(painter, page, decoration.caret, decoration.selections);
}

void paintSheetOnPaper(QPainter& painter, const PageLayout& layout, int page, QPoint textOrigin,
                       const QRect& printable) {
    painter.save();
    painter.setClipRect(printable, Qt::IntersectClip);
    // The layout draws a sheet's text at its place in the column of sheets.
    painter.translate(textOrigin - layout.textRect(page).topLeft());
    layout.paintSheetText(painter, page, -1, {});
    painter.restore();
}
