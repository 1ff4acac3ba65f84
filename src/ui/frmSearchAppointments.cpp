#include "ui/frmSearchAppointments.h"

#include "context/AppContext.h"
#include "data/databaseControl.h"
#include "data/modDatabaseFunctions.h"
#include "platform/MsgboxClass.h"
#include "platform/errorClass.h"
#include "search/clsSearchAppointments.h"
#include "ui/DateFieldPicker.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QRadioButton>
#include <QStandardItemModel>
#include <QTabWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

QString indexed(const char* name, int index) {
    return QStringLiteral("%1(%2)").arg(QLatin1String(name)).arg(index);
}

QStandardItemModel& listOf(QComboBox* box) {
    return *qobject_cast<QStandardItemModel*>(box->model());
}

std::optional<int> chosenData(const QComboBox* box) {
    if (box->currentIndex() < 0) {
        return std::nullopt;
    }
    bool ok = false;
    const int value = box->currentData(modDatabaseFunctions::ItemDataRole).toInt(&ok);
    return ok ? std::optional<int>(value) : std::nullopt;
}

// Colours are kept as the host keeps them: 0x00BBGGRR.
QColor toColor(qint32 number) {
    return QColor(number & 0xFF, (number >> 8) & 0xFF, (number >> 16) & 0xFF);
}
qint32 toNumber(const QColor& color) {
    return color.red() | (color.green() << 8) | (color.blue() << 16);
}

QIcon swatch(qint32 number) {
    QPixmap picture(16, 16);
    picture.fill(number < 0 ? QColor(Qt::transparent) : toColor(number));
    QPainter painter(&picture);
    painter.setPen(Qt::gray);
    painter.drawRect(0, 0, 15, 15);
    return QIcon(picture);
}

// A group box with its explaining line above its controls.
QGroupBox* frame(const QString& caption, const QString& explanation, QWidget* parent,
                 QGridLayout*& grid) {
    auto* box = new QGroupBox(caption, parent);
    grid = new QGridLayout(box);
    if (!explanation.isEmpty()) {
        grid->addWidget(new QLabel(explanation, box), 0, 0, 1, 4);
    }
    return box;
}

} // namespace

frmSearchAppointments::frmSearchAppointments(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmSearchAppointments"));
    setModal(true);
    setWindowTitle(QStringLiteral("Select the Appointments"));
    for (int i = 0; i < 6; ++i) {
        auto* box = new QCheckBox(this);
        box->setObjectName(indexed("chkMain", i));
        connect(box, &QCheckBox::clicked, this, [this, i] { chkMain_Click(i); });
        m_chkMain << box;
    }
    m_tabs = new QTabWidget(this);
    m_tabs->setObjectName(QStringLiteral("SSTab1"));
    m_tabs->addTab(buildMainTab(), QStringLiteral("Search Main"));
    m_tabs->addTab(buildDatesTab(), QStringLiteral("Search Dates"));
    m_tabs->addTab(buildTimesTab(), QStringLiteral("Search Appointment Times"));

    m_searchButton = new QPushButton(QStringLiteral("Select Appointments"), this);
    m_searchButton->setObjectName(QStringLiteral("cmdSearch"));
    m_searchButton->setDefault(true);
    m_cancel = new QPushButton(QStringLiteral("Cancel"), this);
    m_cancel->setObjectName(QStringLiteral("cmdCancel"));
    connect(m_searchButton, &QPushButton::clicked, this, &frmSearchAppointments::cmdSearch_Click);
    connect(m_cancel, &QPushButton::clicked, this, &QDialog::reject);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(m_searchButton);
    buttons->addWidget(m_cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_tabs, 1);
    layout->addLayout(buttons);
    showForm(AppointmentSearchForm{});
}

