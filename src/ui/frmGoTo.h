#pragma once

#include "documents/modGoTo.h"

#include <QDialog>
#include <functional>

class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class frmDocument;

// The Go To dialog: the start or end of the caret's sheet, a line of that
// sheet, or a sheet of the document.
class frmGoTo : public QDialog {
    Q_OBJECT
public:
    using DocumentSource = std::function<frmDocument*()>;
    explicit frmGoTo(DocumentSource document, QWidget* parent = nullptr);

    void cmdGo_Click();

private:
    GoToWhat chosen() const;
    void showPrompt();

    DocumentSource m_document;
    QLabel* m_prompt;
    QLineEdit* m_number;
    QRadioButton* m_start;
    QRadioButton* m_line;
    QRadioButton* m_end;
    QRadioButton* m_page;
    QPushButton* m_go;
};
