#pragma once

#include <QString>
#include <QStringList>
#include <memory>

class PrintTarget;

// The printers of this machine as the page loop needs them. The program
// plugs in the desktop's print service (CUPS) at start; tests plug in their
// own. Without one, or with no printer, printing says so and PDF still works.
class PrinterSystem {
public:
    virtual ~PrinterSystem() = default;

    // Installed printers; empty when the print service is not running.
    virtual QStringList printerNames() const = 0;
    // The default printer; empty when there is none.
    virtual QString defaultPrinterName() const = 0;
    // A job on the named printer, titled `title`. Null when the printer
    // cannot be had; `error` then says why.
    virtual std::unique_ptr<PrintTarget> printerTarget(const QString& name, const QString& title,
                                                       QString* error) = 0;
};

// The one in use, or null.
PrinterSystem* printerSystem();
void setPrinterSystem(std::unique_ptr<PrinterSystem> system);

// The message for a machine with no printer to print on.
QString noPrinterMessage();

// Chooses the printer a job goes to: `wanted` when given (compared without
// regard to case, the first match), else the default, else the first
// installed. Empty with `error` set when there is none or no such printer.
QString choosePrinter(const PrinterSystem* system, const QString& wanted, QString* error);
