#include "data/modDatabaseFunctions.h"

#include "data/DatabaseLookup.h"
#include "data/modSettings.h"

#include <QStandardItemModel>

using namespace DatabaseLookup;

namespace {

int idLookup(const char* procedure, const QString& sqlStart, int id, const QString& column) {
    ProcedureScope scope(app().errors, tag(procedure));
    databaseControl* db = connected();
    if (!db)
        return -1;
    return toID(
        db->lookupValue(sqlStart + QStringLiteral("?;"), {id}, column).value_or(QVariant()));
}

QString textLookup(const char* procedure, const QString& sql, const QVariantList& arguments,
                   const QString& column) {
    ProcedureScope scope(app().errors, tag(procedure));
    databaseControl* db = connected();
    if (!db)
        return {};
    return toText(db->lookupValue(sql, arguments, column).value_or(QVariant()));
}

// sqlStart ends with the key column and its operator; the ID is bound.
bool rowExists(const char* procedure, const QString& sqlStart, const QString& idText) {
    ProcedureScope scope(app().errors, tag(procedure));
    databaseControl* db = connected();
    int id = 0;
    if (!db || !parseID(idText, id))
        return false;
    return db->lookupValue(sqlStart + QStringLiteral("?;"), {id}, QString()).has_value();
}

short toStatus(const QVariant& value) {
    return stringControl::isBlank(value) ? short(0) : short(value.toInt());
}

QStandardItem* item(const QString& text, int data) {
    auto* it = new QStandardItem(text);
    it->setData(data, modDatabaseFunctions::ItemDataRole);
    return it;
}

} // namespace

int getClientDataIDFromCompanyID(int companyID) {
    return idLookup("getClientDataIDFromCompanyID",
                    QStringLiteral("SELECT ClientData.ClientDataID, ClientData.CompanyIDNum FROM "
                                   "ClientData WHERE CompanyIDNum="),
                    companyID, QStringLiteral("ClientDataID"));
}

int getCompanyIDFromClientDataID(int clientDataID) {
    return idLookup("getCompanyIDFromClientDataID",
                    QStringLiteral("SELECT ClientData.ClientDataID, ClientData.CompanyIDNum FROM "
                                   "ClientData WHERE ClientDataID="),
                    clientDataID, QStringLiteral("CompanyIDNum"));
}

int getClientDataIDFromScheduleID(int scheduleID) {
    return idLookup(
        "getClientDataIDFromScheduleID",
        QStringLiteral(
            "SELECT Schedule.ScheduleID, Schedule.ClientNum FROM Schedule WHERE ScheduleID="),
        scheduleID, QStringLiteral("ClientNum"));
}

int getCompanyIDFromScheduleID(int scheduleID) {
    const int client = getClientDataIDFromScheduleID(scheduleID);
    return client == -1 ? -1 : getCompanyIDFromClientDataID(client);
}

int getCompanyIDFromAppointmentID(int appointmentID) {
    return idLookup(
        "getCompanyIDFromAppointmentID",
        QStringLiteral(
            "SELECT Appointments.AppointmentID, Appointments.CompanyIDNum FROM Appointments WHERE "
            "AppointmentID="),
        appointmentID, QStringLiteral("CompanyIDNum"));
}

int getScheduleIDFromTaskID(int taskID) {
    return idLookup(
        "getScheduleIDFromTaskID",
        QStringLiteral("SELECT Tasks.TaskID, Tasks.ScheduleIDNum FROM Tasks WHERE TaskID="), taskID,
        QStringLiteral("ScheduleIDNum"));
}

int getTaskIDFromScheduleID(int scheduleID) {
    return idLookup(
        "getTaskIDFromScheduleID",
        QStringLiteral("SELECT Tasks.TaskID, Tasks.ScheduleIDNum FROM Tasks WHERE ScheduleIDNum="),
        scheduleID, QStringLiteral("TaskID"));
}

QString getScheduleNameFromScheduleID(int scheduleID) {
    return textLookup(
        "getScheduleNameFromScheduleID",
        QStringLiteral(
            "SELECT Schedule.ScheduleID, Schedule.scheduleName FROM Schedule WHERE ScheduleID=?;"),
        {scheduleID}, QStringLiteral("scheduleName"));
}