QWidget* frmSearchAppointments::buildMainTab() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    QGridLayout* grid = nullptr;

    layout->addWidget(frame(QStringLiteral("Search Main"),
                            QStringLiteral("Find all appointments that contain following "), page,
                            grid));
    m_chkMain[0]->setText(QStringLiteral("Search by Appointment Name"));
    m_text = new QLineEdit(page);
    m_text->setObjectName(QStringLiteral("txtAppointmentText"));
    m_text->setAccessibleName(QStringLiteral("Appointment name"));
    grid->addWidget(m_chkMain[0], 1, 0);
    grid->addWidget(m_text, 1, 1);

    for (int i = 0; i < 2; ++i) {
        auto* combo = new QComboBox(page);
        combo->setObjectName(indexed("Combo1", i));
        m_combo1 << combo;
    }
    m_combo1[0]->setAccessibleName(QStringLiteral("User"));
    m_combo1[1]->setAccessibleName(QStringLiteral("Client"));

    layout->addWidget(frame(QStringLiteral("Search by Client"),
                            QStringLiteral("Find only appointments for the following client"), page,
                            grid));
    m_chkMain[1]->setText(QStringLiteral("Search by Client"));
    grid->addWidget(m_chkMain[1], 1, 0);
    grid->addWidget(m_combo1[1], 1, 1);

    layout->addWidget(frame(QStringLiteral("Search by User Name"),
                            QStringLiteral("Find all appointments for the following user"), page,
                            grid));
    m_chkMain[2]->setText(QStringLiteral("Search by User Name"));
    grid->addWidget(m_chkMain[2], 1, 0);
    grid->addWidget(m_combo1[0], 1, 1);

    layout->addWidget(frame(QStringLiteral("Search by Appointment Color"),
                            QStringLiteral("Find all appointments with the following color"), page,
                            grid));
    m_chkMain[3]->setText(QStringLiteral("Search by Appointment Color"));
    m_colourButton = new QToolButton(page);
    m_colourButton->setObjectName(QStringLiteral("apptBackColour"));
    m_colourButton->setAccessibleName(QStringLiteral("Appointment color"));
    m_colourButton->setPopupMode(QToolButton::InstantPopup);
    m_colourButton->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    buildColourMenu();
    grid->addWidget(m_chkMain[3], 1, 0);
    grid->addWidget(m_colourButton, 1, 1);
    layout->addStretch(1);
    return page;
}

void frmSearchAppointments::buildColourMenu() {
    auto* menu = new QMenu(m_colourButton);
    menu->addSection(QStringLiteral("Default Colours"));
    const QList<QColor> defaults = {Qt::black,      Qt::white,    Qt::red,         Qt::green,
                                    Qt::blue,       Qt::yellow,   Qt::cyan,        Qt::magenta,
                                    Qt::gray,       Qt::darkRed,  Qt::darkGreen,   Qt::darkBlue,
                                    Qt::darkYellow, Qt::darkCyan, Qt::darkMagenta, Qt::lightGray};
    for (const QColor& color : defaults) {
        const qint32 number = toNumber(color);
        QAction* action = menu->addAction(swatch(number), color.name());
        connect(action, &QAction::triggered, this, [this, number] { setColour(number); });
    }
    menu->addSection(QStringLiteral("More Colours"));
    QAction* more = menu->addAction(QStringLiteral("More Colours..."));
    connect(more, &QAction::triggered, this, [this] {
        const QColor chosen =
            QColorDialog::getColor(m_colour < 0 ? QColor(Qt::white) : toColor(m_colour), this);
        if (chosen.isValid()) {
            setColour(toNumber(chosen));
        }
    });
    m_colourButton->setMenu(menu);
}

void frmSearchAppointments::setColour(qint32 colour) {
    m_colour = colour;
    m_colourButton->setIcon(swatch(colour));
    m_colourButton->setText(colour < 0 ? QStringLiteral("None")
                                       : toColor(colour).name(QColor::HexRgb));
}

QWidget* frmSearchAppointments::buildDatesTab() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    QGridLayout* grid = nullptr;
    layout->addWidget(frame(QStringLiteral("Search Dates"), QString(), page, grid));
    for (int i = 0; i < AppointmentSearchForm::BoxCount; ++i) {
        auto* box = new QLineEdit(page);
        box->setObjectName(indexed("txtField", i));
        m_txtField << box;
        auto* picker = new DateFieldPicker(box, page);
        picker->setObjectName(indexed("dtpField", i));
        m_dtpField << picker;
    }
    const QStringList captions = AppointmentSearchForm::dateOptionCaptions();
    for (int i = 0; i < captions.size(); ++i) {
        auto* option = new QRadioButton(captions[i], page);
        option->setObjectName(indexed("optDate", i));
        connect(option, &QRadioButton::clicked, this, [this, i] { optDate_Click(i); });
        m_optDate << option;
        grid->addWidget(option, i + 1, 0);
        const QList<int> boxes = AppointmentSearchForm::boxesOfOption(i);
        for (int b = 0; b < boxes.size(); ++b) {
            auto* cell = new QHBoxLayout;
            cell->addWidget(m_txtField[boxes[b]], 1);
            cell->addWidget(m_dtpField[boxes[b]]);
            m_txtField[boxes[b]]->setAccessibleName(
                captions[i] + (b ? QStringLiteral(" end date") : QStringLiteral(" date")));
            grid->addLayout(cell, i + 1, 1 + 2 * b);
        }
        if (boxes.size() == 2) {
            grid->addWidget(new QLabel(QStringLiteral("and"), page), i + 1, 2);
        }
    }
    layout->addStretch(1);
    return page;
}

