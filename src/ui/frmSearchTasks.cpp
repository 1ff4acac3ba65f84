#include "ui/frmSearchTasks.h"

#include "context/AppContext.h"
#include "data/databaseControl.h"
#include "data/modDatabaseFunctions.h"
#include "data/modRemittanceTypes.h"
#include "platform/MsgboxClass.h"
#include "platform/errorClass.h"
#include "search/clsSearchTasks.h"
#include "ui/DateFieldPicker.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStandardItemModel>
#include <QVBoxLayout>

namespace {

QString indexed(const char* name, int index) {
    return QStringLiteral("%1(%2)").arg(QLatin1String(name)).arg(index);
}

QStandardItemModel& listOf(QComboBox* box) {
    return *qobject_cast<QStandardItemModel*>(box->model());
}

// The entry whose item data is `value`, or none.
void chooseByData(QComboBox* box, const std::optional<int>& value) {
    box->setCurrentIndex(value ? box->findData(*value, modDatabaseFunctions::ItemDataRole) : -1);
}

std::optional<int> chosenData(const QComboBox* box) {
    if (box->currentIndex() < 0) {
        return std::nullopt;
    }
    const QVariant data = box->currentData(modDatabaseFunctions::ItemDataRole);
    bool ok = false;
    const int value = data.toInt(&ok);
    return ok ? std::optional<int>(value) : std::nullopt;
}

// The heights of the two halves, in twips as the window was laid out.
constexpr int kTwipsPerPixel = 15;
constexpr int kAdvancedHeight = 9000;
constexpr int kPlainHeight = 6355;

} // namespace

frmSearchTasks::frmSearchTasks(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmSearchTasks"));
    setModal(true);
    setWindowTitle(TaskSearchForm::initialCaption(false));
    buildControls();
    hideAdvanced();
}

