#include "platform/tree/ClientTreeModel.h"

#include "platform/errorClass.h"

#include <QBrush>
#include <QColor>
#include <QFont>
#include <algorithm>

namespace {

bool textBefore(const QStandardItem* a, const QStandardItem* b) {
    return QString::compare(a->text(), b->text(), Qt::CaseInsensitive) < 0;
}

QColor fromColorNumber(int color) {
    return QColor(color & 0xFF, (color >> 8) & 0xFF, (color >> 16) & 0xFF);
}

} // namespace

class ClientTreeItem : public QStandardItem, public ClientTreeNode {
public:
    ClientTreeItem(ClientTreeModel* tree, const QString& key, const QString& text, int image)
        : QStandardItem(text), m_tree(tree), m_key(key), m_image(image) {
        setEditable(false);
        setCheckable(true);
        setCheckState(Qt::Unchecked);
        setData(key, ClientTreeModel::KeyRole);
        setData(image, ClientTreeModel::ImageRole);
        setData(false, ClientTreeModel::ExpandedRole);
        setData(false, ClientTreeModel::SelectedRole);
        const QIcon picture = tree->icon(image);
        if (!picture.isNull())
            setIcon(picture);
    }

    QString key() const override { return m_key; }
    QString text() const override { return QStandardItem::text(); }
    void setText(const QString& text) override {
        QStandardItem::setText(text);
        m_tree->orderChildren(parentOrRoot());
    }
    int image() const override { return m_image; }
    bool bold() const override { return font().bold(); }
    void setBold(bool bold) override {
        QFont f = font();
        f.setBold(bold);
        setFont(f);
    }
    bool sorted() const override { return m_sorted; }
    void setSorted(bool sorted) override {
        m_sorted = sorted;
        if (sorted)
            m_tree->orderChildren(this);
    }
    bool expanded() const override { return data(ClientTreeModel::ExpandedRole).toBool(); }
    void setExpanded(bool expanded) override { setData(expanded, ClientTreeModel::ExpandedRole); }
    bool selected() const override { return m_tree->m_selected == this; }
    void setSelected(bool selected) override {
        if (selected)
            m_tree->select(this);
        else if (m_tree->m_selected == this)
            m_tree->select(nullptr);
    }
    int foreColor() const override { return m_foreColor; }
    void setForeColor(int color) override {
        m_foreColor = color;
        setForeground(QBrush(fromColorNumber(color)));
    }
    bool checked() const override { return checkState() == Qt::Checked; }
    void setChecked(bool checked) override { setCheckState(checked ? Qt::Checked : Qt::Unchecked); }

    ClientTreeNode* parent() const override { return cast(QStandardItem::parent()); }
    ClientTreeNode* child() const override { return cast(QStandardItem::child(0)); }
    ClientTreeNode* next() const override { return cast(parentOrRoot()->child(row() + 1)); }
    int children() const override { return rowCount(); }

    QStandardItem* parentOrRoot() const {
        QStandardItem* p = QStandardItem::parent();
        return p ? p : m_tree->m_model.invisibleRootItem();
    }

    static ClientTreeItem* cast(QStandardItem* item) { return dynamic_cast<ClientTreeItem*>(item); }

private:
    ClientTreeModel* m_tree;
    QString m_key;
    int m_image;
    bool m_sorted = false;
    int m_foreColor = 0;
};

ClientTreeModel::ClientTreeModel() = default;

ClientTreeModel::~ClientTreeModel() {
    // The items go with the model; nothing may point at them afterwards.
    m_selected = nullptr;
    m_byKey.clear();
}

ClientTreeNode* ClientTreeModel::nodeFromIndex(const QModelIndex& index) const {
    return ClientTreeItem::cast(m_model.itemFromIndex(index));
}

void ClientTreeModel::clear() {
    m_selected = nullptr;
    m_byKey.clear();
    m_unordered.clear();
    m_model.removeRows(0, m_model.rowCount());
}

