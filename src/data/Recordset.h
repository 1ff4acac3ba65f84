#pragma once

#include <QHash>
#include <QString>
#include <QVariant>
#include <memory>
#include <unordered_map>
#include <vector>

// The rows of one record set of databaseControl, read whole when it is
// opened. Internal to the data layer.
class QSqlField;

struct RecordsetColumn {
    QString name;
    QString table; // empty when the engine does not say
    bool yesNo = false;
    bool date = false;

    // A column of a result as the engine describes it; a server's names
    // (folded to lower case) come back spelled as in the schema.
    static RecordsetColumn describe(const QSqlField& field, bool server);
};

class Recordset {
public:
    std::vector<RecordsetColumn> columns;
    std::vector<std::vector<QVariant>> rows; // stored values, as the engine gave them
    std::vector<qint64> rowKeys;             // editable sets: the row key of each row, -1 unsaved
    QString table;                           // editable sets: the table written back to
    bool editable = false;
    int position = 0;
    int pendingNewRow = -1;  // row added by addNew and not yet saved
    std::vector<int> staged; // columns given by setField since the last save

    struct FindWalk {
        int column = -1;
        std::vector<int> rows; // a copy: writes during the walk drop the indexes
        size_t next = 0;       // index into rows of the current row
        bool exhausted() const { return next >= rows.size(); }
    };
    std::vector<FindWalk> finds;

    int rowCount() const { return static_cast<int>(rows.size()); }
    bool atEnd() const { return position < 0 || position >= rowCount(); }

    // Index of a column: the name without regard to case, or "Table.Column".
    // -1 when there is none.
    int columnIndex(const QString& name) const;
    // The value as callers see it: Yes/No as bool, stored dates as
    // QDate/QDateTime, Null as a null QVariant.
    QVariant value(int row, int column) const;
    static QVariant typedValue(const RecordsetColumn& column, const QVariant& stored);

    // Rows by the upper-case text of a column's value, built on first use.
    const std::vector<int>& rowsWithValue(int column, const QString& value);
    void dropIndexes() { m_indexes.clear(); }
    // Builds the name lookup of the columns; sets opened from the same
    // statement share it.
    void buildColumnLookup();
    std::shared_ptr<const QHash<QString, int>> lookup; // upper-case NAME and TABLE.NAME -> index

private:
    std::unordered_map<int, QHash<QString, std::vector<int>>> m_indexes;
    std::vector<int> m_noRows;
};
