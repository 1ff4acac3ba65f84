#pragma once

#include <QObject>
#include <QPaintDevice>
#include <QRect>
#include <QString>
#include <QTextCharFormat>
#include <memory>
#include <vector>

class DocumentModel;
class PagedTextLayout;
class QPainter;
class QTextDocument;
class RichTextBox;

// The pagination of a document window: the one RichTextBox's QTextDocument
// laid out on a fixed 600-dpi device (design metrics) and cut into sheets of the page's text area,
// so that lines and page breaks are the same on screen, in PDF and on paper. The view, the printer
// and the `pages` command all read this object; only they scale.
//
// Geometry is in twips. Sheets are 1-based. Positions are QTextDocument
// positions (not the CR LF positions of RichTextBox::Text).
//
// Cost: totalPages() and everything that finds a sheet's text force the
// layout up to that point; laidOutPages() never does and is what a paint
// routine may ask. Only setupDocument() resets the page size, which lays out
// everything again.
class PageLayout : public QObject {
    Q_OBJECT

public:
    static constexpr int SheetTop = 90;
    static constexpr int SheetGap = 150;
    static constexpr int SheetLeft = 45;
    static constexpr int ShadowOffset = 75;
    // A printer's resolution. Qt lays out in 26.6 fixed point, so a finer
    // device would overflow past some 2,500 letter sheets.
    static constexpr int DeviceDpi = 600;

    enum DisplayType : int { PageDisplay = 1, ContinuousDisplay = 2 };
    enum ViewMode : int { NoWrap = 0, WrapAtWindow = 1, PrinterWrap = 2 };

    // The box and the model must outlive the layout. The box is bound to
    // the layout's device at once.
    PageLayout(RichTextBox& box, const DocumentModel& model, QObject* parent = nullptr);
    ~PageLayout() override;

    // Page setup: binds the box to the page's text width and height from the
    // model. Page size and orientation are made to agree first (a portrait
    // page is never wider than high). A text area of zero or negative size is
    // laid out at 1 twip rather than refused: pagination never fails.
    void setupDocument();
    // The same, in the given display type and bound to the page (print
    // wrap), as a window's set-up does it: one layout pass for both.
    void setupDocument(int displayType);

    int displayType() const { return m_display; }
    // 1 or 2; anything else is taken as 1. Re-binds the layout.
    void setDisplayType(int type);
    int viewMode() const { return m_viewMode; }
    // 0, 1 or 2; anything else is taken as 2. Re-binds the layout.
    void setViewMode(int mode);
    // The window's width for wrap-at-window, in twips.
    void setWindowWidth(int twips);

    // While loading, the layout is switched off (nothing is laid out per
    // inserted block); endLoad() lays the document out again from the top,
    // in steps, as Qt's layout does for a fresh document.
    void beginLoad();
    void endLoad();
    // Loads a document file into the box as a document window opens it (RTF
    // when it starts with an RTF header, plain text otherwise) with the
    // layout switched off meanwhile. Throws QmError FileNotFound when it
    // cannot be read and InvalidFileFormat for unreadable RTF; the box keeps
    // its text then.
    void loadFile(const QString& path);
    bool loading() const { return m_loading; }

    // Pages of the whole document: lays everything out. At least 1.
    int totalPages() const;
    // Whether sheet `page` exists (page <= totalPages()), laying out no
    // further than that sheet and the one after it.
    bool hasSheet(int page) const;
    // min(page, totalPages()), laying out no further than hasSheet() does.
    int pagesUpTo(int page) const;

