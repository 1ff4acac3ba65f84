#include "search/TaskSearchForm.h"

#include "context/AppContext.h"
#include "data/databaseControl.h"
#include "platform/MsgboxClass.h"
#include "platform/errorClass.h"
#include "platform/text/VBFormat.h"
#include "search/clsSearchTasks.h"

#include <QSet>
#include <QStandardItemModel>

namespace {

const QString kLongDate = QStringLiteral("mmmm d, yyyy");

// The status pairs of the search, in the order of the rows.
std::array<std::pair<bool*, bool*>, TaskSearchForm::StatusCount> statusFields(clsSearchTasks& s) {
    return {{{&s.searchInPossession, &s.inPossession},
             {&s.searchNotified, &s.notified},
             {&s.searchPrepared, &s.prepared},
             {&s.searchDelivered, &s.delivered},
             {&s.searchRecieved, &s.recieved},
             {&s.searchSignature, &s.signature},
             {&s.searchCheque, &s.cheque}}};
}

std::optional<QDate> dateOf(const QString& text) {
    const auto moment = VBFormat::toDateTime(text);
    if (!moment) {
        return std::nullopt;
    }
    return moment->date();
}

} // namespace

std::optional<QString> normalizedDateText(const QString& text) {
    if (text.trimmed().isEmpty()) {
        return QString();
    }
    const auto date = dateOf(text);
    if (!date) {
        return std::nullopt;
    }
    return VBFormat::formatDate(*date, kLongDate);
}

QStringList TaskSearchForm::dateColumns() {
    return {QStringLiteral("Due Dates"), QStringLiteral("Notified Dates"),
            QStringLiteral("In-House Due Dates")};
}

QStringList TaskSearchForm::statusCaptions() {
    return {QStringLiteral("Search for In Possession"), QStringLiteral("Search for Notified"),
            QStringLiteral("Search for Prepared"),      QStringLiteral("Search for Delivered"),
            QStringLiteral("Search for Received"),      QStringLiteral("Search for Signature"),
            QStringLiteral("Search for Cheque")};
}

QStringList TaskSearchForm::optionCaptions() {
    return {QStringLiteral("Find all tasks on or after:"),
            QStringLiteral("Find all tasks on or before:"),
            QStringLiteral("Find all tasks between:"), QStringLiteral("Find all tasks on:")};
}

int TaskSearchForm::dateMatchForOption(int option) {
    switch (option) {
    case 0:
        return 1;
    case 1:
        return 2;
    case 3:
        return 3;
    default:
        return 4;
    }
}

int TaskSearchForm::optionForDateMatch(int dateMatch) {
    switch (dateMatch) {
    case 1:
        return 0;
    case 2:
        return 1;
    case 3:
        return 3;
    default:
        return 2;
    }
}

QList<int> TaskSearchForm::dateBoxesOfOption(int option) {
    switch (option) {
    case 0:
        return {0};
    case 1:
        return {1};
    case 3:
        return {4};
    default:
        return {2, 3};
    }
}

QString TaskSearchForm::initialCaption(bool archives) {
    return archives ? QStringLiteral("Advanced Archive Search")
                    : QStringLiteral("Select the Tasks you would like to merge into this document");
}

QString TaskSearchForm::archiveCaption(bool archives) {
    return archives ? QStringLiteral("Advanced Archive Search") : QStringLiteral("Advanced Search");
}

TaskSearchForm TaskSearchForm::fromCriteria(const clsSearchTasks& search) {
    TaskSearchForm form;
    form.searchByName = search.searchByTaskName;
    form.taskName = search.taskName;
    form.searchByType = search.searchByTaskType;
    if (search.taskType != 0) {
        form.taskType = search.taskType;
    }
    form.searchByEmployee = search.searchByEmployee;
    form.employee = search.employeeAssigned;
    form.searchArchives = search.searchArchives;
    form.searchByClosed = search.searchClosed;
    form.onlyClosed = search.closed;
    form.searchByClient = search.searchByClient;
    if (search.companyID > 0) {
        form.companyID = search.companyID;
    }
    form.dateColumn = search.searchDueDate          ? 0
                      : search.searchNotifiedDate   ? 1
                      : search.searchInHouseDueDate ? 2
                                                    : -1;
    form.dateOption = optionForDateMatch(search.dateMatch);
    // Every box of a first date shows the first date, so that switching the
    // option keeps what the user saw.
    const QString first =
        search.firstDate.isValid() ? VBFormat::formatDate(search.firstDate, kLongDate) : QString();
    const QString second = search.secondDate.isValid()
                               ? VBFormat::formatDate(search.secondDate, kLongDate)
                               : QString();
    form.dates = {first, first, first, second, first};
    auto& copy = const_cast<clsSearchTasks&>(search); // the pairs are only read
    const auto pairs = statusFields(copy);
    for (int i = 0; i < StatusCount; ++i) {
        form.status[std::size_t(i)] = *pairs[std::size_t(i)].first;
        form.statusValue[std::size_t(i)] = *pairs[std::size_t(i)].second;
    }
    return form;
}

