#include "print/PrinterSystem.h"

namespace {
std::unique_ptr<PrinterSystem>& current() {
    static std::unique_ptr<PrinterSystem> system;
    return system;
}
} // namespace

PrinterSystem* printerSystem() {
    return current().get();
}

void setPrinterSystem(std::unique_ptr<PrinterSystem> system) {
    current() = std::move(system);
}

QString noPrinterMessage() {
    return QStringLiteral("No printer is available: the print service (CUPS) is not running or "
                          "has no printer set up. A PDF can still be made with Export as PDF.");
}

QString choosePrinter(const PrinterSystem* system, const QString& wanted, QString* error) {
    const QStringList names = system ? system->printerNames() : QStringList();
    if (names.isEmpty()) {
        if (error) {
            *error = noPrinterMessage();
        }
        return {};
    }
    if (!wanted.isEmpty()) {
        for (const QString& name : names) {
            if (name.toUpper() == wanted.toUpper()) {
                return name;
            }
        }
        if (error) {
            *error = QStringLiteral("There is no printer named \"%1\". The printers are: %2.")
                         .arg(wanted, names.join(QStringLiteral(", ")));
        }
        return {};
    }
    const QString fallback = system->defaultPrinterName();
    return names.contains(fallback) ? fallback : names.first();
}