void frmSearchTasks::buildControls() {
    auto* main = new QGroupBox(QStringLiteral("Search Main"), this);
    main->setObjectName(QStringLiteral("Frame1"));
    auto* mainGrid = new QGridLayout(main);
    const char* mainCaptions[] = {"Search by Task Name",         "Search by Task Type",
                                  "Search by Employee Assigned", "Search Prior Years Archives",
                                  "Search by Closed Status",     "Search by Client"};
    for (int i = 0; i < 6; ++i) {
        auto* box = new QCheckBox(QLatin1String(mainCaptions[i]), main);
        box->setObjectName(indexed("chkMain", i));
        connect(box, &QCheckBox::clicked, this, [this, i] { chkMain_Click(i); });
        m_chkMain << box;
    }
    m_text = new QLineEdit(main);
    m_text->setObjectName(indexed("Text1", 0));
    m_text->setAccessibleName(QStringLiteral("Task name"));
    for (int i = 0; i < 3; ++i) {
        auto* combo = new QComboBox(main);
        combo->setObjectName(indexed("Combo1", i));
        m_combo1 << combo;
    }
    m_combo1[0]->setAccessibleName(QStringLiteral("Task type"));
    m_combo1[1]->setAccessibleName(QStringLiteral("Employee assigned"));
    m_combo1[1]->setEditable(true);
    m_combo1[1]->setInsertPolicy(QComboBox::NoInsert);
    m_combo1[2]->setAccessibleName(QStringLiteral("Client"));
    m_optClosed << new QRadioButton(QStringLiteral("Show only closed items"), main)
                << new QRadioButton(QStringLiteral("Show only unclosed items"), main);
    for (int i = 0; i < 2; ++i) {
        m_optClosed[i]->setObjectName(indexed("optClosed", i));
    }
    auto* closed = new QHBoxLayout;
    closed->addWidget(m_optClosed[0]);
    closed->addWidget(m_optClosed[1]);
    mainGrid->addWidget(m_chkMain[0], 0, 0);
    mainGrid->addWidget(m_text, 0, 1);
    mainGrid->addWidget(m_chkMain[1], 1, 0);
    mainGrid->addWidget(m_combo1[0], 1, 1);
    mainGrid->addWidget(m_chkMain[2], 2, 0);
    mainGrid->addWidget(m_combo1[1], 2, 1);
    mainGrid->addWidget(m_chkMain[5], 3, 0);
    mainGrid->addWidget(m_combo1[2], 3, 1);
    mainGrid->addWidget(m_chkMain[4], 4, 0);
    mainGrid->addLayout(closed, 4, 1);
    mainGrid->addWidget(m_chkMain[3], 5, 0, 1, 2);

    auto* dates = new QGroupBox(QStringLiteral("Search Dates"), this);
    dates->setObjectName(QStringLiteral("Frame2"));
    auto* dateGrid = new QGridLayout(dates);
    m_combo2 = new QComboBox(dates);
    m_combo2->setObjectName(QStringLiteral("Combo2"));
    m_combo2->setAccessibleName(QStringLiteral("Date column"));
    m_combo2->addItems(TaskSearchForm::dateColumns());
    m_combo2->setCurrentIndex(-1);
    dateGrid->addWidget(m_combo2, 0, 0, 1, 4);
    for (int i = 0; i < TaskSearchForm::DateBoxCount; ++i) {
        auto* box = new QLineEdit(dates);
        box->setObjectName(indexed("txtField", i));
        m_txtField << box;
        auto* picker = new DateFieldPicker(box, dates);
        picker->setObjectName(indexed("dtpField", i));
        m_dtpField << picker;
    }
    const QStringList options = TaskSearchForm::optionCaptions();
    for (int i = 0; i < options.size(); ++i) {
        auto* option = new QRadioButton(options[i], dates);
        option->setObjectName(indexed("Option1", i));
        connect(option, &QRadioButton::clicked, this, [this, i] { Option1_Click(i); });
        m_option1 << option;
        const QList<int> boxes = TaskSearchForm::dateBoxesOfOption(i);
        dateGrid->addWidget(option, i + 1, 0);
        for (int b = 0; b < boxes.size(); ++b) {
            auto* cell = new QHBoxLayout;
            cell->addWidget(m_txtField[boxes[b]], 1);
            cell->addWidget(m_dtpField[boxes[b]]);
            m_txtField[boxes[b]]->setAccessibleName(
                options[i] + (b ? QStringLiteral(" second date") : QStringLiteral(" date")));
            dateGrid->addLayout(cell, i + 1, 1 + 2 * b);
        }
        if (boxes.size() == 2) {
            dateGrid->addWidget(new QLabel(QStringLiteral("and"), dates), i + 1, 2);
        }
    }

    m_frame3 = new QGroupBox(QStringLiteral("Search Status"), this);
    m_frame3->setObjectName(QStringLiteral("Frame3"));
    auto* statusGrid = new QGridLayout(m_frame3);
    const QStringList statuses = TaskSearchForm::statusCaptions();
    for (int i = 0; i < statuses.size(); ++i) {
        auto* box = new QCheckBox(statuses[i], m_frame3);
        box->setObjectName(indexed("chkStatus", i));
        connect(box, &QCheckBox::clicked, this, [this, i] { chkStatus_Click(i); });
        m_chkStatus << box;
        auto* value = new QComboBox(m_frame3);
        value->setObjectName(indexed("Combo3", i));
        value->addItems({QStringLiteral("True"), QStringLiteral("False")});
        value->setAccessibleName(statuses[i] + QStringLiteral(" where equals"));
        m_combo3 << value;
        statusGrid->addWidget(box, i, 0);
        statusGrid->addWidget(new QLabel(QStringLiteral("where equals:"), m_frame3), i, 1);
        statusGrid->addWidget(value, i, 2);
    }

    m_buttons = new QWidget(this);
    m_buttons->setObjectName(QStringLiteral("fraButtons"));
    auto* buttonRow = new QHBoxLayout(m_buttons);
    m_showAdvanced = new QPushButton(m_buttons);
    m_showAdvanced->setObjectName(QStringLiteral("cmdShowAdvanced"));
    m_searchButton = new QPushButton(QStringLiteral("Select Tasks"), m_buttons);
    m_searchButton->setObjectName(QStringLiteral("cmdSearch"));
    m_searchButton->setDefault(true);
    m_cancel = new QPushButton(QStringLiteral("Cancel"), m_buttons);
    m_cancel->setObjectName(QStringLiteral("cmdCancel"));
    buttonRow->addWidget(m_showAdvanced);
    buttonRow->addStretch(1);
    buttonRow->addWidget(m_searchButton);
    buttonRow->addWidget(m_cancel);
    connect(m_showAdvanced, &QPushButton::clicked, this, &frmSearchTasks::cmdShowAdvanced_Click);
    connect(m_searchButton, &QPushButton::clicked, this, &frmSearchTasks::cmdSearch_Click);
    connect(m_cancel, &QPushButton::clicked, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(main);
    layout->addWidget(dates);
    layout->addWidget(m_frame3);
    layout->addStretch(1);
    layout->addWidget(m_buttons);
}

bool frmSearchTasks::Initialize(clsSearchTasks& search) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-frmSearchTasks-Initialize");
    if (!app().database || !app().database->isConnected()) {
        if (app().msgbox) {
            app().msgbox->showMessage(
                QStringLiteral("You cannot use the select tasks feature at this time.  You need "
                               "to open the Quillmere Pad from within Quillmere to link to the "
                               "client's data properly."));
        }
        return false;
    }
    m_search = &search;
    m_searchAccepted = false;
    populateTypeCombo(listOf(m_combo1[0]), true, true);
    TaskSearchForm::populateEmployeeAssigned(listOf(m_combo1[1]));
    populateCompanyNameInComboBox(listOf(m_combo1[2]), true, true, false, false);
    setWindowTitle(TaskSearchForm::initialCaption(search.searchArchives));
    showForm(TaskSearchForm::fromCriteria(search));
    return true;
}

