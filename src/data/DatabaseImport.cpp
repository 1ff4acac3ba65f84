#include "data/DatabaseImport.h"

#include "data/ClientDatabaseSchema.h"
#include "data/DatabaseLocation.h"
#include "data/JetSqlTranslator.h"
#include "data/NewClientDatabase.h"
#include "data/SqlValueKinds.h"
#include "platform/errorClass.h"

#include <QAtomicInt>
#include <QFileInfo>
#include <QLocale>
#include <QSqlError>
#include <QSqlField>
#include <QSqlQuery>
#include <QSqlRecord>
#include <algorithm>
#include <cmath>
#include <optional>

namespace {

// Rows per INSERT: one round trip to a server carries this many.
constexpr int kRowsPerStatement = 250;

enum class Kind { YesNo, Boolean, Date, Integer, Real, Text };

struct Column {
    QString name;
    Kind kind = Kind::Text;
};

Kind kindOf(const QString& name, const QSqlField& destination) {
    const int type = destination.metaType().id();
    if (ClientDatabaseSchema::isYesNoColumn(name))
        return type == QMetaType::Bool ? Kind::Boolean : Kind::YesNo;
    if (ClientDatabaseSchema::isDateColumn(name))
        return Kind::Date;
    if (isWholeNumberTypeId(type))
        return Kind::Integer;
    switch (type) {
    case QMetaType::Double:
    case QMetaType::Float:
        return Kind::Real;
    case QMetaType::Bool:
        return Kind::Boolean;
    default:
        return Kind::Text;
    }
}

bool isNumber(const QVariant& v) {
    return isNumberTypeId(v.typeId());
}

QString quoted(const QVariant& v) {
    QString text = v.toString();
    if (text.size() > 40)
        text = text.left(37) + QStringLiteral("...");
    return u'\'' + text + u'\'';
}

// The truth of a Yes/No value as the program reads it; nothing for a text
// that is neither a number nor a yes or a no.
std::optional<bool> truthOf(const QVariant& v) {
    if (v.typeId() == QMetaType::Bool)
        return v.toBool();
    if (isNumber(v))
        return v.toDouble() != 0.0;
    const QString t = v.toString().trimmed();
    for (const char* yes : {"true", "yes", "on"}) {
        if (t.compare(QLatin1String(yes), Qt::CaseInsensitive) == 0)
            return true;
    }
    for (const char* no : {"false", "no", "off", ""}) {
        if (t.compare(QLatin1String(no), Qt::CaseInsensitive) == 0)
            return false;
    }
    bool ok = false;
    const double d = QLocale::c().toDouble(t, &ok);
    if (ok)
        return d != 0.0;
    return std::nullopt;
}

// The value in the destination's storage convention, or nothing with the
// reason it cannot be stored there.
std::optional<QVariant> convert(const QVariant& v, const Column& column, QString* reason) {
    if (v.isNull() || !v.isValid())
        return QVariant();
    switch (column.kind) {
    case Kind::YesNo:
    case Kind::Boolean: {
        const auto truth = truthOf(v);
        if (!truth) {
            *reason = QStringLiteral("%1 %2 is not a Yes/No value").arg(column.name, quoted(v));
            return std::nullopt;
        }
        return column.kind == Kind::Boolean ? QVariant(*truth) : QVariant(*truth ? 1 : 0);
    }
    case Kind::Date: {
        if (v.typeId() == QMetaType::QDate || v.typeId() == QMetaType::QDateTime ||
            v.typeId() == QMetaType::QTime) {
            return StorageConventions::toStored(v);
        }
        if (v.typeId() == QMetaType::QString) {
            const QString text = v.toString().trimmed();
            if (text.isEmpty())
                return QVariant();
            const QVariant parsed = StorageConventions::parseStoredDate(text);
            if (parsed.isValid())
                return StorageConventions::toStored(parsed);
        }
        *reason = QStringLiteral("%1 %2 is not a date").arg(column.name, quoted(v));
        return std::nullopt;
    }
    case Kind::Integer: {
        if (v.typeId() == QMetaType::Bool)
            return QVariant(v.toBool() ? 1 : 0);
        double d = 0;
        bool ok = false;
        if (isNumber(v) && v.typeId() != QMetaType::Double && v.typeId() != QMetaType::Float)
            return QVariant(v.toLongLong());
        if (isNumber(v)) {
            d = v.toDouble();
            ok = true;
        } else {
            const QString text = v.toString().trimmed();
            if (text.isEmpty())
                return QVariant();
            const qlonglong whole = text.toLongLong(&ok);
            if (ok)
                return QVariant(whole);
            d = QLocale::c().toDouble(text, &ok);
        }
        if (ok && std::isfinite(d) && std::floor(d) == d && std::fabs(d) < 9.0e15)
            return QVariant(qlonglong(d));
        *reason = QStringLiteral("%1 %2 is not a whole number").arg(column.name, quoted(v));
        return std::nullopt;
    }
    case Kind::Real: {
        if (isNumber(v))
            return QVariant(v.toDouble());
        const QString text = v.toString().trimmed();
        if (text.isEmpty())
            return QVariant();
        bool ok = false;
        const double d = QLocale::c().toDouble(text, &ok);
        if (ok && std::isfinite(d))
            return QVariant(d);
        *reason = QStringLiteral("%1 %2 is not a number").arg(column.name, quoted(v));
        return std::nullopt;
    }
    case Kind::Text:
        if (v.typeId() == QMetaType::QByteArray)
            return QVariant(QString::fromUtf8(v.toByteArray()));
        return QVariant(v.toString());
    }
    return v;
}

// Copies one table's rows, several to a statement; a statement the
// destination refuses is retried a row at a time, so that only the rows at
// fault are left out, each with the destination's reason.
class TableCopy {
public:
    TableCopy(QSqlDatabase& destination, const QString& table, const std::vector<Column>& columns,
              ImportReport& report)
        : m_db(destination), m_table(table), m_columns(columns), m_report(report),
          m_server(destination.driverName() == QLatin1String("QPSQL")) {
        QStringList names;
        for (const Column& c : columns)
            names << c.name;
        m_head = QStringLiteral("INSERT INTO %1 (%2)%3 VALUES ")
                     .arg(table, names.join(QStringLiteral(", ")),
                          m_server ? QStringLiteral(" OVERRIDING SYSTEM VALUE") : QString());
    }

