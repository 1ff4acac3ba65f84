#include "data/ReadAhead.h"

#include "data/SqlValueKinds.h"

#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlField>
#include <QSqlQuery>
#include <QSqlRecord>
#include <algorithm>

namespace {

// The text with the inside of every quoted literal or name replaced, length
// kept, so that words in them are not taken for clauses. Empty when a quote
// is never closed.
QString withoutQuotedText(const QString& sql) {
    QString bare = sql;
    QChar open;
    for (qsizetype i = 0; i < bare.size(); ++i) {
        const QChar c = bare[i];
        if (open.isNull()) {
            if (c == u'\'' || c == u'"')
                open = c;
        } else if (c == open) {
            open = QChar();
        } else {
            bare[i] = u'x';
        }
    }
    return open.isNull() ? bare : QString();
}

bool isWholeNumberType(const QVariant& value) {
    return isWholeNumberTypeId(value.typeId());
}

QString unqualified(const QString& column) {
    const qsizetype dot = column.lastIndexOf(u'.');
    return (dot < 0 ? column : column.mid(dot + 1)).toUpper();
}

qsizetype commonPrefix(const QString& a, const QString& b) {
    qsizetype n = 0;
    while (n < a.size() && n < b.size() && a[n] == b[n])
        ++n;
    return n;
}

bool readsTable(const QString& upperSql, const QString& upperTable) {
    for (qsizetype at = upperSql.indexOf(upperTable); at >= 0;
         at = upperSql.indexOf(upperTable, at + 1)) {
        const qsizetype end = at + upperTable.size();
        const auto isName = [&](qsizetype i) {
            return i >= 0 && i < upperSql.size() &&
                   (upperSql[i].isLetterOrNumber() || upperSql[i] == u'_');
        };
        if (!isName(at - 1) && !isName(end))
            return true;
    }
    return false;
}

} // namespace

void ReadAhead::KeyList::assign(std::vector<qint64> values) {
    keys = std::move(values);
    index.clear();
    index.reserve(qsizetype(keys.size()));
    for (size_t i = 0; i < keys.size(); ++i)
        index.insert(keys[i], int(i)); // later duplicates do not move the first
}

