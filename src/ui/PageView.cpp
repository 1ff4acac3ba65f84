#include "ui/PageView.h"

#include "documents/PageLayout.h"
#include "platform/richtext/RichTextBox.h"
#include "print/SheetPainter.h"
#include "ui/PageViewAccessible.h"

#include <QAbstractTextDocumentLayout>
#include <QAccessible>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyleHints>
#include <QTextBlock>
#include <QTextDocument>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

namespace {
const QColor kBackground(0x80, 0x80, 0x80);
const QColor kShadow(0x40, 0x40, 0x40);
} // namespace

PageView::PageView(RichTextBox& box, PageLayout& layout, QWidget* parent)
    : QAbstractScrollArea(parent), m_box(box), m_layout(layout) {
    static const bool accessible = [] {
        QAccessible::installFactory(&PageViewAccessible::factory);
        return true;
    }();
    Q_UNUSED(accessible);
    setObjectName(QStringLiteral("rtfText"));
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setCursor(Qt::IBeamCursor);
    m_blink.setInterval(std::max(100, QGuiApplication::styleHints()->cursorFlashTime() / 2));
    connect(&m_blink, &QTimer::timeout, this, [this] {
        m_caretOn = !m_caretOn;
        viewport()->update(caretViewportRect().adjusted(-2, -2, 2, 2));
    });
    connect(&m_layout, &PageLayout::pagesChanged, this, [this] {
        updateScrollBars();
        viewport()->update();
    });
    connect(&m_layout, &PageLayout::sheetSizeChanged, this, [this] {
        updateScrollBars();
        viewport()->update();
    });
    connect(&m_layout, &PageLayout::updateRequest, viewport(), [this] { viewport()->update(); });
    connect(&m_box, &RichTextBox::selectionChanged, viewport(), [this] { viewport()->update(); });
    updateScrollBars();
}

double PageView::pixelsPerTwip() const {
    return logicalDpiX() / 1440.0 * m_zoom / 100.0;
}

void PageView::setZoom(int percent) {
    percent = std::clamp(percent, MinZoom, MaxZoom);
    if (percent == m_zoom) {
        return;
    }
    // Keep the middle of the view where it is.
    const double oldScale = pixelsPerTwip();
    const QPointF middle((horizontalScrollBar()->value() + viewport()->width() / 2.0) / oldScale,
                         (verticalScrollBar()->value() + viewport()->height() / 2.0) / oldScale);
    m_zoom = percent;
    updateScrollBars();
    const double scale = pixelsPerTwip();
    horizontalScrollBar()->setValue(int(middle.x() * scale - viewport()->width() / 2.0));
    verticalScrollBar()->setValue(int(middle.y() * scale - viewport()->height() / 2.0));
    viewport()->update();
    Q_EMIT zoomChanged(m_zoom);
}

void PageView::updateScrollBars() {
    const QSize column = m_layout.columnSize(m_layout.laidOutPages());
    const double scale = pixelsPerTwip();
    const int width = int(std::ceil(column.width() * scale));
    const int height = int(std::ceil(column.height() * scale));
    horizontalScrollBar()->setRange(0, std::max(0, width - viewport()->width()));
    horizontalScrollBar()->setPageStep(viewport()->width());
    horizontalScrollBar()->setSingleStep(std::max(1, viewport()->width() / 20));
    verticalScrollBar()->setRange(0, std::max(0, height - viewport()->height()));
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setSingleStep(std::max(1, int(240 * scale)));
    // Wrap-at-window follows the window's width.
    m_layout.setWindowWidth(int(viewport()->width() / scale) - 2 * PageLayout::SheetLeft);
}

void PageView::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    updateScrollBars();
}

int PageView::centringInset() const {
    // A column narrower than the window stands in its middle, as sheets do
    // on a desk; a wider one scrolls from its left edge.
    const int width =
        int(std::ceil(m_layout.columnSize(m_layout.laidOutPages()).width() * pixelsPerTwip()));
    return std::max(0, (viewport()->width() - width) / 2);
}

QRect PageView::caretViewportRect() const {
    return viewportRectOf(m_box.textCursor().position());
}

QRect PageView::viewportRectOf(int position) const {
    const double scale = pixelsPerTwip();
    const QRectF twips = m_layout.caretRect(position);
    return QRect(int(twips.left() * scale) - horizontalScrollBar()->value() + centringInset(),
                 int(twips.top() * scale) - verticalScrollBar()->value(), 2,
                 std::max(1, int(std::ceil(twips.height() * scale))));
}