    void add(const QString& key, const QVariantList& values) {
        QString tuple = QStringLiteral("(");
        for (size_t i = 0; i < m_columns.size(); ++i) {
            if (i > 0)
                tuple += u',';
            appendLiteral(tuple, values[qsizetype(i)]);
        }
        tuple += u')';
        m_pending.push_back({key, tuple});
        if (m_pending.size() >= size_t(kRowsPerStatement))
            flush();
    }

    int flush() {
        if (m_pending.empty())
            return m_copied;
        QString sql = m_head;
        for (size_t i = 0; i < m_pending.size(); ++i) {
            if (i > 0)
                sql += u',';
            sql += m_pending[i].second;
        }
        if (!runGuarded(sql)) {
            for (const auto& [key, tuple] : m_pending) {
                QString error;
                if (runGuarded(m_head + tuple, &error))
                    ++m_copied;
                else
                    m_report.refused.push_back({m_table, key, error});
            }
        } else {
            m_copied += int(m_pending.size());
        }
        m_pending.clear();
        return m_copied;
    }

private:
    // The value as SQL text, written here rather than by the driver: the
    // copy spends most of its time on this. Text holding a backslash goes
    // to a server as an escape string, which reads the same whatever the
    // server's setting for backslashes in plain strings.
    void appendLiteral(QString& out, const QVariant& v) const {
        if (v.isNull()) {
            out += QLatin1String("NULL");
            return;
        }
        switch (v.typeId()) {
        case QMetaType::Bool:
            out += v.toBool() ? QLatin1String("TRUE") : QLatin1String("FALSE");
            return;
        case QMetaType::Int:
        case QMetaType::LongLong:
            out += QString::number(v.toLongLong());
            return;
        case QMetaType::Double:
            out += QString::number(v.toDouble(), 'g', QLocale::FloatingPointShortest);
            return;
        default:
            break;
        }
        QString text = v.toString();
        if (m_server && text.contains(u'\\')) {
            text.replace(u'\\', QStringLiteral("\\\\"));
            out += u'E';
        }
        text.replace(u'\'', QStringLiteral("''"));
        out += u'\'';
        out += text;
        out += u'\'';
    }

