#include "ui/frmOptions.h"

#include "app/modMenuStatus.h"
#include "context/AppContext.h"
#include "platform/FileDialogs.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>
#include <algorithm>

namespace {

// A combo box over a fixed list that still shows a stored value the list
// lacks (a font this desktop does not have), so that OK keeps it.
QComboBox* listBox(const QString& name, const QStringList& items, const QString& current,
                   QWidget* parent) {
    auto* box = new QComboBox(parent);
    box->setObjectName(name);
    box->addItems(items);
    if (!current.isEmpty() && box->findText(current) < 0) {
        box->insertItem(0, current);
    }
    box->setCurrentIndex(std::max(0, box->findText(current)));
    return box;
}

QComboBox* indexBox(const QString& name, const QStringList& items, int current, QWidget* parent) {
    auto* box = new QComboBox(parent);
    box->setObjectName(name);
    box->addItems(items);
    box->setCurrentIndex(current);
    return box;
}

QLabel* labelFor(const QString& name, const QString& caption, QWidget* buddy, QWidget* parent) {
    auto* label = new QLabel(caption, parent);
    label->setObjectName(name);
    label->setBuddy(buddy);
    buddy->setAccessibleName(QString(caption).remove(QLatin1Char(':')));
    return label;
}

QCheckBox* checkBox(const QString& name, const QString& caption, bool checked, QWidget* parent) {
    auto* box = new QCheckBox(caption, parent);
    box->setObjectName(name);
    box->setChecked(checked);
    return box;
}

} // namespace

frmOptions::frmOptions(const OptionsData& data, const QStringList& fontNames,
                       const QStringList& fontSizes, std::function<void(const OptionsData&)> apply,
                       QWidget* parent)
    : QDialog(parent), m_apply(std::move(apply)) {
    setObjectName(QStringLiteral("frmOptions"));
    setWindowTitle(QStringLiteral("Options"));
    setModal(true);

    auto* pages = new QTabWidget(this);
    pages->setObjectName(QStringLiteral("tabOptions"));
    pages->addTab(buildGeneralPage(data, fontNames, fontSizes), QStringLiteral("General"));
    pages->addTab(buildBarsPage(data), QStringLiteral("Toolbars"));
    pages->addTab(buildTabsPage(data), QStringLiteral("Document Tabs"));
    pages->addTab(buildTemplatesPage(data), QStringLiteral("Templates"));

    auto* buttons = new QDialogButtonBox(this);
    QPushButton* ok = buttons->addButton(QStringLiteral("OK"), QDialogButtonBox::AcceptRole);
    ok->setObjectName(QStringLiteral("cmdOK"));
    ok->setDefault(true);
    QPushButton* cancel =
        buttons->addButton(QStringLiteral("Cancel"), QDialogButtonBox::RejectRole);
    cancel->setObjectName(QStringLiteral("cmdCancel"));
    QPushButton* applyButton =
        buttons->addButton(QStringLiteral("Apply"), QDialogButtonBox::ApplyRole);
    applyButton->setObjectName(QStringLiteral("cmdApply"));
    connect(ok, &QPushButton::clicked, this, [this] {
        applyNow();
        accept();
    });
    connect(applyButton, &QPushButton::clicked, this, &frmOptions::applyNow);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(pages);
    layout->addWidget(buttons);
}

QWidget* frmOptions::buildGeneralPage(const OptionsData& data, const QStringList& fontNames,
                                      const QStringList& fontSizes) {
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("pageGeneral"));
    auto* form = new QFormLayout(page);
    m_fontName = listBox(QStringLiteral("cmbOFontName"), fontNames, data.defaultFont, page);
    m_fontSize = listBox(QStringLiteral("cmbOFontSize"), fontSizes, data.defaultFontSize, page);
    m_docState =
        indexBox(QStringLiteral("cmbDocState"), documentStateItems(), data.documentState, page);
    form->addRow(
        labelFor(QStringLiteral("lblFontName"), QStringLiteral("Default Font:"), m_fontName, page),
        m_fontName);
    form->addRow(labelFor(QStringLiteral("lblFontSize"), QStringLiteral("Default Font Size:"),
                          m_fontSize, page),
                 m_fontSize);
    form->addRow(labelFor(QStringLiteral("lblDocState"),
                          QStringLiteral("Select document startup position:"), m_docState, page),
                 m_docState);
    m_stayOnTop = checkBox(QStringLiteral("chkStayOnTop"), QStringLiteral("Stay on Top"),
                           data.stayOnTop, page);
    form->addRow(m_stayOnTop);
    m_liveSpelling =
        checkBox(QStringLiteral("chkLiveSpelling"), QStringLiteral("Check Spelling as You Type"),
                 data.liveSpelling, page);
    form->addRow(m_liveSpelling);
    return page;
}

