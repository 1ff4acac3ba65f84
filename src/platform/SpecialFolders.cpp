#include "platform/SpecialFolders.h"

#include "platform/fileControl.h"

#include <QCoreApplication>
#include <QStandardPaths>

namespace SpecialFolders {

namespace {
QString fromEnvironment(const char* name, const QString& fallback) {
    const QString value = qEnvironmentVariable(name);
    return fileControl::AddBackslash(value.isEmpty() ? fallback : value);
}
} // namespace

QString roamingAppData() {
    return fileControl::AddBackslash(
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation));
}

QString localAppData() {
    return fileControl::AddBackslash(
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));
}

QString commonAppData() {
    return fromEnvironment("QM_COMMON_APPDATA_DIR", QStringLiteral("/var/lib"));
}

QString myDocuments() {
    return fileControl::AddBackslash(
        QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
}

QString programFolder() {
    const QString appDir =
        QCoreApplication::instance() ? QCoreApplication::applicationDirPath() : QString();
    return fromEnvironment("QM_PROGRAM_DIR", appDir);
}

} // namespace SpecialFolders
