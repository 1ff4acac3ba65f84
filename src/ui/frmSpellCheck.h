#pragma once

#include <QDialog>
#include <array>

class QLineEdit;
class QListWidget;
class QPushButton;
class SpellCheckSession;

// The spell-check dialog: shows the session's current word, its
// suggestions and the replacement, and hands each button to the session.
// It closes itself when the session is finished.
class frmSpellCheck : public QDialog {
    Q_OBJECT

public:
    // The session must outlive the dialog and have been initialised.
    explicit frmSpellCheck(SpellCheckSession& session, QWidget* parent = nullptr);

    // Shows the session's state; closes the dialog when it is finished.
    void refresh();

    QPushButton* button(int index) const { return m_controls.at(size_t(index)); }

protected:
    void reject() override;

private:
    void clickButton(int index);

    SpellCheckSession& m_session;
    QLineEdit* m_target;
    QLineEdit* m_changeTo;
    QListWidget* m_suggestions;
    QListWidget* m_misspellings;
    std::array<QPushButton*, 6> m_controls{};
    QPushButton* m_cancel;
};