    // Runs a statement so that its failure undoes only itself.
    bool runGuarded(const QString& sql, QString* error = nullptr) {
        QSqlQuery query(m_db);
        if (!query.exec(QStringLiteral("SAVEPOINT qm_import_rows")))
            throw QmError(QmError::DatabaseError, query.lastError().text());
        if (query.exec(sql)) {
            query.exec(QStringLiteral("RELEASE SAVEPOINT qm_import_rows"));
            return true;
        }
        if (error)
            *error = query.lastError().databaseText().trimmed();
        if (!query.exec(QStringLiteral("ROLLBACK TO SAVEPOINT qm_import_rows")))
            throw QmError(QmError::DatabaseError, query.lastError().text());
        query.exec(QStringLiteral("RELEASE SAVEPOINT qm_import_rows"));
        return false;
    }

    QSqlDatabase& m_db;
    QString m_table;
    const std::vector<Column>& m_columns;
    ImportReport& m_report;
    bool m_server = false;
    QString m_head;
    std::vector<std::pair<QString, QString>> m_pending; // key, "(values)"
    int m_copied = 0;
};

// The source, open read-only, closed and unregistered however the import ends.
class SourceConnection {
public:
    explicit SourceConnection(const DatabaseLocation& location) {
        static QAtomicInt counter;
        m_name = QStringLiteral("qm_import_source_%1").arg(counter.fetchAndAddRelaxed(1));
        if (!location.isServer() && !QFileInfo(location.path).isFile())
            throw QmError(
                QmError::PathNotFound,
                QStringLiteral("The source database does not exist: %1").arg(location.path));
        QString error;
        if (!location.open(m_db, m_name, &error, true))
            throw QmError(QmError::DatabaseError,
                          QStringLiteral("Cannot open the source: %1").arg(error));
    }
    ~SourceConnection() {
        m_db.close();
        m_db = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_name);
    }
    SourceConnection(const SourceConnection&) = delete;
    SourceConnection& operator=(const SourceConnection&) = delete;
    QSqlDatabase& db() { return m_db; }

private:
    QString m_name;
    QSqlDatabase m_db;
};

// A server keeps unquoted names in lower case, and its driver looks the
// table up as spelt.
QSqlRecord recordOf(QSqlDatabase& db, const QString& table) {
    const QSqlRecord record = db.record(table);
    return record.isEmpty() ? db.record(table.toLower()) : record;
}

DatabaseLocation parseLocation(const QString& text, const char* role) {
    QString error;
    const auto location = DatabaseLocation::parse(text, &error);
    if (!location)
        throw QmError(QmError::InvalidPropertyValue,
                      QStringLiteral("The %1 is not usable: %2").arg(QLatin1String(role), error));
    return *location;
}

// The columns of the table to copy: the schema's, where the source has them.
std::vector<Column> columnsToCopy(const QString& table, const QSqlRecord& source,
                                  const QSqlRecord& destination, ImportReport& report) {
    const QStringList schema = ClientDatabaseSchema::columnNames(table);
    std::vector<Column> columns;
    for (const QString& name : schema) {
        if (source.indexOf(name) < 0) {
            report.notes
                << QStringLiteral("%1.%2 is not in the source; left empty").arg(table, name);
            continue;
        }
        const Kind kind = kindOf(name, destination.field(name));
        columns.push_back({name, kind});
    }
    for (int i = 0; i < source.count(); ++i) {
        if (!schema.contains(source.fieldName(i), Qt::CaseInsensitive))
            report.notes << QStringLiteral("%1.%2 is not a column of the client database; not "
                                           "copied")
                                .arg(table, source.fieldName(i));
    }
    return columns;
}

} // namespace

