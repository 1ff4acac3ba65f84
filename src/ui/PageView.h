#pragma once

#include "documents/PageLayout.h"

#include <QAbstractScrollArea>
#include <QTimer>
#include <utility>
#include <vector>

class RichTextBox;

// The page view of a document window: paints the one paginated layout as a
// column of sheets with their shadows, scaled to the screen and the zoom,
// and routes typing, caret keys and the mouse to the one RichTextBox.
class PageView : public QAbstractScrollArea {
    Q_OBJECT

public:
    static constexpr int MinZoom = 50;
    static constexpr int MaxZoom = 200;

    // Box and layout must outlive the view.
    PageView(RichTextBox& box, PageLayout& layout, QWidget* parent = nullptr);

    RichTextBox& box() const { return m_box; }
    PageLayout& layout() const { return m_layout; }

    int zoom() const { return m_zoom; }
    // Percent, clamped to 50..200; not part of the document.
    void setZoom(int percent);

    // Scrolls so that the caret's line is wholly in view.
    void ensureCaretVisible();
    // Pixels between the window's left edge and the column of sheets.
    int centringInset() const;
    // Screen pixels per twip at the current zoom.
    double pixelsPerTwip() const;
    // The line rectangle of a document position in viewport pixels, and
    // the position nearest to a viewport point.
    QRect viewportRectOf(int position) const;
    int positionAt(const QPoint& viewportPoint) const;
    // Marks drawn under the selection, such as the underlines of live
    // spelling; replaces the previous set and repaints.
    void setExtraHighlights(std::vector<PageLayout::Highlight> highlights);
    // The document positions of the first and last character in view.
    std::pair<int, int> visibleRange() const;

Q_SIGNALS:
    void keyReleased(int key, Qt::KeyboardModifiers modifiers, const QString& typed);
    void contextMenuWanted(const QPoint& globalPosition);
    void zoomChanged(int percent);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void updateScrollBars();
    QRect caretViewportRect() const;
    bool moveCaret(QKeyEvent* event);
    void editKey(QKeyEvent* event);
    void restartBlink();

    RichTextBox& m_box;
    PageLayout& m_layout;
    int m_zoom = 100;
    bool m_caretOn = true;
    QTimer m_blink;
    QString m_lastTyped;
    std::vector<PageLayout::Highlight> m_extraHighlights;
};
