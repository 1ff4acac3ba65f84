#pragma once

#include <QString>

class FieldTable;
class PlaceholderValues;

// The substitution written the way the procedure is described, one step
// after the other: a presence test in the search copy for every date format
// of Todays Date, then for every catalogue row (and every format of a Date
// row), each hit replaced in the whole text. The oracle for the fast path.
QString referenceSubstitution(const QString& text, const FieldTable& table, bool contactForCompany,
                              PlaceholderValues& values);
