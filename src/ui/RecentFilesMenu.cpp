#include "ui/RecentFilesMenu.h"

#include "context/AppContext.h"
#include "platform/MsgboxClass.h"
#include "ui/CommandActions.h"
#include "ui/frmMain.h"

#include <QAction>
#include <QMdiArea>

namespace {
QString itemName(int position) {
    return QStringLiteral("mnuFileMRUItem%1").arg(position);
}
} // namespace

RecentFilesMenu::RecentFilesMenu(frmMain& main) : QObject(&main), m_main(main) {
    setObjectName(QStringLiteral("RecentFilesMenu"));
    for (int i = 1; i <= RecentFiles::MaxEntries; ++i) {
        main.addRoute(itemName(i), [this, i] { mnuFileMRUItem_Click(i); });
    }
}

void RecentFilesMenu::GetMRUList() {
    m_list.GetMRUList(app().iniSettings);
    ShowMRUList();
}

void RecentFilesMenu::SaveMRUFile(const QString& path) {
    m_list.SaveMRUFile(app().iniSettings, path);
    ShowMRUList();
}

void RecentFilesMenu::ShowMRUList() {
    const QStringList& entries = m_list.entries();
    for (int i = 1; i <= RecentFiles::MaxEntries; ++i) {
        QAction* item = m_main.commands()->action(itemName(i));
        if (!item) {
            continue;
        }
        if (i <= entries.size()) {
            const QString& path = entries.at(i - 1);
            item->setText(RecentFiles::itemCaption(i, path));
            item->setData(path);
            item->setToolTip(path);
            item->setStatusTip(path);
            item->setVisible(true);
            item->setEnabled(true);
        } else {
            item->setData(QVariant());
            item->setVisible(false);
        }
    }
}

void RecentFilesMenu::mnuFileMRUItem_Click(int position) {
    if (app().isCreatingDocument) {
        return;
    }
    const QAction* item = m_main.commands()->action(itemName(position));
    const QString path = item ? item->data().toString() : QString();
    if (path.isEmpty()) {
        return;
    }
    if (const std::optional<QString> problem = recentFileProblem(path)) {
        if (MsgboxClass* box = app().msgbox) {
            box->showMessage(*problem);
        }
        // The entry stays: the file may come back (a network drive).
        m_main.MDIArea()->update();
        return;
    }
    m_main.openDocumentFile(path);
}
