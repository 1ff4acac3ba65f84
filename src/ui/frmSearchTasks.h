#pragma once

#include "search/TaskSearchForm.h"

#include <QDialog>
#include <QList>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLineEdit;
class QPushButton;
class QRadioButton;
class clsSearchTasks;
class DateFieldPicker;

// The dialog in which the user states which tasks a task letter goes out
// for. It shows the criteria of the search object it is given and, on
// "Select Tasks", writes them back; the object keeps them, so the dialog
// opens with the user's last search.
class frmSearchTasks : public QDialog {
    Q_OBJECT
public:
    explicit frmSearchTasks(QWidget* parent = nullptr);

    // Fills the lists and shows the criteria of `search`. Without a client
    // database it shows the Part's message and returns false: the dialog
    // must not be shown then.
    bool Initialize(clsSearchTasks& search);
    // True once "Select Tasks" accepted a valid search.
    bool searchAccepted() const { return m_searchAccepted; }

    // The controls' values, and putting values into the controls.
    TaskSearchForm formState() const;
    void showForm(const TaskSearchForm& form);

    void showAdvanced();
    void hideAdvanced();

    // Creates the dialog, runs it modally over `search` and returns
    // searchAccepted.
    static bool showAdvancedSearch(clsSearchTasks& search, QWidget* parent);

private:
    void buildControls();
    void chkMain_Click(int index);
    void chkStatus_Click(int index);
    void Option1_Click(int index);
    void cmdSearch_Click();
    void cmdShowAdvanced_Click();
    void focusFault(const TaskSearchForm::Fault& fault);

    clsSearchTasks* m_search = nullptr;
    bool m_searchAccepted = false;
    bool m_advancedShown = false;

    QLineEdit* m_text = nullptr;
    QList<QComboBox*> m_combo1;
    QList<QCheckBox*> m_chkMain;
    QList<QRadioButton*> m_optClosed;
    QComboBox* m_combo2 = nullptr;
    QList<QRadioButton*> m_option1;
    QList<QLineEdit*> m_txtField;
    QList<DateFieldPicker*> m_dtpField;
    QList<QCheckBox*> m_chkStatus;
    QList<QComboBox*> m_combo3;
    QGroupBox* m_frame3 = nullptr;
    QWidget* m_buttons = nullptr;
    QPushButton* m_showAdvanced = nullptr;
    QPushButton* m_searchButton = nullptr;
    QPushButton* m_cancel = nullptr;
};
