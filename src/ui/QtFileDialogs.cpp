#include "ui/QtFileDialogs.h"

#include <QFileDialog>

namespace {
std::optional<QString> chosen(const QString& path) {
    if (path.isEmpty()) {
        return std::nullopt;
    }
    return path;
}

int indexOf(const QString& filter, const QString& selected) {
    const QStringList filters = filter.split(QStringLiteral(";;"), Qt::SkipEmptyParts);
    const qsizetype at = filters.indexOf(selected);
    return at < 0 ? 1 : int(at + 1);
}
} // namespace

std::optional<QString> QtFileDialogs::openFileName(const QString& caption, const QString& folder,
                                                   const QString& filter) {
    return chosen(QFileDialog::getOpenFileName(m_owner, caption, folder, filter));
}

std::optional<QString> QtFileDialogs::saveFileName(const QString& caption, const QString& suggested,
                                                   const QString& filter) {
    // Replacing an existing file is the caller's question to ask, with the
    // program's own words.
    return chosen(QFileDialog::getSaveFileName(m_owner, caption, suggested, filter, nullptr,
                                               QFileDialog::DontConfirmOverwrite));
}

std::optional<QString> QtFileDialogs::existingFolder(const QString& caption,
                                                     const QString& folder) {
    return chosen(QFileDialog::getExistingDirectory(m_owner, caption, folder));
}

std::optional<FileDialogs::FileChoice>
QtFileDialogs::openFile(const QString& caption, const QString& folder, const QString& filter) {
    QString selected;
    const auto path =
        chosen(QFileDialog::getOpenFileName(m_owner, caption, folder, filter, &selected));
    if (!path) {
        return std::nullopt;
    }
    return FileChoice{*path, indexOf(filter, selected)};
}

std::optional<FileDialogs::FileChoice>
QtFileDialogs::saveFile(const QString& caption, const QString& suggested, const QString& filter) {
    QString selected;
    const auto path = chosen(QFileDialog::getSaveFileName(
        m_owner, caption, suggested, filter, &selected, QFileDialog::DontConfirmOverwrite));
    if (!path) {
        return std::nullopt;
    }
    return FileChoice{*path, indexOf(filter, selected)};
}
