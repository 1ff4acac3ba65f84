#include "data/Recordset.h"

#include "data/ClientDatabaseSchema.h"
#include "data/JetSqlTranslator.h"

#include <QSqlField>

RecordsetColumn RecordsetColumn::describe(const QSqlField& field, bool server) {
    RecordsetColumn column;
    column.name = server ? ClientDatabaseSchema::canonicalColumnName(field.name()) : field.name();
    column.table = field.tableName();
    column.yesNo = field.metaType().id() == QMetaType::Bool ||
                   ClientDatabaseSchema::isYesNoColumn(column.name);
    column.date = ClientDatabaseSchema::isDateColumn(column.name);
    return column;
}

namespace {

// The text by which findRows compares a value: upper case, numbers without
// a fraction written as integers.
QString findKey(const QVariant& typed) {
    switch (typed.typeId()) {
    case QMetaType::Bool:
        return typed.toBool() ? QStringLiteral("TRUE") : QStringLiteral("FALSE");
    case QMetaType::Double: {
        const double d = typed.toDouble();
        if (d == static_cast<double>(static_cast<long long>(d)))
            return QString::number(static_cast<long long>(d));
        return QString::number(d);
    }
    case QMetaType::QDate:
        return typed.toDate().toString(QStringLiteral("yyyy-MM-dd"));
    case QMetaType::QDateTime:
        return typed.toDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    default:
        return typed.toString().trimmed().toUpper();
    }
}

} // namespace

void Recordset::buildColumnLookup() {
    auto names = std::make_shared<QHash<QString, int>>();
    for (int i = static_cast<int>(columns.size()) - 1; i >= 0; --i) {
        const RecordsetColumn& c = columns[size_t(i)];
        // Walking backwards lets the first of two equal names win.
        names->insert(c.name.toUpper(), i);
        if (!c.table.isEmpty())
            names->insert((c.table + u'.' + c.name).toUpper(), i);
    }
    lookup = std::move(names);
}

int Recordset::columnIndex(const QString& name) const {
    const QString key = name.trimmed().toUpper();
    const QHash<QString, int>& names = *lookup;
    const auto it = names.constFind(key);
    if (it != names.constEnd())
        return it.value();
    // "Table.Column" when the engine did not report tables: the column part.
    const qsizetype dot = key.lastIndexOf(u'.');
    if (dot > 0) {
        const auto bare = names.constFind(key.mid(dot + 1));
        if (bare != names.constEnd() && columns[size_t(bare.value())].table.isEmpty())
            return bare.value();
    }
    return -1;
}

QVariant Recordset::typedValue(const RecordsetColumn& column, const QVariant& stored) {
    if (stored.isNull() || !stored.isValid())
        return {};
    if (column.yesNo) {
        switch (stored.typeId()) {
        case QMetaType::QString: {
            const QString t = stored.toString().trimmed();
            if (t.compare(u"True", Qt::CaseInsensitive) == 0 ||
                t.compare(u"Yes", Qt::CaseInsensitive) == 0)
                return true;
            if (t.compare(u"False", Qt::CaseInsensitive) == 0 ||
                t.compare(u"No", Qt::CaseInsensitive) == 0 || t.isEmpty())
                return false;
            bool ok = false;
            const double d = t.toDouble(&ok);
            return ok ? QVariant(d != 0.0) : stored;
        }
        default:
            return stored.toDouble() != 0.0;
        }
    }
    if (column.date && stored.typeId() == QMetaType::QString) {
        const QVariant d = StorageConventions::parseStoredDate(stored.toString());
        return d.isValid() ? d : stored;
    }
    return stored;
}

QVariant Recordset::value(int row, int column) const {
    return typedValue(columns[size_t(column)], rows[size_t(row)][size_t(column)]);
}

const std::vector<int>& Recordset::rowsWithValue(int column, const QString& value) {
    auto it = m_indexes.find(column);
    if (it == m_indexes.end()) {
        QHash<QString, std::vector<int>> index;
        for (int r = 0; r < rowCount(); ++r) {
            const QVariant v = Recordset::value(r, column);
            if (v.isNull())
                continue;
            index[findKey(v)].push_back(r);
        }
        it = m_indexes.emplace(column, std::move(index)).first;
    }
    const auto found = it->second.constFind(value.trimmed().toUpper());
    return found == it->second.constEnd() ? m_noRows : found.value();
}