void frmSearchTasks::showForm(const TaskSearchForm& form) {
    m_chkMain[0]->setChecked(form.searchByName);
    m_text->setText(form.taskName);
    m_chkMain[1]->setChecked(form.searchByType);
    chooseByData(m_combo1[0], form.taskType);
    m_chkMain[2]->setChecked(form.searchByEmployee);
    m_combo1[1]->setCurrentIndex(m_combo1[1]->findText(form.employee));
    m_combo1[1]->setEditText(form.employee);
    m_chkMain[3]->setChecked(form.searchArchives);
    m_chkMain[4]->setChecked(form.searchByClosed);
    m_optClosed[form.onlyClosed ? 0 : 1]->setChecked(true);
    m_chkMain[5]->setChecked(form.searchByClient);
    chooseByData(m_combo1[2], form.companyID);
    m_combo2->setCurrentIndex(form.dateColumn);
    for (int i = 0; i < TaskSearchForm::DateBoxCount; ++i) {
        m_txtField[i]->setText(form.dates[std::size_t(i)]);
    }
    m_option1[form.dateOption]->setChecked(true);
    for (int i = 0; i < TaskSearchForm::StatusCount; ++i) {
        m_chkStatus[i]->setChecked(form.status[std::size_t(i)]);
        m_combo3[i]->setCurrentIndex(form.statusValue[std::size_t(i)] ? 0 : 1);
        chkStatus_Click(i);
    }
    for (int i : {0, 1, 2, 4, 5}) {
        chkMain_Click(i);
    }
    Option1_Click(form.dateOption);
}