std::optional<TaskSearchForm::Fault> TaskSearchForm::save(clsSearchTasks& search,
                                                          MsgboxClass& msgbox) const {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-frmSearchTasks-saveSettings");
    // Written into a copy first, so that a refused entry changes nothing.
    clsSearchTasks out = search;
    auto fail = [&](const QString& message, Control control,
                    int index = 0) -> std::optional<Fault> {
        msgbox.showMessage(message);
        return Fault{message, control, index};
    };
    if (searchByName && taskName.trimmed().isEmpty()) {
        return fail(QStringLiteral("You must enter valid search text for the task name."),
                    Control::TaskName);
    }
    out.searchByTaskName = searchByName;
    out.taskName = taskName;
    if (searchByClient && !companyID) {
        return fail(QStringLiteral("You must select a valid client from the drop down list."),
                    Control::Client);
    }
    out.searchByClient = searchByClient;
    if (searchByClient) {
        out.companyID = *companyID;
    }
    if (searchByType && !taskType) {
        return fail(QStringLiteral("You must select a valid task type."), Control::TaskType);
    }
    out.searchByTaskType = searchByType;
    if (searchByType) {
        out.taskType = qint16(*taskType);
    }
    if (searchByEmployee && employee.trimmed().isEmpty()) {
        return fail(QStringLiteral("You must select a valid employee name."), Control::Employee);
    }
    out.searchByEmployee = searchByEmployee;
    out.employeeAssigned = employee;
    out.searchDueDate = dateColumn == 0;
    out.searchNotifiedDate = dateColumn == 1;
    out.searchInHouseDueDate = dateColumn == 2;
    const QList<int> boxes = dateBoxesOfOption(dateOption);
    std::array<QDate, 2> picked;
    for (int i = 0; i < boxes.size(); ++i) {
        const auto date = dateOf(dates[std::size_t(boxes[i])]);
        if (!date) {
            return fail(QStringLiteral("You must select a valid date."), Control::DateBox,
                        boxes[i]);
        }
        picked[std::size_t(i)] = *date;
    }
    out.dateMatch = qint16(dateMatchForOption(dateOption));
    out.firstDate = picked[0];
    if (boxes.size() > 1) {
        out.secondDate = picked[1];
    }
    const auto pairs = statusFields(out);
    for (int i = 0; i < StatusCount; ++i) {
        *pairs[std::size_t(i)].first = status[std::size_t(i)];
        *pairs[std::size_t(i)].second = statusValue[std::size_t(i)];
    }
    out.searchClosed = searchByClosed;
    out.closed = onlyClosed;
    out.searchArchives = searchArchives;

    out.generateSQLFilter();
    const int count = out.taskFilterCount();
    search = out;
    if (count > 0) {
        msgbox.showMessage(QStringLiteral("The tasks have been selected."));
    } else {
        msgbox.showMessage(
            QStringLiteral("There are no tasks that match the criteria you have chosen."));
    }
    return std::nullopt;
}

void TaskSearchForm::populateEmployeeAssigned(QStandardItemModel& list) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-frmSearchTasks-populateEmployeeAssigned");
    list.clear();
    QStandardItemModel names;
    databaseControl* db = app().database;
    if (db && db->isConnected()) {
        const std::pair<const char*, const char*> sources[] = {
            {"SELECT DISTINCT AccountantEmployeeInfo.DisplayName FROM AccountantEmployeeInfo "
             "ORDER BY AccountantEmployeeInfo.DisplayName;",
             "DisplayName"},
            {"SELECT DISTINCT Schedule.EmployeeAssigned FROM Schedule ORDER BY "
             "Schedule.EmployeeAssigned;",
             "EmployeeAssigned"},
        };
        for (const auto& [sql, column] : sources) {
            const int rs = db->openRecordset(QString::fromLatin1(sql));
            try {
                db->fillList(rs, names, QString::fromLatin1(column));
            } catch (...) {
                db->closeRecordset(rs);
                throw;
            }
            db->closeRecordset(rs);
        }
    }
    QStringList entries = {QStringLiteral("None Assigned")};
    QSet<QString> seen(entries.begin(), entries.end());
    for (int row = 0; row < names.rowCount(); ++row) {
        const QString name = names.item(row)->text();
        if (!name.trimmed().isEmpty() && !seen.contains(name)) {
            seen.insert(name);
            entries << name;
        }
    }
    // The list is sorted as the combo box sorts its entries.
    std::sort(entries.begin(), entries.end(), [](const QString& a, const QString& b) {
        return a.compare(b, Qt::CaseInsensitive) < 0;
    });
    for (const QString& name : entries) {
        list.appendRow(new QStandardItem(name));
    }
}
