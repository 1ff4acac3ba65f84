#pragma once

#include <QDateTime>
#include <QString>
#include <QVariant>
#include <QVariantList>
#include <optional>
#include <vector>

// The one translation step between the SQL text the program builds (the old
// desktop engine's dialect) and SQLite. Literal values are lifted out into
// bound parameters, so that the same statement shape with another ID reuses
// one prepared statement, and no literal can ever change the statement.
//
// What changes:
//   #date# literals       -> ISO text parameters ("YYYY-MM-DD[ HH:MM:SS]";
//                            a time alone is kept on 1899-12-30)
//   col = True / False    -> col <> 0 / col = 0 (any non-zero is true)
//   other True / False    -> 1 / 0
//   LIKE '*x?'            -> LIKE '%x_'
//   text comparisons      -> COLLATE NOCASE, as the old engine compared text
//   ORDER BY items        -> COLLATE NOCASE
//   "text"                -> a text literal, as the old engine read it
// Everything else (parenthesised joins, IS NULL, NOT, DISTINCT) is left as
// it stands.
//
// A "?" in the text is a parameter of the caller: `placeholders` lists the
// positions in `parameters` that its values go to, in order.
// The engines the translation writes for. On the server: LIKE becomes
// ILIKE (the embedded engine's LIKE ignores case), a [bracketed name]
// becomes the server's name (names are folded to lower case there), and a
// DISTINCT statement sorted without regard to case sorts outside a
// sub-select (the server refuses a sort key that is not a selected column).
// COLLATE NOCASE is written the same on both: the server's schema has a
// collation of that name.
enum class SqlDialect { Sqlite, Postgres };

struct TranslatedSql {
    QString sql;
    QVariantList parameters;
    std::vector<int> placeholders;
    // On the server: whether the i-th "?" is compared with a number column,
    // where a text that is not a number can never match.
    std::vector<bool> numberPlaceholders;
};

class JetSqlTranslator {
public:
    // Throws QmError(DatabaseError) for an unterminated literal or a date
    // literal that is not a date.
    // `textPlaceholders[i]` tells that the i-th "?" takes a text, which is
    // then compared without regard to case as a text literal would be;
    // numbers are left bare so that the key's index stays usable.
    static TranslatedSql translate(const QString& jetSql,
                                   const std::vector<bool>& textPlaceholders = {},
                                   SqlDialect dialect = SqlDialect::Sqlite);

    // Whether a caller's value is compared as a text (without regard to
    // case) rather than as a number.
    static bool isTextValue(const QVariant& value);

    // Reads the '...' or "..." literal whose opening quote is at `start`,
    // a doubled quote standing for one; `end` is set behind the closing
    // quote. Empty when the literal is never closed.
    static std::optional<QString> readQuoted(const QString& text, qsizetype start, qsizetype& end);

    // Reads the text between # marks: m/d/yyyy, m/d/yy, yyyy-mm-dd,
    // optionally followed by a time ("h:mm", "h:mm:ss", with am/pm), or a
    // time alone. Empty when it is not a date.
    static std::optional<QDateTime> parseDateLiteral(const QString& text);
    // The stored form of a date: date only when the time is midnight and the
    // literal had none; a time alone on 1899-12-30.
    static QString storageText(const QDateTime& value, bool hasDate, bool hasTime);
};

// The storage conventions of the client database, shared by the reader and
// the writer.
namespace StorageConventions {
// The day the old engine kept a time of day on.
QDate timeOnlyDate();
// ISO text to a date value: "YYYY-MM-DD" -> QDate, "YYYY-MM-DD HH:MM:SS"
// (also with "T") -> QDateTime, "HH:MM:SS" -> QDateTime on timeOnlyDate().
// Anything else: an invalid QVariant.
QVariant parseStoredDate(const QString& text);
// A date value to its stored text; other values pass unchanged.
QVariant toStored(const QVariant& value);
} // namespace StorageConventions
