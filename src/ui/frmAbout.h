#pragma once

#include <QDialog>

// "About Quillmere Pad": the program's name, version and purpose.
class frmAbout : public QDialog {
    Q_OBJECT
public:
    explicit frmAbout(QWidget* parent = nullptr);
};
