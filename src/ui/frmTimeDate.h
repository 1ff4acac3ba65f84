#pragma once

#include <QDateTime>
#include <QDialog>

class QLabel;
class QLineEdit;
class QListWidget;
class RichTextBox;

// "Time and Date": the current moment under the list's formats or a format
// of the user's own, inserted at the caret of a page.
class frmTimeDate : public QDialog {
    Q_OBJECT

public:
    // `page` must outlive the dialog; `now` is the moment shown.
    frmTimeDate(RichTextBox& page, const QDateTime& now, QWidget* parent = nullptr);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void insertSelected();
    void insertCustom();

    RichTextBox& m_page;
    QDateTime m_now;
    QListWidget* m_dates;
    QLineEdit* m_custom;
    QLabel* m_sample;
};
