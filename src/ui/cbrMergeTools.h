#pragma once

#include "merge/modMergeControl.h"

#include <QHash>
#include <QList>
#include <QToolBar>

class QAction;
class QComboBox;
class QFrame;
class QLabel;
class QLineEdit;
class QToolButton;

// The merge panel of the main window: the category frames, each a button
// with, for lists 0, 2, 3 and 4, its drop-down list; the record bar
// (tbrWordMerge4) and the recipient box (txtMergeCompany on tbrWordMerge3).
// It shows what modMergeControl decides and reports each click as a signal.
class cbrMergeTools : public QToolBar {
    Q_OBJECT
public:
    // The lists come from `control`, which must outlive the panel.
    cbrMergeTools(modMergeControl& control, QWidget* parent = nullptr);

    // The tutorial line above the panel; the main window places it.
    QToolBar* tutorialBar() const { return m_tutorialBar; }

    // Shows the tools of a setup and its tutorial line.
    void apply(const MergeToolBarSetup& setup);
    // The tutorial line alone (no document open).
    void setTutorial(const QString& text);
    void setRecipientName(const QString& name);
    // The record bar's button of this key ("First" ... "Print", "Save",
    // "Save as PDF", whose menu holds "SaveLetterPdf" and "SaveAllPdf").
    QAction* navigationAction(const QString& key) const;
    QToolButton* categoryButton(int index) const { return m_buttons.value(index); }
    QComboBox* categoryList(int index) const { return m_lists.value(index); }
    bool categoryShown(int index) const;
    bool navigationShown() const;
    // A button whose routine this build lacks stays off with a note.
    void setCategoryAvailable(int index, bool available);
    void setNavigationAvailable(const QString& key, bool available);

Q_SIGNALS:
    // Category button `index` was clicked (1, 5, 6; the others drop a list).
    void categoryClicked(int index);
    // Entry `entry` of list `list` was chosen.
    void listChosen(int list, int entry);
    // A record bar button by its key, or a choice of the PDF menu.
    void navigationClicked(const QString& key);

private:
    QToolBar* m_tutorialBar = nullptr;
    QLabel* m_tutorial = nullptr;
    QList<QFrame*> m_frames;
    QList<QAction*> m_frameActions;
    QList<QToolButton*> m_buttons;
    QList<QComboBox*> m_lists; // null where a category has no list
    QList<bool> m_available;
    QToolBar* m_navigation = nullptr;
    QAction* m_navigationBarAction = nullptr;
    QAction* m_recipientBarAction = nullptr;
    QLineEdit* m_recipient = nullptr;
    QHash<QString, bool> m_navigationAvailable;
    bool m_navigationEnabled = false;
};