QString getAppointmentSubjectFromAppointmentID(int appointmentID) {
    return textLookup(
        "getAppointmentSubjectFromAppointmentID",
        QStringLiteral(
            "SELECT Appointments.AppointmentID, Appointments.Subject FROM Appointments WHERE "
            "AppointmentID=?;"),
        {appointmentID}, QStringLiteral("Subject"));
}

QString getDisplayNameFromContactID(int contactID) {
    return textLookup(
        "getDisplayNameFromContactID",
        QStringLiteral(
            "SELECT Contacts.ContactID, Contacts.DisplayName FROM Contacts WHERE ContactID=?;"),
        {contactID}, QStringLiteral("DisplayName"));
}

QString getCompanyNameFromCompanyID(int companyID) {
    return textLookup(
        "getCompanyNameFromCompanyID",
        QStringLiteral(
            "SELECT Companies.CompanyID, Companies.CompanyName FROM Companies WHERE CompanyID=?;"),
        {companyID}, QStringLiteral("CompanyName"));
}

QString getCompanyNameFromClientDataID(int clientDataID) {
    const int company = getCompanyIDFromClientDataID(clientDataID);
    return company == -1 ? QString() : getCompanyNameFromCompanyID(company);
}

QString getAccountantFirmName() {
    return textLookup(
        "getAccountantFirmName",
        QStringLiteral("SELECT AccountantFirmInfo.CompanyName From AccountantFirmInfo;"), {},
        QStringLiteral("CompanyName"));
}

QString getUserNameFromUserID(int userID) {
    return textLookup(
        "getUserNameFromUserID",
        QStringLiteral(
            "SELECT AccountantEmployeeInfo.ContactID, AccountantEmployeeInfo.UserName FROM "
            "AccountantEmployeeInfo") +
            QStringLiteral(" WHERE ContactID = ? ORDER BY AccountantEmployeeInfo.UserName;"),
        {userID}, QStringLiteral("UserName"));
}

bool validAppointmentID(const QString& id) {
    return rowExists(
        "validAppointmentID",
        QStringLiteral(
            "SELECT Appointments.AppointmentID FROM Appointments WHERE AppointmentID = "),
        id);
}
bool validDocketID(const QString& id) {
    return rowExists("validDocketID",
                     QStringLiteral("SELECT Dockets.DocketID FROM Dockets WHERE DocketID = "), id);
}
bool validScheduleID(const QString& id) {
    return rowExists("validScheduleID",
                     QStringLiteral("SELECT Schedule.ScheduleID FROM Schedule WHERE ScheduleID = "),
                     id);
}
bool validTaskID(const QString& id) {
    return rowExists("validTaskID",
                     QStringLiteral("SELECT Tasks.TaskID FROM Tasks WHERE TaskID = "), id);
}
bool validClientID(const QString& id) {
    return rowExists(
        "validClientID",
        QStringLiteral("SELECT ClientData.ClientDataID FROM ClientData WHERE ClientDataID = "), id);
}
bool validCompanyID(const QString& id) {
    return rowExists("validCompanyID",
                     QStringLiteral("SELECT Companies.CompanyID FROM Companies WHERE CompanyID = "),
                     id);
}
bool validContactID(const QString& id) {
    return rowExists("validContactID",
                     QStringLiteral("SELECT Contacts.ContactID FROM Contacts WHERE ContactID = "),
                     id);
}
bool validFirmID(const QString& id) {
    return rowExists(
        "validFirmID",
        QStringLiteral(
            "SELECT AccountantFirmInfo.CompanyID FROM AccountantFirmInfo WHERE CompanyID = "),
        id);
}
bool validEmployeeID(const QString& id) {
    return rowExists("validEmployeeID",
                     QStringLiteral("SELECT AccountantEmployeeInfo.ContactID FROM "
                                    "AccountantEmployeeInfo WHERE ContactID = "),
                     id);
}

short getPersonalClientActiveStatus(int contactID, int taxYear) {
    ProcedureScope scope(app().errors, tag("getPersonalClientActiveStatus"));
    databaseControl* db = connected();
    if (!db)
        return 0;
    return toStatus(firstValue(
        *db,
        QStringLiteral("SELECT PersonalTaxStatus.TaxYear, PersonalTaxStatus.ActiveStatus FROM "
                       "PersonalTaxStatus WHERE TaxYear = ") +
            QString::number(taxYear) + QStringLiteral(" AND ContactNum=") +
            QString::number(contactID) + u';',
        QStringLiteral("ActiveStatus")));
}

