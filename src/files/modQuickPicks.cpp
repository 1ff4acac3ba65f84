#include "files/modQuickPicks.h"

#include "platform/fileControl.h"
#include "platform/text/ShellStringCompare.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>

bool isQuickPickFile(const QString& fileName) {
    if (fileName.isEmpty() || fileName.startsWith(QLatin1Char('.')) ||
        fileName.startsWith(QLatin1Char('~'))) {
        return false;
    }
    static const QStringList kinds = {
        QStringLiteral("qmw"), QStringLiteral("qmb"), QStringLiteral("qme"), QStringLiteral("qmt"),
        QStringLiteral("qma"), QStringLiteral("rtf"), QStringLiteral("txt"),
    };
    return kinds.contains(fileControl::Extension(fileName).toLower());
}

QStringList quickPickFiles(const QString& folder) {
    if (folder.trimmed().isEmpty()) {
        return {};
    }
    const QDir dir(folder);
    if (!dir.exists()) {
        return {};
    }
    QStringList names;
    const QFileInfoList entries = dir.entryInfoList(QDir::Files | QDir::Readable);
    for (const QFileInfo& entry : entries) {
        if (isQuickPickFile(entry.fileName())) {
            names << entry.fileName();
        }
    }
    std::sort(names.begin(), names.end(), [](const QString& a, const QString& b) {
        const int order = StrCmpLogicalW(a, b);
        // Names that differ only in case keep a fixed order.
        return order != 0 ? order < 0 : a < b;
    });
    return names;
}

QString quickPickPath(const QString& folder, const QString& fileName) {
    return fileControl::AddBackslash(folder) + fileName;
}

QString nextQuickPickFolder(const QString& current, const QString& requested) {
    if (!requested.trimmed().isEmpty() && fileControl::FolderExists(requested)) {
        return requested;
    }
    return current;
}

bool isSameDocumentFile(const QString& a, const QString& b) {
    if (a.isEmpty() || b.isEmpty()) {
        return false;
    }
    const QFileInfo ia(a);
    const QFileInfo ib(b);
    if (ia.exists() && ib.exists()) {
        return ia.canonicalFilePath() == ib.canonicalFilePath();
    }
    return QDir::cleanPath(ia.absoluteFilePath()) == QDir::cleanPath(ib.absoluteFilePath());
}
