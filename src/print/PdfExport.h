#pragma once

#include "documents/DocumentModel.h"
#include "documents/PageLayout.h"
#include "platform/richtext/RichTextBox.h"
#include "print/PageRange.h"
#include "print/PrintDocument.h"

#include <QString>
#include <memory>
#include <vector>

class ProgressReporter;

// A document file opened for output without a window: its page setup from
// the trailer and its text laid out by the layout the window uses, so that
// sheets break as they do on screen.
struct PaginatedDocument {
    DocumentModel model;
    RichTextBox box;
    PageLayout layout{box, model};
    QString caption;

    // Throws QmError as DocumentFile::open does (missing, unreadable, not
    // RTF under an RTF header), and InvalidFileFormat for a folder or binary
    // data, which the document window refuses too; warnings about the page
    // setup go to `warn`.
    static std::unique_ptr<PaginatedDocument>
    open(const QString& path, const std::function<void(const QString&)>& warn = {});
    // The same, for writing its sheets out once from the first on (see
    // PageLayout::keepGlyphsUntilDrawn()): ask layout.hasSheet() rather
    // than totalPages() before writing, which would hold every glyph, and
    // use open() for a range that starts further on, whose earlier sheets
    // would keep theirs.
    static std::unique_ptr<PaginatedDocument>
    openToWrite(const QString& path, const std::function<void(const QString&)>& warn = {});

private:
    static std::unique_ptr<PaginatedDocument> load(const QString& path,
                                                   const std::function<void(const QString&)>& warn,
                                                   bool keepGlyphsUntilDrawn);
};

// Writes the sheets of `range` (fitted to the document) of a paginated
// document into one PDF at `path`, in order, with no blank sheets for the
// pages left out. The sheet size and text position follow `geometry`.
PrintOutcome writeDocumentPdf(const PageLayout& layout, const DocumentModel& geometry,
                              const QString& path, const PageRange& range, const QString& title,
                              ProgressReporter& progress);

// Writes a merged batch into one PDF, every letter starting on a new sheet.
PrintOutcome writeLettersPdf(const std::vector<PrintLetter>& letters, const DocumentModel& geometry,
                             const QString& path, const QString& title, ProgressReporter& progress);

// The PDF that goes beside a filed letter: the letter's path with ".pdf"
// for its extension.
QString pdfPathBeside(const QString& letterPath);
