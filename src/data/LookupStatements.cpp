#include "data/LookupStatements.h"

#include "data/ClientDatabaseSchema.h"
#include "data/Recordset.h"
#include "platform/errorClass.h"

#include <sqlite3.h>
#include <vector>

namespace {

[[noreturn]] void fail(const QString& text) {
    throw QmError(QmError::DatabaseError, text);
}

QVariant columnValue(sqlite3_stmt* stmt, int index) {
    switch (sqlite3_column_type(stmt, index)) {
    case SQLITE_INTEGER:
        return QVariant(qlonglong(sqlite3_column_int64(stmt, index)));
    case SQLITE_FLOAT:
        return QVariant(sqlite3_column_double(stmt, index));
    case SQLITE_TEXT: {
        // Text is asked as UTF-16, the form QString keeps, so the engine
        // converts once.
        const auto* text = static_cast<const char16_t*>(sqlite3_column_text16(stmt, index));
        return QVariant(QString::fromUtf16(text, sqlite3_column_bytes16(stmt, index) / 2));
    }
    case SQLITE_BLOB:
        return QVariant(QByteArray(static_cast<const char*>(sqlite3_column_blob(stmt, index)),
                                   sqlite3_column_bytes(stmt, index)));
    default:
        return {};
    }
}

int bind(sqlite3_stmt* stmt, int slot, const QVariant& value) {
    if (!value.isValid() || value.isNull())
        return sqlite3_bind_null(stmt, slot);
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::UInt:
    case QMetaType::Short:
        return sqlite3_bind_int64(stmt, slot, value.toLongLong());
    case QMetaType::Bool:
        return sqlite3_bind_int(stmt, slot, value.toBool() ? 1 : 0);
    case QMetaType::Double:
        return sqlite3_bind_double(stmt, slot, value.toDouble());
    default: {
        const QString text = value.toString();
        return sqlite3_bind_text16(stmt, slot, text.utf16(), int(text.size() * 2),
                                   SQLITE_TRANSIENT);
    }
    }
}

// Resets the statement however the lookup is left, so that no read
// transaction stays open on the host's file.
class ResetOnExit {
public:
    explicit ResetOnExit(sqlite3_stmt* stmt) : m_stmt(stmt) {}
    ~ResetOnExit() {
        sqlite3_reset(m_stmt);
        sqlite3_clear_bindings(m_stmt);
    }
    ResetOnExit(const ResetOnExit&) = delete;
    ResetOnExit& operator=(const ResetOnExit&) = delete;

private:
    sqlite3_stmt* m_stmt;
};

} // namespace

struct LookupStatements::Statement {
    TranslatedSql translated;
    sqlite3_stmt* stmt = nullptr;
    // Upper-case column name (and TABLE.COLUMN) to index and typing.
    QHash<QString, int> columns;
    std::vector<RecordsetColumn> descriptions;

    ~Statement() { sqlite3_finalize(stmt); }
};

LookupStatements::LookupStatements(sqlite3* connection) : m_connection(connection) {}

LookupStatements::~LookupStatements() {
    m_statements.clear();
    sqlite3_finalize(m_schemaVersion);
}

int LookupStatements::schemaVersion() {
    if (!m_schemaVersion &&
        sqlite3_prepare_v3(m_connection, "PRAGMA schema_version", -1, SQLITE_PREPARE_PERSISTENT,
                           &m_schemaVersion, nullptr) != SQLITE_OK)
        fail(QString::fromUtf8(sqlite3_errmsg(m_connection)));
    ResetOnExit reset(m_schemaVersion);
    if (sqlite3_step(m_schemaVersion) != SQLITE_ROW)
        fail(QString::fromUtf8(sqlite3_errmsg(m_connection)));
    return sqlite3_column_int(m_schemaVersion, 0);
}

