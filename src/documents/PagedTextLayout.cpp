#include "documents/PagedTextLayout.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextLayout>
#include <algorithm>
#include <vector>

namespace {

// Characters of a change beyond which the line counts are taken again from
// the whole document rather than from the changed paragraphs.
constexpr int kCountedChange = 100000;

struct LineGeometry {
    QPointF position;
    qreal width = 0;
    qreal ascent = 0;
    qreal descent = 0;
    qreal leading = 0;
    qreal height = 0;
};

bool sameHeight(const LineGeometry& old, const QTextLine& line) {
    return old.ascent == line.ascent() && old.descent == line.descent() &&
           old.leading == line.leading() && old.height == line.height();
}

// Whether a block's lines depend on nothing but its own text, its format
// and the width of the page: a block of the top-level flow, not next to a
// table (Qt tucks empty blocks into a table's border), with no inline
// object, in a document without floating frames.
bool standsAlone(const QTextDocument& document, const QTextBlock& block) {
    QTextFrame* root = document.rootFrame();
    const int start = block.position();
    const int end = start + block.length();
    if (!block.isVisible() || document.frameAt(start) != root ||
        (start > 0 && document.frameAt(start - 1) != root) ||
        (end < document.characterCount() && document.frameAt(end) != root)) {
        return false;
    }
    for (const QTextFrame* frame : root->childFrames()) {
        if (frame->frameFormat().position() != QTextFrameFormat::InFlow) {
            return false;
        }
    }
    return !block.text().contains(QChar::ObjectReplacementCharacter);
}

} // namespace

PagedTextLayout::PagedTextLayout(QTextDocument* document)
    : QTextDocumentLayout(document), m_blockCount(document->blockCount()) {}

void PagedTextLayout::documentChanged(int from, int oldLength, int length) {
    QTextDocument* doc = document();
    const int blocks = doc->blockCount();
    const bool sameBlocks = blocks == m_blockCount;
    m_blockCount = blocks;
    // Only text typed or deleted within a paragraph: a format change may
    // move its margins, and a paragraph end added or taken away moves
    // everything below. While Qt's layout is still on its way down the
    // document the paragraph may not have been laid out yet.
    if (m_inPlace && sameBlocks && oldLength != length && !doc->pageSize().isNull() &&
        layoutStatus() == 100) {
        const QTextBlock block = doc->findBlock(from);
        if (block.isValid() && from + length < block.position() + block.length() &&
            standsAlone(*doc, block) && relayoutInPlace(block)) {
            ++m_inPlaceCount;
            countLines(from, from);
            Q_EMIT update(blockBoundingRect(block));
            return;
        }
    }
    ++m_passedOnCount;
    QTextDocumentLayout::documentChanged(from, oldLength, length);
    // Lines are broken anew only in the changed paragraphs, unless the
    // whole text or its width changed; paragraphs moved onto another sheet
    // keep their lines. Qt lays out far only in steps from a timer, and a
    // paragraph not yet laid out has no lines to count.
    if (length > kCountedChange || layoutStatus() != 100) {
        m_countsStale = true;
    } else if (!m_countsStale) {
        countLines(from, from + length);
    }
}

bool PagedTextLayout::lineNumbersReady() {
    if (m_countsStale && layoutStatus() == 100) {
        countLines(0, document()->characterCount());
        m_countsStale = false;
    }
    return !m_countsStale;
}

void PagedTextLayout::countLines(int from, int to) {
    const QTextDocument* doc = document();
    for (QTextBlock block = doc->findBlock(from); block.isValid() && block.position() <= to;
         block = block.next()) {
        const QTextLayout* layout = block.layout();
        block.setLineCount(std::max(1, layout != nullptr ? layout->lineCount() : 0));
    }
}

bool PagedTextLayout::relayoutInPlace(const QTextBlock& block) {
    QTextLayout* layout = block.layout();
    const int count = layout != nullptr ? layout->lineCount() : 0;
    // Typing a right-to-left letter at the start can turn the paragraph's
    // direction, and with it its alignment.
    if (count == 0 || block.textDirection() != layout->textOption().textDirection()) {
        return false;
    }
    // The lines keep what Qt gave them from the last layout: their widths
    // (the first one less its indent), and where they stand, page breaks
    // included.
    std::vector<LineGeometry> old;
    old.reserve(count);
    for (int i = 0; i < count; ++i) {
        const QTextLine line = layout->lineAt(i);
        old.push_back({line.position(), line.width(), line.ascent(), line.descent(), line.leading(),
                       line.height()});
    }
    bool fits = true;
    int made = 0;
    layout->beginLayout();
    for (QTextLine line = layout->createLine(); line.isValid(); line = layout->createLine()) {
        if (made == count) {
            fits = false;
            break;
        }
        const LineGeometry& was = old[made++];
        line.setLeadingIncluded(true);
        line.setLineWidth(was.width);
        // A word wider than the line makes Qt break it anywhere and look
        // further down for room.
        if (line.naturalTextWidth() > was.width || !sameHeight(was, line)) {
            fits = false;
            break;
        }
        line.setPosition(was.position);
    }
    layout->endLayout();
    return fits && made == count;
}
