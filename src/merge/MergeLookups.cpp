#include "merge/MergeLookups.h"

#include "app/AppContext.h"
#include "data/databaseControl.h"
#include "platform/stringControl.h"

namespace {

databaseControl* connected() {
    databaseControl* db = app().database;
    return db && db->isConnected() ? db : nullptr;
}

QVariant firstValue(const QString& sql, const QString& column) {
    databaseControl* db = connected();
    if (!db) {
        return {};
    }
    const int rs = db->openRecordset(sql);
    QVariant value;
    if (db->hasRecords(rs)) {
        value = db->getField(rs, column);
    }
    db->closeRecordset(rs);
    return value;
}

bool exists(const QString& sqlHead, int id) {
    databaseControl* db = connected();
    if (!db) {
        return false;
    }
    const int rs = db->openRecordset(sqlHead + QString::number(id) + QLatin1Char(';'));
    const bool found = db->hasRecords(rs);
    db->closeRecordset(rs);
    return found;
}

int idValue(const QVariant& value) {
    if (stringControl::isBlank(value)) {
        return -1;
    }
    bool ok = false;
    const int id = value.toInt(&ok);
    return ok ? id : -1;
}

QString textValue(const QVariant& value) {
    return stringControl::isBlank(value) ? QString() : value.toString();
}

} // namespace

