#include "documents/PageLayout.h"

#include "documents/DocumentModel.h"
#include "documents/PagedTextLayout.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"
#include "platform/richtext/RichTextBox.h"
#include "platform/richtext/RichTextFormat.h"
#include "platform/rtf/RtfReader.h"

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>
#include <algorithm>
#include <cmath>

// Answers metrics only: the layout measures fonts on it and never draws.
class PageLayout::FixedDevice : public QPaintDevice {
public:
    QPaintEngine* paintEngine() const override { return nullptr; }

protected:
    int metric(PaintDeviceMetric metric) const override {
        switch (metric) {
        case PdmWidth:
        case PdmHeight:
            return DeviceDpi * 100;
        case PdmWidthMM:
        case PdmHeightMM:
            return 2540;
        case PdmNumColors:
            return 1 << 24;
        case PdmDepth:
            return 24;
        case PdmDpiX:
        case PdmDpiY:
        case PdmPhysicalDpiX:
        case PdmPhysicalDpiY:
            return DeviceDpi;
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return int(QPaintDevice::devicePixelRatioFScale());
        }
        return 0;
    }
};

namespace {

// Page size and orientation agree: portrait is never wider than high,
// landscape never higher than wide.
QSize pageSize(const DocumentModel& model) {
    int width = model.getPageWidth();
    int height = model.getPageHeight();
    const bool portrait = model.getDocumentOrientation() == 1;
    if (portrait ? width > height : height > width) {
        std::swap(width, height);
    }
    return {width, height};
}

QSize textSize(const DocumentModel& model) {
    const QSize page = pageSize(model);
    return {std::max(1, page.width() - model.getLeftMargin() - model.getRightMargin()),
            std::max(1, page.height() - model.getTopMargin() - model.getBottomMargin())};
}

} // namespace

PageLayout::PageLayout(RichTextBox& box, const DocumentModel& model, QObject* parent)
    : QObject(parent), m_box(box), m_model(model), m_device(std::make_unique<FixedDevice>()) {
    QTextDocument* doc = document();
    doc->setUseDesignMetrics(true);
    doc->setDocumentMargin(0);
    m_textLayout = new PagedTextLayout(doc);
    doc->setDocumentLayout(m_textLayout);
    QAbstractTextDocumentLayout* layout = m_textLayout;
    connect(layout, &QAbstractTextDocumentLayout::pageCountChanged, this, &PageLayout::onPageCount);
    connect(layout, &QAbstractTextDocumentLayout::documentSizeChanged, this, &PageLayout::onSize);
    connect(layout, &QAbstractTextDocumentLayout::update, this, &PageLayout::updateRequest);
    bind();
}

PageLayout::~PageLayout() = default;

void PageLayout::releaseDrawnGlyphs(QPainter& painter, int page, int first) const {
    QTextDocument* doc = document();
    const int end = doc->characterCount() - 1;
    const int next = m_display == PageDisplay ? firstPositionOfSheet(page + 1) : end;
    const auto endsHere = [&](const QTextBlock& block) {
        return next >= end || block.position() + block.length() <= next;
    };
    QTextBlock block = doc->findBlock(first);
    if (block.isValid() && block.position() < first && endsHere(block)) {
        // Its lines on this sheet were drawn one by one, which keeps the
        // glyphs; a layout without its cache drops them after a draw, here
        // one that draws nothing.
        block.layout()->setCacheEnabled(false);
        block.layout()->draw(&painter, QPointF(), {}, QRectF(0, -2, 1, 1));
        block = block.next();
    }
    // The rest are drawn whole by the document's layout, which then drops
    // their glyphs; a paragraph that runs on to the next sheet keeps them.
    for (; block.isValid() && block.position() < next && endsHere(block); block = block.next()) {
        block.layout()->setCacheEnabled(false);
    }
}

QTextDocument* PageLayout::document() const {
    return m_box.document();
}

QPaintDevice* PageLayout::device() const {
    return m_device.get();
}

int PageLayout::editsInPlace() const {
    return m_textLayout->inPlaceCount();
}

int PageLayout::editsPassedOn() const {
    return m_textLayout->passedOnCount();
}

void PageLayout::setupDocument() {
    bind();
}

