// Layout binding, line questions and the range measurement of RichTextBox.

#include "platform/richtext/RichTextBox.h"
#include "platform/richtext/RichTextBoxPrivate.h"
#include "platform/richtext/RichTextFormat.h"

#include <QAbstractTextDocumentLayout>
#include <QPaintDevice>
#include <QPainter>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>
#include <cmath>

void RichTextBox::Impl::applyBinding() {
    QAbstractTextDocumentLayout* layout = document->documentLayout();
    double scale = RichTextFormat::screenUnitsPerTwip();
    if (binding.mode == LayoutBinding::Mode::Device && binding.device != nullptr) {
        layout->setPaintDevice(binding.device);
        scale = binding.device->logicalDpiX() / 1440.0;
    } else {
        layout->setPaintDevice(nullptr);
    }
    if (std::abs(scale - RichTextFormat::unitsPerTwip(*document)) > 1e-9) {
        const bool undo = document->isUndoRedoEnabled();
        RichTextFormat::applyScale(*document, scale);
        // A change of device is no edit the user could undo.
        if (!undo) {
            document->setUndoRedoEnabled(false);
        }
    }
    switch (binding.mode) {
    case LayoutBinding::Mode::NoWrap:
        document->setTextWidth(-1);
        break;
    case LayoutBinding::Mode::WrapAtWindow:
        document->setTextWidth(binding.windowWidthTwips > 0 ? binding.windowWidthTwips * scale
                                                            : -1);
        break;
    case LayoutBinding::Mode::Device:
        document->setTextWidth(std::max(1, binding.lineWidthTwips) * scale);
        break;
    }
}

void RichTextBox::Impl::ensureLayout() const {
    // Laying out the whole document once answers every line question.
    document->documentLayout()->documentSize();
}

std::vector<RichTextBox::Impl::LineRef> RichTextBox::Impl::lines() const {
    ensureLayout();
    std::vector<LineRef> result;
    int number = 0;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        const QTextLayout* layout = block.layout();
        const int count = layout != nullptr ? layout->lineCount() : 0;
        if (count == 0) {
            result.push_back({block.blockNumber(), 0, number++, block.position(), 0});
            continue;
        }
        for (int i = 0; i < count; ++i) {
            const QTextLine line = layout->lineAt(i);
            int length = line.textLength();
            const QString text = block.text();
            if (length > 0 && line.textStart() + length <= text.size() &&
                text.at(line.textStart() + length - 1) == QChar::LineSeparator) {
                --length;
            }
            result.push_back(
                {block.blockNumber(), i, number++, block.position() + line.textStart(), length});
        }
    }
    return result;
}

RichTextBox::Impl::LineRef RichTextBox::Impl::lineAt(int documentPosition) const {
    ensureLayout();
    const QTextBlock target = document->findBlock(documentPosition);
    int number = 0;
    for (QTextBlock block = document->begin(); block.isValid() && block != target;
         block = block.next()) {
        const QTextLayout* layout = block.layout();
        number += std::max(1, layout != nullptr ? layout->lineCount() : 0);
    }
    if (!target.isValid()) {
        return {0, 0, 0, 0, 0};
    }
    const QTextLayout* layout = target.layout();
    if (layout == nullptr || layout->lineCount() == 0) {
        return {target.blockNumber(), 0, number, target.position(), 0};
    }
    const int offset = documentPosition - target.position();
    int index = layout->lineCount() - 1;
    for (int i = 0; i < layout->lineCount(); ++i) {
        const QTextLine line = layout->lineAt(i);
        if (offset < line.textStart() + line.textLength()) {
            index = i;
            break;
        }
    }
    const QTextLine line = layout->lineAt(index);
    int length = line.textLength();
    const QString text = target.text();
    if (length > 0 && line.textStart() + length <= text.size() &&
        text.at(line.textStart() + length - 1) == QChar::LineSeparator) {
        --length;
    }
    return {target.blockNumber(), index, number + index, target.position() + line.textStart(),
            length};
}

int RichTextBox::lineCount() const {
    d->ensureLayout();
    int count = 0;
    for (QTextBlock block = d->document->begin(); block.isValid(); block = block.next()) {
        const QTextLayout* layout = block.layout();
        count += std::max(1, layout != nullptr ? layout->lineCount() : 0);
    }
    return std::max(count, 1);
}

int RichTextBox::lineFromChar(int index) const {
    const int position = index < 0 ? d->cursor.selectionStart() : d->toDocument(index);
    return d->lineAt(position).number;
}

int RichTextBox::lineIndex(int line) const {
    if (line < 0) {
        return d->toText(d->lineAt(d->cursor.position()).start);
    }
    const auto all = d->lines();
    if (line >= static_cast<int>(all.size())) {
        return -1;
    }
    return d->toText(all[line].start);
}

int RichTextBox::lineLength(int index) const {
    const auto line = d->lineAt(d->toDocument(index));
    // Line separators inside are counted as the two characters of Text.
    return d->toText(line.start + line.length) - d->toText(line.start);
}

