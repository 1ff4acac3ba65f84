#include "app/modRecentFiles.h"

#include "files/clsINI.h"
#include "platform/fileControl.h"

namespace {
const QString kSection = QStringLiteral("QuillmerePadMRU");

QString keyFor(int position) {
    return QStringLiteral("Name%1").arg(position);
}
} // namespace

void RecentFiles::GetMRUList(clsINI* ini) {
    if (!ini) {
        return;
    }
    QStringList entries;
    for (int i = 1; i <= MaxEntries; ++i) {
        const QString value = ini->getKeyString(kSection, keyFor(i), QString());
        // Reading an empty key writes "<not_set>" into it; that is no file.
        if (value.size() > 2 && value != QLatin1String(clsINI::NotSet)) {
            entries << value;
        }
    }
    m_entries = entries;
}

void RecentFiles::SaveMRUFile(clsINI* ini, const QString& path) {
    if (path.trimmed().isEmpty()) {
        return;
    }
    const QString wanted = path.toLower();
    for (qsizetype i = 0; i < m_entries.size(); ++i) {
        if (m_entries.at(i).toLower() == wanted) {
            m_entries.removeAt(i);
            break;
        }
    }
    m_entries.prepend(path);
    while (m_entries.size() > MaxEntries) {
        m_entries.removeLast();
    }
    if (!ini) {
        return;
    }
    for (int i = 1; i <= MaxEntries; ++i) {
        ini->setKeyValue(kSection, keyFor(i),
                         i <= m_entries.size() ? m_entries.at(i - 1) : QString());
    }
    GetMRUList(ini);
}

QString RecentFiles::itemCaption(int position, const QString& path) {
    QString name = fileControl::RemoveExtension(fileControl::FileName(path));
    name.replace(QLatin1Char('&'), QStringLiteral("&&"));
    return QStringLiteral("%1. %2").arg(position).arg(name);
}

std::optional<QString> recentFileProblem(const QString& path) {
    if (fileControl::FileExists(path)) {
        return std::nullopt;
    }
    return QStringLiteral("The file you have selected doesn't exist.");
}
