#include "print/SheetSource.h"

#include "print/PdfTarget.h"
#include "print/SheetPainter.h"

#include <QPainter>
#include <algorithm>

namespace {

void paintPaper(QPainter& painter, const PageLayout& layout, const DocumentModel& geometry,
                int page) {
    const QSize sheet = PdfTarget::sheetSize(geometry);
    painter.fillRect(QRect(QPoint(0, 0), sheet), Qt::white);
    paintSheetOnPaper(painter, layout, page,
                      QPoint(geometry.getLeftMargin(), geometry.getTopMargin()),
                      QRect(QPoint(0, 0), sheet));
}

} // namespace

DocumentSheets::DocumentSheets(const PageLayout& layout, const DocumentModel& geometry)
    : m_layout(layout), m_geometry(geometry) {}

int DocumentSheets::sheetCount() {
    return m_layout.totalPages();
}

int DocumentSheets::knownSheetCount() {
    return m_layout.laidOutPages();
}

QSize DocumentSheets::sheetSize() const {
    return PdfTarget::sheetSize(m_geometry);
}

void DocumentSheets::paintSheet(QPainter& painter, int sheet) {
    paintPaper(painter, m_layout, m_geometry, sheet);
}

LetterSheets::LetterSheets(std::vector<PrintLetter> letters, const DocumentModel& geometry)
    : m_letters(std::move(letters)) {
    m_geometry.PaperSize = geometry.PaperSize;
    m_geometry.putDocumentOrientation(geometry.getDocumentOrientation(), false);
    m_geometry.putPageWidth(geometry.getPageWidth(), false);
    m_geometry.putPageHeight(geometry.getPageHeight(), false);
    m_geometry.putLeftMargin(geometry.getLeftMargin(), false);
    m_geometry.putRightMargin(geometry.getRightMargin(), false);
    m_geometry.putTopMargin(geometry.getTopMargin(), false);
    m_geometry.putBottomMargin(geometry.getBottomMargin(), false);
    m_layout.setupDocument();
}

void LetterSheets::load(int letter) {
    if (letter == m_loaded) {
        return;
    }
    m_layout.beginLoad();
    m_box.setTextRTF(m_letters[size_t(letter)].rtf);
    m_layout.endLoad();
    m_loaded = letter;
}

void LetterSheets::countPages() {
    if (!m_firstSheet.empty()) {
        return;
    }
    int sheets = 0;
    for (size_t i = 0; i < m_letters.size(); ++i) {
        m_firstSheet.push_back(sheets);
        load(int(i));
        sheets += m_layout.totalPages();
    }
    m_firstSheet.push_back(sheets);
}

int LetterSheets::sheetCount() {
    countPages();
    return std::max(1, m_firstSheet.back());
}

QSize LetterSheets::sheetSize() const {
    return PdfTarget::sheetSize(m_geometry);
}

std::pair<int, int> LetterSheets::locate(int sheet) {
    countPages();
    if (m_letters.empty()) {
        return {-1, 1};
    }
    sheet = std::clamp(sheet, 1, m_firstSheet.back());
    // The last letter whose first sheet lies before this one.
    const auto after = std::upper_bound(m_firstSheet.begin(), m_firstSheet.end() - 1, sheet - 1);
    const int letter = int(after - m_firstSheet.begin()) - 1;
    return {letter, sheet - m_firstSheet[size_t(letter)]};
}

void LetterSheets::paintSheet(QPainter& painter, int sheet) {
    const auto [letter, page] = locate(sheet);
    if (letter < 0) {
        painter.fillRect(QRect(QPoint(0, 0), sheetSize()), Qt::white);
        return;
    }
    load(letter);
    paintPaper(painter, m_layout, m_geometry, page);
}

void PreviewNavigator::setSheetCount(int count) {
    m_count = std::max(1, count);
    m_current = std::clamp(m_current, 1, m_count);
}

bool PreviewNavigator::go(int sheet) {
    sheet = std::clamp(sheet, 1, m_count);
    if (sheet == m_current) {
        return false;
    }
    m_current = sheet;
    return true;
}

double PreviewNavigator::scale(Zoom zoom, int percent, QSize sheet, QSize view, double dpi) {
    const double width = std::max(1, sheet.width());
    const double height = std::max(1, sheet.height());
    switch (zoom) {
    case Zoom::WholePage:
        return std::max(0.001, std::min(view.width() / width, view.height() / height));
    case Zoom::PageWidth:
        return std::max(0.001, view.width() / width);
    case Zoom::Percent:
        break;
    }
    return std::max(1, percent) / 100.0 * dpi / 1440.0;
}