short getBusinessClientActiveStatusFromClientID(int clientDataID) {
    ProcedureScope scope(app().errors, tag("getBusinessClientActiveStatusFromClientID"));
    databaseControl* db = connected();
    if (!db)
        return 0;
    return toStatus(
        firstValue(*db,
                   QStringLiteral("SELECT ClientData.ActiveStatus, ClientData.ClientDataID FROM "
                                  "ClientData WHERE ClientDataID=") +
                       QString::number(clientDataID) + u';',
                   QStringLiteral("ActiveStatus")));
}

int getAccountantFirmID() {
    ProcedureScope scope(app().errors, tag("getAccountantFirmID"));
    databaseControl* db = connected();
    if (!db)
        return -1;
    return toID(firstValue(
        *db, QStringLiteral("SELECT AccountantFirmInfo.CompanyID From AccountantFirmInfo;"),
        QStringLiteral("CompanyID")));
}

int getDefaultUserID() {
    ProcedureScope scope(app().errors, tag("getDefaultUserID"));
    databaseControl* db = connected();
    if (!db)
        return -1;
    return toID(firstValue(
        *db,
        QStringLiteral(
            "SELECT AccountantEmployeeInfo.ContactID, AccountantEmployeeInfo.UserName FROM "
            "AccountantEmployeeInfo") +
            QStringLiteral(" WHERE UserLevel = 1") +
            QStringLiteral(" ORDER BY AccountantEmployeeInfo.UserName;"),
        QStringLiteral("ContactID")));
}

void populateUserList(QStandardItemModel& list, bool clearList, bool addNone, bool addAll) {
    ProcedureScope scope(app().errors, tag("populateUserList"));
    if (clearList)
        list.clear();
    if (addAll)
        list.appendRow(item(QStringLiteral("All Users"), -1));
    if (addNone)
        list.appendRow(item(QStringLiteral("None Assigned"), -1));
    databaseControl* db = connected();
    if (!db)
        return;
    ScopedRecordset rs(
        *db, QStringLiteral(
                 "SELECT AccountantEmployeeInfo.ContactID, AccountantEmployeeInfo.UserName FROM "
                 "AccountantEmployeeInfo ") +
                 QStringLiteral("ORDER BY AccountantEmployeeInfo.UserName;"));
    for (; !rs.isEOF(); rs.moveNext())
        list.appendRow(item(toText(rs.field(QStringLiteral("UserName"))),
                            toID(rs.field(QStringLiteral("ContactID")))));
}

void populateCompanyNameInComboBox(QStandardItemModel& list, bool setItemData, bool clearList,
                                   bool quillmereClientsOnly, bool addBlank) {
    ProcedureScope scope(app().errors, tag("populateCompanyNameInComboBox"));
    if (clearList)
        list.clear();
    if (addBlank)
        list.appendRow(item(QStringLiteral(" "), -1));
    databaseControl* db = connected();
    if (!db)
        return;
    const QString sql =
        quillmereClientsOnly
            ? getMainBusinessSQLString(true, 2)
            : QStringLiteral(
                  "SELECT Companies.CompanyID, Companies.CompanyName FROM Companies ORDER BY "
                  "Companies.CompanyName;");
    ScopedRecordset rs(*db, sql);
    for (; !rs.isEOF(); rs.moveNext()) {
        auto* it = new QStandardItem(toText(rs.field(QStringLiteral("CompanyName"))));
        if (setItemData)
            it->setData(toID(rs.field(QStringLiteral("Companies.CompanyID"))),
                        modDatabaseFunctions::ItemDataRole);
        list.appendRow(it);
    }
}

