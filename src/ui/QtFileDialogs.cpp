#include "ui/QtFileDialogs.h"

#include <QFileDialog>

namespace {
std::optional<QString> chosen(const QString& path) {
    if (path.isEmpty()) {
        return std::nullopt;
    }
    return path;
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
