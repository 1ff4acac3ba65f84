#pragma once

#include <QDialog>

class QLineEdit;
class QTextBrowser;

// The user's guide shipped with the program, in a window of its own:
// contents, index and a search box, as the three Help commands ask.
class frmHelp : public QDialog {
    Q_OBJECT
public:
    // The three Help commands, and the part on finding, replacing and
    // spelling that the Find dialog's Help button opens.
    enum Topic { Contents = 1, Index = 2, Search = 3, Editing = 4 };

    explicit frmHelp(QWidget* parent = nullptr);

    // Shows the guide at the topic and brings the window up.
    void showTopic(Topic topic);
    // Finds the next place that holds `text`, from the top again after the
    // last one; false when the guide does not hold it at all.
    bool findText(const QString& text);

    QTextBrowser* browser() const { return m_browser; }

private:
    QTextBrowser* m_browser;
    QLineEdit* m_search;
};
