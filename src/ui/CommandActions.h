#pragma once

#include <QHash>
#include <QObject>
#include <QString>
#include <functional>

class QAction;
class QMainWindow;
class QMenu;
class QToolBar;
struct MenuStatus;

// The main window's menus and tool bars, built from the command tables:
// one QAction per command, shared by its menu item, its tool bar buttons and
// its shortcut. Every trigger comes out as commandTriggered(name) so the
// window routes it to one routine.
class CommandActions : public QObject {
    Q_OBJECT
public:
    // Builds the menu bar and the tool bars into `window`.
    explicit CommandActions(QMainWindow* window);

    QAction* action(const QString& command) const { return m_actions.value(command); }
    QMenu* menu(const QString& name) const { return m_menus.value(name); }
    QToolBar* toolBar(const QString& name) const { return m_toolBars.value(name); }
    // The pop-up menu of the text area, for the document windows.
    QMenu* popupMenu() const { return menu(QStringLiteral("mnuPop")); }

    // Enables what the status allows and the build has (`built` says which
    // commands have a routine); presses the format buttons as the selection
    // stands.
    void apply(const MenuStatus& status, const std::function<bool(const QString&)>& built);

Q_SIGNALS:
    void commandTriggered(const QString& command);

private:
    void buildActions();
    void buildMenus(QMainWindow* window);
    void buildToolBars(QMainWindow* window);
    QAction* makeAction(const QString& command, const QString& text);

    QHash<QString, QAction*> m_actions;
    QHash<QString, QMenu*> m_menus;
    QHash<QString, QToolBar*> m_toolBars;
    // Pop-up items and the commands they follow.
    QHash<QString, QString> m_popupTargets;
};
