#include "platform/FieldTable.h"

#include <gtest/gtest.h>

namespace {

QStringList rows(const FieldTable& table) {
    QStringList out;
    for (int row = 1; row <= table.rowCount(); ++row) {
        out << table.value(row, 1) + QLatin1Char('/') + table.value(row, 2) + QLatin1Char('/') +
                   table.value(row, 3);
    }
    return out;
}

} // namespace

// A recipients list sorts companies by number, then contacts by number,
// keeping the order of equal rows; text sorts as text.
TEST(FieldTableTest, SortsByNumberWhereBothAreNumbersAndKeepsEqualRowsInOrder) {
    FieldTable table(3);
    table.addRow(1, {"10", "2", "a"});
    table.addRow(2, {" 9", "", "b"});
    table.addRow(3, {"10", "10", "c"});
    table.addRow(4, {"10", "2", "d"});
    table.addRow(5, {"100", "", "e"});
    table.addRow(6, {"9", "", "f"});
    table.selectRow(3);
    table.sortOnFirstTwoColumns();
    EXPECT_EQ(rows(table), QStringList({" 9//b", "9//f", "10/2/a", "10/2/d", "10/10/c", "100//e"}));
    EXPECT_EQ(table.currentRow(), 0);

    FieldTable names(2);
    names.addRow(1, {"b", "1"});
    names.addRow(2, {"a", "2"});
    names.addRow(3, {"B", "3"});
    names.sortOnFirstTwoColumns();
    EXPECT_EQ(rows(names), QStringList({"B/3/", "a/2/", "b/1/"}));
}