QWidget* frmOptions::buildBarsPage(const OptionsData& data) {
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("pageToolbars"));
    auto* bars = new QGroupBox(QStringLiteral("Toolbars"), page);
    bars->setObjectName(QStringLiteral("fraToolbars"));
    auto* view = new QGroupBox(QStringLiteral("View"), page);
    view->setObjectName(QStringLiteral("fraView"));
    auto* barsLayout = new QVBoxLayout(bars);
    auto* viewLayout = new QVBoxLayout(view);
    for (const OptionCheck& check : optionChecks()) {
        const bool isBar = check.section == QLatin1String("QuillmerePadToolbars");
        QWidget* group = isBar ? bars : view;
        QCheckBox* box = checkBox(check.control, check.caption, data.checked(check.control), group);
        (isBar ? barsLayout : viewLayout)->addWidget(box);
        if (data.unbuilt.contains(check.control)) {
            box->setEnabled(false);
            box->setToolTip(notAvailableYetTip());
        }
        m_checks.insert(check.control, box);
    }
    auto* layout = new QHBoxLayout(page);
    layout->addWidget(bars);
    layout->addWidget(view, 0, Qt::AlignTop);
    return page;
}

QWidget* frmOptions::buildTabsPage(const OptionsData& data) {
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("pageDocumentTabs"));
    auto* form = new QFormLayout(page);
    m_style = indexBox(QStringLiteral("cboStyle"), tabStyleItems(), data.tabStyle, page);
    form->addRow(
        labelFor(QStringLiteral("lblStyle"), QStringLiteral("Document Tabs Style:"), m_style, page),
        m_style);
    m_focusRect = checkBox(QStringLiteral("chkDrawFocusRect"), QStringLiteral("Draw Focus Rect"),
                           data.drawFocusRect, page);
    m_icons = checkBox(QStringLiteral("chkDrawIcons"), QStringLiteral("Draw Icons"), data.drawIcons,
                       page);
    form->addRow(m_focusRect);
    form->addRow(m_icons);
    return page;
}

QWidget* frmOptions::buildTemplatesPage(const OptionsData& data) {
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("pageTemplates"));
    auto* layout = new QVBoxLayout(page);
    m_location = new QLineEdit(data.templatesFolder, page);
    m_location->setObjectName(QStringLiteral("txtLocation"));
    // Only a folder chosen in the folder dialog, which exists, gets here.
    m_location->setReadOnly(true);
    layout->addWidget(labelFor(QStringLiteral("lblLocation"),
                               QStringLiteral("Specify the templates folder location:"), m_location,
                               page));
    layout->addWidget(m_location);
    auto* browse = new QPushButton(QStringLiteral("Change Templates Folder Location"), page);
    browse->setObjectName(QStringLiteral("cmdBrowse"));
    connect(browse, &QPushButton::clicked, this, &frmOptions::browseTemplatesFolder);
    layout->addWidget(browse, 0, Qt::AlignLeft);
    layout->addStretch();
    return page;
}

void frmOptions::browseTemplatesFolder() {
    FileDialogs* dialogs = app().fileDialogs;
    if (!dialogs) {
        return;
    }
    const std::optional<QString> folder = dialogs->existingFolder(
        QStringLiteral("Change Templates Folder Location"), m_location->text());
    if (folder && !folder->isEmpty()) {
        m_location->setText(*folder);
    }
}

void frmOptions::applyNow() {
    if (m_apply) {
        m_apply(data());
    }
}

OptionsData frmOptions::data() const {
    OptionsData d;
    d.defaultFont = m_fontName->currentText();
    d.defaultFontSize = m_fontSize->currentText();
    for (auto it = m_checks.cbegin(); it != m_checks.cend(); ++it) {
        d.checks.insert(it.key(), it.value()->isChecked());
    }
    d.documentState = m_docState->currentIndex();
    d.stayOnTop = m_stayOnTop->isChecked();
    d.tabStyle = m_style->currentIndex();
    d.drawFocusRect = m_focusRect->isChecked();
    d.drawIcons = m_icons->isChecked();
    d.templatesFolder = m_location->text();
    d.liveSpelling = m_liveSpelling->isChecked();
    return d;
}