QWidget* frmSearchAppointments::buildTimesTab() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    const QStringList quarters = AppointmentSearchForm::quarterHours();
    auto row = [&](bool start) {
        QGridLayout* grid = nullptr;
        layout->addWidget(frame(QStringLiteral("Search Appointment Times"), QString(), page, grid));
        QCheckBox* box = m_chkMain[start ? 4 : 5];
        box->setText(start ? QStringLiteral("Search by Appointment Start Time")
                           : QStringLiteral("Search by Appointment End Time"));
        grid->addWidget(box, 1, 0, 1, 4);
        QList<QComboBox*>& times = start ? m_cboStartTime : m_cboEndTime;
        QList<QRadioButton*>& options = start ? m_optStartTime : m_optEndTime;
        for (int i = 0; i < AppointmentSearchForm::BoxCount; ++i) {
            auto* combo = new QComboBox(page);
            combo->setObjectName(indexed(start ? "cboStartTime" : "cboEndTime", i));
            combo->setEditable(true);
            combo->setInsertPolicy(QComboBox::NoInsert);
            combo->addItems(quarters);
            times << combo;
        }
        const QStringList captions = start ? AppointmentSearchForm::startOptionCaptions()
                                           : AppointmentSearchForm::endOptionCaptions();
        for (int i = 0; i < captions.size(); ++i) {
            auto* option = new QRadioButton(captions[i], page);
            option->setObjectName(indexed(start ? "optStartTime" : "optEndTime", i));
            connect(option, &QRadioButton::clicked, this, [this, start] { timeRowsFollow(start); });
            options << option;
            grid->addWidget(option, i + 2, 0);
            const QList<int> boxes = AppointmentSearchForm::boxesOfOption(i);
            for (int b = 0; b < boxes.size(); ++b) {
                times[boxes[b]]->setAccessibleName(
                    captions[i] + (b ? QStringLiteral(" second time") : QStringLiteral(" time")));
                grid->addWidget(times[boxes[b]], i + 2, 1 + 2 * b);
            }
            if (boxes.size() == 2) {
                grid->addWidget(new QLabel(QStringLiteral("and"), page), i + 2, 2);
            }
        }
    };
    row(true);
    row(false);
    layout->addStretch(1);
    return page;
}

bool frmSearchAppointments::Initialize(clsSearchAppointments& search) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-frmSearchAppointments-Initialize");
    if (!app().database || !app().database->isConnected()) {
        if (app().msgbox) {
            app().msgbox->showMessage(
                QStringLiteral("You cannot use the select appointments feature at this time.  "
                               "You need to open the Quillmere Pad from within Quillmere to link "
                               "to the client's data properly."));
        }
        return false;
    }
    m_search = &search;
    m_searchAccepted = false;
    populateCompanyAndPersonalTaxNameInComboBox(listOf(m_combo1[1]), true, true, false, false);
    populateUserList(listOf(m_combo1[0]), true, false, false);
    showForm(AppointmentSearchForm::fromCriteria(search));
    return true;
}

void frmSearchAppointments::showForm(const AppointmentSearchForm& form) {
    m_chkMain[0]->setChecked(form.searchBySubject);
    m_text->setText(form.subject);
    m_chkMain[1]->setChecked(form.searchByClient);
    m_combo1[1]->setCurrentIndex(
        form.clientItem
            ? m_combo1[1]->findData(*form.clientItem, modDatabaseFunctions::ItemDataRole)
            : -1);
    m_chkMain[2]->setChecked(form.searchByUser);
    m_combo1[0]->setCurrentIndex(
        form.userID ? m_combo1[0]->findData(*form.userID, modDatabaseFunctions::ItemDataRole) : -1);
    m_chkMain[3]->setChecked(form.searchByColour);
    setColour(form.colour);
    for (int i = 0; i < AppointmentSearchForm::BoxCount; ++i) {
        m_txtField[i]->setText(form.dates[std::size_t(i)]);
        m_cboStartTime[i]->setEditText(form.startTimes[std::size_t(i)]);
        m_cboEndTime[i]->setEditText(form.endTimes[std::size_t(i)]);
    }
    m_optDate[form.dateOption]->setChecked(true);
    m_optStartTime[form.startOption]->setChecked(true);
    m_optEndTime[form.endOption]->setChecked(true);
    m_chkMain[4]->setChecked(form.searchByStartTime);
    m_chkMain[5]->setChecked(form.searchByEndTime);
    for (int i = 0; i < 6; ++i) {
        chkMain_Click(i);
    }
    optDate_Click(form.dateOption);
}

