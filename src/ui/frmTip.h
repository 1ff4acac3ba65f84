#pragma once

#include "app/TipOfTheDay.h"

#include <QDialog>

class QCheckBox;
class QLabel;

// "Tip of the Day": one tip at a time from the list shipped with the
// program, starting after the one shown last time. Its check box decides
// whether it opens by itself at start-up.
class frmTip : public QDialog {
    Q_OBJECT
public:
    explicit frmTip(QWidget* parent = nullptr);

    int currentIndex() const { return m_index; }
    QString currentTip() const;
    void cmdNextTip_Click();

    // The tips shipped in the program's resources.
    static QStringList shippedTips();
    // Whether the settings ask for the window when the program starts.
    static bool showAtStartup();

private:
    void showTip(int index);

    TipOfTheDay m_tips;
    QLabel* m_text;
    QCheckBox* m_atStartup;
    int m_index = 0;
};