LookupStatements::Statement& LookupStatements::statement(const QString& jetSql,
                                                         const QVariantList& arguments) {
    // Text arguments are compared without regard to case and numbers are
    // not, so the kinds of the arguments are part of the shape.
    std::vector<bool> text;
    QString shape = jetSql;
    shape += u'\x1f';
    for (const QVariant& argument : arguments) {
        text.push_back(JetSqlTranslator::isTextValue(argument));
        shape += text.back() ? u'T' : u'N';
    }
    if (const auto found = m_statements.constFind(shape); found != m_statements.constEnd())
        return **found;
    auto entry = std::make_shared<Statement>();
    entry->translated = JetSqlTranslator::translate(jetSql, text);
    const QString& sql = entry->translated.sql;
    if (sqlite3_prepare_v3(m_connection, sql.toUtf8().constData(), -1, SQLITE_PREPARE_PERSISTENT,
                           &entry->stmt, nullptr) != SQLITE_OK)
        fail(
            QStringLiteral("%1 [%2]").arg(QString::fromUtf8(sqlite3_errmsg(m_connection)), jetSql));
    if (!entry->stmt)
        fail(QStringLiteral("The lookup is not a statement: %1").arg(jetSql));
    const int count = sqlite3_column_count(entry->stmt);
    for (int i = 0; i < count; ++i) {
        RecordsetColumn column;
        column.name = QString::fromUtf8(sqlite3_column_name(entry->stmt, i));
        if (const char* table = sqlite3_column_table_name(entry->stmt, i))
            column.table = QString::fromUtf8(table);
        const char* declared = sqlite3_column_decltype(entry->stmt, i);
        const QByteArray type = QByteArray(declared ? declared : "").toUpper();
        column.yesNo =
            type == "BOOLEAN" || type == "BOOL" || ClientDatabaseSchema::isYesNoColumn(column.name);
        column.date = ClientDatabaseSchema::isDateColumn(column.name);
        const QString key = column.name.toUpper();
        entry->columns.insert(key, i);
        if (!column.table.isEmpty())
            entry->columns.insert(column.table.toUpper() + u'.' + key, i);
        entry->descriptions.push_back(std::move(column));
    }
    // Lookups use a handful of shapes; a runaway caller building shapes
    // with literals in them must not grow this without bound.
    if (m_statements.size() > 256)
        m_statements.clear();
    auto* raw = entry.get();
    m_statements.insert(shape, std::move(entry));
    return *raw;
}

std::optional<std::pair<QString, QVariantList>>
LookupStatements::boundStatement(const QString& jetSql, const QVariantList& arguments) {
    const Statement& s = statement(jetSql, arguments);
    if (arguments.size() != qsizetype(s.translated.placeholders.size()))
        return std::nullopt;
    QVariantList values = s.translated.parameters;
    for (size_t k = 0; k < s.translated.placeholders.size(); ++k)
        values[s.translated.placeholders[k]] = arguments[qsizetype(k)];
    return std::pair{s.translated.sql, values};
}

std::optional<QVariant> LookupStatements::firstValue(const QString& jetSql,
                                                     const QVariantList& arguments,
                                                     const QString& column) {
    Statement& s = statement(jetSql, arguments);
    if (arguments.size() != qsizetype(s.translated.placeholders.size()))
        fail(QStringLiteral("The lookup takes %1 arguments, %2 given: %3")
                 .arg(s.translated.placeholders.size())
                 .arg(arguments.size())
                 .arg(jetSql));
    int at = 0;
    if (const QString key = column.trimmed().toUpper(); !key.isEmpty()) {
        auto index = s.columns.constFind(key);
        if (index == s.columns.constEnd()) {
            const qsizetype dot = key.lastIndexOf(u'.');
            index = dot > 0 ? s.columns.constFind(key.mid(dot + 1)) : s.columns.constEnd();
            if (index == s.columns.constEnd())
                fail(QStringLiteral("The lookup has no column %1: %2").arg(column, jetSql));
        }
        at = *index;
    }

    ResetOnExit reset(s.stmt);
    size_t next = 0;
    for (qsizetype i = 0; i < s.translated.parameters.size(); ++i) {
        const bool caller =
            next < s.translated.placeholders.size() && s.translated.placeholders[next] == int(i);
        const QVariant& value = caller ? arguments[qsizetype(next++)] : s.translated.parameters[i];
        if (bind(s.stmt, int(i) + 1, value) != SQLITE_OK)
            fail(QStringLiteral("%1 [%2]").arg(QString::fromUtf8(sqlite3_errmsg(m_connection)),
                                               jetSql));
    }
    const int step = sqlite3_step(s.stmt);
    if (step == SQLITE_DONE)
        return std::nullopt;
    if (step != SQLITE_ROW)
        fail(
            QStringLiteral("%1 [%2]").arg(QString::fromUtf8(sqlite3_errmsg(m_connection)), jetSql));
    return Recordset::typedValue(s.descriptions[size_t(at)], columnValue(s.stmt, at));
}