TaskSearchForm frmSearchTasks::formState() const {
    TaskSearchForm form;
    form.searchByName = m_chkMain[0]->isChecked();
    form.taskName = m_text->text();
    form.searchByType = m_chkMain[1]->isChecked();
    form.taskType = chosenData(m_combo1[0]);
    form.searchByEmployee = m_chkMain[2]->isChecked();
    form.employee = m_combo1[1]->currentText();
    form.searchArchives = m_chkMain[3]->isChecked();
    form.searchByClosed = m_chkMain[4]->isChecked();
    form.onlyClosed = m_optClosed[0]->isChecked();
    form.searchByClient = m_chkMain[5]->isChecked();
    form.companyID = chosenData(m_combo1[2]);
    form.dateColumn = m_combo2->currentIndex();
    for (int i = 0; i < m_option1.size(); ++i) {
        if (m_option1[i]->isChecked()) {
            form.dateOption = i;
        }
    }
    for (int i = 0; i < TaskSearchForm::DateBoxCount; ++i) {
        form.dates[std::size_t(i)] = m_txtField[i]->text();
    }
    for (int i = 0; i < TaskSearchForm::StatusCount; ++i) {
        form.status[std::size_t(i)] = m_chkStatus[i]->isChecked();
        form.statusValue[std::size_t(i)] = m_combo3[i]->currentIndex() == 0;
    }
    return form;
}

void frmSearchTasks::chkMain_Click(int index) {
    const bool on = m_chkMain[index]->isChecked();
    switch (index) {
    case 0:
        m_text->setEnabled(on);
        break;
    case 1:
        m_combo1[0]->setEnabled(on);
        break;
    case 2:
        m_combo1[1]->setEnabled(on);
        break;
    case 3:
        setWindowTitle(TaskSearchForm::archiveCaption(on));
        break;
    case 4:
        m_optClosed[0]->setEnabled(on);
        m_optClosed[1]->setEnabled(on);
        break;
    case 5:
        m_combo1[2]->setEnabled(on);
        break;
    default:
        break;
    }
}

void frmSearchTasks::chkStatus_Click(int index) {
    m_combo3[index]->setEnabled(m_chkStatus[index]->isChecked());
}

void frmSearchTasks::Option1_Click(int index) {
    const QList<int> boxes = TaskSearchForm::dateBoxesOfOption(index);
    for (int i = 0; i < TaskSearchForm::DateBoxCount; ++i) {
        m_txtField[i]->setEnabled(boxes.contains(i));
        m_dtpField[i]->setEnabled(boxes.contains(i));
    }
}

void frmSearchTasks::showAdvanced() {
    m_buttons->setVisible(false);
    m_frame3->setVisible(true);
    resize(width(), kAdvancedHeight / kTwipsPerPixel);
    m_buttons->setVisible(true);
    m_showAdvanced->setText(QStringLiteral("Hide Advanced <<"));
    m_advancedShown = true;
}

void frmSearchTasks::hideAdvanced() {
    m_frame3->setVisible(false);
    adjustSize();
    resize(width(), kPlainHeight / kTwipsPerPixel);
    m_showAdvanced->setText(QStringLiteral("Show Advanced >>"));
    m_advancedShown = false;
}

void frmSearchTasks::cmdShowAdvanced_Click() {
    if (m_advancedShown) {
        hideAdvanced();
    } else {
        showAdvanced();
    }
}

void frmSearchTasks::focusFault(const TaskSearchForm::Fault& fault) {
    using Control = TaskSearchForm::Control;
    switch (fault.control) {
    case Control::TaskName:
        m_text->setFocus();
        break;
    case Control::Client:
        m_combo1[2]->setFocus();
        break;
    case Control::TaskType:
        m_combo1[0]->setFocus();
        break;
    case Control::Employee:
        m_combo1[1]->setFocus();
        break;
    case Control::DateBox:
        m_txtField[fault.index]->setFocus();
        break;
    }
}

void frmSearchTasks::cmdSearch_Click() {
    if (!m_search || !app().msgbox) {
        return;
    }
    try {
        if (const auto fault = formState().save(*m_search, *app().msgbox)) {
            focusFault(*fault);
            return;
        }
    } catch (const QmError& fault) {
        // A filter the database cannot run (an apostrophe in a name): the
        // user is told and the dialog stays open with what was typed.
        app().msgbox->showMessage(fault.description());
        return;
    }
    m_searchAccepted = true;
    accept();
}

bool frmSearchTasks::showAdvancedSearch(clsSearchTasks& search, QWidget* parent) {
    frmSearchTasks dialog(parent);
    if (!dialog.Initialize(search)) {
        return false;
    }
    dialog.exec();
    return dialog.searchAccepted();
}