void populateCompanyAndPersonalTaxNameInComboBox(QStandardItemModel& list, bool setItemData,
                                                 bool clearList, bool quillmereClientsOnly,
                                                 bool addBlank) {
    ProcedureScope scope(app().errors, tag("populateCompanyAndPersonalTaxNameInComboBox"));
    populateCompanyNameInComboBox(list, setItemData, clearList, quillmereClientsOnly, addBlank);
    databaseControl* db = connected();
    if (!db)
        return;
    const QString year = QString::number(getCurrentTaxYear());
    ScopedRecordset rs(
        *db,
        QStringLiteral("SELECT Contacts.ContactID, Contacts.DisplayName, Contacts.FirstName, "
                       "Contacts.LastName, "
                       "PersonalTaxInfo.TaxYear, PersonalTaxStatus.TaxYear ") +
            QStringLiteral(
                "FROM (Contacts INNER JOIN PersonalTaxInfo ON Contacts.ContactID = "
                "PersonalTaxInfo.ContactNum) INNER JOIN PersonalTaxStatus ON Contacts.ContactID = "
                "PersonalTaxStatus.ContactNum ") +
            QStringLiteral("WHERE PersonalTaxInfo.TaxYear=") + year +
            QStringLiteral(" AND PersonalTaxStatus.TaxYear=") + year + u' ' +
            QStringLiteral("ORDER BY Contacts.FirstName, Contacts.LastName;"));
    for (; !rs.isEOF(); rs.moveNext()) {
        const int contactID = toID(rs.field(QStringLiteral("ContactID")));
        auto* it = new QStandardItem(
            getContactNameDisplayedByType(app().contactNameDisplayType, contactID, -1, false));
        if (setItemData)
            it->setData(-contactID, modDatabaseFunctions::ItemDataRole);
        list.appendRow(it);
    }
}

short getSelectedMajorNodeTypeFromString(const QString& key) {
    if (stringControl::isBlank(key))
        return 0;
    if (key.contains(QStringLiteral("Contact:")))
        return 1;
    if (key.contains(QStringLiteral("Company:")))
        return 2;
    if (key.contains(QStringLiteral("Category:")))
        return 3;
    return 0;
}

int getSelectedNodeIDFromString(const QString& key) {
    if (stringControl::isBlank(key))
        return -1;
    if (key.contains(QStringLiteral("Contact:")))
        return getContactIDFromContactNodeKey(key);
    if (key.contains(QStringLiteral("Company:"))) {
        const QString rest = key.right(key.size() - QStringLiteral("Company:").size());
        bool ok = false;
        const int id = rest.trimmed().toInt(&ok);
        return ok ? id : -1;
    }
    if (key.contains(QStringLiteral("Category:")))
        return getCategoryIDFromCategoryNodeKey(key);
    return -1;
}

int getCategoryIDFromCategoryNodeKey(const QString& key) {
    for (const QString& marker : {QStringLiteral("FirmCategory"), QStringLiteral("TaxCategory:"),
                                  QStringLiteral("Category:")}) {
        const qsizetype at = key.indexOf(marker);
        if (at < 0)
            continue;
        QString rest = key.mid(at + marker.size());
        // "FirmCategory" carries its colon behind the marker.
        if (rest.startsWith(u':'))
            rest.remove(0, 1);
        bool ok = false;
        const int id = rest.trimmed().toInt(&ok);
        return ok ? id : -1;
    }
    return -1;
}

int getContactIDFromContactNodeKey(const QString& key) {
    static const QString markers[] = {QStringLiteral("FirmTaxContact:"),
                                      QStringLiteral("FirmContact:"), QStringLiteral("TaxContact:"),
                                      QStringLiteral("Contact:")};
    QString candidate = key;
    // A family key holds a second marker: search again inside what follows.
    for (int attempt = 0; attempt < 4; ++attempt) {
        bool found = false;
        for (const QString& marker : markers) {
            const qsizetype at = candidate.indexOf(marker);
            if (at < 0)
                continue;
            candidate = candidate.mid(at + marker.size());
            found = true;
            break;
        }
        if (!found)
            return -1;
        bool ok = false;
        const int id = candidate.trimmed().toInt(&ok);
        if (ok)
            return id;
    }
    return -1;
}