void PageView::ensureCaretVisible() {
    m_layout.reachPage(m_layout.currentPage());
    // Finding the caret may have laid out text beyond what the scroll range
    // knew of (a long sheet of continuous display still being laid out).
    caretViewportRect();
    updateScrollBars();
    const QRect caret = caretViewportRect();
    const QRect view = viewport()->rect();
    if (caret.top() < 0) {
        verticalScrollBar()->setValue(verticalScrollBar()->value() + caret.top() - 8);
    } else if (caret.bottom() > view.bottom()) {
        verticalScrollBar()->setValue(verticalScrollBar()->value() + caret.bottom() -
                                      view.bottom() + 8);
    }
    if (caret.left() < 0) {
        horizontalScrollBar()->setValue(horizontalScrollBar()->value() + caret.left() - 8);
    } else if (caret.right() > view.right()) {
        horizontalScrollBar()->setValue(horizontalScrollBar()->value() + caret.right() -
                                        view.right() + 8);
    }
}

void PageView::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    // What the sheets draw is bounded by this: only the lines in view.
    painter.setClipRect(event->rect());
    painter.fillRect(event->rect(), kBackground);
    painter.setRenderHint(QPainter::TextAntialiasing);
    const double scale = pixelsPerTwip();
    painter.translate(centringInset() - horizontalScrollBar()->value(),
                      -verticalScrollBar()->value());
    painter.scale(scale, scale);
    // Only the sheets in view; the page count is the one known so far.
    const int pages = m_layout.laidOutPages();
    const int top = int((verticalScrollBar()->value() + event->rect().top()) / scale);
    const int bottom = int((verticalScrollBar()->value() + event->rect().bottom()) / scale);
    const int first = std::max(1, m_layout.sheetAtY(top, pages) - 1);
    const int last = std::min(pages, m_layout.sheetAtY(bottom, pages) + 1);
    const QTextCursor cursor = m_box.textCursor();
    SheetDecoration decoration;
    decoration.shadow = kShadow;
    // Spelling marks and the like go under the selection.
    decoration.selections = m_extraHighlights;
    if (cursor.hasSelection()) {
        decoration.selections.push_back({cursor.selectionStart(), cursor.selectionEnd()});
    }
    decoration.caret = (hasFocus() && m_caretOn && !cursor.hasSelection()) ? cursor.position() : -1;
    for (int page = first; page <= last; ++page) {
        paintSheetInColumn(painter, m_layout, page, decoration);
    }
}

void PageView::setExtraHighlights(std::vector<PageLayout::Highlight> highlights) {
    m_extraHighlights = std::move(highlights);
    viewport()->update();
}

std::pair<int, int> PageView::visibleRange() const {
    const QRect area = viewport()->rect();
    return {positionAt(area.topLeft()), positionAt(area.bottomRight())};
}

int PageView::positionAt(const QPoint& viewportPoint) const {
    const double scale = pixelsPerTwip();
    const QPoint twips(
        int((viewportPoint.x() - centringInset() + horizontalScrollBar()->value()) / scale),
        int((viewportPoint.y() + verticalScrollBar()->value()) / scale));
    const int page = m_layout.sheetAtY(twips.y(), m_layout.laidOutPages());
    // Above or below the text area: the sheet's first or last line.
    const QRect text = m_layout.textRect(page);
    const QPoint inside(std::clamp(twips.x(), text.left(), text.right()),
                        std::clamp(twips.y(), text.top(), text.bottom()));
    const int position = m_box.document()->documentLayout()->hitTest(
        m_layout.columnToLayout(inside, page), Qt::FuzzyHit);
    return std::max(0, position);
}

void PageView::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::RightButton) {
        Q_EMIT contextMenuWanted(event->globalPosition().toPoint());
        return;
    }
    if (event->button() != Qt::LeftButton) {
        return;
    }
    QTextCursor cursor = m_box.textCursor();
    cursor.setPosition(positionAt(event->position().toPoint()),
                       (event->modifiers() & Qt::ShiftModifier) ? QTextCursor::KeepAnchor
                                                                : QTextCursor::MoveAnchor);
    m_box.setTextCursor(cursor);
    restartBlink();
}

void PageView::mouseMoveEvent(QMouseEvent* event) {
    if (!(event->buttons() & Qt::LeftButton)) {
        return;
    }
    QTextCursor cursor = m_box.textCursor();
    cursor.setPosition(positionAt(event->position().toPoint()), QTextCursor::KeepAnchor);
    m_box.setTextCursor(cursor);
    ensureCaretVisible();
}

void PageView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        return;
    }
    QTextCursor cursor = m_box.textCursor();
    cursor.setPosition(positionAt(event->position().toPoint()));
    cursor.select(QTextCursor::WordUnderCursor);
    m_box.setTextCursor(cursor);
}

void PageView::wheelEvent(QWheelEvent* event) {
    if (event->modifiers() & Qt::ControlModifier) {
        const int steps = event->angleDelta().y() / 120;
        setZoom(m_zoom + steps * 10);
        event->accept();
        return;
    }
    QAbstractScrollArea::wheelEvent(event);
}

