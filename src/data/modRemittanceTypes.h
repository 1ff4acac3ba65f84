#pragma once

#include <QString>
#include <optional>

class QStandardItemModel;

// The task types the user can pick, which depend on the country, the
// province and, for the sales tax of two provinces, on today's date. Each
// item carries its type code under modDatabaseFunctions::ItemDataRole:
// 100 All, 101..112 the fixed types, 10310..10340 payroll slips, and
// 11100 + ScheduleNum for the user's own schemes.
void populateTypeCombo(QStandardItemModel& list, bool addAll, bool addSubItems);

// The province code of the session: the host's when it gave one, else 3.
void initializeProvince(std::optional<int> hostProvince);
int getProvince();
