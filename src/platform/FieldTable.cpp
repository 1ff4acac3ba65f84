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
    auto less = [](const QString& a, const QString& b) {
        bool okA = false;
        bool okB = false;
        const double x = a.trimmed().toDouble(&okA);
        const double y = b.trimmed().toDouble(&okB);
        if (okA && okB) {
            return x < y;
        }
        return a < b;
    };
    const int columns = m_columns;
    std::stable_sort(m_rows.begin(), m_rows.end(), [&](const QStringList& r, const QStringList& s) {
        if (less(r.at(0), s.at(0))) {
            return true;
        }
        if (less(s.at(0), r.at(0))) {
            return false;
        }
        return columns > 1 && less(r.at(1), s.at(1));
    });
    m_current = 0;
}

void FieldTable::copyEntireListToSecondList(FieldTable& other) const {
    other.m_columns = m_columns;
    other.m_rows = m_rows;
    other.m_current = 0;
}
