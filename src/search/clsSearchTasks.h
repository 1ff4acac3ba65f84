#pragma once

#include <QDate>
#include <QString>

// The criteria of a task merge: which rows of Schedule (or archiveSchedule)
// a task letter goes out for. The criteria become a record-set filter
// (SQLFilter, matched on the rows of generateSQLStr's SELECT and never given
// to the database engine) and a SELECT. The fields are the dialog's to
// write; a new object holds the defaults of resetSearchCriteria.
class clsSearchTasks {
public:
    clsSearchTasks();

    bool searchArchives;
    bool searchByTaskName;
    QString taskName; // what scheduleName must contain
    bool searchByTaskType;
    qint16 taskType; // a task type code (10310, 11105, ...)
    bool searchByClient;
    qint32 companyID;
    // Which date column the date criterion is on; the first set flag wins.
    bool searchDueDate;
    bool searchNotifiedDate;
    bool searchInHouseDueDate;
    QDate firstDate;
    QDate secondDate;
    qint16 dateMatch; // 1 on or after, 2 on or before, 3 on, 4 between
    bool searchInPossession, inPossession;
    bool searchNotified, notified;
    bool searchPrepared, prepared;
    bool searchDelivered, delivered;
    bool searchRecieved, recieved;
    bool searchSignature, signature;
    bool searchCheque, cheque;
    bool searchClosed, closed;
    bool searchByEmployee;
    QString employeeAssigned; // a display name, matched whole
    QString SQLFilter;        // made by generateSQLFilter
    QString SQLSort;          // appended to the SELECT, e.g. "ORDER BY Schedule.DueDate;"

    // The defaults: nothing searched, both dates today, dateMatch 4.
    void resetSearchCriteria();

    // Rebuilds SQLFilter; it always ends in "hideInTasks = False". A task
    // name or employee with an apostrophe would break the filter text (it is
    // not escaped): that throws QmError(DatabaseError) and leaves SQLFilter
    // empty. Reads the database only to resolve the client.
    void generateSQLFilter();

    // The SELECT whose rows SQLFilter is matched on. A SQLSort that
    // sortProblem refuses throws QmError(DatabaseError) instead.
    QString generateSQLStr() const;

    // Rows of the SELECT that pass SQLFilter as it stands (generateSQLFilter
    // must have run); -1 without a database connection. A database without
    // the tables, or a broken filter, throws QmError to the caller.
    int taskFilterCount() const;

    // Why a sort text cannot be appended to the SELECT, or an empty text when
    // it can: blank, or ORDER BY with plain column names (optionally after
    // one of the SELECTs' tables), each optionally ASC or DESC, and an
    // optional ";".
    static QString sortProblem(const QString& sort);

    // Sets fields by name from "field=value;..." (see SearchCriteriaText).
    // Returns an empty text, or the reason the text was refused.
    QString setCriteria(const QString& assignments);
    // Every field in the form setCriteria reads, so that a search made in
    // the window can be run again as a merge's criteria.
    QString criteriaText() const;
};
