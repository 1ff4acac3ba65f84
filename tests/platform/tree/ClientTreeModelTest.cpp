#include "platform/tree/ClientTreeModel.h"

#include "platform/errorClass.h"

#include <QBrush>
#include <QPixmap>
#include <gtest/gtest.h>

namespace {

QStringList childTexts(const ClientTreeNode* parent, const ClientTreeView& tree) {
    QStringList out;
    for (const ClientTreeNode* n = parent ? parent->child() : tree.firstRoot(); n; n = n->next())
        out << n->text();
    return out;
}

TEST(ClientTreeModelTest, RelationshipsPlaceTheNewNode) {
    const struct {
        const char* name;
        ClientTreeView::Relationship relationship;
        const char* relative;
        QStringList order;
    } cases[] = {
        {"Child", ClientTreeView::tvwChild, "p", {"a", "b", "c", "new"}},
        {"First", ClientTreeView::tvwFirst, "b", {"new", "a", "b", "c"}},
        {"Last", ClientTreeView::tvwLast, "a", {"a", "b", "c", "new"}},
        {"Next", ClientTreeView::tvwNext, "b", {"a", "b", "new", "c"}},
        {"Previous", ClientTreeView::tvwPrevious, "b", {"a", "new", "b", "c"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        ClientTreeModel tree;
        ClientTreeNode* p = tree.add({}, ClientTreeView::tvwLast, "p", "p", 0, 0);
        for (const char* k : {"a", "b", "c"})
            tree.add("p", ClientTreeView::tvwChild, k, k, 0, 0);
        ClientTreeNode* added = tree.add(c.relative, c.relationship, "new", "new", 0, 0);
        EXPECT_EQ(childTexts(p, tree), c.order);
        EXPECT_EQ(added->parent(), p);
        EXPECT_EQ(tree.find("new"), added);
    }
}

TEST(ClientTreeModelTest, SortedParentsKeepTheirChildrenInOrder) {
    const QStringList inserted = {"delta", "Bravo", "alpha", "Charlie", "bravo"};
    const QStringList sorted = {"alpha", "Bravo", "bravo", "Charlie", "delta"};
    for (bool redraw : {true, false}) {
        SCOPED_TRACE(redraw ? "drawing" : "deferred");
        ClientTreeModel tree;
        tree.setRedraw(redraw);
        ClientTreeNode* p = tree.add({}, ClientTreeView::tvwLast, "p", "p", 0, 0);
        p->setSorted(true);
        for (const QString& t : inserted)
            tree.add("p", ClientTreeView::tvwChild, "k" + t, t, 0, 0);
        if (!redraw) {
            EXPECT_EQ(childTexts(p, tree), inserted);
            tree.setRedraw(true);
        }
        EXPECT_EQ(childTexts(p, tree), sorted);
        // A renamed child moves to its place; an unsorted parent keeps its order.
        tree.find("kalpha")->setText("echo");
        EXPECT_EQ(childTexts(p, tree).last(), "echo");
        ClientTreeNode* q = tree.add({}, ClientTreeView::tvwLast, "q", "q", 0, 0);
        tree.add("q", ClientTreeView::tvwChild, "z", "z", 0, 0);
        tree.add("q", ClientTreeView::tvwChild, "y", "y", 0, 0);
        EXPECT_EQ(childTexts(q, tree), QStringList({"z", "y"}));
        q->setSorted(true);
        EXPECT_EQ(childTexts(q, tree), QStringList({"y", "z"}));
    }
    // The top level sorts too, and children travel with their parent.
    ClientTreeModel tree;
    tree.setSorted(true);
    tree.add({}, ClientTreeView::tvwLast, "2", "b", 0, 0);
    tree.add({}, ClientTreeView::tvwLast, "1", "a", 0, 0);
    tree.add("2", ClientTreeView::tvwChild, "2.1", "inner", 0, 0);
    EXPECT_EQ(childTexts(nullptr, tree), QStringList({"a", "b"}));
    EXPECT_EQ(tree.find("2.1")->parent()->key(), "2");
}

TEST(ClientTreeModelTest, BadKeysRaiseTheCollectionFaults) {
    ClientTreeModel tree;
    tree.add({}, ClientTreeView::tvwLast, "a", "a", 0, 0);
    const struct {
        const char* name;
        const char* relative;
        const char* key;
        int number;
    } cases[] = {
        {"Duplicate", "", "a", ClientTreeView::KeyNotUnique},
        {"DuplicateBelow", "a", "a", ClientTreeView::KeyNotUnique},
        {"Empty", "a", "", ClientTreeView::KeyNotUnique},
        {"UnknownRelative", "zz", "b", ClientTreeView::ElementNotFound},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        try {
            tree.add(c.relative, ClientTreeView::tvwChild, c.key, "x", 0, 0);
            ADD_FAILURE() << "no fault";
        } catch (const QmError& fault) {
            EXPECT_EQ(fault.number(), c.number);
        }
        EXPECT_EQ(tree.count(), 1);
    }
}

TEST(ClientTreeModelTest, NodeStateReachesTheModel) {
    ClientTreeModel tree;
    QPixmap picture(4, 4);
    picture.fill(Qt::blue);
    tree.setImageList({QIcon(), QIcon(), QIcon(picture)});
    ClientTreeNode* a = tree.add({}, ClientTreeView::tvwLast, "a", "a", 3, 3);
    ClientTreeNode* b = tree.add("a", ClientTreeView::tvwChild, "b", "b", 9, 9);
    const QModelIndex ia = tree.model().index(0, 0);
    const QModelIndex ib = tree.model().index(0, 0, ia);
    EXPECT_EQ(tree.nodeFromIndex(ib), b);
    EXPECT_FALSE(ia.data(Qt::DecorationRole).value<QIcon>().isNull());
    EXPECT_TRUE(ib.data(Qt::DecorationRole).isNull()); // no such picture
    EXPECT_EQ(ia.data(ClientTreeModel::KeyRole).toString(), "a");

    b->setForeColor(255);
    EXPECT_EQ(ib.data(Qt::ForegroundRole).value<QBrush>().color(), QColor(Qt::red));
    b->setForeColor(0xFF0000);
    EXPECT_EQ(ib.data(Qt::ForegroundRole).value<QBrush>().color(), QColor(Qt::blue));
    b->setChecked(true);
    EXPECT_EQ(ib.data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
    a->setBold(true);
    EXPECT_TRUE(a->bold());
    a->setExpanded(true);
    EXPECT_TRUE(ia.data(ClientTreeModel::ExpandedRole).toBool());

    a->setSelected(true);
    b->setSelected(true);
    EXPECT_FALSE(a->selected());
    EXPECT_EQ(tree.selectedItem(), b);
    EXPECT_FALSE(ia.data(ClientTreeModel::SelectedRole).toBool());
    EXPECT_TRUE(ib.data(ClientTreeModel::SelectedRole).toBool());
    b->setSelected(false);
    EXPECT_EQ(tree.selectedItem(), nullptr);

    a->setSelected(true);
    tree.clear();
    EXPECT_EQ(tree.selectedItem(), nullptr);
    EXPECT_EQ(tree.count(), 0);
    EXPECT_EQ(tree.find("a"), nullptr);
    EXPECT_EQ(tree.firstRoot(), nullptr);
    tree.add({}, ClientTreeView::tvwLast, "a", "again", 0, 0); // keys are free again
    EXPECT_EQ(tree.count(), 1);
}

} // namespace