    // For one pass from a sheet to the sheets after it, as PDF and printing
    // make: from now on each paragraph keeps the glyphs its layout shapes
    // until paintSheetText() has drawn its last line, so a line is shaped
    // once instead of once to lay it out and again to draw it. Only what is
    // laid out and not yet drawn holds glyphs, so the pass must not lay out
    // far ahead (totalPages() lays out everything: ask hasSheet() instead).
    // Call it while loading, before endLoad() starts the layout.
    void keepGlyphsUntilDrawn();
    bool keepsGlyphsUntilDrawn() const { return m_keepGlyphs; }
    // Pages laid out so far; never forces the layout. At least 1.
    int laidOutPages() const { return m_knownPages; }
    // Tells the layout that a sheet exists because something (the caret)
    // stands on it, while the background layout has not yet reported it.
    void reachPage(int page);
    // Sheet that holds a document position, and the sheet of the caret.
    int pageOfPosition(int position) const;
    int currentPage() const;
    // First position of a sheet and the position behind its last character;
    // a sheet beyond the last answers the document's end for both.
    int firstPositionOfSheet(int page) const;
    int endPositionOfSheet(int page) const;
    // The plain text of a sheet, paragraph ends as '\n'.
    QString sheetText(int page) const;

    // Sheet, shadow and text area of a sheet in the column of sheets.
    QRect sheetRect(int page) const;
    QRect shadowRect(int page) const;
    QRect textRect(int page) const;
    // The whole column for `pages` sheets, shadows and gaps included.
    QSize columnSize(int pages) const;
    // The sheet at a height of the column (nearest sheet in a gap).
    int sheetAtY(int yTwips, int pages) const;
    // Layout coordinates <-> twips in the column, for hit tests and carets.
    QPointF layoutToColumn(const QPointF& layoutPoint) const;
    QPointF columnToLayout(const QPoint& twips, int page) const;
    // Where a position stands: its line's rectangle in the column.
    QRectF caretRect(int position) const;

    // Draws the text of one sheet at the painter's current transform, which
    // maps twips of the column to the device. Used alike for screen, print
    // and PDF. `caret` -1 draws no caret.
    struct Highlight {
        int start = 0;
        int end = 0;
        // Empty: the look of the selection.
        QTextCharFormat format = {};
    };
    void paintSheetText(QPainter& painter, int page, int caret,
                        const std::vector<Highlight>& selections) const;

    QTextDocument* document() const;
    QPaintDevice* device() const;
    // Edits laid out within their paragraph alone, and edits Qt's layout
    // took down the rest of the document; for tests and benchmarks.
    int editsInPlace() const;
    int editsPassedOn() const;

Q_SIGNALS:
    // The number of laid-out pages changed.
    void pagesChanged(int pages);
    // The one long sheet of continuous display, or a sheet widened by lines
    // that do not wrap, grew or shrank as the layout went on.
    void sheetSizeChanged();
    // Something in this layout rectangle (layout units) has to be redrawn.
    void updateRequest(const QRectF& layoutRect);

private:
    class FixedDevice;
    void bind();
    double unitsPerTwip() const;
    // Height of one sheet's text area in layout units (paged only).
    double pageStride() const;
    int pageOfY(double layoutY) const;
    double lineTop(int position) const;
    void onPageCount(int pages);
    void onSize(const QSizeF& size);
    void setKnownPages(int pages);
    int withoutBlankTail(int pages) const;
    // Whether the document from `position` to its end holds nothing but
    // blanks and line ends.
    bool blankFrom(int position) const;
    // The first block (number) whose bottom lies below layout height `top`.
    int firstBlockBelow(double top) const;
    // Lets the paragraphs whose last line is on sheet `page` drop their glyphs.
    void releaseDrawnGlyphs(QPainter& painter, int page, int first) const;

    RichTextBox& m_box;
    const DocumentModel& m_model;
    // Owned by the document.
    PagedTextLayout* m_textLayout = nullptr;
    std::unique_ptr<FixedDevice> m_device;
    int m_display = PageDisplay;
    int m_viewMode = PrinterWrap;
    int m_windowWidth = 0;
    int m_knownPages = 1;
    // The layout's size so far, as it reports it; asking for the document's
    // size instead would lay everything out first.
    QSizeF m_laidOutSize;
    // The lowest line bottom a question about a position has laid out since
    // the layout last reported its size (continuous display).
    mutable double m_queriedBottom = 0;
    bool m_loading = false;
    bool m_keepGlyphs = false;
    // Where the last search for a sheet's first block ended: sheets are
    // mostly asked for in order, and searching on from there lays out no
    // further than the sheet asked for.
    mutable int m_searchHint = 0;
};
