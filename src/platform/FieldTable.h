#pragma once

#include <QString>
#include <QStringList>
#include <vector>

// A table of string columns with a current row: the merge field catalogue
// and a document's list of recipients. Positions and column numbers are
// 1-based as the callers use them.
class FieldTable {
public:
    explicit FieldTable(int columns = 5);

    void clear();
    // Appends a row; `position` is the caller's counter and only recorded.
    // Missing values are empty, extra values are dropped.
    void addRow(int position, const QStringList& values);
    int rowCount() const { return int(m_rows.size()); }
    bool isEmpty() const { return m_rows.empty(); }
    int columnCount() const { return m_columns; }

    // Makes the row current; false (and no current row) when there is none.
    bool selectRow(int position);
    int currentRow() const { return m_current; }
    // The 1-based position of the first row whose column equals the value
    // exactly, which becomes current; -1 when none.
    int find(const QString& value, int column);
    // The value in the current row; empty without a current row or for a
    // column out of range.
    QString columnValue(int column) const;
    // The value of a given row, without moving the current row.
    QString value(int position, int column) const;

    // Sorts on column 1 then column 2, as text when either is not a number
    // and by value when both are.
    void sortOnFirstTwoColumns();
    // Replaces the contents of `other` with a copy of this table.
    void copyEntireListToSecondList(FieldTable& other) const;

private:
    int m_columns;
    std::vector<QStringList> m_rows;
    int m_current = 0;
};
