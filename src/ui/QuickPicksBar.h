#pragma once

#include <QDockWidget>
#include <QString>
#include <functional>

class QFileSystemWatcher;
class QLabel;
class QListWidget;
class QListWidgetItem;
class QToolButton;

// The Quick Picks side panel: the documents of the templates folder, one
// double click (or Enter) away. The list follows the folder as files come
// and go; a folder that vanishes just empties the list.
class QuickPicksBar : public QDockWidget {
    Q_OBJECT
public:
    explicit QuickPicksBar(QWidget* parent = nullptr);

    // What a pick does with the full path of the chosen file.
    void setOpener(std::function<void(const QString&)> open) { m_open = std::move(open); }
    // What the folder button does; the list is refreshed afterwards.
    void setFolderButtonAction(std::function<void()> action) { m_folderAction = std::move(action); }
    // Delete on an entry passes its full path here; without a handler the
    // key does nothing.
    void setDeleter(std::function<void(const QString&)> remove) { m_delete = std::move(remove); }

    // Goes to `path` when it is not blank and exists, then re-reads the
    // folder shown.
    void refreshFileList(const QString& path = QString());
    QString folder() const { return m_folder; }
    QListWidget* fileList() const { return m_list; }

    // Opens the entry as a double click does.
    void openEntry(const QString& fileName);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void watch();

    QListWidget* m_list;
    QToolButton* m_folderButton;
    QLabel* m_disclaimer;
    QFileSystemWatcher* m_watcher;
    QString m_folder;
    std::function<void(const QString&)> m_open;
    std::function<void()> m_folderAction;
    std::function<void(const QString&)> m_delete;
};