void PageLayout::setupDocument(int displayType) {
    m_display = displayType == ContinuousDisplay ? ContinuousDisplay : PageDisplay;
    m_viewMode = PrinterWrap;
    bind();
}

void PageLayout::setDisplayType(int type) {
    m_display = type == ContinuousDisplay ? ContinuousDisplay : PageDisplay;
    bind();
}

void PageLayout::setViewMode(int mode) {
    m_viewMode = (mode == NoWrap || mode == WrapAtWindow) ? mode : PrinterWrap;
    bind();
}

void PageLayout::setWindowWidth(int twips) {
    twips = std::max(0, twips);
    // The view reports its width whenever the page count changes; the same
    // width must not lay the whole document out again.
    if (twips == m_windowWidth) {
        return;
    }
    m_windowWidth = twips;
    m_box.setWindowWidth(m_windowWidth);
    if (m_viewMode == WrapAtWindow) {
        bind();
    }
}

void PageLayout::beginLoad() {
    m_loading = true;
    // A null page size makes Qt's layout ignore every change.
    document()->setPageSize(QSizeF(0, 0));
}

void PageLayout::endLoad() {
    m_loading = false;
    bind();
}

void PageLayout::loadFile(const QString& path) {
    const std::optional<QByteArray> bytes = fileControl::readWholeFile(path);
    if (!bytes) {
        throw QmError(QmError::FileNotFound, QStringLiteral("File not found"));
    }
    // Read into a box of its own first, so that a failed load loses nothing.
    RichTextBox loaded;
    loaded.LoadFile(path,
                    RtfReader::hasRtfHeader(*bytes) ? RichTextBox::rtfRTF : RichTextBox::rtfText);
    beginLoad();
    m_box.setTextRTF(loaded.TextRTF());
    endLoad();
}

void PageLayout::bind() {
    if (m_loading) {
        return;
    }
    const QSize text = textSize(m_model);
    // Binding sets the text width, which also switches pagination off.
    m_box.setWindowWidth(m_windowWidth);
    m_box.setViewMode(m_viewMode, m_device.get(), text.width());
    m_textLayout->setInPlaceEdits(m_viewMode != NoWrap);
    if (m_display == PageDisplay) {
        QTextDocument* doc = document();
        doc->setPageSize(QSizeF(doc->textWidth(), text.height() * unitsPerTwip()));
    }
    setKnownPages(1);
}

double PageLayout::unitsPerTwip() const {
    return RichTextFormat::unitsPerTwip(*document());
}

double PageLayout::pageStride() const {
    return textSize(m_model).height() * unitsPerTwip();
}

void PageLayout::onPageCount(int pages) {
    setKnownPages(m_display == PageDisplay ? pages : 1);
}

void PageLayout::onSize(const QSizeF& size) {
    const bool grows = size != m_laidOutSize;
    m_laidOutSize = size;
    // What the layout reports covers whatever questions laid out before.
    m_queriedBottom = 0;
    if (grows && (m_display != PageDisplay || m_viewMode == NoWrap)) {
        Q_EMIT sheetSizeChanged();
    }
    // The size Qt reports as its layout proceeds; counting from it lays
    // nothing out, unlike asking the layout for its page count.
    if (m_display == PageDisplay) {
        const double pages = size.height() / std::max(1.0, pageStride());
        setKnownPages(int(std::ceil(pages - 1e-6)));
    } else {
        setKnownPages(1);
    }
}

void PageLayout::reachPage(int page) {
    if (page > m_knownPages) {
        setKnownPages(page);
    }
}

int PageLayout::withoutBlankTail(int pages) const {
    pages = std::max(1, pages);
    // A last sheet of blanks and line ends only is no sheet.
    while (pages > 1 && blankFrom(firstPositionOfSheet(pages))) {
        --pages;
    }
    return pages;
}

bool PageLayout::blankFrom(int position) const {
    const QTextDocument* doc = document();
    const int end = doc->characterCount() - 1;
    // Character by character: a tail is mostly short or soon not blank, and
    // copying out the whole tail of a long document for each sheet is not.
    for (int at = std::max(0, position); at < end; ++at) {
        if (!doc->characterAt(at).isSpace()) {
            return false;
        }
    }
    return true;
}

