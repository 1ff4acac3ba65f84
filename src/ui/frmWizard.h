#pragma once

#include <QDialog>
#include <QList>
#include <QString>

class QLabel;
class QLineEdit;
class QPushButton;
class QStackedWidget;

// "Open Documents Wizard": walks a user through bringing in a document
// written with another text editor, saved as rich text. Accepted with the
// chosen file once Finish has found it openable.
class frmWizard : public QDialog {
    Q_OBJECT
public:
    explicit frmWizard(QWidget* parent = nullptr);

    // Shows step n (from 0) and sets the buttons for it.
    void SetStep(int n);
    void SetNavBtns(int n);
    int currentStep() const { return m_step; }

    void cmdBrowse_Click();
    // Checks the chosen file; on a problem says why and stays open.
    void finish();

    QString chosenFile() const;

private:
    QStackedWidget* m_steps;
    QList<QLabel*> m_stepLinks;
    QList<QPushButton*> m_nav; // Back, Next, Finish, Cancel
    QLineEdit* m_file = nullptr;
    int m_step = 0;
};
