#pragma once

#include "platform/FileDialogs.h"

class QWidget;

// The desktop's file dialogs, over the main window.
class QtFileDialogs : public FileDialogs {
public:
    explicit QtFileDialogs(QWidget* owner = nullptr) : m_owner(owner) {}
    void setOwner(QWidget* owner) { m_owner = owner; }

    std::optional<QString> openFileName(const QString& caption, const QString& folder,
                                        const QString& filter) override;
    std::optional<QString> saveFileName(const QString& caption, const QString& suggested,
                                        const QString& filter) override;
    std::optional<QString> existingFolder(const QString& caption, const QString& folder) override;
    // The filter the user left selected, not the one the name matches.
    std::optional<FileChoice> openFile(const QString& caption, const QString& folder,
                                       const QString& filter) override;
    std::optional<FileChoice> saveFile(const QString& caption, const QString& suggested,
                                       const QString& filter) override;

private:
    QWidget* m_owner;
};
