#include "ui/CommandActions.h"

#include "app/MenuDefinition.h"
#include "app/modMenuStatus.h"

#include <QAction>
#include <QIcon>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QPixmap>
#include <QToolBar>
#include <QToolButton>

namespace {

// Icon-theme names of the tool bar buttons; a button whose icon the desktop
// lacks shows its key as text instead.
QString iconName(const QString& key) {
    static const QHash<QString, QString> names = {
        {QStringLiteral("New"), QStringLiteral("document-new")},
        {QStringLiteral("Open"), QStringLiteral("document-open")},
        {QStringLiteral("Save"), QStringLiteral("document-save")},
        {QStringLiteral("SaveAll"), QStringLiteral("document-save-as")},
        {QStringLiteral("Print"), QStringLiteral("document-print")},
        {QStringLiteral("Close"), QStringLiteral("window-close")},
        {QStringLiteral("FullScreen"), QStringLiteral("view-fullscreen")},
        {QStringLiteral("WordWrap"), QStringLiteral("format-justify-fill")},
        {QStringLiteral("Cut"), QStringLiteral("edit-cut")},
        {QStringLiteral("Copy"), QStringLiteral("edit-copy")},
        {QStringLiteral("Paste"), QStringLiteral("edit-paste")},
        {QStringLiteral("Undo"), QStringLiteral("edit-undo")},
        {QStringLiteral("Redo"), QStringLiteral("edit-redo")},
        {QStringLiteral("Outdent"), QStringLiteral("format-indent-less")},
        {QStringLiteral("Indent"), QStringLiteral("format-indent-more")},
        {QStringLiteral("Help"), QStringLiteral("help-contents")},
        {QStringLiteral("SpellCheck"), QStringLiteral("tools-check-spelling")},
        {QStringLiteral("Find"), QStringLiteral("edit-find")},
        {QStringLiteral("Bold"), QStringLiteral("format-text-bold")},
        {QStringLiteral("Italic"), QStringLiteral("format-text-italic")},
        {QStringLiteral("Underline"), QStringLiteral("format-text-underline")},
        {QStringLiteral("StrikeThru"), QStringLiteral("format-text-strikethrough")},
        {QStringLiteral("Left"), QStringLiteral("format-justify-left")},
        {QStringLiteral("Center"), QStringLiteral("format-justify-center")},
        {QStringLiteral("Right"), QStringLiteral("format-justify-right")},
        {QStringLiteral("Bullet"), QStringLiteral("format-list-unordered")},
        {QStringLiteral("MenageFiles"), QStringLiteral("folder")},
        {QStringLiteral("Minimize"), QStringLiteral("go-down")},
        {QStringLiteral("Restore"), QStringLiteral("go-up")},
    };
    return names.value(key);
}

QString buttonText(const QString& key) {
    static const QHash<QString, QString> texts = {
        {QStringLiteral("THorizontally"), QStringLiteral("Tile Horizontally")},
        {QStringLiteral("TVertically"), QStringLiteral("Tile Vertically")},
        {QStringLiteral("MenageFiles"), QStringLiteral("Manage Files")},
        {QStringLiteral("StrikeThru"), QStringLiteral("Strikethrough")},
        {QStringLiteral("SaveAll"), QStringLiteral("Save All")},
        {QStringLiteral("FullScreen"), QStringLiteral("Full Screen")},
        {QStringLiteral("WordWrap"), QStringLiteral("Toggle Word Wrap")},
        {QStringLiteral("SpellCheck"), QStringLiteral("Spell Check")},
    };
    return texts.value(key, key);
}

// Small pictures for the buttons the common icon theme has none for, so
// that the bars do not fall back to words.
QIcon drawnIcon(const QString& key) {
    QPixmap picture(20, 20);
    picture.fill(Qt::transparent);
    QPainter paint(&picture);
    paint.setRenderHint(QPainter::Antialiasing);
    const QColor ink(QStringLiteral("#3d3846"));
    const QColor paper(QStringLiteral("#f6f5f4"));
    const auto window = [&](const QRectF& r) {
        paint.setPen(QPen(ink, 1));
        paint.setBrush(paper);
        paint.drawRect(r);
        paint.fillRect(QRectF(r.left(), r.top(), r.width(), 3), ink);
    };
    if (key == QLatin1String("Bullet")) {
        paint.setPen(Qt::NoPen);
        paint.setBrush(ink);
        for (int row = 0; row < 3; ++row) {
            const qreal y = 4.5 + row * 5.5;
            paint.drawEllipse(QPointF(4, y), 1.8, 1.8);
            paint.fillRect(QRectF(8, y - 1, 10, 2), ink);
        }
    } else if (key == QLatin1String("Cascade")) {
        window(QRectF(1.5, 1.5, 11, 9));
        window(QRectF(4.5, 5.5, 11, 9));
        window(QRectF(7.5, 9.5, 11, 9));
    } else if (key == QLatin1String("THorizontally")) {
        window(QRectF(1.5, 1.5, 17, 7.5));
        window(QRectF(1.5, 11, 17, 7.5));
    } else if (key == QLatin1String("TVertically")) {
        window(QRectF(1.5, 1.5, 7.5, 17));
        window(QRectF(11, 1.5, 7.5, 17));
    } else {
        return {};
    }
    return QIcon(picture);
}

} // namespace