void PageLayout::setKnownPages(int pages) {
    pages = m_loading ? 1 : withoutBlankTail(pages);
    if (pages != m_knownPages) {
        m_knownPages = pages;
        Q_EMIT pagesChanged(pages);
    }
}

int PageLayout::totalPages() const {
    if (m_display != PageDisplay) {
        return 1;
    }
    // Now that everything is laid out, whoever paints learns the count too.
    const_cast<PageLayout*>(this)->setKnownPages(document()->documentLayout()->pageCount());
    return m_knownPages;
}

bool PageLayout::hasSheet(int page) const {
    if (page <= 1) {
        return page == 1;
    }
    if (m_display != PageDisplay) {
        return false;
    }
    // As totalPages() counts: a sheet on which a line starts, with something
    // other than blanks from there on.
    const int first = firstPositionOfSheet(page);
    return first < document()->characterCount() - 1 && !blankFrom(first);
}

int PageLayout::pagesUpTo(int page) const {
    if (page <= 1 || m_display != PageDisplay) {
        return 1;
    }
    // Fewer sheets than that: what is left to lay out holds no sheet.
    return hasSheet(page) ? page : totalPages();
}

void PageLayout::keepGlyphsUntilDrawn() {
    m_keepGlyphs = true;
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        block.layout()->setCacheEnabled(true);
    }
}

int PageLayout::pageOfY(double layoutY) const {
    if (m_display != PageDisplay) {
        return 1;
    }
    return std::max(1, int(std::floor(layoutY / pageStride())) + 1);
}

double PageLayout::lineTop(int position) const {
    QTextDocument* doc = document();
    const QTextBlock block = doc->findBlock(std::clamp(position, 0, doc->characterCount() - 1));
    if (!block.isValid()) {
        return 0;
    }
    const QRectF rect = doc->documentLayout()->blockBoundingRect(block);
    // Asking laid the text out down to here: the long sheet of continuous
    // display reaches at least this far, reported or not.
    m_queriedBottom = std::max(m_queriedBottom, rect.bottom());
    const QTextLayout* layout = block.layout();
    if (layout == nullptr || layout->lineCount() == 0) {
        return rect.top();
    }
    const double origin = rect.top() - layout->boundingRect().top();
    QTextLine line = layout->lineForTextPosition(position - block.position());
    if (!line.isValid()) {
        line = layout->lineAt(layout->lineCount() - 1);
    }
    return origin + line.y();
}

int PageLayout::pageOfPosition(int position) const {
    return pageOfY(lineTop(position) + 0.5);
}

int PageLayout::currentPage() const {
    return pageOfPosition(m_box.textCursor().position());
}

int PageLayout::firstPositionOfSheet(int page) const {
    QTextDocument* doc = document();
    const int end = doc->characterCount() - 1;
    if (page <= 1) {
        return 0;
    }
    if (m_display != PageDisplay) {
        return end;
    }
    const double top = (page - 1) * pageStride();
    QAbstractTextDocumentLayout* layout = doc->documentLayout();
    // The first block whose bottom lies below the sheet's top, then its
    // first line there.
    for (QTextBlock block = doc->findBlockByNumber(firstBlockBelow(top)); block.isValid();
         block = block.next()) {
        const QTextLayout* blockLayout = block.layout();
        const QRectF rect = layout->blockBoundingRect(block);
        const double origin = rect.top() - (blockLayout ? blockLayout->boundingRect().top() : 0);
        const int lines = blockLayout ? blockLayout->lineCount() : 0;
        for (int i = 0; i < lines; ++i) {
            const QTextLine line = blockLayout->lineAt(i);
            if (origin + line.y() + 0.5 >= top) {
                return block.position() + line.textStart();
            }
        }
    }
    return end;
}