void RichTextBox::setTargetDevice(QPaintDevice* device, int lineWidthTwips) {
    if (device == nullptr) {
        d->binding.mode =
            lineWidthTwips == 1 ? LayoutBinding::Mode::NoWrap : LayoutBinding::Mode::WrapAtWindow;
        d->binding.device = nullptr;
    } else {
        d->binding.mode = LayoutBinding::Mode::Device;
        d->binding.device = device;
        d->binding.lineWidthTwips = lineWidthTwips;
    }
    d->applyBinding();
}

void RichTextBox::setWindowWidth(int twips) {
    d->binding.windowWidthTwips = std::max(0, twips);
    if (d->binding.mode == LayoutBinding::Mode::WrapAtWindow) {
        d->applyBinding();
    }
}

void RichTextBox::setViewMode(int mode, QPaintDevice* device, int lineWidthTwips) {
    switch (mode) {
    case 0:
        setTargetDevice(nullptr, 1);
        break;
    case 1:
        setTargetDevice(nullptr, 0);
        break;
    default:
        setTargetDevice(device, lineWidthTwips);
        break;
    }
}

int RichTextBox::formatRange(const FormatRange& range, bool render, QPainter* painter) {
    const int length = TextLength();
    const int cpMax = range.cpMax < 0 ? length : std::min(range.cpMax, length);
    const int cpMin = std::clamp(range.cpMin, 0, length);
    if (cpMin >= cpMax && cpMin >= length) {
        return cpMin;
    }
    // Lay out for the rectangle's width on the target's metrics.
    const LayoutBinding saved = d->binding;
    QPaintDevice* target = range.hdcTarget != nullptr ? range.hdcTarget : saved.device;
    const int width = range.rc.width();
    const bool rebind = target != saved.device || saved.mode != LayoutBinding::Mode::Device ||
                        width != saved.lineWidthTwips;
    if (rebind) {
        d->binding.mode =
            target != nullptr ? LayoutBinding::Mode::Device : LayoutBinding::Mode::WrapAtWindow;
        d->binding.device = target;
        d->binding.lineWidthTwips = width;
        d->binding.windowWidthTwips = width;
        d->applyBinding();
    }
    d->ensureLayout();
    const double scale = RichTextFormat::unitsPerTwip(*d->document);
    const double limit = range.rc.height() * scale;
    QAbstractTextDocumentLayout* layout = d->document->documentLayout();

    const int start = d->toDocument(cpMin);
    QTextBlock block = d->document->findBlock(start);
    double top = -1;
    int answer = cpMax;
    double fittingBottom = 0;
    bool stop = false;
    for (; block.isValid() && !stop; block = block.next()) {
        const QTextLayout* blockLayout = block.layout();
        const QRectF rect = layout->blockBoundingRect(block);
        const double origin = rect.top() - (blockLayout ? blockLayout->boundingRect().top() : 0);
        const int lineCount = blockLayout ? blockLayout->lineCount() : 0;
        for (int i = 0; i < lineCount; ++i) {
            const QTextLine line = blockLayout->lineAt(i);
            const int lineStart = block.position() + line.textStart();
            if (lineStart + line.textLength() <= start && lineStart < start &&
                !(i == lineCount - 1 && block.position() + block.length() > start)) {
                continue; // before the range
            }
            const double lineTop = origin + line.y();
            if (top < 0) {
                top = lineTop;
            }
            const double bottom = origin + line.y() + line.height();
            const int textStart = d->toText(std::max(lineStart, start));
            if (textStart >= cpMax) {
                stop = true;
                break;
            }
            if (bottom - top > limit + 0.01) {
                answer = textStart;
                stop = true;
                break;
            }
            fittingBottom = bottom;
        }
    }
    if (render && top >= 0) {
        QPaintDevice* device = range.hdc != nullptr ? range.hdc : target;
        std::optional<QPainter> own;
        QPainter* p = painter;
        if (p == nullptr && device != nullptr) {
            own.emplace(device);
            p = &*own;
        }
        if (p != nullptr && p->isActive()) {
            const double deviceScale = p->device()->logicalDpiX() / 1440.0;
            p->save();
            p->translate(range.rc.left() * deviceScale, range.rc.top() * deviceScale);
            p->scale(deviceScale / scale, deviceScale / scale);
            p->translate(0, -top);
            const QRectF clip(0, top, d->document->textWidth() + 1, fittingBottom - top);
            p->setClipRect(clip);
            QAbstractTextDocumentLayout::PaintContext context;
            context.clip = clip;
            context.palette.setColor(QPalette::Text, Qt::black);
            layout->draw(p, context);
            p->restore();
        }
    }
    if (rebind) {
        d->binding = saved;
        d->applyBinding();
    }
    return answer;
}

void RichTextBox::releaseFormatCache() {
    // The layout stays with the document, bound as set; nothing is held
    // for a measurement beyond the call.
}

long RTBCtrl::getValue(const RichTextBox& box, int selector) {
    switch (selector) {
    case 3:
        return box.lineFromChar(-1) + 1;
    case 4:
        return box.SelStart();
    case 5:
        return box.lineIndex(-1);
    case 6:
        return box.lineLength(box.SelStart());
    case 7:
        return box.lineCount();
    case 8: {
        const int last = box.lineIndex(box.lineCount() - 1);
        return last < 0 ? 0 : box.lineLength(last);
    }
    default:
        return 0;
    }
}

void RTBCtrl::setTypingMode(RichTextBox& box, bool overwrite) {
    box.setOverwriteMode(overwrite);
}
