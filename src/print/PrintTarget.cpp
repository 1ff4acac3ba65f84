#include "print/PrintTarget.h"

#include "documents/DocumentModel.h"
#include "print/SheetPainter.h"

#include <QPagedPaintDevice>

TextEdges printTextEdges(const DocumentModel& geometry, QSize paper, QPoint offset) {
    const int offX = offset.x();
    const int offY = offset.y();
    const int ml = geometry.getLeftMargin();
    const int mr = geometry.getRightMargin();
    const int mt = geometry.getTopMargin();
    const int mb = geometry.getBottomMargin();
    TextEdges edges;
    edges.left = ml > offX ? ml - offX : offX;
    if (mr > offX) {
        edges.right = paper.width() - (mr - offX);
    } else {
        edges.right = ml > offX ? paper.width() - edges.left : paper.width();
    }
    edges.top = mt > offY ? mt - offY : offY;
    if (mb > offY) {
        edges.bottom = paper.height() - (mb - offY);
    } else {
        edges.bottom = mt > offY ? paper.height() - edges.top : paper.height();
    }
    return edges;
}

QString pageSetupFault(const DocumentModel& geometry) {
    int width = geometry.getPageWidth();
    int height = geometry.getPageHeight();
    if (width <= 0 || height <= 0) {
        return QStringLiteral("The page setup has no paper size; nothing was printed.");
    }
    if (geometry.getDocumentOrientation() == 1 ? width > height : height > width) {
        std::swap(width, height);
    }
    const int textWidth = width - geometry.getLeftMargin() - geometry.getRightMargin();
    const int textHeight = height - geometry.getTopMargin() - geometry.getBottomMargin();
    if (textWidth <= 0 || textHeight <= 0) {
        const auto inches = [](int twips) { return QString::number(twips / 1440.0, 'g', 4); };
        return QStringLiteral("The margins leave no room for text on paper of %1 x %2 inches "
                              "(left %3, right %4, top %5, bottom %6); nothing was printed. "
                              "Change them in File > Page Setup.")
            .arg(inches(width), inches(height), inches(geometry.getLeftMargin()),
                 inches(geometry.getRightMargin()), inches(geometry.getTopMargin()),
                 inches(geometry.getBottomMargin()));
    }
    return {};
}

bool PagedDeviceTarget::openPainter(QPagedPaintDevice& device, const DocumentModel& geometry,
                                    QSize paper, QPoint offset) {
    m_device = &device;
    if (const QString fault = pageSetupFault(geometry); !fault.isEmpty()) {
        m_error = fault;
        return false;
    }
    m_edges = printTextEdges(geometry, paper, offset);
    const double twipsPerUnitX = 1440.0 / std::max(1, device.logicalDpiX());
    const double twipsPerUnitY = 1440.0 / std::max(1, device.logicalDpiY());
    m_printable = QSize(int(device.width() * twipsPerUnitX), int(device.height() * twipsPerUnitY));
    if (!m_painter.begin(&device)) {
        if (m_error.isEmpty()) {
            m_error = QStringLiteral("The output could not be started.");
        }
        return false;
    }
    applyTransform();
    return true;
}

void PagedDeviceTarget::applyTransform() {
    m_painter.resetTransform();
    m_painter.scale(m_device->logicalDpiX() / 1440.0, m_device->logicalDpiY() / 1440.0);
    m_painter.setRenderHint(QPainter::TextAntialiasing);
}

void PagedDeviceTarget::paintSheet(const PageLayout& layout, int page) {
    if (!m_painter.isActive()) {
        return;
    }
    paintSheetOnPaper(m_painter, layout, page, QPoint(m_edges.left, m_edges.top),
                      QRect(QPoint(0, 0), m_printable));
}

bool PagedDeviceTarget::newPage() {
    if (!m_painter.isActive() || !m_device->newPage()) {
        if (m_error.isEmpty()) {
            m_error = QStringLiteral("The device did not take a new sheet.");
        }
        return false;
    }
    applyTransform();
    return true;
}

bool PagedDeviceTarget::closePainter() {
    if (!m_painter.isActive()) {
        return false;
    }
    return m_painter.end();
}