int PageLayout::firstBlockBelow(double top) const {
    const QTextDocument* doc = document();
    QAbstractTextDocumentLayout* layout = doc->documentLayout();
    const int last = doc->blockCount() - 1;
    // Blocks stand in document order from the top. Asking for a block's
    // rectangle lays the document out down to it.
    const auto above = [&](int number) {
        return layout->blockBoundingRect(doc->findBlockByNumber(number)).bottom() <= top;
    };
    int low = 0;
    int high = std::clamp(m_searchHint, 0, last);
    if (above(high)) {
        // On from the last answer in growing steps, so that the search lays
        // out at most about as far again as the distance to the answer.
        low = high + 1;
        for (int step = 1;; step *= 2) {
            const int probe = low + step - 1;
            if (probe >= last) {
                high = last;
                break;
            }
            if (!above(probe)) {
                high = probe;
                break;
            }
            low = probe + 1;
        }
        low = std::min(low, last);
    }
    while (low < high) {
        const int mid = (low + high) / 2;
        if (above(mid)) {
            low = mid + 1;
        } else {
            high = mid;
        }
    }
    m_searchHint = low;
    return low;
}

int PageLayout::endPositionOfSheet(int page) const {
    const int end = document()->characterCount() - 1;
    if (m_display != PageDisplay) {
        return end;
    }
    if (page >= totalPages()) {
        return end;
    }
    return firstPositionOfSheet(page + 1);
}

QString PageLayout::sheetText(int page) const {
    const int from = firstPositionOfSheet(page);
    const int to = endPositionOfSheet(page);
    if (to <= from) {
        return {};
    }
    QTextCursor cursor(document());
    cursor.setPosition(from);
    cursor.setPosition(to, QTextCursor::KeepAnchor);
    QString text = cursor.selectedText();
    text.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
    text.replace(QChar::LineSeparator, QLatin1Char('\n'));
    return text;
}

QRect PageLayout::sheetRect(int page) const {
    const QSize size = pageSize(m_model);
    int height = size.height();
    int width = size.width();
    if (m_display != PageDisplay) {
        // One sheet as long as the text laid out so far.
        const double text = std::max(m_laidOutSize.height(), m_queriedBottom) / unitsPerTwip();
        height = std::max(height, m_model.getTopMargin() + int(std::ceil(text)) +
                                      m_model.getBottomMargin());
    }
    if (m_viewMode == NoWrap) {
        const double text = m_laidOutSize.width() / unitsPerTwip();
        width = std::max(width,
                         m_model.getLeftMargin() + int(std::ceil(text)) + m_model.getRightMargin());
    }
    const int top = SheetTop + (std::max(1, page) - 1) * (height + SheetGap);
    return {SheetLeft, top, width, height};
}

QRect PageLayout::shadowRect(int page) const {
    return sheetRect(page).translated(ShadowOffset, ShadowOffset);
}

QRect PageLayout::textRect(int page) const {
    const QRect sheet = sheetRect(page);
    const int height = m_display == PageDisplay
                           ? textSize(m_model).height()
                           : sheet.height() - m_model.getTopMargin() - m_model.getBottomMargin();
    return {sheet.left() + m_model.getLeftMargin(), sheet.top() + m_model.getTopMargin(),
            std::max(1, sheet.width() - m_model.getLeftMargin() - m_model.getRightMargin()),
            std::max(1, height)};
}

QSize PageLayout::columnSize(int pages) const {
    const QRect last = shadowRect(std::max(1, pages));
    return {last.right() + 1 + SheetLeft, last.bottom() + 1 + SheetGap};
}

int PageLayout::sheetAtY(int yTwips, int pages) const {
    const QRect first = sheetRect(1);
    const int stride = first.height() + SheetGap;
    const int page = (yTwips - SheetTop + SheetGap / 2) / std::max(1, stride) + 1;
    return std::clamp(page, 1, std::max(1, pages));
}

QPointF PageLayout::layoutToColumn(const QPointF& layoutPoint) const {
    const double units = unitsPerTwip();
    const int page = pageOfY(layoutPoint.y());
    const double withinPage =
        m_display == PageDisplay ? layoutPoint.y() - (page - 1) * pageStride() : layoutPoint.y();
    const QRect text = textRect(page);
    return {text.left() + layoutPoint.x() / units, text.top() + withinPage / units};
}

QPointF PageLayout::columnToLayout(const QPoint& twips, int page) const {
    const double units = unitsPerTwip();
    const QRect text = textRect(page);
    const double offset = m_display == PageDisplay ? (page - 1) * pageStride() : 0;
    return {(twips.x() - text.left()) * units, offset + (twips.y() - text.top()) * units};
}