AppointmentSearchForm frmSearchAppointments::formState() const {
    AppointmentSearchForm form;
    form.searchBySubject = m_chkMain[0]->isChecked();
    form.subject = m_text->text();
    form.searchByClient = m_chkMain[1]->isChecked();
    form.clientItem = chosenData(m_combo1[1]);
    form.searchByUser = m_chkMain[2]->isChecked();
    form.userID = chosenData(m_combo1[0]);
    form.searchByColour = m_chkMain[3]->isChecked();
    form.colour = m_colour;
    auto checkedOf = [](const QList<QRadioButton*>& options, int fallback) {
        for (int i = 0; i < options.size(); ++i) {
            if (options[i]->isChecked()) {
                return i;
            }
        }
        return fallback;
    };
    form.dateOption = checkedOf(m_optDate, 4);
    form.searchByStartTime = m_chkMain[4]->isChecked();
    form.startOption = checkedOf(m_optStartTime, 2);
    form.searchByEndTime = m_chkMain[5]->isChecked();
    form.endOption = checkedOf(m_optEndTime, 2);
    for (int i = 0; i < AppointmentSearchForm::BoxCount; ++i) {
        form.dates[std::size_t(i)] = m_txtField[i]->text();
        form.startTimes[std::size_t(i)] = m_cboStartTime[i]->currentText();
        form.endTimes[std::size_t(i)] = m_cboEndTime[i]->currentText();
    }
    return form;
}

void frmSearchAppointments::chkMain_Click(int index) {
    const bool on = m_chkMain[index]->isChecked();
    switch (index) {
    case 0:
        m_text->setEnabled(on);
        break;
    case 1:
        m_combo1[1]->setEnabled(on);
        break;
    case 2:
        m_combo1[0]->setEnabled(on);
        break;
    case 4:
    case 5: {
        const bool start = index == 4;
        for (QRadioButton* option : start ? m_optStartTime : m_optEndTime) {
            option->setEnabled(on);
        }
        timeRowsFollow(start);
        break;
    }
    default:
        // The colour box is a flag only: the picker stays usable.
        break;
    }
}

void frmSearchAppointments::optDate_Click(int index) {
    const QList<int> boxes = AppointmentSearchForm::boxesOfOption(index);
    for (int i = 0; i < AppointmentSearchForm::BoxCount; ++i) {
        m_txtField[i]->setEnabled(boxes.contains(i));
        m_dtpField[i]->setEnabled(boxes.contains(i));
    }
}

void frmSearchAppointments::timeRowsFollow(bool start) {
    const bool on = m_chkMain[start ? 4 : 5]->isChecked();
    const QList<QRadioButton*>& options = start ? m_optStartTime : m_optEndTime;
    int chosen = 2;
    for (int i = 0; i < options.size(); ++i) {
        if (options[i]->isChecked()) {
            chosen = i;
        }
    }
    const QList<int> boxes = AppointmentSearchForm::boxesOfOption(chosen);
    const QList<QComboBox*>& times = start ? m_cboStartTime : m_cboEndTime;
    for (int i = 0; i < times.size(); ++i) {
        times[i]->setEnabled(on && boxes.contains(i));
    }
}

void frmSearchAppointments::focusFault(const AppointmentSearchForm::Fault& fault) {
    using Control = AppointmentSearchForm::Control;
    QWidget* target = nullptr;
    switch (fault.control) {
    case Control::Subject:
        target = m_text;
        break;
    case Control::Client:
        target = m_combo1[1];
        break;
    case Control::User:
        target = m_combo1[0];
        break;
    case Control::DateBox:
        target = m_txtField[fault.index];
        break;
    case Control::StartTime:
        target = m_cboStartTime[fault.index];
        break;
    case Control::EndTime:
        target = m_cboEndTime[fault.index];
        break;
    }
    // The control's tab comes forward with it.
    for (int tab = 0; tab < m_tabs->count(); ++tab) {
        if (m_tabs->widget(tab)->isAncestorOf(target)) {
            m_tabs->setCurrentIndex(tab);
        }
    }
    target->setFocus();
}

void frmSearchAppointments::cmdSearch_Click() {
    if (!m_search || !app().msgbox) {
        return;
    }
    try {
        if (const auto fault = formState().save(*m_search, *app().msgbox)) {
            focusFault(*fault);
            return;
        }
    } catch (const QmError& fault) {
        app().msgbox->showMessage(fault.description());
        return;
    }
    m_searchAccepted = true;
    accept();
}

bool frmSearchAppointments::showAdvancedSearch(clsSearchAppointments& search, QWidget* parent) {
    frmSearchAppointments dialog(parent);
    if (!dialog.Initialize(search)) {
        return false;
    }
    dialog.exec();
    return dialog.searchAccepted();
}