bool PageView::moveCaret(QKeyEvent* event) {
    const bool extend = event->modifiers() & Qt::ShiftModifier;
    const bool word = event->modifiers() & Qt::ControlModifier;
    QTextCursor::MoveOperation op = QTextCursor::NoMove;
    switch (event->key()) {
    case Qt::Key_Left:
        op = word ? QTextCursor::PreviousWord : QTextCursor::Left;
        break;
    case Qt::Key_Right:
        op = word ? QTextCursor::NextWord : QTextCursor::Right;
        break;
    case Qt::Key_Up:
        op = QTextCursor::Up;
        break;
    case Qt::Key_Down:
        op = QTextCursor::Down;
        break;
    case Qt::Key_Home:
        op = word ? QTextCursor::Start : QTextCursor::StartOfLine;
        break;
    case Qt::Key_End:
        op = word ? QTextCursor::End : QTextCursor::EndOfLine;
        break;
    case Qt::Key_PageUp:
    case Qt::Key_PageDown: {
        // A screen up or down, in the caret's column.
        const QRect caret = caretViewportRect();
        const int step = viewport()->height() * (event->key() == Qt::Key_PageUp ? -1 : 1);
        QTextCursor cursor = m_box.textCursor();
        cursor.setPosition(positionAt(caret.center() + QPoint(0, step)),
                           extend ? QTextCursor::KeepAnchor : QTextCursor::MoveAnchor);
        verticalScrollBar()->setValue(verticalScrollBar()->value() + step);
        m_box.setTextCursor(cursor);
        return true;
    }
    default:
        return false;
    }
    QTextCursor cursor = m_box.textCursor();
    cursor.movePosition(op, extend ? QTextCursor::KeepAnchor : QTextCursor::MoveAnchor);
    m_box.setTextCursor(cursor);
    return true;
}

void PageView::editKey(QKeyEvent* event) {
    if (event->matches(QKeySequence::SelectAll)) {
        QTextCursor cursor = m_box.textCursor();
        cursor.select(QTextCursor::Document);
        m_box.setTextCursor(cursor);
    } else if (event->matches(QKeySequence::Copy)) {
        m_box.copy();
    } else if (event->matches(QKeySequence::Cut)) {
        m_box.cut();
    } else if (event->matches(QKeySequence::Paste)) {
        m_box.paste();
    } else if (event->matches(QKeySequence::Undo)) {
        m_box.undo();
    } else if (event->matches(QKeySequence::Redo)) {
        m_box.redo();
    } else if (event->key() == Qt::Key_Insert && event->modifiers() == Qt::NoModifier) {
        m_box.setOverwriteMode(!m_box.overwriteMode());
    } else if (event->key() == Qt::Key_Backspace || event->key() == Qt::Key_Delete) {
        if (m_box.Locked()) {
            return;
        }
        QTextCursor cursor = m_box.textCursor();
        if (cursor.hasSelection()) {
            cursor.removeSelectedText();
        } else if (event->key() == Qt::Key_Backspace) {
            cursor.deletePreviousChar();
        } else {
            cursor.deleteChar();
        }
        m_box.setTextCursor(cursor);
    } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        m_box.typeText(QStringLiteral("\n"));
    } else if (event->key() == Qt::Key_Tab) {
        m_box.typeText(QStringLiteral("\t"));
    } else if (!event->text().isEmpty() && event->text().at(0).isPrint() &&
               !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier))) {
        m_box.typeText(event->text());
    } else {
        event->ignore();
        return;
    }
}

bool PageView::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        // The text acts on its own edit keys, before the menus' shortcuts
        // for the same commands can.
        const auto* key = static_cast<QKeyEvent*>(event);
        for (const auto standard :
             {QKeySequence::Copy, QKeySequence::Cut, QKeySequence::Paste, QKeySequence::Undo,
              QKeySequence::Redo, QKeySequence::SelectAll}) {
            if (key->matches(standard)) {
                event->accept();
                return true;
            }
        }
        if (key->key() == Qt::Key_Delete && key->modifiers() == Qt::NoModifier) {
            event->accept();
            return true;
        }
    }
    return QAbstractScrollArea::event(event);
}

void PageView::keyPressEvent(QKeyEvent* event) {
    event->accept();
    m_lastTyped = event->text();
    if (!moveCaret(event)) {
        editKey(event);
    }
    restartBlink();
    ensureCaretVisible();
}

void PageView::keyReleaseEvent(QKeyEvent* event) {
    if (event->isAutoRepeat()) {
        return;
    }
    Q_EMIT keyReleased(event->key(), event->modifiers(), m_lastTyped);
    m_lastTyped.clear();
}

void PageView::restartBlink() {
    m_caretOn = true;
    if (hasFocus()) {
        m_blink.start();
    }
    viewport()->update();
}

void PageView::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    restartBlink();
}

void PageView::focusOutEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusOutEvent(event);
    m_blink.stop();
    viewport()->update();
}

bool PageView::focusNextPrevChild(bool) {
    // Tab types a tab into the document.
    return false;
}