QRectF PageLayout::caretRect(int position) const {
    QTextDocument* doc = document();
    const QTextBlock block = doc->findBlock(std::clamp(position, 0, doc->characterCount() - 1));
    const double units = unitsPerTwip();
    double x = 0;
    double height = 240 * units;
    if (block.isValid() && block.layout() != nullptr && block.layout()->lineCount() > 0) {
        QTextLine line = block.layout()->lineForTextPosition(position - block.position());
        if (!line.isValid()) {
            line = block.layout()->lineAt(block.layout()->lineCount() - 1);
        }
        x = line.cursorToX(position - block.position()) + block.layout()->position().x();
        height = line.height();
    }
    const QPointF top = layoutToColumn(QPointF(x, lineTop(position) + 0.5));
    return {top.x(), std::floor(top.y()), 15, height / units};
}

void PageLayout::paintSheetText(QPainter& painter, int page, int caret,
                                const std::vector<Highlight>& selections) const {
    const double units = unitsPerTwip();
    const QRect text = textRect(page);
    const double offset = m_display == PageDisplay ? (page - 1) * pageStride() : 0;
    const double height = m_display == PageDisplay ? pageStride() : text.height() * units;
    // Text may run into the right margin (a long word, no wrap), never past
    // the sheet.
    const double width = (sheetRect(page).right() - text.left()) * units;
    painter.save();
    painter.translate(text.left(), text.top());
    painter.scale(1 / units, 1 / units);
    painter.translate(0, -offset);
    const QRectF clip(0, offset, width, height);
    painter.setClipRect(clip, Qt::IntersectClip);
    QAbstractTextDocumentLayout::PaintContext context;
    // Lines drawn outside the painter's clip are unseen on screen, but a PDF
    // carries their text: a sheet must draw its own lines only. Qt draws
    // every line that touches the clip, and the next sheet's first line
    // starts exactly at this one's edge, so the clip stays half a unit inside.
    context.clip = clip.adjusted(0, 0.5, 0, -0.5);
    // Of a sheet partly in view (the long sheet of continuous display above
    // all) only what is in view is laid out and drawn.
    const QRectF visible = painter.clipBoundingRect();
    if (!visible.isEmpty()) {
        context.clip.setTop(std::max(context.clip.top(), visible.top() - 1));
        context.clip.setBottom(std::min(context.clip.bottom(), visible.bottom() + 1));
    }
    // Qt also draws the last line above the clip of a paragraph that runs
    // over from the sheet before. That paragraph's lines on this sheet are
    // drawn one by one, and the layout draws from the next paragraph on.
    QTextDocument* doc = document();
    const int first = m_display == PageDisplay && page > 1 ? firstPositionOfSheet(page) : 0;
    const QTextBlock carried = doc->findBlock(first);
    if (first > 0 && carried.isValid() && carried.position() < first && carried.layout()) {
        const QTextLayout* lines = carried.layout();
        const QRectF rect = doc->documentLayout()->blockBoundingRect(carried);
        const QPointF origin = lines->position();
        painter.setPen(Qt::black);
        for (int i = 0; i < lines->lineCount(); ++i) {
            const QTextLine line = lines->lineAt(i);
            const double top = origin.y() + line.y();
            if (top + 0.5 >= offset && top < offset + height) {
                line.draw(&painter, origin);
            }
        }
        context.clip.setTop(std::max(context.clip.top(), rect.bottom() + 0.5));
    }
    if (m_keepGlyphs) {
        releaseDrawnGlyphs(painter, page, first);
    }
    context.cursorPosition = caret;
    context.palette.setColor(QPalette::Text, Qt::black);
    for (const Highlight& h : selections) {
        QAbstractTextDocumentLayout::Selection selection;
        selection.cursor = QTextCursor(document());
        selection.cursor.setPosition(h.start);
        selection.cursor.setPosition(h.end, QTextCursor::KeepAnchor);
        if (h.format.isEmpty()) {
            selection.format.setBackground(QColor(0x33, 0x66, 0xcc));
            selection.format.setForeground(Qt::white);
        } else {
            selection.format = h.format;
        }
        context.selections.push_back(selection);
    }
    document()->documentLayout()->draw(&painter, context);
    painter.restore();
}
