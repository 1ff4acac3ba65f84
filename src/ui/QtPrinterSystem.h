#pragma once

#include "print/PrintTarget.h"
#include "print/PrinterSystem.h"

#include <QPrinter>
#include <memory>

// A print job on a desktop printer (CUPS) through QPrinter. The painter
// works on the printable area, so the printer's unprintable offsets apply as
// the text edges say; starting the job is what gives the printer a device.
class QtPrinterTarget : public PagedDeviceTarget {
public:
    // A printer the print dialog has set up; it must outlive the target.
    explicit QtPrinterTarget(QPrinter& printer);
    // A printer of its own, whose paper is made that of the document.
    explicit QtPrinterTarget(std::unique_ptr<QPrinter> printer);
    ~QtPrinterTarget() override;

    bool begin(const DocumentModel& geometry) override;
    bool newPage() override;
    bool end() override;
    void abort() override;

private:
    QString printerName() const;

    std::unique_ptr<QPrinter> m_owned;
    QPrinter& m_printer;
    bool m_paperFromDocument = false;
};

// The printers of the print service, as QPrinterInfo lists them.
class QtPrinterSystem : public PrinterSystem {
public:
    QStringList printerNames() const override;
    QString defaultPrinterName() const override;
    std::unique_ptr<PrintTarget> printerTarget(const QString& name, const QString& title,
                                               QString* error) override;
};

// Makes the print service's printers the ones the program prints on.
void installDesktopPrinters();
