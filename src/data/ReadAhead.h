#pragma once

#include "data/Recordset.h"

#include <QHash>
#include <QString>
#include <QVariant>
#include <memory>
#include <optional>
#include <vector>

// Reads asked one key at a time (a merge reads a company, its contact
// links, its contact, its business data, for every letter), each answered
// from one read of that statement over a window of the keys the run is
// expected to ask next. On a server a round trip costs far more than the
// rows it returns; on a file, each statement's own step through the engine
// and the driver does. Either way a window of keys costs about what one key
// did.
//
// The expected keys come from the caller (a merge's recipients, in their
// order). Keys of the next kind of read are learnt from the rows read ahead:
// the contact IDs of a window's contact links are the contacts the same
// letters read next.
//
// Only statements whose rows for one key are exactly the rows of the
// statement over many keys that carry that key are read ahead: one table
// expression, one condition "column = ?", optionally ordered; no grouping,
// aggregate, DISTINCT, limit or sub-select. Anything else is read as asked.
class QSqlDatabase;
class QSqlQuery;

class ReadAhead {
public:
    // The rows one key's statement returns, described once per statement.
    struct Rows {
        std::shared_ptr<const std::vector<RecordsetColumn>> columns;
        std::shared_ptr<const QHash<QString, int>> lookup;
        std::vector<std::vector<QVariant>> rows;
    };

    // A statement that may be read ahead: its parts, for batchedStatement().
    struct Shape {
        QString selectList;
        QString from;
        QString keyColumn; // as written in the condition, perhaps Table.Column
        QString orderBy;   // "ORDER BY ..." or empty
    };

    // Whether `sql` (translated for its engine, one "?" for the key) can be
    // read ahead, and its parts.
    static std::optional<Shape> shapeOf(const QString& sql);
    // The statement over many keys, its one "?" a list of them: the
    // original columns, then the key as the last column. It is the same
    // text for every window, so it is planned once (on a server a join of
    // ten tables takes longer to plan than to run).
    static QString batchedStatement(const Shape& shape, bool server);
    // The list of keys as the parameter of batchedStatement: the server's
    // array text, which it reads as an array of the key column's own type,
    // or for the embedded engine a JSON array.
    static QString keyArray(const std::vector<qint64>& keys, bool server);

    // The rows of `sql` (translated, one value in `values`) for that value:
    // kept from a read ahead, or read now with the rest of the key's window
    // on `db`, which must be inside a transaction (`statements` counts the
    // round trips). Nothing when the statement or the key is not read
    // ahead, or the read failed; the caller then reads as asked, and the
    // transaction is as it was.
    const Rows* answer(QSqlDatabase& db, const QString& sql, const QVariantList& values,
                       qint64& statements, bool server);

    // The keys expected next, in order, and the column they are values of
    // (a statement keyed by a column of another name may still use them);
    // no keys end the expectation and forget every row read ahead.
    void expect(const QString& column, std::vector<qint64> keys);
    bool isExpecting() const { return !m_expected.keys.empty(); }

    // The kept rows of `sql` for `key`, if a read ahead has them.
    const Rows* find(const QString& sql, qint64 key) const;
    // The keys to read with `key` for `sql` (the key first), or nothing when
    // the key is not one the run expects. Keys already kept are left out.
    std::optional<std::vector<qint64>> windowFor(const QString& sql, const Shape& shape,
                                                 qint64 key) const;
    // Keeps the rows of a read ahead: `rows` carry the key in their last
    // column; every key of `keys` is kept, those without rows as empty.
    void keep(const QString& sql, const std::vector<qint64>& keys,
              const std::vector<RecordsetColumn>& columns, std::vector<std::vector<QVariant>> rows);
    // A statement whose read ahead failed is read as asked from then on.
    void refuse(const QString& sql) { m_refused.insert(sql, true); }
    bool isRefused(const QString& sql) const { return m_refused.contains(sql); }

    // Forgets the kept rows of statements that read `table` (a write to it),
    // or all of them. A statement whose rows a write took keeps a smaller
    // window from then on, so that a run writing every few records (a first
    // merge's repairs) does not read a whole window again after each write;
    // each window used up doubles it again.
    void forgetTable(const QString& table);
    void forgetRows(bool written = false);
    // The keys a window of `sql` holds at most now.
    int windowSizeOf(const QString& sql) const { return m_windowSize.value(sql, WindowSize); }
    // Drops the prepared statements; before their connection closes.
    void forgetStatements();

    // Keys per window: enough that a round trip is shared by many letters,
    // few enough that a window's rows stay small.
    static constexpr int WindowSize = 512;
    static constexpr int SmallestWindow = 8;

private:
    struct KeyList {
        std::vector<qint64> keys;
        QHash<qint64, int> index; // first place of each key
        void assign(std::vector<qint64> values);
    };
    struct Kept {
        std::shared_ptr<const std::vector<RecordsetColumn>> columns;
        std::shared_ptr<const QHash<QString, int>> lookup;
        QHash<qint64, Rows> byKey;
        QString upperSql; // for forgetTable
    };
    void shrinkWindow(const QString& sql);
    void learn(const std::vector<RecordsetColumn>& columns,
               const std::vector<std::vector<QVariant>>& rows);

    KeyList m_expected;
    QString m_expectedColumn; // upper case
    // Whole-number columns of rows read ahead, by upper-case column name:
    // the keys the run's next reads are likely to ask for.
    QHash<QString, KeyList> m_learnt;
    QHash<QString, Kept> m_kept;
    QHash<QString, bool> m_refused;
    QHash<QString, int> m_windowSize;                      // by statement, when below WindowSize
    QHash<QString, std::shared_ptr<QSqlQuery>> m_prepared; // by the one-key statement
    qsizetype m_keptRows = 0;
};
