#include "search/clsSearchAppointments.h"

#include "context/AppContext.h"
#include "data/databaseControl.h"
#include "data/modDatabaseFunctions.h"
#include "platform/errorClass.h"
#include "platform/text/VBFormat.h"
#include "platform/text/stringControl.h"
#include "search/SearchCriteriaText.h"

namespace {

// Format of a time text: a text that is no time of day comes back as it
// stands, as the old runtime's Format did. Only for the display text.
QString formatTime(const QString& text, const QString& format) {
    const auto moment = VBFormat::toDateTime(text);
    return moment ? VBFormat::formatDate(*moment, format) : text;
}

// A time criterion as it goes between # marks. The text is parsed first and
// the clause is built from the parsed value, so nothing the user typed
// reaches the statement; a text that is no time of day is refused.
QString sqlTime(const QString& text, const char* which) {
    const auto moment = VBFormat::toDateTime(text);
    if (!moment || !moment->isValid()) {
        throw QmError(QmError::DatabaseError,
                      QStringLiteral("The %1 \"%2\" is not a time of day (for example 9:15 AM).")
                          .arg(QLatin1String(which), text));
    }
    return VBFormat::formatDate(*moment, QStringLiteral("h:mm:ss ampm"));
}

QString longDate(const QDate& date) {
    return VBFormat::formatDate(date, QStringLiteral("mmmm d, yyyy"));
}

// The four comparisons of a date or time criterion.
QString rangeClause(const QString& column, qint16 match, const QString& first,
                    const QString& second) {
    switch (match) {
    case 3:
        return column + QStringLiteral(" = #") + first + u'#';
    case 1:
        return column + QStringLiteral(" >= #") + first + u'#';
    case 2:
        return column + QStringLiteral(" <= #") + first + u'#';
    case 4:
        return column + QStringLiteral(" >= #") + first + QStringLiteral("# AND ") + column +
               QStringLiteral(" <= #") + second + u'#';
    default:
        return {};
    }
}

} // namespace

clsSearchAppointments::clsSearchAppointments() {
    resetSearchCriteria();
}

void clsSearchAppointments::resetSearchCriteria() {
    const QDate today = app().clock.today();
    searchBySubject = false;
    subjectText.clear();
    searchByCompany = false;
    companyID = -1;
    searchByUser = false;
    userID = -1;
    searchByColour = false;
    backColour = -1;
    firstDate = QDate(today.year(), today.month(), 1);
    secondDate = today;
    dateMatch = 5;
    searchByStartTime = false;
    firstStartTime.clear();
    secondStartTime.clear();
    startTimeMatch = 4;
    searchByEndTime = false;
    firstEndTime.clear();
    secondEndTime.clear();
    endTimeMatch = 4;
    SQLFilter.clear();
    displayString.clear();
}

void clsSearchAppointments::generateSQLFilter() {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-clsSearchAppointments-generateSQLFilter");
    QString filter;
    auto add = [&filter](const QString& clause) {
        if (clause.isEmpty()) {
            return;
        }
        if (!filter.isEmpty()) {
            filter += QStringLiteral(" AND ");
        }
        filter += clause;
    };

    if (searchBySubject && !stringControl::isBlank(subjectText)) {
        databaseControl::escapeSQLText(subjectText);
        // The text is what Subject must contain: a % or * typed in it is a
        // character to find, not a wildcard.
        add(QStringLiteral("Subject LIKE '%") + databaseControl::escapeLikeText(subjectText) +
            QStringLiteral("%'"));
    }
    if (searchByCompany && validCompanyID(QString::number(companyID))) {
        add(QStringLiteral("CompanyIDNum = ") + QString::number(companyID));
    }
    if (searchByContact && validContactID(QString::number(contactID))) {
        add(QStringLiteral("ContactIDNum = ") + QString::number(contactID));
    }
    if (searchByUser && validEmployeeID(QString::number(userID))) {
        add(QStringLiteral("UserIDNum = ") + QString::number(userID));
    }
    if (searchByColour && backColour >= 0) {
        add(QStringLiteral("BackColour = ") + QString::number(backColour));
    }
    if (dateMatch != 5) {
        add(rangeClause(QStringLiteral("DateFrom"), dateMatch,
                        databaseControl::formatDateForSQL(firstDate),
                        databaseControl::formatDateForSQL(secondDate)));
    }
    // Only the times the comparison reads are parsed: "starting at" leaves
    // the second one unread.
    auto timeRange = [&add](const char* column, qint16 match, const QString& first,
                            const QString& second, const char* firstName, const char* secondName) {
        const QString from = match >= 1 && match <= 4 ? sqlTime(first, firstName) : QString();
        const QString to = match == 4 ? sqlTime(second, secondName) : QString();
        add(rangeClause(QLatin1String(column), match, from, to));
    };
    if (searchByStartTime) {
        timeRange("TimeFrom", startTimeMatch, firstStartTime, secondStartTime, "first start time",
                  "second start time");
    }
    if (searchByEndTime) {
        timeRange("TimeTo", endTimeMatch, firstEndTime, secondEndTime, "first end time",
                  "second end time");
    }
    SQLFilter = filter;
}

