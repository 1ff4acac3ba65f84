#pragma once

#include <QDialog>

class frmDocument;

// "Document Properties": what kind of document the active one is, what it
// merges, its page setup, and how many pages, words and placeholders it
// holds. A snapshot taken when the window opens.
class frmDocInfo : public QDialog {
    Q_OBJECT
public:
    explicit frmDocInfo(frmDocument& document, QWidget* parent = nullptr);
};
