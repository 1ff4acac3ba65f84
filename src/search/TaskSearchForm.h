#pragma once

#include <QString>
#include <QStringList>
#include <array>
#include <optional>

class QStandardItemModel;
class clsSearchTasks;
class MsgboxClass;

// What the task search dialog shows, one value per control, and the rules
// that carry it to and from the criteria of a clsSearchTasks. The dialog
// only copies these values into its widgets and back.
struct TaskSearchForm {
    // The seven status rows, in the order of chkStatus and Combo3.
    static constexpr int StatusCount = 7;
    // The date boxes txtField(0..4): 0 for "on or after", 1 for "on or
    // before", 2 and 3 for "between", 4 for "on".
    static constexpr int DateBoxCount = 5;

    bool searchByName = false; // chkMain(0)
    QString taskName;          // Text1
    bool searchByType = false; // chkMain(1)
    // Item data of the entry chosen in Combo1(0); none when nothing is chosen.
    std::optional<int> taskType;
    bool searchByEmployee = false; // chkMain(2)
    QString employee;              // text of Combo1(1)
    bool searchArchives = false;   // chkMain(3)
    bool searchByClosed = false;   // chkMain(4)
    bool onlyClosed = true;        // optClosed(0); optClosed(1) otherwise
    bool searchByClient = false;   // chkMain(5)
    // Item data (CompanyID) of the entry chosen in Combo1(2).
    std::optional<int> companyID;
    // Combo2: 0 "Due Dates", 1 "Notified Dates", 2 "In-House Due Dates",
    // -1 none chosen (no date criterion).
    int dateColumn = -1;
    int dateOption = 2; // Option1 index
    std::array<QString, DateBoxCount> dates;
    std::array<bool, StatusCount> status{};      // chkStatus
    std::array<bool, StatusCount> statusValue{}; // Combo3: "True" or "False"

    // The entries of Combo2 and the captions of the status rows.
    static QStringList dateColumns();
    static QStringList statusCaptions();
    static QStringList optionCaptions();

    // Option1 index to dateMatch and back (an unknown dateMatch shows as
    // "between").
    static int dateMatchForOption(int option);
    static int optionForDateMatch(int dateMatch);
    // The date boxes the option reads: {first} or {first, second}.
    static QList<int> dateBoxesOfOption(int option);

    // The window caption: the dialog's own, or the archive search's when
    // archives are searched; a click on chkMain(3) gives the plain
    // "Advanced Search" for an unticked box.
    static QString initialCaption(bool archives);
    static QString archiveCaption(bool archives);

    // The controls a failure puts the focus on.
    enum class Control { TaskName, Client, TaskType, Employee, DateBox };
    struct Fault {
        QString message;
        Control control;
        int index = 0; // the date box, for DateBox
    };

    // The criteria of a search as the dialog first shows them.
    static TaskSearchForm fromCriteria(const clsSearchTasks& search);

    // Checks the rows in the dialog's order and shows the first fault
    // through `msgbox`, returning it so that the dialog can put the focus
    // there; the search is then left as it was. Otherwise writes every
    // criterion, rebuilds the filter, counts its rows and tells the user
    // whether any were found (a search without matches is still accepted).
    // Faults of the database (a filter that cannot be run) pass as QmError.
    std::optional<Fault> save(clsSearchTasks& search, MsgboxClass& msgbox) const;

    // The employee list: "None Assigned", the firm's staff and every name
    // that stands on a task (people who left the firm included), each name
    // once, sorted. Without a connection only "None Assigned".
    static void populateEmployeeAssigned(QStandardItemModel& list);
};

// The rewrite of a typed date by the date boxes: the date in the long form
// ("March 5, 2024"), an empty text for an empty box, nothing for text that
// is no date.
std::optional<QString> normalizedDateText(const QString& text);
