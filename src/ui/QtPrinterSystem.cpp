#include "ui/QtPrinterSystem.h"

#include "documents/DocumentModel.h"
#include "print/PdfTarget.h"

#include <QPageLayout>
#include <QPrinterInfo>

QtPrinterTarget::QtPrinterTarget(QPrinter& printer) : m_printer(printer) {}

QtPrinterTarget::QtPrinterTarget(std::unique_ptr<QPrinter> printer)
    : m_owned(std::move(printer)), m_printer(*m_owned), m_paperFromDocument(true) {}

QtPrinterTarget::~QtPrinterTarget() {
    if (painterActive()) {
        abort();
    }
}

QString QtPrinterTarget::printerName() const {
    return m_printer.printerName().isEmpty() ? QStringLiteral("the printer")
                                             : m_printer.printerName();
}

bool QtPrinterTarget::begin(const DocumentModel& geometry) {
    if (m_paperFromDocument) {
        const QSize sheet = PdfTarget::sheetSize(geometry);
        m_printer.setPageSize(QPageSize(QSizeF(sheet.width() / 20.0, sheet.height() / 20.0),
                                        QPageSize::Point, QString(), QPageSize::FuzzyMatch));
        m_printer.setPageOrientation(QPageLayout::Portrait);
    }
    // Our page loop makes the copies, in one job.
    m_printer.setCopyCount(1);
    m_printer.setFullPage(false);
    const QRectF paper = m_printer.paperRect(QPrinter::Point);
    const QRectF printable = m_printer.pageRect(QPrinter::Point);
    const QPoint offset(int((printable.left() - paper.left()) * 20),
                        int((printable.top() - paper.top()) * 20));
    const QSize paperTwips(int(paper.width() * 20), int(paper.height() * 20));
    setError(QStringLiteral("The job could not be started on %1.").arg(printerName()));
    if (!openPainter(m_printer, geometry, paperTwips, offset)) {
        return false;
    }
    setError(QString());
    return true;
}

bool QtPrinterTarget::newPage() {
    if (m_printer.printerState() == QPrinter::Error) {
        setError(QStringLiteral("%1 stopped taking the job.").arg(printerName()));
        return false;
    }
    return PagedDeviceTarget::newPage();
}

bool QtPrinterTarget::end() {
    const bool ended = closePainter();
    if (!ended || m_printer.printerState() == QPrinter::Error) {
        setError(QStringLiteral("The job could not be finished on %1.").arg(printerName()));
        return false;
    }
    return true;
}

void QtPrinterTarget::abort() {
    m_printer.abort();
    closePainter();
}

QStringList QtPrinterSystem::printerNames() const {
    return QPrinterInfo::availablePrinterNames();
}

QString QtPrinterSystem::defaultPrinterName() const {
    return QPrinterInfo::defaultPrinterName();
}

std::unique_ptr<PrintTarget> QtPrinterSystem::printerTarget(const QString& name,
                                                            const QString& title, QString* error) {
    const QPrinterInfo info = QPrinterInfo::printerInfo(name);
    if (info.isNull()) {
        if (error) {
            *error = QStringLiteral("The printer \"%1\" is not available.").arg(name);
        }
        return nullptr;
    }
    auto printer = std::make_unique<QPrinter>(info, QPrinter::HighResolution);
    printer->setDocName(title);
    return std::make_unique<QtPrinterTarget>(std::move(printer));
}

void installDesktopPrinters() {
    setPrinterSystem(std::make_unique<QtPrinterSystem>());
}