CommandActions::CommandActions(QMainWindow* window) : QObject(window) {
    // Without a desktop session there is no icon theme; the common one keeps
    // the bars from falling back to text.
    if (QIcon::themeName().isEmpty() || QIcon::themeName() == QLatin1String("hicolor")) {
        QIcon::setThemeName(QStringLiteral("Adwaita"));
    }
    buildActions();
    buildMenus(window);
    buildToolBars(window);
}

QAction* CommandActions::makeAction(const QString& command, const QString& text) {
    auto* action = new QAction(text, this);
    action->setObjectName(command);
    m_actions.insert(command, action);
    connect(action, &QAction::triggered, this, [this, command] {
        const QString target = m_popupTargets.value(command, command);
        Q_EMIT commandTriggered(target);
    });
    return action;
}

void CommandActions::buildActions() {
    for (const MenuEntry& e : menuTree()) {
        if (e.kind != MenuEntry::Kind::Item) {
            continue;
        }
        QAction* action = makeAction(e.name, e.caption);
        if (!e.shortcut.isEmpty()) {
            action->setShortcut(QKeySequence(e.shortcut));
        }
        action->setCheckable(e.checkable);
        const QString target = popupTarget(e.name);
        if (!target.isEmpty()) {
            m_popupTargets.insert(e.name, target);
        }
        if (e.name.startsWith(QLatin1String("mnuFileMRUItem"))) {
            // Filled from the recent-files list; hidden while empty.
            action->setVisible(false);
        }
    }
    for (const ToolBarDefinition& bar : toolBars()) {
        for (const ToolBarButton& b : bar.buttons) {
            if (!m_actions.contains(b.command)) {
                QAction* action = makeAction(b.command, buttonText(b.key));
                // The format buttons show the selection; Word Wrap shows
                // the wrap mode of the active document.
                action->setCheckable(bar.name == QLatin1String("tbrFormat") ||
                                     b.key == QLatin1String("WordWrap"));
            }
        }
    }
}

void CommandActions::buildMenus(QMainWindow* window) {
    QMenuBar* bar = window->menuBar();
    bar->setObjectName(QStringLiteral("MenuBar"));
    for (const MenuEntry& e : menuTree()) {
        // The side bars are a look of owner-drawn menus; a plain menu
        // carries its title in the menu bar already.
        if (e.kind == MenuEntry::Kind::SideBar) {
            continue;
        }
        QMenu* parent = m_menus.value(e.parent);
        if (parent && separatorBefore(e.name)) {
            parent->addSeparator();
        }
        if (e.kind == MenuEntry::Kind::Menu) {
            auto* menu = new QMenu(e.caption, parent ? static_cast<QWidget*>(parent) : window);
            menu->setObjectName(e.name);
            menu->menuAction()->setObjectName(e.name);
            m_menus.insert(e.name, menu);
            if (parent) {
                parent->addMenu(menu);
            } else if (e.name != QLatin1String("mnuPop")) {
                bar->addMenu(menu);
            }
            continue;
        }
        parent->addAction(m_actions.value(e.name));
    }
}

