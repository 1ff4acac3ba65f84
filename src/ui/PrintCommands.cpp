#include "ui/PrintCommands.h"

#include "context/AppContext.h"
#include "files/clsWorkingFolderLocation.h"
#include "platform/FileDialogs.h"
#include "platform/MsgboxClass.h"
#include "platform/ProgressReporter.h"
#include "print/PaperSetup.h"
#include "print/PdfExport.h"
#include "print/PdfTarget.h"
#include "print/PrinterSystem.h"
#include "print/SheetSource.h"
#include "ui/QtPrinterSystem.h"
#include "ui/frmDocument.h"
#include "ui/frmMain.h"
#include "ui/frmPaperSize.h"
#include "ui/frmPrintPreview.h"

#include <QDir>
#include <QFileInfo>
#include <QMdiSubWindow>
#include <QPrintDialog>
#include <QPrinterInfo>

namespace {

frmDocument* activeDocument(frmMain& window) {
    QMdiSubWindow* sub = window.activeDocumentWindow();
    auto* document = sub ? qobject_cast<frmDocument*>(sub->widget()) : nullptr;
    if (!document && app().msgbox) {
        app().msgbox->showMessage(QStringLiteral("There are no open documents."));
    }
    return document;
}

QString documentName(const frmDocument& document) {
    return document.DocumentCaption.isEmpty() ? QStringLiteral("Document")
                                              : document.DocumentCaption;
}

void tell(const QString& message) {
    if (app().msgbox) {
        app().msgbox->showMessage(message);
    }
}

ProgressReporter& progress() {
    static NullProgress none;
    return app().progress ? *app().progress : none;
}

// The document's own pagination when the window shows it as printed, else a
// printed layout of a copy of its text (continuous display and the window
// wraps break lines differently).
struct PrintedPages {
    std::unique_ptr<PaginatedDocument> copy;
    const PageLayout* layout = nullptr;
    const DocumentModel* model = nullptr;
};

PrintedPages printedPages(frmDocument& document) {
    PrintedPages pages;
    PageLayout& own = document.pageLayout();
    if (own.displayType() == PageLayout::PageDisplay && own.viewMode() == PageLayout::PrinterWrap) {
        pages.layout = &own;
        pages.model = &document.model();
        return pages;
    }
    pages.copy = std::make_unique<PaginatedDocument>();
    const DocumentModel& model = document.model();
    pages.copy->model.PaperSize = model.PaperSize;
    pages.copy->model.putDocumentOrientation(model.getDocumentOrientation(), false);
    pages.copy->model.putPageWidth(model.getPageWidth(), false);
    pages.copy->model.putPageHeight(model.getPageHeight(), false);
    pages.copy->model.putLeftMargin(model.getLeftMargin(), false);
    pages.copy->model.putRightMargin(model.getRightMargin(), false);
    pages.copy->model.putTopMargin(model.getTopMargin(), false);
    pages.copy->model.putBottomMargin(model.getBottomMargin(), false);
    pages.copy->layout.beginLoad();
    pages.copy->box.setTextRTF(document.mergeRTBText());
    pages.copy->layout.endLoad();
    pages.layout = &pages.copy->layout;
    pages.model = &pages.copy->model;
    return pages;
}

// The print dialog over `printer`, filled as the program fills it: pages 1
// to `totalPages`, paper and orientation of the document, no selection and
// no printing to a file. Empty on Cancel.
std::optional<PrintRequest> askPrintDialog(QWidget* owner, QPrinter& printer, int totalPages,
                                           const DocumentModel& geometry) {
    const QSize sheet = PdfTarget::sheetSize(geometry);
    const QPageSize paper(QSizeF(sheet.width() / 20.0, sheet.height() / 20.0), QPageSize::Point,
                          QString(), QPageSize::FuzzyMatch);
    printer.setPageSize(paper);
    printer.setPageOrientation(QPageLayout::Portrait);
    QPrintDialog dialog(&printer, owner);
    dialog.setObjectName(QStringLiteral("printDialog"));
    dialog.setOption(QAbstractPrintDialog::PrintToFile, false);
    dialog.setOption(QAbstractPrintDialog::PrintSelection, false);
    dialog.setOption(QAbstractPrintDialog::PrintPageRange, true);
    dialog.setMinMax(1, totalPages);
    dialog.setFromTo(1, totalPages);
    if (dialog.exec() != QDialog::Accepted) {
        return std::nullopt;
    }
    // The dialog shows the chosen printer's own default paper whatever the
    // printer was given; left at that default, the sheets take the paper of
    // the document's page setup, as the dialog was filled with it.
    const QPageSize chosen = printer.pageLayout().pageSize();
    if (chosen.isEquivalentTo(QPrinterInfo(printer).defaultPageSize()) &&
        !chosen.isEquivalentTo(paper)) {
        printer.setPageSize(paper);
    }
    const bool ranged = printer.printRange() == QPrinter::PageRange;
    return PrintRequest::fromDialog(printer.copyCount(), ranged ? printer.fromPage() : 1,
                                    ranged ? printer.toPage() : totalPages, totalPages);
}

bool havePrinters() {
    if (QPrinterInfo::availablePrinterNames().isEmpty()) {
        tell(noPrinterMessage());
        return false;
    }
    return true;
}

void printDocument(frmMain& window) {
    frmDocument* document = activeDocument(window);
    if (!document || !havePrinters()) {
        return;
    }
    app().isCreatingDocument = true;
    PrintedPages pages = printedPages(*document);
    const int total = pages.layout->totalPages();
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(documentName(*document));
    const auto request = askPrintDialog(&window, printer, total, *pages.model);
    if (!request) {
        // Cancel leaves the creation guard set, as the program always has.
        return;
    }
    QtPrinterTarget target(printer);
    const PrintOutcome outcome =
        PrintDocument(&target, *request, progress())
            .printDocument(*pages.layout, *pages.model, documentName(*document));
    app().isCreatingDocument = false;
    if (!outcome.error.isEmpty()) {
        tell(outcome.error);
    }
}

void previewDocument(frmMain& window) {
    frmDocument* document = activeDocument(window);
    if (!document) {
        return;
    }
    auto pages = std::make_shared<PrintedPages>(printedPages(*document));
    // The source reads the document's pages; a copy lives as long as the window.
    struct OwnedSheets : DocumentSheets {
        OwnedSheets(std::shared_ptr<PrintedPages> p)
            : DocumentSheets(*p->layout, *p->model), keep(std::move(p)) {}
        std::shared_ptr<PrintedPages> keep;
    };
    auto* preview = new frmPrintPreview(
        std::make_unique<OwnedSheets>(pages), documentName(*document),
        [&window] { window.runCommand(QStringLiteral("mnuFilePrint")); }, &window);
    preview->setAttribute(Qt::WA_DeleteOnClose);
    // A preview of one document's pages: it follows no edits made meanwhile.
    preview->setModal(true);
    preview->show();
}

void pageSetup(frmMain& window) {
    frmDocument* document = activeDocument(window);
    if (!document) {
        return;
    }
    PaperSetup setup = PaperSetup::fromDocument(document->model());
    frmPaperSize dialog(setup, &window);
    dialog.exec();
    if (setup.ClickedOK) {
        setup.applyTo(document->model());
        document->setupDocument(false, true);
        window.refreshMenuStatus();
    }
    document->setFocus();
}

QString suggestedPdfPath(const frmDocument& document) {
    if (!document.DocumentFileName.isEmpty()) {
        return pdfPathBeside(document.DocumentFileName);
    }
    QString folder =
        app().workingFolders ? app().workingFolders->getMyDocumentsFolder() : QString();
    if (folder.isEmpty()) {
        folder = QDir::homePath();
    }
    return QDir(folder).filePath(documentName(document) + QStringLiteral(".pdf"));
}

void exportPdf(frmMain& window) {
    frmDocument* document = activeDocument(window);
    if (!document || !app().fileDialogs) {
        return;
    }
    const std::optional<QString> chosen =
        askPdfPath(QStringLiteral("Export as PDF"), suggestedPdfPath(*document));
    if (!chosen) {
        return;
    }
    const QString& path = *chosen;
    app().isCreatingDocument = true;
    PrintedPages pages = printedPages(*document);
    const PrintOutcome outcome = writeDocumentPdf(*pages.layout, *pages.model, path, PageRange{},
                                                  documentName(*document), progress());
    app().isCreatingDocument = false;
    if (!outcome.error.isEmpty()) {
        tell(outcome.error);
    } else if (outcome.ok()) {
        window.setStatusPanel(1, QStringLiteral("Exported %1 pages to %2")
                                     .arg(outcome.pages)
                                     .arg(QDir::toNativeSeparators(path)));
    }
}

std::vector<PrintLetter> lettersOf(const std::vector<MergedRecord>& records) {
    std::vector<PrintLetter> letters;
    for (const MergedRecord& record : records) {
        if (!record.mergeFailed) {
            letters.push_back({record.name, record.rtf});
        }
    }
    return letters;
}

} // namespace

