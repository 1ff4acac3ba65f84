#pragma once

#include <QtGui/private/qtextdocumentlayout_p.h>

class QTextBlock;

// Qt's document layout, with one shortcut for typing. Qt answers every edit
// by walking all the blocks after it to move them and their page breaks,
// which on a long paged document costs more than a frame. When an edit stays
// inside one paragraph and that paragraph breaks into lines of the same
// number and heights as before, nothing after it can move: the paragraph is
// broken into lines again in place and the walk is skipped. Every other
// edit goes to Qt's layout unchanged, so lines and page breaks are always
// those a fresh layout gives.
class PagedTextLayout : public QTextDocumentLayout {
public:
    explicit PagedTextLayout(QTextDocument* document);

    // Off while lines do not wrap: a longer line must then widen the
    // document, which only the full layout reports.
    void setInPlaceEdits(bool on) { m_inPlace = on; }
    bool inPlaceEdits() const { return m_inPlace; }
    // Whether every paragraph's line count stands in the document's block
    // map (QTextBlock::lineCount, firstLineNumber, QTextDocument::lineCount),
    // so that line numbers take no walk over the document. Counts are kept
    // up as edits are laid out; after a load or a change of line width they
    // are taken once the layout has reached the end, here. False until then.
    bool lineNumbersReady();
    // Edits taken in place and edits passed on, since construction.
    int inPlaceCount() const { return m_inPlaceCount; }
    int passedOnCount() const { return m_passedOnCount; }

protected:
    void documentChanged(int from, int oldLength, int length) override;

private:
    // Breaks the edited paragraph into lines again where its old lines
    // stood; false when the outcome would move anything below it (the
    // paragraph's lines are then left for Qt's layout to redo).
    bool relayoutInPlace(const QTextBlock& block);
    // Stores the line counts of the paragraphs from `from` to `to`.
    void countLines(int from, int to);

    bool m_inPlace = true;
    int m_blockCount = 0;
    int m_inPlaceCount = 0;
    int m_passedOnCount = 0;
    // The block map's line counts need taking from every paragraph.
    bool m_countsStale = true;
};
