#pragma once

#include <QString>

class QSqlDatabase;

// A database server numbers new rows from a sequence a key column owns,
// which rows written with their own keys (an import, the sample practice,
// another program) do not move. Without this, the next row the program adds
// would be given a key already taken.
namespace IdentitySequences {

// Sets every sequence owned by a column of the current schema so that the
// next number is past the largest value in its column (1 for an empty
// table). Does nothing on an engine without sequences. Returns false with
// the server's reason in `error` on failure.
bool advancePastRows(QSqlDatabase& db, QString* error);

} // namespace IdentitySequences