void installPrintCommands(frmMain& window) {
    window.addRoute(QStringLiteral("mnuFilePrint"), [&window] { printDocument(window); });
    window.addRoute(QStringLiteral("mnuFilePrintPreview"), [&window] { previewDocument(window); });
    window.addRoute(QStringLiteral("mnuFilePageSetup"), [&window] { pageSetup(window); });
    window.addRoute(QStringLiteral("mnuFileExportPDF"), [&window] { exportPdf(window); });
}

int printMergeDoc(QWidget* owner, const std::vector<MergedRecord>& records,
                  const DocumentModel& geometry, const QString& caption) {
    if (!havePrinters()) {
        return 0;
    }
    const std::vector<PrintLetter> letters = lettersOf(records);
    LetterSheets sheets(letters, geometry);
    const int total = sheets.sheetCount();
    app().isCreatingDocument = true;
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(caption);
    const auto request = askPrintDialog(owner, printer, total, geometry);
    PrintOutcome outcome;
    if (request) {
        QtPrinterTarget target(printer);
        outcome = PrintDocument(&target, *request, progress()).printLetters(letters, geometry);
    }
    // The merged run always leaves through the progress, which clears the guard.
    app().isCreatingDocument = false;
    if (!outcome.error.isEmpty()) {
        tell(outcome.error);
    }
    return outcome.pages;
}

