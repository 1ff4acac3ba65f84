#pragma once

#include <QString>

// The lookups of the client database that the merge asks, each one query
// wide over app().database. Without a connection or a row they give their
// default silently: -1 for an ID, an empty text for a name, false for a
// test.
namespace MergeLookups {

bool validCompanyID(int id);
bool validContactID(int id);
bool validAppointmentID(int id);
bool validTaskID(int id);
bool validDocketID(int id);
bool validScheduleID(int id);
bool validClientID(int id);

QString getCompanyNameFromCompanyID(int id);
QString getDisplayNameFromContactID(int id);
QString getScheduleNameFromScheduleID(int id);
QString getAppointmentSubjectFromAppointmentID(int id);
QString getCompanyNameFromClientDataID(int id);

int getDefaultContactIDFromCompanyID(int companyID);
int getAccountantFirmID();
int getCompanyIDFromScheduleID(int scheduleID);
int getCompanyIDFromAppointmentID(int appointmentID);
int getCompanyIDFromClientDataID(int clientDataID);
int getClientDataIDFromCompanyID(int companyID);
int getTaskIDFromScheduleID(int scheduleID);
int getScheduleIDFromTaskID(int taskID);

// The client SELECT of the merges (visible-only flag, status 0, 1 or 2).
QString getMainBusinessSQLString(bool visibleOnly, int status);

} // namespace MergeLookups
