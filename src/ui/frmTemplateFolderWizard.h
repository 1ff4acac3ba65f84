#pragma once

#include <QDialog>
#include <QString>

class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QStackedWidget;
class QTextEdit;
class QWidget;

// "Templates Folder Wizard": shows where the templates lie, lets the user
// point the program at another folder, and copies the templates there with
// a progress panel and a report. Three panels, one shown at a time: the
// normal one, the progress and the copy report.
class frmTemplateFolderWizard : public QDialog {
    Q_OBJECT
public:
    explicit frmTemplateFolderWizard(QWidget* parent = nullptr);

    // "Specify Folder Location": asks for a folder, stores it as the
    // templates folder, and offers to copy the templates of the old one.
    void cmdSpecifyFolder_Click();
    // Copies the templates of `from` into `to` on the progress panel, then
    // shows the report. False when anything failed, was refused or stopped.
    bool copyTemplates(const QString& from, const QString& to);

    void showCopyProgress();
    void showLinkProgress();
    void hideCopyProgress();
    void viewCopyReport();

    QString reportText() const { return m_report; }
    QWidget* currentPanel() const;

    // While a copy runs, closing the window stops the copy instead; the
    // window stays until the copy has ended and its report is shown.
    void reject() override;

private:
    void getFileInfo();
    void resetProgressLabels();
    QWidget* buildNormalPanel();
    QWidget* buildProgressPanel();
    QWidget* buildReportPanel();

    QStackedWidget* m_panels;
    QWidget* m_normal = nullptr;
    QWidget* m_progressPanel = nullptr;
    QWidget* m_reportPanel = nullptr;
    QLineEdit* m_location = nullptr;
    QProgressBar* m_bar = nullptr;
    QLabel* m_status = nullptr;
    QLabel* m_percent = nullptr;
    QLabel* m_files = nullptr;
    QLabel* m_folders = nullptr;
    QLabel* m_start = nullptr;
    QLabel* m_end = nullptr;
    QLabel* m_elapsed = nullptr;
    QPushButton* m_cancel = nullptr;
    QTextEdit* m_reportView = nullptr;
    QString m_report;
    QPushButton* m_close = nullptr;
    bool m_cancelRequested = false;
    bool m_copying = false;
};
