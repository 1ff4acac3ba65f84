#pragma once

#include <QString>
#include <QStringList>
#include <array>
#include <optional>

class clsSearchAppointments;
class MsgboxClass;

// What the appointment search dialog shows, one value per control, and the
// rules that carry it to and from the criteria of a clsSearchAppointments.
struct AppointmentSearchForm {
    // Boxes of a date or time row: 0 "on or after", 1 "on or before", 2 and
    // 3 "between", 4 "on" (or "at").
    static constexpr int BoxCount = 5;

    bool searchBySubject = false; // chkMain(0)
    QString subject;              // txtAppointmentText
    bool searchByClient = false;  // chkMain(1)
    // Item data of the entry chosen in Combo1(1): a CompanyID, or the
    // negative ContactID of a personal-tax client; none when nothing is chosen.
    std::optional<int> clientItem;
    bool searchByUser = false;   // chkMain(2)
    std::optional<int> userID;   // item data of Combo1(0)
    bool searchByColour = false; // chkMain(3)
    qint32 colour = -1;          // apptBackColour, 0x00BBGGRR
    int dateOption = 4;          // optDate index; 4 is "all dates"
    std::array<QString, BoxCount> dates;
    bool searchByStartTime = false; // chkMain(4)
    int startOption = 2;            // optStartTime index
    std::array<QString, BoxCount> startTimes;
    bool searchByEndTime = false; // chkMain(5)
    int endOption = 2;            // optEndTime index
    std::array<QString, BoxCount> endTimes;

    // "12:00 AM", "12:15 AM" ... "11:45 PM": the entries of the time boxes.
    static QStringList quarterHours();
    static QStringList dateOptionCaptions();
    static QStringList startOptionCaptions();
    static QStringList endOptionCaptions();

    // optDate index to dateMatch and back: 0 on or after (1), 1 on or before
    // (2), 2 between (4), 3 on (3), 4 all dates (5).
    static int dateMatchForOption(int option);
    static int optionForDateMatch(int dateMatch);
    // The same for the time rows, which have no "all".
    static int timeMatchForOption(int option);
    static int optionForTimeMatch(int timeMatch);
    // The boxes an option reads; none for "all dates".
    static QList<int> boxesOfOption(int option);

    enum class Control { Subject, Client, User, DateBox, StartTime, EndTime };
    struct Fault {
        QString message;
        Control control;
        int index = 0; // the box, for the date and time rows
    };

    // The criteria of a search as the dialog first shows them: dates in the
    // long form, times as "h:nn AM/PM".
    static AppointmentSearchForm fromCriteria(const clsSearchAppointments& search);

    // Checks the rows in the dialog's order, shows the first fault through
    // `msgbox` and returns it, leaving the search as it was. Otherwise writes
    // every criterion, rebuilds the filter and counts the matches; only a
    // search that finds nothing is told (and is still accepted). A client
    // item is checked against the database: a company must exist, as must
    // the contact of a negative item. Faults of the database pass as QmError.
    std::optional<Fault> save(clsSearchAppointments& search, MsgboxClass& msgbox) const;
};

// A typed time as the time boxes keep it ("9:15 AM"); an empty text stays
// empty, text that is no time gives nothing.
std::optional<QString> normalizedTimeText(const QString& text);
