#pragma once

#include "app/modRecentFiles.h"

#include <QObject>

class frmMain;

// File > Recent Files: the eight items mnuFileMRUItem1 to 8 over the
// recent-files list, and what choosing one does.
class RecentFilesMenu : public QObject {
    Q_OBJECT
public:
    // Registers the eight items with the window.
    explicit RecentFilesMenu(frmMain& main);

    // Reads the list from the settings file and shows it.
    void GetMRUList();
    // Fills the items from the list: "N. name", the full path as the item's
    // data, shown and enabled; items past the list hidden.
    void ShowMRUList();
    // Puts a path at the head of the list and the settings file.
    void SaveMRUFile(const QString& path);

    const RecentFiles& list() const { return m_list; }

private:
    void mnuFileMRUItem_Click(int position);

    frmMain& m_main;
    RecentFiles m_list;
};
