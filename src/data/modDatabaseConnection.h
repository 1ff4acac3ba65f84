#pragma once

#include <QString>
#include <memory>

class databaseControl;

// The connection step of start-up. Always returns the object, connected or
// not; when it is not connected, the user is told through app().msgbox (if
// one is set) that the database could not be opened, and the reason
// (databaseControl::lastError()) goes to standard error. A file opened
// read-only is announced with databaseControl::readOnlyNotice(). The caller stores the
// object and sets app().database; nothing closes here.
std::unique_ptr<databaseControl> openCompaniesDatabase(const QString& path);

// The message of a failed connection, exactly as shown.
QString companiesDatabaseFailureText();
// The same for a database server, with the reason; the program goes on
// without merging.
QString serverDatabaseFailureText(const QString& reason);
