#pragma once

#include "platform/tree/ClientTreeView.h"

#include <QHash>
#include <QSet>
#include <QStandardItemModel>

class ClientTreeItem;

// The client tree over a QStandardItemModel, which a QTreeView shows with
// check boxes. Every item is checkable; the key, the image number and the
// expanded and selected states are kept under the roles below, so that a
// view can apply them (a view's expansion and selection are its own).
class ClientTreeModel : public ClientTreeView {
public:
    enum Role : int {
        KeyRole = Qt::UserRole + 1,
        ImageRole,
        ExpandedRole,
        SelectedRole,
    };

    ClientTreeModel();
    ~ClientTreeModel() override;
    ClientTreeModel(const ClientTreeModel&) = delete;
    ClientTreeModel& operator=(const ClientTreeModel&) = delete;

    QStandardItemModel& model() { return m_model; }
    // The node an index of the model shows, or null.
    ClientTreeNode* nodeFromIndex(const QModelIndex& index) const;

    void clear() override;
    ClientTreeNode* add(const QString& relativeKey, Relationship relationship, const QString& key,
                        const QString& text, int image, int selectedImage) override;
    ClientTreeNode* find(const QString& key) const override;
    ClientTreeNode* selectedItem() const override;
    ClientTreeNode* firstRoot() const override;
    int count() const override { return int(m_byKey.size()); }

    void setImageList(const QList<QIcon>& images) override;
    void setIndentation(int twips) override { m_indentation = twips; }
    int indentation() const { return m_indentation; }
    void setSorted(bool sorted) override;
    void setRedraw(bool redraw) override;
    bool redraw() const { return m_redraw; }

private:
    friend class ClientTreeItem;

    // Puts the children of a sorted parent in order now, or when drawing
    // comes back on.
    void orderChildren(QStandardItem* parent);
    void sortNow(QStandardItem* parent);
    void select(ClientTreeItem* item);
    QIcon icon(int image) const;

    QStandardItemModel m_model;
    QHash<QString, ClientTreeItem*> m_byKey;
    QSet<QStandardItem*> m_unordered;
    QList<QIcon> m_images;
    ClientTreeItem* m_selected = nullptr;
    bool m_rootSorted = false;
    bool m_redraw = true;
    int m_indentation = 0;
};
