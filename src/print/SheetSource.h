#pragma once

#include "documents/DocumentModel.h"
#include "documents/PageLayout.h"
#include "platform/richtext/RichTextBox.h"
#include "print/PrintDocument.h"

#include <QSize>
#include <memory>
#include <utility>
#include <vector>

class QPainter;

// The sheets a print preview shows, one at a time, drawn by the sheet paint
// routine as they will print; nothing is kept of a sheet once it is drawn.
class SheetSource {
public:
    virtual ~SheetSource() = default;
    // How many sheets; may lay text out the first time.
    virtual int sheetCount() = 0;
    // The sheets counted so far, laying nothing out: at least the sheets a
    // preview can show at once, perhaps fewer than sheetCount().
    virtual int knownSheetCount() { return sheetCount(); }
    // The paper of a sheet, in twips.
    virtual QSize sheetSize() const = 0;
    // Draws sheet `sheet` (1-based) with the painter's origin at the paper's
    // corner and its transform mapping twips to the device.
    virtual void paintSheet(QPainter& painter, int sheet) = 0;
};

// The sheets of one paginated document.
class DocumentSheets : public SheetSource {
public:
    // Both must outlive the source.
    DocumentSheets(const PageLayout& layout, const DocumentModel& geometry);
    int sheetCount() override;
    int knownSheetCount() override;
    QSize sheetSize() const override;
    void paintSheet(QPainter& painter, int sheet) override;

private:
    const PageLayout& m_layout;
    const DocumentModel& m_geometry;
};

// The sheets of a merged batch, every letter starting on a new sheet. Each
// letter is laid out when one of its sheets is drawn, and only the last one
// is kept; the first count lays every letter out once and keeps the counts.
class LetterSheets : public SheetSource {
public:
    LetterSheets(std::vector<PrintLetter> letters, const DocumentModel& geometry);
    int sheetCount() override;
    QSize sheetSize() const override;
    void paintSheet(QPainter& painter, int sheet) override;

    // The letter (0-based) and its page (1-based) of a sheet of the batch.
    std::pair<int, int> locate(int sheet);

private:
    void load(int letter);
    void countPages();

    std::vector<PrintLetter> m_letters;
    DocumentModel m_geometry;
    RichTextBox m_box;
    PageLayout m_layout{m_box, m_geometry};
    int m_loaded = -1;
    // Sheets before each letter, and the total last.
    std::vector<int> m_firstSheet;
};

// Which sheet a preview shows and at what scale.
class PreviewNavigator {
public:
    enum class Zoom { WholePage, PageWidth, Percent };

    void setSheetCount(int count);
    int sheetCount() const { return m_count; }
    int current() const { return m_current; }
    // Moves to a sheet, kept within 1 and the count; true when it moved.
    bool go(int sheet);
    bool first() { return go(1); }
    bool previous() { return go(m_current - 1); }
    bool next() { return go(m_current + 1); }
    bool last() { return go(m_count); }
    bool canGoBack() const { return m_current > 1; }
    bool canGoOn() const { return m_current < m_count; }

    // Pixels per twip for a sheet of `sheet` twips in a view of `view`
    // pixels less a border, at a screen of `dpi`; percent counts for
    // Zoom::Percent only (100 is the sheet's real size).
    static double scale(Zoom zoom, int percent, QSize sheet, QSize view, double dpi);

private:
    int m_count = 1;
    int m_current = 1;
};
