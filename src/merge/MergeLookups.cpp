#include "merge/MergeLookups.h"

#include "data/modDatabaseFunctions.h"

// The merge's names for the lookups of the client database; the work is
// done by modDatabaseFunctions, which tests the connection itself.
namespace MergeLookups {

bool validCompanyID(int id) {
    return ::validCompanyID(QString::number(id));
}
bool validContactID(int id) {
    return ::validContactID(QString::number(id));
}
bool validAppointmentID(int id) {
    return ::validAppointmentID(QString::number(id));
}
bool validTaskID(int id) {
    return ::validTaskID(QString::number(id));
}
bool validDocketID(int id) {
    return ::validDocketID(QString::number(id));
}
bool validScheduleID(int id) {
    return ::validScheduleID(QString::number(id));
}
bool validClientID(int id) {
    return ::validClientID(QString::number(id));
}

QString getCompanyNameFromCompanyID(int id) {
    return ::getCompanyNameFromCompanyID(id);
}
QString getDisplayNameFromContactID(int id) {
    return ::getDisplayNameFromContactID(id);
}
QString getScheduleNameFromScheduleID(int id) {
    return ::getScheduleNameFromScheduleID(id);
}
QString getAppointmentSubjectFromAppointmentID(int id) {
    return ::getAppointmentSubjectFromAppointmentID(id);
}
QString getCompanyNameFromClientDataID(int id) {
    return ::getCompanyNameFromClientDataID(id);
}

int getDefaultContactIDFromCompanyID(int companyID) {
    return ::getDefaultContactIDFromCompanyID(companyID);
}
int getAccountantFirmID() {
    return ::getAccountantFirmID();
}
int getCompanyIDFromScheduleID(int scheduleID) {
    return ::getCompanyIDFromScheduleID(scheduleID);
}
int getCompanyIDFromAppointmentID(int appointmentID) {
    return ::getCompanyIDFromAppointmentID(appointmentID);
}
int getCompanyIDFromClientDataID(int clientDataID) {
    return ::getCompanyIDFromClientDataID(clientDataID);
}
int getClientDataIDFromCompanyID(int companyID) {
    return ::getClientDataIDFromCompanyID(companyID);
}
int getTaskIDFromScheduleID(int scheduleID) {
    return ::getTaskIDFromScheduleID(scheduleID);
}
int getScheduleIDFromTaskID(int taskID) {
    return ::getScheduleIDFromTaskID(taskID);
}

QString getMainBusinessSQLString(bool visibleOnly, int status) {
    return ::getMainBusinessSQLString(visibleOnly, status);
}

} // namespace MergeLookups
