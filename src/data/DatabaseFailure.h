#pragma once

#include <QString>

// Plain words for an engine failure, from its result code (primary or
// extended) and its message: "The database is locked by another program",
// "The database has no table Nope". Never empty.
namespace DatabaseFailure {
QString reason(int engineCode, const QString& engineText);
// The same for a database server, from its five-character error state and
// its message.
QString serverReason(const QString& sqlState, const QString& serverText);
// Whether a server failure means the connection itself is gone.
bool isConnectionLost(const QString& sqlState, const QString& serverText);
} // namespace DatabaseFailure
