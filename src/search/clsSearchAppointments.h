#pragma once

#include <QDate>
#include <QString>

// The criteria of an appointment merge. Unlike the task search, the filter
// is the body of a WHERE clause inside the SELECT (text matched with %,
// dates and times between # marks); its text values travel as bound
// parameters, never as statement text. displayString tells in plain English
// what was searched for.
class clsSearchAppointments {
public:
    clsSearchAppointments();

    bool searchBySubject;
    QString subjectText; // what Subject must contain; escaped in place by generateSQLFilter
    bool searchByCompany;
    qint32 companyID;
    // Not touched by resetSearchCriteria.
    bool searchByContact = false;
    qint32 contactID = -1;
    bool searchByUser;
    qint32 userID;
    bool searchByColour;
    qint32 backColour; // 0 (black) is a colour; below 0 is none
    QDate firstDate;
    QDate secondDate;
    qint16 dateMatch; // 1 on or after, 2 on or before, 3 on, 4 between, 5 all dates
    bool searchByStartTime;
    QString firstStartTime; // a time of day as text ("9:15 AM")
    QString secondStartTime;
    qint16 startTimeMatch; // as dateMatch, without 5
    bool searchByEndTime;
    QString firstEndTime;
    QString secondEndTime;
    qint16 endTimeMatch;
    QString SQLFilter;     // the WHERE body, possibly empty
    QString displayString; // made by generateDisplayStr

    // The defaults: nothing searched, all dates, the first day of this month
    // to today.
    void resetSearchCriteria();

    // Rebuilds SQLFilter from the criteria; leaves displayString alone. The
    // subject text is escaped in place, so a second run escapes it again.
    // Company, contact and user IDs that do not exist drop their clause.
    void generateSQLFilter();

    // Runs generateSQLFilter and returns the SELECT, ordered by date and
    // start time.
    QString generateSQLStr();

    // Rebuilds displayString from the criteria.
    void generateDisplayStr();

    // Rows of generateSQLStr(); -1 without a database connection. A time
    // text that is no time, a date out of range or a database without the
    // table throws QmError to the caller.
    int appointmentFilterCount();

    // Sets fields by name from "field=value;..." (see SearchCriteriaText).
    // Returns an empty text, or the reason the text was refused.
    QString setCriteria(const QString& assignments);
    // Every field in the form setCriteria reads, so that a search made in
    // the window can be run again as a merge's criteria.
    QString criteriaText() const;
};