ClientTreeNode* ClientTreeModel::add(const QString& relativeKey, Relationship relationship,
                                     const QString& key, const QString& text, int image,
                                     int /*selectedImage: the same picture serves*/) {
    if (key.isEmpty() || m_byKey.contains(key))
        throw QmError(KeyNotUnique, QStringLiteral("Key is not unique in collection"));
    QStandardItem* parent = m_model.invisibleRootItem();
    int row = parent->rowCount();
    if (!relativeKey.isEmpty()) {
        ClientTreeItem* relative = m_byKey.value(relativeKey);
        if (!relative)
            throw QmError(ElementNotFound, QStringLiteral("Element not found"));
        switch (relationship) {
        case tvwChild:
            parent = relative;
            row = parent->rowCount();
            break;
        case tvwFirst:
            parent = relative->parentOrRoot();
            row = 0;
            break;
        case tvwLast:
            parent = relative->parentOrRoot();
            row = parent->rowCount();
            break;
        case tvwNext:
            parent = relative->parentOrRoot();
            row = relative->row() + 1;
            break;
        case tvwPrevious:
            parent = relative->parentOrRoot();
            row = relative->row();
            break;
        }
    } else if (relationship == tvwFirst) {
        row = 0;
    }
    auto* item = new ClientTreeItem(this, key, text, image);
    const bool parentSorted = parent == m_model.invisibleRootItem()
                                  ? m_rootSorted
                                  : static_cast<ClientTreeItem*>(parent)->sorted();
    if (parentSorted) {
        if (m_redraw) {
            // Binary search over the children, which are in order already.
            int low = 0;
            int high = parent->rowCount();
            while (low < high) {
                const int mid = (low + high) / 2;
                if (textBefore(item, parent->child(mid)))
                    high = mid;
                else
                    low = mid + 1;
            }
            row = low;
        } else {
            row = parent->rowCount();
            m_unordered.insert(parent);
        }
    }
    parent->insertRow(row, item);
    m_byKey.insert(key, item);
    return item;
}

ClientTreeNode* ClientTreeModel::find(const QString& key) const {
    return m_byKey.value(key);
}

ClientTreeNode* ClientTreeModel::selectedItem() const {
    return m_selected;
}

ClientTreeNode* ClientTreeModel::firstRoot() const {
    return ClientTreeItem::cast(m_model.item(0));
}

void ClientTreeModel::setImageList(const QList<QIcon>& images) {
    m_images = images;
}

QIcon ClientTreeModel::icon(int image) const {
    return image >= 1 && image <= m_images.size() ? m_images.at(image - 1) : QIcon();
}

void ClientTreeModel::setSorted(bool sorted) {
    m_rootSorted = sorted;
    if (sorted)
        orderChildren(m_model.invisibleRootItem());
}

void ClientTreeModel::setRedraw(bool redraw) {
    m_redraw = redraw;
    if (!redraw)
        return;
    const QSet<QStandardItem*> pending = std::exchange(m_unordered, {});
    for (QStandardItem* parent : pending)
        sortNow(parent);
}

void ClientTreeModel::orderChildren(QStandardItem* parent) {
    const bool sorted = parent == m_model.invisibleRootItem()
                            ? m_rootSorted
                            : static_cast<ClientTreeItem*>(parent)->sorted();
    if (!sorted)
        return;
    if (m_redraw)
        sortNow(parent);
    else
        m_unordered.insert(parent);
}

void ClientTreeModel::sortNow(QStandardItem* parent) {
    const int n = parent->rowCount();
    if (n < 2)
        return;
    QList<QStandardItem*> items;
    items.reserve(n);
    for (int r = 0; r < n; ++r)
        items.append(parent->child(r));
    if (std::is_sorted(items.begin(), items.end(), textBefore))
        return;
    for (int r = 0; r < n; ++r)
        parent->takeChild(r);
    parent->removeRows(0, n);
    std::stable_sort(items.begin(), items.end(), textBefore);
    // One at a time: appendRows hands the model only to the rows themselves,
    // not to their children, which then no longer report their changes (a
    // tick in the view would reach nobody).
    for (QStandardItem* item : items)
        parent->appendRow(item);
}

void ClientTreeModel::select(ClientTreeItem* item) {
    if (m_selected == item)
        return;
    if (m_selected)
        m_selected->setData(false, SelectedRole);
    m_selected = item;
    if (m_selected)
        m_selected->setData(true, SelectedRole);
}
