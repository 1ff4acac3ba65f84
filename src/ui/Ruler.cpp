#include "ui/Ruler.h"

#include "documents/PageLayout.h"
#include "documents/RulerScale.h"
#include "platform/richtext/RichTextBox.h"
#include "ui/PageView.h"

#include <QEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <optional>

namespace {

constexpr int kHeight = 26;

// Layout units of the paragraph formats to twips.
int layoutToTwips(double units) {
    return int(units * RulerScale::TwipsPerInch / PageLayout::DeviceDpi);
}

} // namespace

Ruler::Ruler(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("picRuler"));
    setAccessibleName(QStringLiteral("Ruler"));
    setFixedHeight(kHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize Ruler::sizeHint() const {
    return {400, kHeight};
}

void Ruler::follow(PageView* view) {
    if (view == m_view) {
        update();
        return;
    }
    for (const QMetaObject::Connection& c : m_connections) {
        disconnect(c);
    }
    m_connections.clear();
    if (m_view) {
        m_view->viewport()->removeEventFilter(this);
    }
    m_view = view;
    if (view) {
        auto repaint = [this] { update(); };
        m_connections << connect(view->horizontalScrollBar(), &QScrollBar::valueChanged, this,
                                 repaint)
                      << connect(view, &PageView::zoomChanged, this, repaint)
                      << connect(&view->box(), &RichTextBox::selectionChanged, this, repaint)
                      << connect(&view->box(), &RichTextBox::changed, this, repaint)
                      << connect(&view->layout(), &PageLayout::pagesChanged, this, repaint);
        // The view's place on screen changes with the window around it.
        view->viewport()->installEventFilter(this);
    }
    update();
}

bool Ruler::eventFilter(QObject* watched, QEvent* event) {
    if (m_view && watched == m_view->viewport() &&
        (event->type() == QEvent::Resize || event->type() == QEvent::Move ||
         event->type() == QEvent::Show)) {
        update();
    }
    return QWidget::eventFilter(watched, event);
}

std::optional<std::pair<double, double>> Ruler::sheetOrigin() const {
    if (!m_view || !m_view->isVisible()) {
        return std::nullopt;
    }
    const double scale = m_view->pixelsPerTwip();
    const PageLayout& layout = m_view->layout();
    const QRect sheet = layout.sheetRect(std::max(1, layout.currentPage()));
    const int inView = m_view->centringInset() - m_view->horizontalScrollBar()->value() +
                       int(sheet.left() * scale);
    const QPoint global = m_view->viewport()->mapToGlobal(QPoint(inView, 0));
    return std::make_pair(double(mapFromGlobal(global).x()), scale);
}

void Ruler::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().window());
    const auto origin = sheetOrigin();
    if (!origin) {
        return;
    }
    const auto [left, scale] = *origin;
    const PageLayout& layout = m_view->layout();
    const int page = std::max(1, layout.currentPage());
    const QRect sheet = layout.sheetRect(page);
    const QRect text = layout.textRect(page);
    const int pageWidth = sheet.width();
    const int leftMargin = text.left() - sheet.left();
    const int rightMargin = sheet.right() - text.right();
    auto x = [&, left = left, scale = scale](int twips) { return left + twips * scale; };

    // The sheet as a white strip, the margins grey.
    const QRectF strip(x(0), 3, pageWidth * scale, height() - 8);
    painter.fillRect(strip, QColor(0xc8, 0xc8, 0xc8));
    painter.fillRect(QRectF(x(leftMargin), strip.top(),
                            (pageWidth - leftMargin - rightMargin) * scale, strip.height()),
                     Qt::white);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(strip);

    QFont small = font();
    small.setPixelSize(9);
    painter.setFont(small);
    painter.setPen(Qt::black);
    const double bottom = strip.bottom();
    for (const RulerTick& tick : RulerScale::ticks(pageWidth, leftMargin)) {
        const double at = x(tick.twips);
        switch (tick.kind) {
        case RulerTick::Kind::Inch:
            if (tick.inch > 0) {
                painter.drawText(QRectF(at - 10, strip.top(), 20, strip.height() - 2),
                                 Qt::AlignCenter, QString::number(tick.inch));
            }
            break;
        case RulerTick::Kind::Half:
            painter.drawLine(QPointF(at, bottom - 7), QPointF(at, bottom - 2));
            break;
        case RulerTick::Kind::Quarter:
            painter.drawLine(QPointF(at, bottom - 5), QPointF(at, bottom - 2));
            break;
        case RulerTick::Kind::Eighth:
            if (scale * 180 >= 4) {
                painter.drawLine(QPointF(at, bottom - 3), QPointF(at, bottom - 2));
            }
            break;
        }
    }

    // The paragraph's indents: first line above, other lines and the right
    // indent below, as word processors draw them.
    const QTextBlockFormat block = m_view->box().textCursor().blockFormat();
    const RulerMarkers marks =
        RulerScale::markers(pageWidth, leftMargin, rightMargin, layoutToTwips(block.leftMargin()),
                            layoutToTwips(block.textIndent()), layoutToTwips(block.rightMargin()));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QColor(0x40, 0x40, 0x40));
    painter.setBrush(QColor(0xe8, 0xe8, 0xe8));
    auto triangle = [&](double at, bool pointsDown) {
        QPainterPath path;
        const double tip = pointsDown ? strip.top() + 5 : bottom - 5;
        const double base = pointsDown ? strip.top() : bottom;
        path.moveTo(at, tip);
        path.lineTo(at - 4, base);
        path.lineTo(at + 4, base);
        path.closeSubpath();
        painter.drawPath(path);
    };
    triangle(x(marks.firstLine), true);
    triangle(x(marks.hanging), false);
    triangle(x(marks.rightIndent), false);

    // The insert marker: where the caret stands on the line.
    const QRect caret = m_view->viewportRectOf(m_view->box().textCursor().position());
    const double caretX =
        mapFromGlobal(m_view->viewport()->mapToGlobal(QPoint(caret.left(), 0))).x();
    painter.setPen(QPen(palette().color(QPalette::Highlight), 1, Qt::DotLine));
    painter.drawLine(QPointF(caretX, strip.top()), QPointF(caretX, bottom));
}