QString clsSearchAppointments::generateSQLStr() {
    generateSQLFilter();
    if (stringControl::isBlank(SQLFilter)) {
        return QStringLiteral("SELECT Appointments.* FROM Appointments ORDER BY "
                              "Appointments.DateFrom, Appointments.TimeFrom;");
    }
    return QStringLiteral("SELECT Appointments.* FROM Appointments WHERE ") + SQLFilter +
           QStringLiteral(" ORDER BY Appointments.DateFrom, Appointments.TimeFrom;");
}

void clsSearchAppointments::generateDisplayStr() {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-clsSearchAppointments-generateDisplayStr");
    const QString timeFormat = QStringLiteral("h:mm ampm");
    QString text = QStringLiteral("All appointments");
    if (searchByUser && validEmployeeID(QString::number(userID))) {
        text += QStringLiteral(" for ") + getUserNameFromUserID(userID);
    }
    switch (dateMatch) {
    case 3:
        text += QStringLiteral(" scheduled on ") + longDate(firstDate);
        break;
    case 1:
        text += QStringLiteral(" scheduled on or after ") + longDate(firstDate);
        break;
    case 2:
        text += QStringLiteral(" scheduled on or before ") + longDate(firstDate);
        break;
    case 4:
        text += QStringLiteral(" scheduled between ") + longDate(firstDate) +
                QStringLiteral(" and ") + longDate(secondDate);
        break;
    default:
        break;
    }
    if (searchBySubject && !stringControl::isBlank(subjectText)) {
        text +=
            QStringLiteral(" with the text '") + subjectText + QStringLiteral("' in the subject");
    }
    if (searchByCompany && validCompanyID(QString::number(companyID))) {
        text += QStringLiteral(" that are assigned to ") + getCompanyNameFromCompanyID(companyID);
    }
    if (searchByColour && backColour >= 0) {
        text += QStringLiteral(" and having the same color.");
    }
    bool startSentence = false;
    if (searchByStartTime) {
        const QString first = formatTime(firstStartTime, timeFormat);
        const QString lead = QStringLiteral("  Show only appointments with a start time starting ");
        switch (startTimeMatch) {
        case 3:
            text += lead + QStringLiteral("at ") + first;
            startSentence = true;
            break;
        case 1:
            text += lead + QStringLiteral("on or after ") + first;
            startSentence = true;
            break;
        case 2:
            text += lead + QStringLiteral("on or before ") + first;
            startSentence = true;
            break;
        case 4:
            text += lead + QStringLiteral("between ") + first + QStringLiteral(" and ") +
                    formatTime(secondStartTime, timeFormat);
            startSentence = true;
            break;
        default:
            break;
        }
    }
    if (searchByEndTime) {
        text +=
            startSentence ? QStringLiteral(" and ") : QStringLiteral("  Show only appointments ");
        const QString first = formatTime(firstEndTime, timeFormat);
        switch (endTimeMatch) {
        case 3:
            text += QStringLiteral("with an end time starting at ") + first;
            break;
        case 1:
            text += QStringLiteral("with an end time starting on or atfer ") + first;
            break;
        case 2:
            text += QStringLiteral("with an end time starting on or before ") + first;
            break;
        case 4:
            text += QStringLiteral("with an end time starting between ") + first +
                    QStringLiteral(" and ") + formatTime(secondEndTime, timeFormat);
            break;
        default:
            break;
        }
    }
    displayString = text;
}

int clsSearchAppointments::appointmentFilterCount() {
    ProcedureScope scope(app().errors,
                         "QuillmerePad.exe-clsSearchAppointments-appointmentFilterCount");
    databaseControl* db = app().database;
    if (!db || !db->isConnected()) {
        return -1;
    }
    const int rs = db->openRecordset(generateSQLStr(), databaseControl::KeysetCursor,
                                     databaseControl::ReadOnlyLock);
    const int count = db->recordCount(rs);
    db->closeRecordset(rs);
    return count;
}

namespace {

// The criteria by their field names, in the order of the fields.
std::vector<SearchCriteriaText::Binding> bindingsOf(clsSearchAppointments& search) {
    using SearchCriteriaText::Binding;
    auto& s = search;
    return {
        {"searchBySubject", &s.searchBySubject},
        {"subjectText", &s.subjectText},
        {"searchByCompany", &s.searchByCompany},
        {"companyID", &s.companyID},
        {"searchByContact", &s.searchByContact},
        {"contactID", &s.contactID},
        {"searchByUser", &s.searchByUser},
        {"userID", &s.userID},
        {"searchByColour", &s.searchByColour},
        {"backColour", &s.backColour},
        {"firstDate", &s.firstDate},
        {"secondDate", &s.secondDate},
        {"dateMatch", &s.dateMatch},
        {"searchByStartTime", &s.searchByStartTime},
        {"firstStartTime", &s.firstStartTime},
        {"secondStartTime", &s.secondStartTime},
        {"startTimeMatch", &s.startTimeMatch},
        {"searchByEndTime", &s.searchByEndTime},
        {"firstEndTime", &s.firstEndTime},
        {"secondEndTime", &s.secondEndTime},
        {"endTimeMatch", &s.endTimeMatch},
    };
}

} // namespace

QString clsSearchAppointments::setCriteria(const QString& assignments) {
    using SearchCriteriaText::Binding;
    const std::vector<Binding> bindings = bindingsOf(*this);
    return SearchCriteriaText::apply(assignments, bindings);
}

QString clsSearchAppointments::criteriaText() const {
    // The bindings only read here.
    return SearchCriteriaText::write(bindingsOf(const_cast<clsSearchAppointments&>(*this)));
}
