#pragma once

#include "app/TipOfTheDay.h"

#include <QDialog>

class QLabel;

// "Tip of the Day": one tip at a time from the list shipped with the
// program, starting after the one shown last time.
class frmTip : public QDialog {
    Q_OBJECT
public:
    explicit frmTip(QWidget* parent = nullptr);

    int currentIndex() const { return m_index; }
    QString currentTip() const;
    void cmdNextTip_Click();

    // The tips shipped in the program's resources.
    static QStringList shippedTips();

private:
    void showTip(int index);

    TipOfTheDay m_tips;
    QLabel* m_text;
    int m_index = 0;
};
