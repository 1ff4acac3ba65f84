#pragma once

#include <QString>

class QStandardItemModel;

// The questions the rest of the program asks the client database. Every
// function reads app().database; without a connection, or when no row
// answers, it returns its family's default without a word: -1 for an ID,
// an empty text for a name, false for a test, 0 for a status. Faults of the
// database itself (a broken file, a missing table) are thrown as QmError to
// the caller's handler.
//
// List fillers write into a list model: the item text as shown, and the
// item data (the ID) under ItemDataRole.

namespace modDatabaseFunctions {
constexpr int ItemDataRole = 0x0100; // Qt::UserRole
}

// IDs from other IDs.
int getClientDataIDFromCompanyID(int companyID);
int getCompanyIDFromClientDataID(int clientDataID);
int getClientDataIDFromScheduleID(int scheduleID);
int getCompanyIDFromScheduleID(int scheduleID);
int getCompanyIDFromAppointmentID(int appointmentID);
int getScheduleIDFromTaskID(int taskID);
int getTaskIDFromScheduleID(int scheduleID);

// Names.
QString getScheduleNameFromScheduleID(int scheduleID);
QString getAppointmentSubjectFromAppointmentID(int appointmentID);
QString getDisplayNameFromContactID(int contactID);
QString getCompanyNameFromCompanyID(int companyID);
QString getCompanyNameFromClientDataID(int clientDataID);
QString getAccountantFirmName();
QString getUserNameFromUserID(int userID);

// Validity: true when the row exists. The ID comes as text; a text that is
// not a whole number is not valid (and is never put into a statement).
bool validAppointmentID(const QString& id);
bool validDocketID(const QString& id);
bool validScheduleID(const QString& id);
bool validTaskID(const QString& id);
bool validClientID(const QString& id);
bool validCompanyID(const QString& id);
bool validContactID(const QString& id);
bool validFirmID(const QString& id);
bool validEmployeeID(const QString& id);

// Status: 1 active, 2 inactive, 0 when unknown.
short getPersonalClientActiveStatus(int contactID, int taxYear);
short getBusinessClientActiveStatusFromClientID(int clientDataID);

// The firm and its users.
int getAccountantFirmID();
// The first user of level 1 by user name.
int getDefaultUserID();

// List fillers.
void populateUserList(QStandardItemModel& list, bool clearList, bool addNone, bool addAll);
void populateCompanyNameInComboBox(QStandardItemModel& list, bool setItemData, bool clearList,
                                   bool quillmereClientsOnly, bool addBlank);
// As above, then the personal-tax clients of the current tax year, named by
// contactNameDisplayType, with the negative ContactID as item data.
void populateCompanyAndPersonalTaxNameInComboBox(QStandardItemModel& list, bool setItemData,
                                                 bool clearList, bool quillmereClientsOnly,
                                                 bool addBlank);

// Client-tree keys ("Company:12", "TaxCategory:7", "Contact:3Contact:9").
short getSelectedMajorNodeTypeFromString(const QString& key);
int getSelectedNodeIDFromString(const QString& key);
int getCategoryIDFromCategoryNodeKey(const QString& key);
int getContactIDFromContactNodeKey(const QString& key);

// The client SELECT of the merges and the tree. status: 0 active,
// 1 not active, 2 all. The wording follows app().currentCountry.
QString getMainBusinessSQLString(bool visibleOnly, int status);

// The tax year of the personal-tax work, stored in DataVersion; heals a
// missing or blank value (see the implementation for the two limits).
short getCurrentTaxYear();
void putCurrentTaxYear(int year);
// The provisional year: this year after April 30, else last year.
int provisionalTaxYear();

// Categories.
bool isCategoryPersonalTaxYearCategory(int categoryID);
int getPersonalTaxYearFromCategoryID(int categoryID);
bool doesThisCategoryBelongToCategory(int categoryID, int ancestorID);
bool doesThisContactBelongToPersonalTaxCategory(int contactID);

// The four system categories: found by their special code, created when
// missing. Name functions give the default name for a blank stored one.
int getMainCategoryNum();
QString getMainCategoryName();
int getBusinessCategoryNum();
QString getBusinessCategoryName();
int getFirmCategoryNum();
QString getFirmCategoryName();
int getPersonalTaxCategoryNum();
QString getPersonalTaxCategoryName();
// Creators: a blank name takes the default. Return the CategoryID, -1
// without a connection.
int createNewDefaultMainCategory(const QString& name = {});
int createNewDefaultBusinessCategory(const QString& name = {});
int createNewFirmCategory(const QString& name = {});
int createNewPersonalTaxCategory(const QString& name = {});

// Default contacts.
bool isContactDefaultContact(int contactID, int companyID);
int getDefaultContactIDFromCompanyID(int companyID);
int checkForDefaultContact(int companyID, bool repair);
void setContactAsDefault(int contactID, int companyID, bool skipCards = false);
void setNoContactAsDefault(int companyID, bool skipCards = false);
void updateDefaultContactInfo(int companyID);
void changeDefaultContactChangeLookupFieldValue(int contactID);
bool isContactLookupField(const QString& name);
