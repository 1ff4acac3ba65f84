#include "app/MenuDefinition.h"

#include "support/TestEnvironment.h"

#include <QSet>
#include <gtest/gtest.h>

namespace {

struct Row {
    QString first;
    QString second;
};

std::vector<Row> readTsv(const char* name) {
    std::vector<Row> rows;
    const QString text = QString::fromUtf8(readTestFile(testDataPath(name)));
    for (const QString& line : text.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const QStringList cells = line.split(QLatin1Char('\t'));
        rows.push_back({cells.value(0), cells.value(1)});
    }
    return rows;
}

int indexOf(const QString& name) {
    const auto& tree = menuTree();
    for (int i = 0; i < int(tree.size()); ++i) {
        if (tree[std::size_t(i)].name == name) {
            return i;
        }
    }
    return -1;
}

TEST(MenuTree, EveryCaptionOfTheReferenceListIsInTheTreeInTheSameOrder) {
    const auto golden = readTsv("ui/menu-captions.tsv");
    ASSERT_GT(golden.size(), 100u);
    int previous = -1;
    for (const Row& row : golden) {
        SCOPED_TRACE(row.first.toStdString());
        const MenuEntry* entry = findMenuEntry(row.first);
        ASSERT_NE(entry, nullptr);
        EXPECT_EQ(entry->caption, row.second);
        const int at = indexOf(row.first);
        EXPECT_GT(at, previous) << "out of order";
        previous = at;
    }
}

TEST(MenuTree, NamesAreUniqueAndParentsComeFirst) {
    QSet<QString> seen;
    for (const MenuEntry& e : menuTree()) {
        SCOPED_TRACE(e.name.toStdString());
        EXPECT_FALSE(seen.contains(e.name));
        if (!e.parent.isEmpty()) {
            ASSERT_TRUE(seen.contains(e.parent));
            EXPECT_EQ(findMenuEntry(e.parent)->kind, MenuEntry::Kind::Menu);
        }
        seen.insert(e.name);
    }
}

TEST(MenuTree, EachTopMenuButThePopupOpensWithItsSideBar) {
    const auto& tree = menuTree();
    int sideBars = 0;
    for (std::size_t i = 0; i < tree.size(); ++i) {
        if (!tree[i].parent.isEmpty() || tree[i].name == QLatin1String("mnuPop")) {
            continue;
        }
        ASSERT_LT(i + 1, tree.size());
        const MenuEntry& bar = tree[i + 1];
        ++sideBars;
        EXPECT_EQ(bar.name, QStringLiteral("mnuSideBar%1").arg(sideBars));
        EXPECT_EQ(bar.kind, MenuEntry::Kind::SideBar);
        QString title = tree[i].caption;
        title.remove(QLatin1Char('&'));
        EXPECT_TRUE(bar.caption.startsWith(QStringLiteral("{SIDEBAR:TEXT|CAPTION:%1|").arg(title)))
            << bar.caption.toStdString();
    }
    EXPECT_EQ(sideBars, 10);
}

TEST(MenuTree, RecentFilesHoldEightItemsAfterItsTitle) {
    const int title = indexOf(QStringLiteral("mnuFileMRUTemp"));
    ASSERT_GE(title, 0);
    for (int i = 1; i <= 8; ++i) {
        EXPECT_EQ(menuTree()[std::size_t(title + i)].name,
                  QStringLiteral("mnuFileMRUItem%1").arg(i));
    }
}

TEST(MenuTree, ShortcutsAreNotShared) {
    QSet<QString> seen;
    for (const MenuEntry& e : menuTree()) {
        if (!e.shortcut.isEmpty()) {
            EXPECT_FALSE(seen.contains(e.shortcut)) << e.shortcut.toStdString();
            seen.insert(e.shortcut);
        }
    }
}

TEST(ToolBars, KeysMatchTheReferenceList) {
    const auto golden = readTsv("ui/toolbar-keys.tsv");
    ASSERT_EQ(golden.size(), toolBars().size());
    for (const Row& row : golden) {
        SCOPED_TRACE(row.first.toStdString());
        const auto bar =
            std::find_if(toolBars().begin(), toolBars().end(),
                         [&](const ToolBarDefinition& b) { return b.name == row.first; });
        ASSERT_NE(bar, toolBars().end());
        QStringList keys;
        for (const ToolBarButton& b : bar->buttons) {
            keys << b.key;
        }
        EXPECT_EQ(keys.join(QLatin1Char(' ')), row.second);
    }
}

TEST(ToolBars, EveryButtonRunsAMenuItemOrACommandOfItsOwn) {
    for (const ToolBarDefinition& bar : toolBars()) {
        EXPECT_NE(findMenuEntry(bar.viewCommand), nullptr) << bar.viewCommand.toStdString();
        for (const ToolBarButton& b : bar.buttons) {
            SCOPED_TRACE(buttonCommandId(bar.name, b.key).toStdString());
            const MenuEntry* entry = findMenuEntry(b.command);
            if (entry) {
                EXPECT_EQ(entry->kind, MenuEntry::Kind::Item);
            } else {
                EXPECT_EQ(b.command, buttonCommandId(bar.name, b.key));
            }
        }
    }
    for (const ToolBarButton& b : newDropDown()) {
        ASSERT_NE(findMenuEntry(b.command), nullptr);
        EXPECT_EQ(findMenuEntry(b.command)->parent, QStringLiteral("mnuFileNew"));
    }
}

TEST(PopupMenu, EveryItemRunsAnExistingMainMenuItem) {
    int items = 0;
    for (const MenuEntry& e : menuTree()) {
        if (e.kind != MenuEntry::Kind::Item || !e.name.startsWith(QLatin1String("mnuPopup"))) {
            continue;
        }
        ++items;
        const MenuEntry* target = findMenuEntry(popupTarget(e.name));
        ASSERT_NE(target, nullptr) << e.name.toStdString();
        EXPECT_NE(target->parent, QStringLiteral("mnuPop"));
    }
    EXPECT_EQ(items, 19);
    EXPECT_TRUE(popupTarget(QStringLiteral("mnuEditCut")).isEmpty());
    EXPECT_TRUE(popupTarget(QStringLiteral("mnuPopupCase")).isEmpty());
}

} // namespace
