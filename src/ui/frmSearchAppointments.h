#pragma once

#include "search/AppointmentSearchForm.h"

#include <QDialog>
#include <QList>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTabWidget;
class QToolButton;
class clsSearchAppointments;
class DateFieldPicker;

// The dialog in which the user states which appointments a letter goes out
// for: subject, client, user, colour, dates and times, on three tabs. It
// shows the criteria of the search object it is given and, on "Select
// Appointments", writes them back.
class frmSearchAppointments : public QDialog {
    Q_OBJECT
public:
    explicit frmSearchAppointments(QWidget* parent = nullptr);

    // Fills the lists and shows the criteria of `search`. Without a client
    // database it shows the Part's message and returns false: the dialog
    // must not be shown then.
    bool Initialize(clsSearchAppointments& search);
    bool searchAccepted() const { return m_searchAccepted; }

    AppointmentSearchForm formState() const;
    void showForm(const AppointmentSearchForm& form);

    // The colour of the picker as 0x00BBGGRR, -1 for none.
    qint32 colour() const { return m_colour; }
    void setColour(qint32 colour);

    // Creates the dialog, runs it modally over `search` and returns
    // searchAccepted.
    static bool showAdvancedSearch(clsSearchAppointments& search, QWidget* parent);

private:
    QWidget* buildMainTab();
    QWidget* buildDatesTab();
    QWidget* buildTimesTab();
    void buildColourMenu();
    void chkMain_Click(int index);
    void optDate_Click(int index);
    void timeRowsFollow(bool start);
    void cmdSearch_Click();
    void focusFault(const AppointmentSearchForm::Fault& fault);

    clsSearchAppointments* m_search = nullptr;
    bool m_searchAccepted = false;
    qint32 m_colour = -1;

    QTabWidget* m_tabs = nullptr;
    QLineEdit* m_text = nullptr;
    QList<QCheckBox*> m_chkMain;
    QList<QComboBox*> m_combo1;
    QToolButton* m_colourButton = nullptr;
    QList<QRadioButton*> m_optDate;
    QList<QLineEdit*> m_txtField;
    QList<DateFieldPicker*> m_dtpField;
    QList<QRadioButton*> m_optStartTime;
    QList<QComboBox*> m_cboStartTime;
    QList<QRadioButton*> m_optEndTime;
    QList<QComboBox*> m_cboEndTime;
    QPushButton* m_searchButton = nullptr;
    QPushButton* m_cancel = nullptr;
};
