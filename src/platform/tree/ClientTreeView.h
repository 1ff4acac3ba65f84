#pragma once

#include <QIcon>
#include <QList>
#include <QString>

// The tree control the client tree is built in (a tree view with check
// boxes and an image list), reduced to the operations the builder and the
// recipient dialog use. Nodes are found by unique text keys; the key carries
// the database identity of what a node shows.

// One node. Owned by its tree; a pointer stays valid until the node's tree
// is cleared or destroyed.
class ClientTreeNode {
public:
    virtual ~ClientTreeNode() = default;

    virtual QString key() const = 0;
    virtual QString text() const = 0;
    virtual void setText(const QString& text) = 0;
    // Index into the image list, 1-based as the list numbers its pictures;
    // 0 for none. The same picture serves as the selected image.
    virtual int image() const = 0;
    virtual bool bold() const = 0;
    virtual void setBold(bool bold) = 0;
    // A sorted node keeps its children in alphabetical order of their text
    // (without regard to case), also those added later.
    virtual bool sorted() const = 0;
    virtual void setSorted(bool sorted) = 0;
    virtual bool expanded() const = 0;
    virtual void setExpanded(bool expanded) = 0;
    // At most one node of a tree is selected; selecting one clears the other.
    virtual bool selected() const = 0;
    virtual void setSelected(bool selected) = 0;
    // A colour number as the host program stores colours: 0x00BBGGRR (255 is
    // red). Black (0) is the default.
    virtual int foreColor() const = 0;
    virtual void setForeColor(int color) = 0;
    virtual bool checked() const = 0;
    virtual void setChecked(bool checked) = 0;

    // Walking: null where there is no such node.
    virtual ClientTreeNode* parent() const = 0;
    virtual ClientTreeNode* child() const = 0; // the first child
    virtual ClientTreeNode* next() const = 0;  // the next sibling
    virtual int children() const = 0;
};

class ClientTreeView {
public:
    // Where a new node goes, relative to an existing one.
    enum Relationship : int {
        tvwFirst = 0,
        tvwLast = 1,
        tvwNext = 2,
        tvwPrevious = 3,
        tvwChild = 4
    };

    // The fault numbers of the control's node collection, raised as QmError.
    static constexpr int KeyNotUnique = 35602;
    static constexpr int ElementNotFound = 35601;

    virtual ~ClientTreeView() = default;

    // Removes every node.
    virtual void clear() = 0;
    // Adds a node. An empty relative key adds a node at the top level. The
    // new node lands in its parent's sort order when the parent is sorted.
    // Throws QmError(KeyNotUnique) when the key is in use (or empty), and
    // QmError(ElementNotFound) when no node has the relative key.
    virtual ClientTreeNode* add(const QString& relativeKey, Relationship relationship,
                                const QString& key, const QString& text, int image,
                                int selectedImage) = 0;
    // The node with the key, or null.
    virtual ClientTreeNode* find(const QString& key) const = 0;
    virtual ClientTreeNode* selectedItem() const = 0;
    // The first node of the top level, or null when the tree is empty.
    virtual ClientTreeNode* firstRoot() const = 0;
    virtual int count() const = 0;

    virtual void setImageList(const QList<QIcon>& images) = 0;
    virtual void setIndentation(int twips) = 0;
    // Keeps the top-level nodes sorted.
    virtual void setSorted(bool sorted) = 0;
    // Off during a long build: the tree may defer its ordering and drawing
    // work until drawing is turned back on.
    virtual void setRedraw(bool redraw) = 0;
};