QString getMainBusinessSQLString(bool visibleOnly, int status) {
    static const QString canadaSelect =
        QStringLiteral("SELECT AccountingServices.*, ClientData.*, ClientOptions.*, Companies.*, "
                       "CorpTaxInfo.*, LawInfo.*, "
                       "OtherInfo.*, SoftwareInfo.*, WSIB_EHTInfo.*, CompaniesNotes.BusinessNotes, "
                       "CompaniesNotes.ContactNotes ");
    static const QString canadaFrom =
        QStringLiteral("FROM ((((((Companies INNER JOIN ((ClientData INNER JOIN AccountingServices "
                       "ON ClientData.ClientDataID = "
                       "AccountingServices.AccountingServiceID) INNER JOIN ClientOptions ON "
                       "ClientData.ClientDataID = "
                       "ClientOptions.ClientOptionID) ON Companies.CompanyID = "
                       "ClientData.CompanyIDNum) INNER JOIN CorpTaxInfo ON "
                       "ClientData.ClientDataID = CorpTaxInfo.CorpTaxInfoID) INNER JOIN LawInfo ON "
                       "ClientData.ClientDataID = "
                       "LawInfo.LawInfoID) INNER JOIN OtherInfo ON ClientData.ClientDataID = "
                       "OtherInfo.OtherInfoID) INNER JOIN "
                       "SoftwareInfo ON ClientData.ClientDataID = SoftwareInfo.SoftwareInfoID) "
                       "INNER JOIN WSIB_EHTInfo ON "
                       "ClientData.ClientDataID = WSIB_EHTInfo.WSIB_EHTInfoID) INNER JOIN "
                       "CompaniesNotes ON Companies.CompanyID = "
                       "CompaniesNotes.CompanyNum ");
    static const QString otherVisibleSelect =
        QStringLiteral("SELECT AccountingServices.*, ClientData.*, ClientOptions.*, Companies.*, "
                       "ClientUSInfo.*, SoftwareInfo.*, "
                       "CompaniesNotes.BusinessNotes, CompaniesNotes.ContactNotes ");
    static const QString otherAllSelect =
        QStringLiteral("SELECT ClientData.*, AccountingServices.*, Companies.*, ClientOptions.*, "
                       "ClientUSInfo.*, SoftwareInfo.*, "
                       "CompaniesNotes.BusinessNotes, CompaniesNotes.ContactNotes ");
    static const QString otherFrom = QStringLiteral(
        "FROM (ClientUSInfo INNER JOIN ((Companies INNER JOIN ((ClientData INNER JOIN "
        "AccountingServices ON "
        "ClientData.ClientDataID = AccountingServices.AccountingServiceID) INNER JOIN "
        "ClientOptions ON "
        "ClientData.ClientDataID = ClientOptions.ClientOptionID) ON Companies.CompanyID = "
        "ClientData.CompanyIDNum) "
        "INNER JOIN SoftwareInfo ON ClientData.ClientDataID = SoftwareInfo.SoftwareInfoID) ON "
        "ClientUSInfo.ClientUSInfoID = ClientData.ClientDataID) INNER JOIN CompaniesNotes ON "
        "Companies.CompanyID = "
        "CompaniesNotes.CompanyNum ");

    QString sql;
    if (app().currentCountry == 1)
        sql = canadaSelect + canadaFrom;
    else
        sql = (visibleOnly ? otherVisibleSelect : otherAllSelect) + otherFrom;

    if (visibleOnly) {
        switch (status) {
        case 0:
            return sql +
                   QStringLiteral("WHERE ClientData.ShowThisClient = True AND "
                                  "ClientData.ActiveStatus=1 ORDER BY Companies.CompanyName;");
        case 1:
            return sql + QStringLiteral("WHERE ClientData.ShowThisClient = True AND NOT "
                                        "ClientData.ActiveStatus=1 ORDER BY "
                                        "Companies.CompanyName;");
        default:
            return sql +
                   QStringLiteral(
                       "WHERE ClientData.ShowThisClient = True ORDER BY Companies.CompanyName;");
        }
    }
    switch (status) {
    case 0:
        return sql +
               QStringLiteral("WHERE ClientData.ActiveStatus=1 ORDER BY Companies.CompanyName;");
    case 1:
        return sql + QStringLiteral(
                         "WHERE NOT ClientData.ActiveStatus=1 ORDER BY Companies.CompanyName;");
    default:
        return sql + QStringLiteral("ORDER BY Companies.CompanyName;");
    }
}
