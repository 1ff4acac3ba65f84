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

bool PagedDeviceTarget::openPainter(QPagedPaintDevice& device, const DocumentModel& geometry,
                                    QSize paper, QPoint offset) {
    m_device = &device;
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