void previewMergeDoc(QWidget* owner, const std::vector<MergedRecord>& records,
                     const DocumentModel& geometry, const QString& caption) {
    auto* preview = new frmPrintPreview(
        std::make_unique<LetterSheets>(lettersOf(records), geometry), caption,
        [owner, &records, &geometry, caption] { printMergeDoc(owner, records, geometry, caption); },
        owner);
    preview->setAttribute(Qt::WA_DeleteOnClose);
    preview->setModal(true);
    preview->show();
}

bool exportMergeDocPdf(const std::vector<MergedRecord>& records, const DocumentModel& geometry,
                       const QString& path, bool beside) {
    app().isCreatingDocument = true;
    QStringList failures;
    if (!beside) {
        const PrintOutcome outcome = writeLettersPdf(
            lettersOf(records), geometry, path, QFileInfo(path).completeBaseName(), progress());
        if (!outcome.error.isEmpty()) {
            failures << outcome.error;
        }
    } else {
        for (const MergedRecord& record : records) {
            if (record.savedPath.isEmpty() || record.mergeFailed) {
                continue;
            }
            NullProgress quiet;
            const PrintOutcome outcome =
                writeLettersPdf({{record.name, record.rtf}}, geometry,
                                pdfPathBeside(record.savedPath), record.name, quiet);
            if (!outcome.error.isEmpty()) {
                failures << outcome.error;
            }
        }
    }
    app().isCreatingDocument = false;
    if (!failures.isEmpty()) {
        tell(failures.join(QLatin1Char('\n')));
    }
    return failures.isEmpty();
}

std::optional<QString> askPdfPath(const QString& caption, const QString& suggested) {
    if (!app().fileDialogs) {
        return std::nullopt;
    }
    const auto chosen =
        app().fileDialogs->saveFileName(caption, suggested, QStringLiteral("PDF Files (*.pdf)"));
    if (!chosen || chosen->isEmpty()) {
        return std::nullopt;
    }
    QString path = *chosen;
    if (QFileInfo(path).suffix().compare(QLatin1String("pdf"), Qt::CaseInsensitive) != 0) {
        path += QStringLiteral(".pdf");
    }
    return path;
}