std::optional<ReadAhead::Shape> ReadAhead::shapeOf(const QString& sql) {
    const QString bare = withoutQuotedText(sql);
    // A "?" inside quoted text as well would leave the driver to tell the
    // two apart; such a read is asked as it is.
    if (bare.isEmpty() || bare.count(u'?') != 1 || sql.count(u'?') != 1)
        return std::nullopt;
    static const QRegularExpression whole(
        QStringLiteral(R"(^\s*SELECT\s+(.+?)\s+FROM\s+(.+?)\s+WHERE\s+)"
                       R"(([A-Za-z_]\w*(?:\.[A-Za-z_]\w*)?)\s*=\s*\?\s*)"
                       R"((ORDER\s+BY\s+.+?)?\s*;?\s*$)"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
    // One query block: a second SELECT or WHERE is a sub-select, and these
    // clauses make the rows of one key depend on the others.
    static const QRegularExpression blocks(QStringLiteral(R"(\b(SELECT|WHERE)\b)"),
                                           QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression spoilers(
        QStringLiteral(R"(\b(GROUP|HAVING|LIMIT|OFFSET|FETCH|UNION|INTERSECT|EXCEPT|)"
                       R"(DISTINCT|OVER|WINDOW)\b|\b(COUNT|SUM|MIN|MAX|AVG|FIRST|LAST|)"
                       R"(STRING_AGG|ARRAY_AGG|BOOL_AND|BOOL_OR|EVERY)\s*\()"),
        QRegularExpression::CaseInsensitiveOption);
    const auto m = whole.match(bare);
    if (!m.hasMatch() || bare.contains(spoilers))
        return std::nullopt;
    qsizetype clauses = 0;
    for (auto it = blocks.globalMatch(bare); it.hasNext(); it.next())
        ++clauses;
    if (clauses != 2)
        return std::nullopt;
    Shape shape;
    shape.selectList = sql.mid(m.capturedStart(1), m.capturedLength(1));
    shape.from = sql.mid(m.capturedStart(2), m.capturedLength(2));
    shape.keyColumn = sql.mid(m.capturedStart(3), m.capturedLength(3));
    if (m.capturedLength(4) > 0)
        shape.orderBy = sql.mid(m.capturedStart(4), m.capturedLength(4));
    return shape;
}

QString ReadAhead::batchedStatement(const Shape& shape, bool server) {
    QString sql = QStringLiteral("SELECT %1, %2 AS qm_ahead_key FROM %3 WHERE %2 %4")
                      .arg(shape.selectList, shape.keyColumn, shape.from,
                           server ? QStringLiteral("= ANY(?)")
                                  : QStringLiteral("IN (SELECT value FROM json_each(?))"));
    if (!shape.orderBy.isEmpty())
        sql += u' ' + shape.orderBy;
    return sql;
}

QString ReadAhead::keyArray(const std::vector<qint64>& keys, bool server) {
    QString list;
    list.reserve(qsizetype(keys.size()) * 8 + 2);
    list += server ? u'{' : u'[';
    for (size_t i = 0; i < keys.size(); ++i) {
        if (i > 0)
            list += u',';
        list += QString::number(keys[i]);
    }
    list += server ? u'}' : u']';
    return list;
}

const ReadAhead::Rows* ReadAhead::answer(QSqlDatabase& db, const QString& sql,
                                         const QVariantList& values, qint64& statements,
                                         bool server) {
    if (!isExpecting() || values.size() != 1 || !isWholeNumberType(values.front()))
        return nullptr;
    const qint64 key = values.front().toLongLong();
    if (const Rows* kept = find(sql, key))
        return kept;
    if (isRefused(sql))
        return nullptr;
    const std::optional<Shape> shape = shapeOf(sql);
    if (!shape) {
        refuse(sql);
        return nullptr;
    }
    const std::optional<std::vector<qint64>> window = windowFor(sql, *shape, key);
    if (!window)
        return nullptr;
    // A failed statement spoils the rest of a server transaction; the
    // savepoint confines it to this read, which is then asked as written.
    // The embedded engine fails the statement alone.
    QSqlQuery control(db);
    if (server) {
        ++statements;
        if (!control.exec(QStringLiteral("SAVEPOINT qm_read_ahead")))
            return nullptr;
    }
    std::shared_ptr<QSqlQuery>& prepared = m_prepared[sql];
    bool ran = false;
    if (!prepared) {
        prepared = std::make_shared<QSqlQuery>(db);
        prepared->setForwardOnly(true);
        ++statements;
        ran = prepared->prepare(batchedStatement(*shape, server));
    } else {
        ran = true;
    }
    QSqlQuery& query = *prepared;
    if (ran) {
        query.bindValue(0, keyArray(*window, server));
        ++statements;
        ran = query.exec();
    }
    if (!ran) {
        // Back to the savepoint first: until then the server refuses even
        // to drop the statement.
        if (server) {
            ++statements;
            control.exec(QStringLiteral("ROLLBACK TO SAVEPOINT qm_read_ahead"));
        }
        m_prepared.remove(sql);
        refuse(sql);
        return nullptr;
    }
    const QSqlRecord record = query.record();
    std::vector<RecordsetColumn> columns;
    for (int i = 0; i + 1 < record.count(); ++i)
        columns.push_back(RecordsetColumn::describe(record.field(i), server));
    std::vector<std::vector<QVariant>> rows;
    while (query.next()) {
        std::vector<QVariant> row;
        row.reserve(size_t(record.count()));
        for (int i = 0; i < record.count(); ++i)
            row.push_back(server && query.isNull(i) ? QVariant() : query.value(i));
        rows.push_back(std::move(row));
    }
    query.finish();
    if (server) {
        ++statements;
        control.exec(QStringLiteral("RELEASE SAVEPOINT qm_read_ahead"));
    }
    keep(sql, *window, columns, std::move(rows));
    return find(sql, key);
}

void ReadAhead::expect(const QString& column, std::vector<qint64> keys) {
    m_expected.assign(std::move(keys));
    m_expectedColumn = unqualified(column);
    m_learnt.clear();
    forgetRows();
    m_refused.clear();
    m_windowSize.clear();
}

const ReadAhead::Rows* ReadAhead::find(const QString& sql, qint64 key) const {
    const auto kept = m_kept.constFind(sql);
    if (kept == m_kept.constEnd())
        return nullptr;
    const auto rows = kept->byKey.constFind(key);
    return rows == kept->byKey.constEnd() ? nullptr : &*rows;
}

std::optional<std::vector<qint64>> ReadAhead::windowFor(const QString& sql, const Shape& shape,
                                                        qint64 key) const {
    // Of the lists holding the key, the one whose column is named most like
    // the key column: a contact's ID is looked for among the ContactIDNum
    // values of the contact links, not among the company IDs expected,
    // although the same number may be both.
    const QString wanted = unqualified(shape.keyColumn);
    const KeyList* source = nullptr;
    qsizetype best = -1;
    if (m_expected.index.contains(key)) {
        source = &m_expected;
        best = commonPrefix(m_expectedColumn, wanted);
    }
    for (auto it = m_learnt.constBegin(); it != m_learnt.constEnd(); ++it) {
        if (!it->index.contains(key))
            continue;
        const qsizetype score = commonPrefix(it.key(), wanted);
        if (score > best) {
            best = score;
            source = &*it;
        }
    }
    if (!source)
        return std::nullopt;
    const auto kept = m_kept.constFind(sql);
    std::vector<qint64> window{key};
    QHash<qint64, bool> taken{{key, true}};
    for (size_t i = size_t(source->index.value(key)) + 1;
         i < source->keys.size() && window.size() < size_t(windowSizeOf(sql)); ++i) {
        const qint64 next = source->keys[i];
        if (taken.contains(next) || (kept != m_kept.constEnd() && kept->byKey.contains(next)))
            continue;
        taken.insert(next, true);
        window.push_back(next);
    }
    return window;
}

void ReadAhead::keep(const QString& sql, const std::vector<qint64>& keys,
                     const std::vector<RecordsetColumn>& columns,
                     std::vector<std::vector<QVariant>> rows) {
    // A run over a huge table keeps a few windows at a time, not the table.
    constexpr qsizetype kMostKeptRows = 200000;
    if (m_keptRows + qsizetype(rows.size()) > kMostKeptRows)
        forgetRows();
    if (m_kept.contains(sql)) {
        // The window before was used up with no write between.
        if (const int size = windowSizeOf(sql); size < WindowSize) {
            if (size * 2 >= WindowSize)
                m_windowSize.remove(sql);
            else
                m_windowSize.insert(sql, size * 2);
        }
    }
    Kept& kept = m_kept[sql];
    // Keys are asked in order, so the window before is done with.
    for (const Rows& done : std::as_const(kept.byKey))
        m_keptRows -= qsizetype(done.rows.size());
    kept.byKey.clear();
    if (!kept.columns) {
        Recordset described;
        described.columns = columns;
        described.buildColumnLookup();
        kept.columns = std::make_shared<const std::vector<RecordsetColumn>>(columns);
        kept.lookup = described.lookup;
        kept.upperSql = sql.toUpper();
    }
    for (qint64 key : keys) {
        Rows& entry = kept.byKey[key];
        entry.columns = kept.columns;
        entry.lookup = kept.lookup;
    }
    for (std::vector<QVariant>& row : rows) {
        if (row.empty())
            continue;
        const QVariant key = row.back();
        row.pop_back();
        bool whole = false;
        const qint64 value = key.toLongLong(&whole);
        if (!whole)
            continue;
        const auto entry = kept.byKey.find(value);
        if (entry != kept.byKey.end())
            entry->rows.push_back(row);
    }
    m_keptRows += qsizetype(rows.size());
    // Learnt in the order of the keys, which is the order the run asks
    // for them, whatever order the statement sorts its rows in.
    std::vector<std::vector<QVariant>> inKeyOrder;
    inKeyOrder.reserve(rows.size());
    for (qint64 key : keys) {
        const Rows& entry = kept.byKey[key];
        inKeyOrder.insert(inKeyOrder.end(), entry.rows.begin(), entry.rows.end());
    }
    learn(columns, inKeyOrder);
}

void ReadAhead::learn(const std::vector<RecordsetColumn>& columns,
                      const std::vector<std::vector<QVariant>>& rows) {
    for (size_t c = 0; c < columns.size(); ++c) {
        if (columns[c].yesNo || columns[c].date)
            continue;
        std::vector<qint64> values;
        QHash<qint64, bool> seen;
        bool numbers = true;
        for (const std::vector<QVariant>& row : rows) {
            if (c >= row.size() || row[c].isNull())
                continue;
            if (!isWholeNumberType(row[c])) {
                numbers = false;
                break;
            }
            const qint64 v = row[c].toLongLong();
            if (!seen.contains(v)) {
                seen.insert(v, true);
                values.push_back(v);
            }
        }
        if (numbers && !values.empty())
            m_learnt[columns[c].name.toUpper()].assign(std::move(values));
    }
}

void ReadAhead::forgetTable(const QString& table) {
    const QString upper = table.toUpper();
    for (auto it = m_kept.begin(); it != m_kept.end();) {
        if (readsTable(it->upperSql, upper)) {
            for (const Rows& rows : std::as_const(it->byKey))
                m_keptRows -= qsizetype(rows.rows.size());
            shrinkWindow(it.key());
            it = m_kept.erase(it);
        } else {
            ++it;
        }
    }
}

void ReadAhead::shrinkWindow(const QString& sql) {
    m_windowSize.insert(sql, std::max(SmallestWindow, windowSizeOf(sql) / 4));
}

void ReadAhead::forgetRows(bool written) {
    if (written) {
        for (auto it = m_kept.constBegin(); it != m_kept.constEnd(); ++it)
            shrinkWindow(it.key());
    }
    m_kept.clear();
    m_keptRows = 0;
}

void ReadAhead::forgetStatements() {
    m_prepared.clear();
    m_refused.clear();
}
