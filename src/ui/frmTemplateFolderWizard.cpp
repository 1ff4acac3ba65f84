#include "ui/frmTemplateFolderWizard.h"

#include "context/AppContext.h"
#include "files/TemplateFolderCopy.h"
#include "files/clsINI.h"
#include "files/clsWorkingFolderLocation.h"
#include "platform/FileDialogs.h"
#include "platform/MsgboxClass.h"
#include "platform/fileControl.h"

#include <QApplication>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QStackedWidget>
#include <QTextEdit>
#include <QVBoxLayout>

namespace {

QLabel* namedLabel(const char* name, const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setObjectName(QLatin1String(name));
    return label;
}

QPushButton* namedButton(const char* name, const QString& caption, QWidget* parent) {
    auto* button = new QPushButton(caption, parent);
    button->setObjectName(QLatin1String(name));
    return button;
}

QString clockText(const QDateTime& at) {
    return at.toString(QStringLiteral("hh:mm:ss"));
}

} // namespace

frmTemplateFolderWizard::frmTemplateFolderWizard(QWidget* parent)
    : QDialog(parent), m_panels(new QStackedWidget(this)) {
    setObjectName(QStringLiteral("frmTemplateFolderWizard"));
    setWindowTitle(QStringLiteral("Templates Folder Wizard"));
    m_normal = buildNormalPanel();
    m_progressPanel = buildProgressPanel();
    m_reportPanel = buildReportPanel();
    for (QWidget* panel : {m_normal, m_progressPanel, m_reportPanel}) {
        m_panels->addWidget(panel);
    }
    auto* column = new QVBoxLayout(this);
    column->addWidget(m_panels, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    m_close = namedButton("cmdClose", QStringLiteral("&Close"), this);
    connect(m_close, &QPushButton::clicked, this, &QDialog::accept);
    buttons->addWidget(m_close);
    column->addLayout(buttons);
    resize(560, 360);

    // Form_Load.
    resetProgressLabels();
    hideCopyProgress();
    getFileInfo();
    m_report = TemplateFolderCopy::reportHeading();
}

QWidget* frmTemplateFolderWizard::buildNormalPanel() {
    auto* panel = new QWidget(this);
    panel->setObjectName(QStringLiteral("picNormal"));
    auto* column = new QVBoxLayout(panel);
    QLabel* intro = namedLabel(
        "lblIntro",
        QStringLiteral("The templates folder holds your merge templates and the spelling word "
                       "list. The Quick Picks list shows the documents in it."),
        panel);
    intro->setWordWrap(true);
    column->addWidget(intro);
    column->addWidget(namedLabel("lblFileLocation", QStringLiteral("Templates folder:"), panel));
    m_location = new QLineEdit(panel);
    m_location->setObjectName(QStringLiteral("FileLocation"));
    m_location->setReadOnly(true);
    m_location->setAccessibleName(QStringLiteral("Templates folder"));
    column->addWidget(m_location);
    QPushButton* specify =
        namedButton("cmdSpecifyFolder", QStringLiteral("Specify Folder Location"), panel);
    connect(specify, &QPushButton::clicked, this, &frmTemplateFolderWizard::cmdSpecifyFolder_Click);
    column->addWidget(specify, 0, Qt::AlignLeft);
    QLabel* note = namedLabel(
        "lblSpecifyNote",
        QStringLiteral("Click this button to manually specify the location of the templates "
                       "folder."),
        panel);
    note->setWordWrap(true);
    column->addWidget(note);
    column->addStretch(1);
    return panel;
}

QWidget* frmTemplateFolderWizard::buildProgressPanel() {
    auto* panel = new QWidget(this);
    panel->setObjectName(QStringLiteral("picProgress"));
    auto* grid = new QGridLayout(panel);
    m_status = namedLabel("lblStatus", QString(), panel);
    grid->addWidget(m_status, 0, 0, 1, 4);
    m_bar = new QProgressBar(panel);
    m_bar->setObjectName(QStringLiteral("ProgressBar1"));
    m_bar->setTextVisible(false);
    m_bar->setAccessibleName(QStringLiteral("Copy progress"));
    grid->addWidget(m_bar, 1, 0, 1, 3);
    m_percent = namedLabel("lblPcent", QString(), panel);
    grid->addWidget(m_percent, 1, 3);
    m_files = namedLabel("lblFiles", QString(), panel);
    m_folders = namedLabel("lblFolders", QString(), panel);
    grid->addWidget(m_files, 2, 0, 1, 2);
    grid->addWidget(m_folders, 2, 2, 1, 2);
    m_start = namedLabel("lblStartTime", QString(), panel);
    m_end = namedLabel("lblEndTime", QString(), panel);
    m_elapsed = namedLabel("lblElapsed", QString(), panel);
    const std::pair<const char*, QLabel*> times[] = {
        {"StartTime:", m_start}, {"End Time:", m_end}, {"Elapsed TIme:", m_elapsed}};
    int row = 3;
    for (const auto& [caption, value] : times) {
        QLabel* label = new QLabel(QLatin1String(caption), panel);
        label->setBuddy(value);
        grid->addWidget(label, row, 0);
        grid->addWidget(value, row, 1, 1, 3);
        ++row;
    }
    m_cancel = namedButton("cmdStopCopy", QStringLiteral("&Stop"), panel);
    connect(m_cancel, &QPushButton::clicked, this, [this] { m_cancelRequested = true; });
    grid->addWidget(m_cancel, row, 3);
    grid->setRowStretch(row + 1, 1);
    return panel;
}

QWidget* frmTemplateFolderWizard::buildReportPanel() {
    auto* panel = new QWidget(this);
    panel->setObjectName(QStringLiteral("picCopyReport"));
    auto* column = new QVBoxLayout(panel);
    m_reportView = new QTextEdit(panel);
    m_reportView->setObjectName(QStringLiteral("rtbCopyReport"));
    m_reportView->setReadOnly(true);
    m_reportView->setLineWrapMode(QTextEdit::NoWrap);
    m_reportView->setAccessibleName(QStringLiteral("File copy report"));
    column->addWidget(m_reportView, 1);
    QPushButton* back = namedButton("cmdBack", QStringLiteral("&Back"), panel);
    connect(back, &QPushButton::clicked, this, &frmTemplateFolderWizard::hideCopyProgress);
    column->addWidget(back, 0, Qt::AlignLeft);
    return panel;
}

QWidget* frmTemplateFolderWizard::currentPanel() const {
    return m_panels->currentWidget();
}

void frmTemplateFolderWizard::resetProgressLabels() {
    for (QLabel* label : {m_status, m_files, m_folders, m_start, m_end, m_elapsed}) {
        label->clear();
    }
    m_percent->setText(QStringLiteral("0%"));
    m_bar->setRange(0, 1);
    m_bar->setValue(0);
}

void frmTemplateFolderWizard::getFileInfo() {
    clsWorkingFolderLocation* folders = app().workingFolders;
    m_location->setText(folders ? folders->getTemplatesFolder() : QString());
}

void frmTemplateFolderWizard::showCopyProgress() {
    m_panels->setCurrentWidget(m_progressPanel);
}

void frmTemplateFolderWizard::showLinkProgress() {
    // A link shows the same panel as a copy.
    showCopyProgress();
}

void frmTemplateFolderWizard::hideCopyProgress() {
    m_panels->setCurrentWidget(m_normal);
}

void frmTemplateFolderWizard::viewCopyReport() {
    m_reportView->setPlainText(m_report);
    m_panels->setCurrentWidget(m_reportPanel);
}

void frmTemplateFolderWizard::reject() {
    if (m_copying) {
        m_cancelRequested = true;
        return;
    }
    QDialog::reject();
}

void frmTemplateFolderWizard::cmdSpecifyFolder_Click() {
    AppContext& ctx = app();
    clsWorkingFolderLocation* folders = ctx.workingFolders;
    if (ctx.isCreatingDocument || !folders || !ctx.fileDialogs) {
        return;
    }
    const QString stored =
        ctx.iniSettings ? ctx.iniSettings->getKeyString(QStringLiteral("QuillmerePad"),
                                                        QStringLiteral("TemplatesFolderLocation"),
                                                        QStringLiteral("<not_set>"))
                        : QString();
    const QString start = templateFolderDialogStart(stored, folders->getDefaultTemplatesFolder(),
                                                    folders->getTemplatesFolder());
    const auto chosen =
        ctx.fileDialogs->existingFolder(QStringLiteral("Select Templates Folder"), start);
    if (!chosen || !fileControl::FolderExists(*chosen)) {
        return;
    }
    const QString old = folders->getTemplatesFolder();
    folders->putTemplatesFolder(*chosen);
    getFileInfo();
    if (!shouldOfferTemplateCopy(old, *chosen) || !ctx.msgbox) {
        return;
    }
    const int answer = ctx.msgbox->askQuestion(
        QStringLiteral("Would you like to copy the templates of ") + old +
        QStringLiteral(" into the new templates folder?\nFiles already in the new folder are "
                       "kept as they are."));
    if (answer == MsgboxClass::Yes) {
        copyTemplates(old, *chosen);
    }
}

bool frmTemplateFolderWizard::copyTemplates(const QString& from, const QString& to) {
    resetProgressLabels();
    showCopyProgress();
    m_cancelRequested = false;
    m_cancel->setEnabled(true);
    TemplateFolderCopy::Events events;
    events.started = [this](const QDateTime& at) { m_start->setText(clockText(at)); };
    events.finished = [this](const QDateTime& at, qint64 ms) {
        m_end->setText(clockText(at));
        m_elapsed->setText(elapsedTimeText(ms));
    };
    events.counted = [this](int files, int folderCount) {
        m_files->setText(QStringLiteral("Files: %1").arg(files));
        m_folders->setText(QStringLiteral("Folders: %1").arg(folderCount));
    };
    events.progress = [this](int minimum, int maximum, int value) {
        m_bar->setRange(minimum, std::max(minimum + 1, maximum));
        m_bar->setValue(clampProgress(m_bar->minimum(), m_bar->maximum(), value));
        m_percent->setText(progressPercentText(minimum, maximum, value));
    };
    events.status = [this](const QString& file) {
        m_status->setText(QStringLiteral("Copying ") + file);
        // Keeps the panel painted and Stop clickable.
        QCoreApplication::processEvents();
    };
    events.cancelled = [this] { return m_cancelRequested; };

    QApplication::setOverrideCursor(Qt::WaitCursor);
    m_copying = true;
    m_close->setEnabled(false);
    const TemplateFolderCopy::Result result = TemplateFolderCopy::run(from, to, events);
    m_copying = false;
    m_close->setEnabled(true);
    QApplication::restoreOverrideCursor();
    m_cancel->setEnabled(false);
    m_status->setText(result.cancelled ? QStringLiteral("Stopped") : QStringLiteral("Done"));
    m_report = result.report;
    viewCopyReport();
    return result.ok();
}