namespace MergeLookups {

bool validCompanyID(int id) {
    return exists(QStringLiteral("SELECT Companies.CompanyID FROM Companies WHERE CompanyID = "),
                  id);
}
bool validContactID(int id) {
    return exists(QStringLiteral("SELECT Contacts.ContactID FROM Contacts WHERE ContactID = "), id);
}
bool validAppointmentID(int id) {
    return exists(QStringLiteral("SELECT Appointments.AppointmentID FROM Appointments WHERE "
                                 "AppointmentID = "),
                  id);
}
bool validTaskID(int id) {
    return exists(QStringLiteral("SELECT Tasks.TaskID FROM Tasks WHERE TaskID = "), id);
}
bool validDocketID(int id) {
    return exists(QStringLiteral("SELECT Dockets.DocketID FROM Dockets WHERE DocketID = "), id);
}
bool validScheduleID(int id) {
    return exists(QStringLiteral("SELECT Schedule.ScheduleID FROM Schedule WHERE ScheduleID = "),
                  id);
}
bool validClientID(int id) {
    return exists(
        QStringLiteral("SELECT ClientData.ClientDataID FROM ClientData WHERE ClientDataID = "), id);
}

QString getCompanyNameFromCompanyID(int id) {
    return textValue(firstValue(QStringLiteral("SELECT Companies.CompanyID, Companies.CompanyName "
                                               "FROM Companies WHERE CompanyID=") +
                                    QString::number(id) + QLatin1Char(';'),
                                QStringLiteral("CompanyName")));
}
QString getDisplayNameFromContactID(int id) {
    return textValue(firstValue(QStringLiteral("SELECT Contacts.ContactID, Contacts.DisplayName "
                                               "FROM Contacts WHERE ContactID=") +
                                    QString::number(id) + QLatin1Char(';'),
                                QStringLiteral("DisplayName")));
}
QString getScheduleNameFromScheduleID(int id) {
    return textValue(firstValue(QStringLiteral("SELECT Schedule.ScheduleID, Schedule.scheduleName "
                                               "FROM Schedule WHERE ScheduleID=") +
                                    QString::number(id) + QLatin1Char(';'),
                                QStringLiteral("scheduleName")));
}
QString getAppointmentSubjectFromAppointmentID(int id) {
    return textValue(firstValue(
        QStringLiteral("SELECT Appointments.AppointmentID, Appointments.Subject FROM Appointments "
                       "WHERE AppointmentID=") +
            QString::number(id) + QLatin1Char(';'),
        QStringLiteral("Subject")));
}
QString getCompanyNameFromClientDataID(int id) {
    return getCompanyNameFromCompanyID(getCompanyIDFromClientDataID(id));
}

int getDefaultContactIDFromCompanyID(int companyID) {
    databaseControl* db = connected();
    if (!db) {
        return -1;
    }
    const int rs = db->openRecordset(
        QStringLiteral("SELECT ContactLinks.CompanyNum, ContactLinks.ContactIDNum, "
                       "ContactLinks.DefaultContact FROM ContactLinks WHERE "
                       "ContactLinks.CompanyNum = ") +
        QString::number(companyID) + QLatin1Char(';'));
    int result = -1;
    int first = -1;
    const bool any = db->hasRecords(rs);
    while (any && !db->isEOF(rs)) {
        const QVariant contact = db->getField(rs, QStringLiteral("ContactIDNum"));
        if (first < 0) {
            first = idValue(contact);
        }
        if (!stringControl::isBlank(contact) &&
            db->getField(rs, QStringLiteral("DefaultContact")).toBool()) {
            result = idValue(contact);
            break;
        }
        db->moveNext(rs);
    }
    db->closeRecordset(rs);
    if (any && !validContactID(result)) {
        result = first;
    }
    return result;
}

int getAccountantFirmID() {
    return idValue(
        firstValue(QStringLiteral("SELECT AccountantFirmInfo.CompanyID From AccountantFirmInfo;"),
                   QStringLiteral("CompanyID")));
}
int getCompanyIDFromClientDataID(int clientDataID) {
    return idValue(firstValue(QStringLiteral("SELECT ClientData.ClientDataID, "
                                             "ClientData.CompanyIDNum FROM ClientData WHERE "
                                             "ClientDataID=") +
                                  QString::number(clientDataID) + QLatin1Char(';'),
                              QStringLiteral("CompanyIDNum")));
}
int getClientDataIDFromCompanyID(int companyID) {
    return idValue(firstValue(QStringLiteral("SELECT ClientData.ClientDataID, "
                                             "ClientData.CompanyIDNum FROM ClientData WHERE "
                                             "CompanyIDNum=") +
                                  QString::number(companyID) + QLatin1Char(';'),
                              QStringLiteral("ClientDataID")));
}
int getCompanyIDFromScheduleID(int scheduleID) {
    return getCompanyIDFromClientDataID(idValue(firstValue(
        QStringLiteral("SELECT Schedule.ScheduleID, Schedule.ClientNum FROM Schedule WHERE "
                       "ScheduleID=") +
            QString::number(scheduleID) + QLatin1Char(';'),
        QStringLiteral("ClientNum"))));
}
int getCompanyIDFromAppointmentID(int appointmentID) {
    return idValue(firstValue(QStringLiteral("SELECT Appointments.AppointmentID, "
                                             "Appointments.CompanyIDNum FROM Appointments WHERE "
                                             "AppointmentID=") +
                                  QString::number(appointmentID) + QLatin1Char(';'),
                              QStringLiteral("CompanyIDNum")));
}
int getTaskIDFromScheduleID(int scheduleID) {
    return idValue(firstValue(
        QStringLiteral("SELECT Tasks.TaskID, Tasks.ScheduleIDNum FROM Tasks WHERE ScheduleIDNum=") +
            QString::number(scheduleID) + QLatin1Char(';'),
        QStringLiteral("TaskID")));
}
int getScheduleIDFromTaskID(int taskID) {
    return idValue(firstValue(
        QStringLiteral("SELECT Tasks.TaskID, Tasks.ScheduleIDNum FROM Tasks WHERE TaskID=") +
            QString::number(taskID) + QLatin1Char(';'),
        QStringLiteral("ScheduleIDNum")));
}

QString getMainBusinessSQLString(bool visibleOnly, int status) {
    QString select;
    QString from;
    if (app().currentCountry == 1) {
        select = QStringLiteral(
            "SELECT AccountingServices.*, ClientData.*, ClientOptions.*, Companies.*, "
            "CorpTaxInfo.*, LawInfo.*, OtherInfo.*, SoftwareInfo.*, WSIB_EHTInfo.*, "
            "CompaniesNotes.BusinessNotes, CompaniesNotes.ContactNotes ");
        from = QStringLiteral(
            "FROM ((((((Companies INNER JOIN ((ClientData INNER JOIN AccountingServices ON "
            "ClientData.ClientDataID = AccountingServices.AccountingServiceID) INNER JOIN "
            "ClientOptions ON ClientData.ClientDataID = ClientOptions.ClientOptionID) ON "
            "Companies.CompanyID = ClientData.CompanyIDNum) INNER JOIN CorpTaxInfo ON "
            "ClientData.ClientDataID = CorpTaxInfo.CorpTaxInfoID) INNER JOIN LawInfo ON "
            "ClientData.ClientDataID = LawInfo.LawInfoID) INNER JOIN OtherInfo ON "
            "ClientData.ClientDataID = OtherInfo.OtherInfoID) INNER JOIN SoftwareInfo ON "
            "ClientData.ClientDataID = SoftwareInfo.SoftwareInfoID) INNER JOIN WSIB_EHTInfo ON "
            "ClientData.ClientDataID = WSIB_EHTInfo.WSIB_EHTInfoID) INNER JOIN CompaniesNotes "
            "ON Companies.CompanyID = CompaniesNotes.CompanyNum ");
    } else {
        select = visibleOnly
                     ? QStringLiteral("SELECT AccountingServices.*, ClientData.*, "
                                      "ClientOptions.*, Companies.*, ClientUSInfo.*, "
                                      "SoftwareInfo.*, CompaniesNotes.BusinessNotes, "
                                      "CompaniesNotes.ContactNotes ")
                     : QStringLiteral("SELECT ClientData.*, AccountingServices.*, Companies.*, "
                                      "ClientOptions.*, ClientUSInfo.*, SoftwareInfo.*, "
                                      "CompaniesNotes.BusinessNotes, CompaniesNotes.ContactNotes ");
        from = QStringLiteral(
            "FROM (ClientUSInfo INNER JOIN ((Companies INNER JOIN ((ClientData INNER JOIN "
            "AccountingServices ON ClientData.ClientDataID = "
            "AccountingServices.AccountingServiceID) INNER JOIN ClientOptions ON "
            "ClientData.ClientDataID = ClientOptions.ClientOptionID) ON Companies.CompanyID = "
            "ClientData.CompanyIDNum) INNER JOIN SoftwareInfo ON ClientData.ClientDataID = "
            "SoftwareInfo.SoftwareInfoID) ON ClientUSInfo.ClientUSInfoID = "
            "ClientData.ClientDataID) INNER JOIN CompaniesNotes ON Companies.CompanyID = "
            "CompaniesNotes.CompanyNum ");
    }
    static const char* const kVisible[] = {
        "WHERE ClientData.ShowThisClient = True AND ClientData.ActiveStatus=1 ORDER BY "
        "Companies.CompanyName;",
        "WHERE ClientData.ShowThisClient = True AND NOT ClientData.ActiveStatus=1 ORDER BY "
        "Companies.CompanyName;",
        "WHERE ClientData.ShowThisClient = True ORDER BY Companies.CompanyName;"};
    static const char* const kAll[] = {
        "WHERE ClientData.ActiveStatus=1 ORDER BY Companies.CompanyName;",
        "WHERE NOT ClientData.ActiveStatus=1 ORDER BY Companies.CompanyName;",
        "ORDER BY Companies.CompanyName;"};
    const int s = status < 0 || status > 2 ? 2 : status;
    return select + from + QString::fromLatin1(visibleOnly ? kVisible[s] : kAll[s]);
}

} // namespace MergeLookups
