#pragma once

#include <QDialog>

class QListWidget;
class RichTextBox;

// "Symbols": the characters of codes 1 to 255 in the page's font; each
// insert puts one at the caret and the dialog stays for the next.
class frmSymbols : public QDialog {
    Q_OBJECT

public:
    // `page` must outlive the dialog.
    explicit frmSymbols(RichTextBox& page, QWidget* parent = nullptr);

private:
    void insertSelected();

    RichTextBox& m_page;
    QListWidget* m_symbols;
};
