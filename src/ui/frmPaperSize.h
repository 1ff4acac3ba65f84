#pragma once

#include "print/PaperSetup.h"

#include <QDialog>
#include <array>

class QComboBox;
class QLineEdit;
class QRadioButton;
class PaperPicture;

// "Paper Setup": paper, orientation and margins of a document, with a small
// drawing of the sheet. Every decision is PaperSetup's; the dialog shows its
// state and hands it each event. Control names are those of the program's
// forms: txtMargins(0..3), txtPageSize(0..1), optOrientation(1..2), ...
class frmPaperSize : public QDialog {
    Q_OBJECT

public:
    // Works on `setup`, which must outlive the dialog; it is filled at once
    // (setupForm). After exec(), setup.ClickedOK says whether Ok was used.
    explicit frmPaperSize(PaperSetup& setup, QWidget* parent = nullptr);

    PaperSetup& setup() { return m_setup; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // Shows the logic's state: boxes, list, option, drawing.
    void refresh();
    void showFault(const PaperSetup::Fault& fault);
    void cmdOk_Click();

    PaperSetup& m_setup;
    std::array<QLineEdit*, 4> m_margins{};
    std::array<QLineEdit*, 2> m_pageSize{};
    std::array<QRadioButton*, 2> m_orientation{};
    QComboBox* m_paperSize = nullptr;
    PaperPicture* m_picture = nullptr;
    bool m_refreshing = false;
};
