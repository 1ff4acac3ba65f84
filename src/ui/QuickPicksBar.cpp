#include "ui/QuickPicksBar.h"

#include "context/AppContext.h"
#include "files/modQuickPicks.h"

#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QToolButton>
#include <QVBoxLayout>

QuickPicksBar::QuickPicksBar(QWidget* parent)
    : QDockWidget(QStringLiteral("Quick Picks"), parent), m_list(new QListWidget),
      m_folderButton(new QToolButton), m_disclaimer(new QLabel),
      m_watcher(new QFileSystemWatcher(this)) {
    setObjectName(QStringLiteral("picFileBar"));
    // Shown and hidden from the View menu only, so the menu's check mark
    // always tells the truth.
    setFeatures(QDockWidget::DockWidgetMovable);
    setAllowedAreas(Qt::LeftDockWidgetArea | Qt::RightDockWidgetArea);

    auto* body = new QWidget(this);
    auto* column = new QVBoxLayout(body);
    // The caption doubles as the panel's title bar, by which it is moved.
    auto* title = new QLabel(QStringLiteral("Quick Picks"), this);
    title->setObjectName(QStringLiteral("lblQuickPicks"));
    title->setMargin(4);
    QFont bold = title->font();
    bold.setBold(true);
    title->setFont(bold);
    setTitleBarWidget(title);

    m_list->setParent(body);
    m_list->setObjectName(QStringLiteral("File1"));
    m_list->setAccessibleName(QStringLiteral("Quick Picks"));
    m_list->setAccessibleDescription(
        QStringLiteral("Documents of the templates folder; double-click one to open it"));
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->installEventFilter(this);
    column->addWidget(m_list, 1);

    auto* frame = new QGroupBox(body);
    frame->setObjectName(QStringLiteral("frmSelectTemplateFolder"));
    auto* frameColumn = new QVBoxLayout(frame);
    m_folderButton->setParent(frame);
    m_folderButton->setObjectName(QStringLiteral("cmdOpenTemplateFolder"));
    m_folderButton->setIcon(QIcon::fromTheme(QStringLiteral("folder-open")));
    m_folderButton->setText(QStringLiteral("Templates Folder..."));
    m_folderButton->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_folderButton->setToolTip(QStringLiteral("Choose the templates folder"));
    m_folderButton->setAccessibleName(QStringLiteral("Templates Folder"));
    frameColumn->addWidget(m_folderButton);
    m_disclaimer->setParent(frame);
    m_disclaimer->setObjectName(QStringLiteral("lblDisclaimer"));
    m_disclaimer->setWordWrap(true);
    m_disclaimer->setText(
        QStringLiteral("The documents and templates of the templates folder. Double-click one "
                       "to open it."));
    frameColumn->addWidget(m_disclaimer);
    column->addWidget(frame);
    setWidget(body);

    // Double click and Enter only: a platform that activates items on a
    // single click would open a document at every selection.
    connect(m_list, &QListWidget::itemDoubleClicked, this,
            [this](QListWidgetItem* item) { openEntry(item->text()); });
    connect(m_folderButton, &QToolButton::clicked, this, [this] {
        if (app().isCreatingDocument || !m_folderAction) {
            return;
        }
        m_folderAction();
    });
    // A change inside the folder, or the folder going away.
    connect(m_watcher, &QFileSystemWatcher::directoryChanged, this, [this] { refreshFileList(); });
}

void QuickPicksBar::refreshFileList(const QString& path) {
    // Runs under the guard, so no handler acts on the list while it is
    // being rebuilt; the guard is handed back as it was.
    bool& guard = app().isCreatingDocument;
    const bool wasGuarded = guard;
    guard = true;
    m_folder = nextQuickPickFolder(m_folder, path);
    const QString selected = m_list->currentItem() ? m_list->currentItem()->text() : QString();
    m_list->clear();
    const QStringList names = quickPickFiles(m_folder);
    m_list->addItems(names);
    const auto kept = m_list->findItems(selected, Qt::MatchExactly);
    if (!kept.isEmpty()) {
        m_list->setCurrentItem(kept.front());
    }
    m_list->setToolTip(m_folder);
    watch();
    guard = wasGuarded;
}

void QuickPicksBar::watch() {
    const QStringList watched = m_watcher->directories();
    if (!watched.isEmpty()) {
        m_watcher->removePaths(watched);
    }
    // A vanished folder cannot be watched; the next refresh (on activation
    // of the main window) looks again.
    if (!m_folder.isEmpty() && QFileInfo(m_folder).isDir()) {
        m_watcher->addPath(m_folder);
    }
}

void QuickPicksBar::openEntry(const QString& fileName) {
    // Deliberately not held back while a document is being made: after a
    // print dialog is cancelled the flag stays up, and opening a pick is
    // what brings the commands back (the window is disabled during real work).
    if (!m_open || fileName.isEmpty()) {
        return;
    }
    m_open(quickPickPath(m_folder, fileName));
}

bool QuickPicksBar::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_list && event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        QListWidgetItem* item = m_list->currentItem();
        if ((key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) && item) {
            openEntry(item->text());
            return true;
        }
    }
    if (watched == m_list && event->type() == QEvent::KeyRelease) {
        const auto* key = static_cast<QKeyEvent*>(event);
        QListWidgetItem* item = m_list->currentItem();
        if (key->key() == Qt::Key_Delete && item && m_delete && !app().isCreatingDocument) {
            m_delete(quickPickPath(m_folder, item->text()));
            refreshFileList();
            return true;
        }
    }
    return QDockWidget::eventFilter(watched, event);
}
