#pragma once

#include <QString>
#include <QStringList>
#include <vector>

// The main window's command surface as data: the menu tree and the tool
// bars. The window builds its actions from these tables, and tests compare
// the built window against them, so a caption or key lives in one place.

struct MenuEntry {
    enum class Kind {
        Menu,    // a top-level menu or a submenu: has children, runs nothing
        Item,    // a command
        SideBar, // the owner-drawn title band at the top of each top-level menu
    };
    QString name;    // the control name, also the QAction's objectName
    QString caption; // "&" marks the access key
    QString parent;  // empty for a top-level menu
    Kind kind = Kind::Item;
    QString shortcut; // portable key sequence text, empty for none
    bool checkable = false;
};

// Every menu and item, in the order they appear, parents before children.
// Separators are not listed: the window places them from separatorBefore().
const std::vector<MenuEntry>& menuTree();

// The entry of that name, or nullptr.
const MenuEntry* findMenuEntry(const QString& name);

// True when a separator line stands in the menu right before this item.
bool separatorBefore(const QString& name);

struct ToolBarButton {
    QString key;     // the button's key, as the handlers compare it
    QString command; // the command it runs: a menu item's name, or its own id
};

struct ToolBarDefinition {
    QString name;
    std::vector<ToolBarButton> buttons;
    QString viewCommand; // the View > Toolbars item that shows and hides it
};

const std::vector<ToolBarDefinition>& toolBars();

// The id of a button that has no menu item of the same meaning:
// "tbrFormat.Bold". Such a button has an action of its own.
QString buttonCommandId(const QString& toolBar, const QString& key);

// The keys of the New drop-down of tbrStandard and tbrFile, with the File New
// command each one runs.
const std::vector<ToolBarButton>& newDropDown();

// Every command the window makes an action for: each menu item, then each
// button command that no menu item covers, without repeats.
QStringList allCommands();

// The settings key a View show-and-hide command reads its first state from
// and writes each new state to, as "True" or "False".
struct ViewSetting {
    QString command;
    QString section;
    QString key;
    QString defaultValue; // "1" or "0", passed when the window reads it
};
const std::vector<ViewSetting>& viewSettings();

// The main-menu command a pop-up item runs ("mnuPopupCut" runs
// "mnuEditCut"); empty for a name that is not a pop-up item.
QString popupTarget(const QString& popupItem);
