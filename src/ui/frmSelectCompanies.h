#pragma once

#include "data/clsPopulateClientTree.h"
#include "merge/RecipientSelection.h"
#include "platform/tree/ClientTreeModel.h"

#include <QDialog>

class FieldTable;
class QLabel;
class QProgressBar;
class QPushButton;
class QStandardItem;
class QTimer;
class QTreeView;

// The dialog in which the user ticks the companies or contacts of a merge,
// over the client tree. It reads and writes the IDList it is given (the
// active template's): OK writes the ticks back, Cancel leaves the list as it
// was. The tree is built after the dialog shows, with its progress in the
// dialog; Cancel during the build closes the dialog.
class frmSelectCompanies : public QDialog {
    Q_OBJECT
public:
    explicit frmSelectCompanies(FieldTable& ids, QWidget* parent = nullptr);
    ~frmSelectCompanies() override;

    // Stores the mode (RecipientSelection::Mode) and prepares the captions;
    // the tree is built once the dialog shows. Without a client database it
    // shows the Part's message and returns false: the dialog must not be
    // shown then.
    bool Initialize(int mode);
    // True when OK wrote at least one row.
    bool hasSelection() const { return m_hasSelection; }

    // Builds the tree and ticks it from the list; runs once, when the timer
    // fires or the tree first gets the focus. Tests call it directly.
    void startUp();
    bool isBuilt() const { return m_built; }

    ClientTreeModel& treeModel() { return m_model; }
    clsPopulateClientTree& treeRules() { return m_tree; }

    // Runs the whole selection for a list: Initialize, then the dialog
    // modally. Returns hasSelection (false also when the dialog could not
    // open or was cancelled).
    static bool selectRecipients(FieldTable& ids, int mode, QWidget* parent);

public Q_SLOTS:
    // Cancel, Escape and the close box: nothing is written. During the build
    // it stops the build first.
    void reject() override;

protected:
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void cmdOK_Click();
    void cmdCancel_Click();
    void tvwContacts_NodeCheck(QStandardItem* item);
    void incProgressBar(int nodeCount);
    // Opens the nodes the builder marked open and selects its selected one.
    void applyExpansion();

    FieldTable& m_ids;
    RecipientSelection m_rules{RecipientSelection::Companies};
    clsPopulateClientTree m_tree;
    ClientTreeModel m_model;
    QTreeView* m_view;
    QProgressBar* m_progress;
    QLabel* m_progressText;
    QLabel* m_label;
    QPushButton* m_ok;
    QPushButton* m_cancel;
    QTimer* m_startupTimer;
    bool m_hasSelection = false;
    bool m_started = false; // the first-show guard
    bool m_built = false;
    bool m_building = false;
    bool m_cancelRequested = false;
    bool m_applyingTicks = false;
};
