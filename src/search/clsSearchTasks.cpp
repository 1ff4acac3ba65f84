#include "search/clsSearchTasks.h"

#include "context/AppContext.h"
#include "data/databaseControl.h"
#include "data/modDatabaseFunctions.h"
#include "platform/errorClass.h"
#include "platform/text/VBFormat.h"
#include "platform/text/stringControl.h"
#include "search/SearchCriteriaText.h"

#include <QRegularExpression>
#include <QStringList>

namespace {

// "Short Date" of the practice's locale, which is month first; the filter
// parser reads it back as m/d/yyyy. No date gives no text, which the
// parser refuses.
QString shortDate(const QDate& date) {
    return date.isValid() ? VBFormat::formatDate(date, QStringLiteral("m/d/yyyy")) : QString();
}

QString truthText(bool value) {
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

QString typeClause(qint16 code) {
    switch (code) {
    case 10310:
        return QStringLiteral("totalNum = 103 AND scheduleNum = 10");
    case 10320:
        return QStringLiteral("totalNum = 103 AND scheduleNum = 20");
    case 10330:
        return QStringLiteral("totalNum = 103 AND scheduleNum = 30");
    default:
        break;
    }
    if (code < 11101) {
        return QStringLiteral("totalNum = ") + QString::number(code);
    }
    // Custom types carry their scheme in the fourth and fifth digits.
    return QStringLiteral("totalNum = 111 AND scheduleNum = ") +
           QString::number(QString::number(code).mid(3, 2).toInt());
}

// Closes a record set however the procedure is left.
class RecordsetGuard {
public:
    RecordsetGuard(databaseControl& db, int handle) : m_db(db), m_handle(handle) {}
    ~RecordsetGuard() { m_db.closeRecordset(m_handle); }
    RecordsetGuard(const RecordsetGuard&) = delete;
    RecordsetGuard& operator=(const RecordsetGuard&) = delete;
    int handle() const { return m_handle; }

private:
    databaseControl& m_db;
    int m_handle;
};

// The tables a sort may name: those of the two SELECTs it is appended to.
bool isSearchTable(const QString& table) {
    static const QStringList tables = {QStringLiteral("ClientData"), QStringLiteral("Companies"),
                                       QStringLiteral("Schedule"),
                                       QStringLiteral("archiveSchedule")};
    return tables.contains(table, Qt::CaseInsensitive);
}

} // namespace

QString clsSearchTasks::sortProblem(const QString& sort) {
    // "ORDER BY col [ASC|DESC], ..." with an optional ";": a name is letters,
    // digits and "_", optionally after its table, so that no other text can
    // ride along into the statement.
    static const QRegularExpression shape(QStringLiteral("^\\s*ORDER\\s+BY\\s+(.+?)\\s*;?\\s*$"),
                                          QRegularExpression::CaseInsensitiveOption |
                                              QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression item(
        QStringLiteral("^\\s*(?:([A-Za-z_]\\w*)\\.)?([A-Za-z_]\\w*)(?:\\s+(?:ASC|DESC))?\\s*$"),
        QRegularExpression::CaseInsensitiveOption);
    if (stringControl::isBlank(sort))
        return {};
    const QString refused =
        QStringLiteral("The task sort \"%1\" is not a sort order: write ORDER BY and column "
                       "names, each optionally followed by ASC or DESC.")
            .arg(sort);
    const auto whole = shape.match(sort);
    if (!whole.hasMatch())
        return refused;
    for (const QString& part : whole.captured(1).split(u',')) {
        const auto m = item.match(part);
        if (!m.hasMatch() || (m.hasCaptured(1) && !isSearchTable(m.captured(1))))
            return refused;
    }
    return {};
}

clsSearchTasks::clsSearchTasks() {
    resetSearchCriteria();
}

void clsSearchTasks::resetSearchCriteria() {
    searchArchives = false;
    searchByTaskName = false;
    taskName.clear();
    searchByTaskType = false;
    taskType = 0;
    searchByClient = false;
    companyID = -1;
    searchDueDate = false;
    searchNotifiedDate = false;
    searchInHouseDueDate = false;
    firstDate = app().clock.today();
    secondDate = app().clock.today();
    dateMatch = 4;
    searchInPossession = inPossession = false;
    searchNotified = notified = false;
    searchPrepared = prepared = false;
    searchDelivered = delivered = false;
    searchRecieved = recieved = false;
    searchSignature = signature = false;
    searchCheque = cheque = false;
    searchClosed = closed = false;
    searchByEmployee = false;
    employeeAssigned.clear();
    SQLFilter.clear();
    SQLSort.clear();
}

void clsSearchTasks::generateSQLFilter() {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-clsSearchTasks-generateSQLFilter");
    SQLFilter.clear();
    const bool byName = searchByTaskName && !stringControl::isBlank(taskName);
    const bool byEmployee = searchByEmployee && !stringControl::isBlank(employeeAssigned);
    if ((byName && taskName.contains(u'\'')) || (byEmployee && employeeAssigned.contains(u'\''))) {
        throw QmError(QmError::DatabaseError,
                      QStringLiteral("The task search cannot use a text with an apostrophe (')."));
    }

    QString filter;
    bool hasClause = false;
    auto add = [&](const QString& clause) {
        if (hasClause) {
            filter += QStringLiteral(" AND ");
        }
        filter += clause;
        hasClause = true;
    };

    if (byName) {
        // The name is a text to contain, not a pattern: its wildcards are
        // matched as typed.
        add(QStringLiteral("scheduleName LIKE '*") + databaseControl::escapeLikeText(taskName) +
            QStringLiteral("*'"));
    }
    if (searchByClient && validCompanyID(QString::number(companyID))) {
        add(QStringLiteral("ClientDataID = ") +
            QString::number(getClientDataIDFromCompanyID(companyID)));
    }
    if (searchByTaskType && taskType >= 1) {
        add(typeClause(taskType));
    }
    if (searchDueDate || searchNotifiedDate || searchInHouseDueDate) {
        const QString column = searchDueDate        ? QStringLiteral("DueDate")
                               : searchNotifiedDate ? QStringLiteral("NotifiedDate")
                                                    : QStringLiteral("inHouseDueDate");
        const QString first = shortDate(firstDate);
        // A dateMatch outside 1 to 4 leaves the join alone, and the filter
        // then fails to parse: kept as the criteria record always behaved.
        switch (dateMatch) {
        case 3:
            add(column + QStringLiteral("=#") + first + u'#');
            break;
        case 1:
            add(column + QStringLiteral(">=#") + first + u'#');
            break;
        case 2:
            add(column + QStringLiteral("<=#") + first + u'#');
            break;
        case 4:
            add(column + QStringLiteral(" >= #") + first + QStringLiteral("# AND ") + column +
                QStringLiteral(" <= #") + shortDate(secondDate) + u'#');
            break;
        default:
            add(QString());
            break;
        }
    }
    const struct {
        bool search;
        bool value;
        const char* column;
    } statuses[] = {
        {searchInPossession, inPossession, "InPossession"},
        {searchNotified, notified, "Notified"},
        {searchPrepared, prepared, "Prepared"},
        {searchDelivered, delivered, "Delivered"},
        {searchRecieved, recieved, "Recieved"},
        {searchSignature, signature, "Signature"},
        {searchCheque, cheque, "Cheque"},
        {searchClosed, closed, "Closed"},
    };
    for (const auto& status : statuses) {
        if (status.search) {
            add(QString::fromLatin1(status.column) + QStringLiteral(" = ") +
                truthText(status.value));
        }
    }
    if (byEmployee) {
        add(QStringLiteral("EmployeeAssigned = '") + employeeAssigned + u'\'');
    }
    add(QStringLiteral("hideInTasks = False"));
    SQLFilter = filter;
}

QString clsSearchTasks::generateSQLStr() const {
    if (const QString problem = sortProblem(SQLSort); !problem.isEmpty())
        throw QmError(QmError::DatabaseError, problem);
    if (searchArchives) {
        if (stringControl::isBlank(SQLSort)) {
            return QStringLiteral("SELECT archiveSchedule.* FROM archiveSchedule;");
        }
        return QStringLiteral("SELECT archiveSchedule.* FROM archiveSchedule ") + SQLSort;
    }
    QString sql = QStringLiteral(
        "SELECT ClientData.ClientDataID, ClientData.ShowThisClient, Companies.CompanyName, "
        "Companies.OfficeNumber, Companies.FaxNumber, Companies.Email, "
        "Companies.DefaultContactName, Companies.DefaultContactPhoneNumber, "
        "Companies.DefaultContactFaxNumber, Companies.DefaultContactEmail, Schedule.* "
        "FROM (ClientData INNER JOIN Companies ON ClientData.CompanyIDNum = Companies.CompanyID) "
        "INNER JOIN Schedule ON ClientData.ClientDataID = Schedule.ClientNum ");
    if (stringControl::isBlank(SQLSort)) {
        sql += QStringLiteral("WHERE ClientData.ShowThisClient = True;");
    } else {
        sql += QStringLiteral("WHERE ClientData.ShowThisClient = True ") + SQLSort;
    }
    return sql;
}

int clsSearchTasks::taskFilterCount() const {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-clsSearchTasks-taskFilterCount");
    databaseControl* db = app().database;
    if (!db || !db->isConnected()) {
        return -1;
    }
    const RecordsetGuard all(*db, db->openRecordset(generateSQLStr(), databaseControl::KeysetCursor,
                                                    databaseControl::ReadOnlyLock));
    const RecordsetGuard filtered(*db, db->filterRecordset(all.handle(), SQLFilter));
    return db->recordCount(filtered.handle());
}

namespace {

// The criteria by their field names, in the order of the fields.
std::vector<SearchCriteriaText::Binding> bindingsOf(clsSearchTasks& search) {
    using SearchCriteriaText::Binding;
    auto& s = search;
    return {
        {"searchArchives", &s.searchArchives},
        {"searchByTaskName", &s.searchByTaskName},
        {"taskName", &s.taskName},
        {"searchByTaskType", &s.searchByTaskType},
        {"taskType", &s.taskType},
        {"searchByClient", &s.searchByClient},
        {"companyID", &s.companyID},
        {"searchDueDate", &s.searchDueDate},
        {"searchNotifiedDate", &s.searchNotifiedDate},
        {"searchInHouseDueDate", &s.searchInHouseDueDate},
        {"firstDate", &s.firstDate},
        {"secondDate", &s.secondDate},
        {"dateMatch", &s.dateMatch},
        {"searchInPossession", &s.searchInPossession},
        {"inPossession", &s.inPossession},
        {"searchNotified", &s.searchNotified},
        {"notified", &s.notified},
        {"searchPrepared", &s.searchPrepared},
        {"prepared", &s.prepared},
        {"searchDelivered", &s.searchDelivered},
        {"delivered", &s.delivered},
        {"searchRecieved", &s.searchRecieved},
        {"recieved", &s.recieved},
        {"searchSignature", &s.searchSignature},
        {"signature", &s.signature},
        {"searchCheque", &s.searchCheque},
        {"cheque", &s.cheque},
        {"searchClosed", &s.searchClosed},
        {"closed", &s.closed},
        {"searchByEmployee", &s.searchByEmployee},
        {"employeeAssigned", &s.employeeAssigned},
        {"SQLSort", &s.SQLSort},
    };
}

} // namespace

QString clsSearchTasks::setCriteria(const QString& assignments) {
    using SearchCriteriaText::Binding;
    const std::vector<Binding> bindings = bindingsOf(*this);
    const QString sort = SQLSort;
    QString error = SearchCriteriaText::apply(assignments, bindings);
    if (error.isEmpty()) {
        error = sortProblem(SQLSort);
        if (!error.isEmpty())
            SQLSort = sort;
    }
    return error;
}

QString clsSearchTasks::criteriaText() const {
    // The bindings only read here.
    return SearchCriteriaText::write(bindingsOf(const_cast<clsSearchTasks&>(*this)));
}
