#include "platform/FieldTable.h"

#include <algorithm>

FieldTable::FieldTable(int columns) : m_columns(columns < 1 ? 1 : columns) {}

void FieldTable::clear() {
    m_rows.clear();
    m_current = 0;
}

void FieldTable::addRow(int /*position*/, const QStringList& values) {
    QStringList row = values.mid(0, m_columns);
    while (row.size() < m_columns) {
        row << QString();
    }
    m_rows.push_back(std::move(row));
}

bool FieldTable::selectRow(int position) {
    if (position < 1 || position > rowCount()) {
        m_current = 0;
        return false;
    }
    m_current = position;
    return true;
}

int FieldTable::find(const QString& value, int column) {
    if (column < 1 || column > m_columns) {
        return -1;
    }
    for (int i = 0; i < rowCount(); ++i) {
        if (m_rows[size_t(i)].at(column - 1) == value) {
            m_current = i + 1;
            return m_current;
        }
    }
    return -1;
}

QString FieldTable::columnValue(int column) const {
    return value(m_current, column);
}

QString FieldTable::value(int position, int column) const {
    if (position < 1 || position > rowCount() || column < 1 || column > m_columns) {
        return QString();
    }
    return m_rows[size_t(position - 1)].at(column - 1);
}

void FieldTable::sortOnFirstTwoColumns() {
    // Each cell is read as a number once, not on every comparison: a merge
    // sorts thousands of rows.
    struct Key {
        double number = 0;
        bool numeric = false;
        QString text;
    };
    auto keyOf = [](const QString& cell) {
        Key key;
        key.number = cell.trimmed().toDouble(&key.numeric);
        key.text = cell;
        return key;
    };
    auto less = [](const Key& a, const Key& b) {
        if (a.numeric && b.numeric) {
            return a.number < b.number;
        }
        return a.text < b.text;
    };
    struct Row {
        Key first;
        Key second;
        QStringList* cells;
    };
    const bool two = m_columns > 1;
    std::vector<Row> rows;
    rows.reserve(m_rows.size());
    for (QStringList& cells : m_rows) {
        rows.push_back({keyOf(cells.at(0)), two ? keyOf(cells.at(1)) : Key{}, &cells});
    }
    std::stable_sort(rows.begin(), rows.end(), [&](const Row& r, const Row& s) {
        if (less(r.first, s.first)) {
            return true;
        }
        if (less(s.first, r.first)) {
            return false;
        }
        return two && less(r.second, s.second);
    });
    decltype(m_rows) sorted;
    sorted.reserve(m_rows.size());
    for (const Row& row : rows) {
        sorted.push_back(std::move(*row.cells));
    }
    m_rows = std::move(sorted);
    m_current = 0;
}

void FieldTable::copyEntireListToSecondList(FieldTable& other) const {
    other.m_columns = m_columns;
    other.m_rows = m_rows;
    other.m_current = 0;
}
