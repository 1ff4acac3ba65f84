#pragma once

#include <QString>

// Plain words for an engine failure, from its result code (primary or
// extended) and its message: "The database is locked by another program",
// "The database has no table Nope". Never empty.
namespace DatabaseFailure {
QString reason(int engineCode, const QString& engineText);
}