void CommandActions::buildToolBars(QMainWindow* window) {
    auto* newMenu = new QMenu(window);
    newMenu->setObjectName(QStringLiteral("NewDropDown"));
    for (const ToolBarButton& b : newDropDown()) {
        QAction* item = newMenu->addAction(m_actions.value(b.command)->text());
        item->setObjectName(b.key);
        connect(item, &QAction::triggered, this,
                [this, command = b.command] { Q_EMIT commandTriggered(command); });
    }
    for (const ToolBarDefinition& def : toolBars()) {
        auto* bar = new QToolBar(def.viewCommand, window);
        bar->setObjectName(def.name);
        m_toolBars.insert(def.name, bar);
        bar->setWindowTitle(m_actions.value(def.viewCommand)->text().remove(QLatin1Char('&')));
        bar->setIconSize(QSize(20, 20));
        for (const ToolBarButton& b : def.buttons) {
            QAction* action = m_actions.value(b.command);
            bar->addAction(action);
            QWidget* button = bar->widgetForAction(action);
            // Two buttons can share an action (tbrStandard's Cut and
            // tbrEdit's Cut live on different bars, so the key stays unique
            // within its bar).
            button->setObjectName(b.key);
            // The menu keeps the caption; the button shows a short name.
            action->setIconText(buttonText(b.key));
            if (action->icon().isNull()) {
                action->setIcon(QIcon::fromTheme(iconName(b.key)));
            }
            if (action->icon().isNull()) {
                action->setIcon(drawnIcon(b.key));
            }
            if (b.key == QLatin1String("New")) {
                auto* tool = static_cast<QToolButton*>(button);
                tool->setMenu(newMenu);
                tool->setPopupMode(QToolButton::MenuButtonPopup);
            }
        }
        if (def.name == QLatin1String("tbrWindow")) {
            window->addToolBar(Qt::BottomToolBarArea, bar);
            continue;
        }
        // Standard on the first row, File and Edit on the second, Format
        // with the font bar on the third.
        if (def.name == QLatin1String("tbrFile") || def.name == QLatin1String("tbrFormat")) {
            window->addToolBarBreak(Qt::TopToolBarArea);
        }
        window->addToolBar(Qt::TopToolBarArea, bar);
    }
}

void CommandActions::apply(const MenuStatus& status,
                           const std::function<bool(const QString&)>& isBuilt) {
    for (auto it = m_actions.cbegin(); it != m_actions.cend(); ++it) {
        const QString& command = m_popupTargets.value(it.key(), it.key());
        const bool built = isBuilt(command);
        QAction* action = it.value();
        action->setEnabled(commandAvailable(status, command, built));
        if (!built) {
            action->setToolTip(notAvailableYetTip());
            action->setStatusTip(notAvailableYetTip());
        }
    }
    // Submenus in the group follow the status too.
    for (auto it = m_menus.cbegin(); it != m_menus.cend(); ++it) {
        it.value()->menuAction()->setEnabled(status.isEnabled(it.key()));
    }
    const auto press = [this](const char* key, bool down) {
        if (QAction* a = action(buttonCommandId(QStringLiteral("tbrFormat"), QLatin1String(key)))) {
            a->setChecked(down);
        }
    };
    press("Left", status.left);
    press("Center", status.center);
    press("Right", status.right);
    press("Bold", status.bold);
    press("Italic", status.italic);
    press("Underline", status.underline);
    press("StrikeThru", status.strikeThru);
    press("Bullet", status.bullet);
}