qint64 ImportReport::copied() const {
    qint64 total = 0;
    for (const ImportedTable& table : tables)
        total += table.copied;
    return total;
}

ImportReport DatabaseImport::run(const QString& source, const QString& destination) {
    const DatabaseLocation from = parseLocation(source, "source");
    const DatabaseLocation to = parseLocation(destination, "destination");
    SourceConnection input(from);
    const QStringList sourceTables = input.db().tables(QSql::Tables);
    if (input.db().lastError().isValid() || sourceTables.isEmpty())
        throw QmError(QmError::DatabaseError,
                      QStringLiteral("The source is not a client database: %1 has no tables%2")
                          .arg(from.display(),
                               input.db().lastError().isValid()
                                   ? QStringLiteral(" (%1)").arg(input.db().lastError().text())
                                   : QString()));
    bool anyTable = false;
    for (const QString& table : ClientDatabaseSchema::tableNames())
        anyTable = anyTable || sourceTables.contains(table, Qt::CaseInsensitive);
    if (!anyTable)
        throw QmError(QmError::DatabaseError,
                      QStringLiteral("The source is not a client database: %1 has none of its "
                                     "tables")
                          .arg(from.display()));

    NewClientDatabase output(to, QStringLiteral("the import"));
    ImportReport report;
    for (const QString& table : ClientDatabaseSchema::tableNames()) {
        if (!sourceTables.contains(table, Qt::CaseInsensitive)) {
            report.notes << QStringLiteral("%1 is not in the source; left empty").arg(table);
            report.tables.push_back({table, 0});
            continue;
        }
        const std::vector<Column> columns =
            columnsToCopy(table, recordOf(input.db(), table), recordOf(output.db(), table), report);
        if (columns.empty()) {
            report.tables.push_back({table, 0});
            continue;
        }
        QStringList names;
        for (const Column& c : columns)
            names << c.name;
        QSqlQuery read(input.db());
        read.setForwardOnly(true);
        if (!read.exec(
                QStringLiteral("SELECT %1 FROM %2").arg(names.join(QStringLiteral(", ")), table)))
            throw QmError(QmError::DatabaseError,
                          QStringLiteral("Cannot read %1 from the source: %2")
                              .arg(table, read.lastError().text()));
        // A refused row is named by the table's key, or its first column.
        const qsizetype keyColumn =
            std::max<qsizetype>(0, names.indexOf(ClientDatabaseSchema::primaryKey(table)));
        TableCopy copy(output.db(), table, columns, report);
        qint64 rowNumber = 0;
        while (read.next()) {
            ++rowNumber;
            const QVariant keyValue = read.value(int(keyColumn));
            const QString key =
                keyValue.isNull()
                    ? QStringLiteral("row %1").arg(rowNumber)
                    : QStringLiteral("%1 %2").arg(names[keyColumn], keyValue.toString());
            QVariantList values;
            values.reserve(qsizetype(columns.size()));
            QString reason;
            for (size_t i = 0; i < columns.size() && reason.isEmpty(); ++i) {
                if (const auto v = convert(read.value(int(i)), columns[i], &reason))
                    values << *v;
            }
            if (!reason.isEmpty())
                report.refused.push_back({table, key, reason});
            else
                copy.add(key, values);
        }
        if (read.lastError().isValid())
            throw QmError(QmError::DatabaseError,
                          QStringLiteral("Cannot read %1 from the source: %2")
                              .arg(table, read.lastError().text()));
        report.tables.push_back({table, copy.flush()});
    }
    output.commit();
    return report;
}
