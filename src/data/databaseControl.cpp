#include "data/databaseControl.h"

#include "data/ClientDatabaseSchema.h"
#include "data/DatabaseFailure.h"
#include "data/DatabaseLocation.h"
#include "data/JetSqlTranslator.h"
#include "data/LookupStatements.h"
#include "data/ReadAhead.h"
#include "data/Recordset.h"
#include "data/RecordsetFilter.h"
#include "data/TranslationCache.h"
#include "platform/errorClass.h"

#include <QAtomicInt>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlField>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QStandardItemModel>
#include <QUrl>
#include <QtEndian>
#include <algorithm>
#include <list>
#include <optional>
#include <utility>

namespace {

const char* const RowKeyAlias = "qm_row_key_";

QString newConnectionName() {
    static QAtomicInt counter;
    return QStringLiteral("qm_client_db_%1").arg(counter.fetchAndAddRelaxed(1));
}

// Reads the file's header and says why it is not a usable SQLite database,
// or nothing when it looks whole. The engine itself would open a zero-byte
// or truncated file without complaint and fail later, mid-walk.
std::optional<QString> headerProblem(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (file.error() == QFileDevice::PermissionsError)
            return QStringLiteral("Permission to read the database file was refused: %1").arg(path);
        return QStringLiteral("The database file cannot be read: %1 (%2)")
            .arg(path, file.errorString());
    }
    const QByteArray header = file.read(100);
    const qint64 size = file.size();
    if (header.size() < 100)
        return QStringLiteral("The file is too short to be a database: %1").arg(path);
    if (!header.startsWith(QByteArrayLiteral("SQLite format 3\0")))
        return QStringLiteral("The file is not a database: %1").arg(path);
    const auto* bytes = reinterpret_cast<const uchar*>(header.constData());
    quint32 pageSize = qFromBigEndian<quint16>(bytes + 16);
    if (pageSize == 1)
        pageSize = 65536;
    if (pageSize < 512 || (pageSize & (pageSize - 1)) != 0)
        return QStringLiteral("The database header is damaged: %1").arg(path);
    if (size % pageSize != 0)
        return QStringLiteral("The database file is truncated: %1").arg(path);
    const quint32 changeCounter = qFromBigEndian<quint32>(bytes + 24);
    const quint32 pages = qFromBigEndian<quint32>(bytes + 28);
    const quint32 validFor = qFromBigEndian<quint32>(bytes + 92);
    if (pages > 0 && changeCounter == validFor && size < qint64(pages) * pageSize)
        return QStringLiteral("The database file is truncated: %1").arg(path);
    return std::nullopt;
}

bool isNumericAffinity(const QString& declared) {
    const QString t = declared.toUpper();
    if (t.contains(u"CHAR") || t.contains(u"CLOB") || t.contains(u"TEXT"))
        return false;
    return t.contains(u"INT") || t.contains(u"REAL") || t.contains(u"FLOA") ||
           t.contains(u"DOUB") || t.contains(u"NUM") || t.contains(u"DEC") || t.contains(u"BOOL");
}

QString quoteName(const QString& name) {
    QString n = name;
    n.replace(u'"', QStringLiteral("\"\""));
    return u'"' + n + u'"';
}

// Whether the engine could write the file: the file itself, and the folder,
// where it creates its journal beside the file.
bool canWriteFile(const QFileInfo& info) {
    return info.isWritable() && QFileInfo(info.absolutePath()).isWritable();
}

// A server row's physical address "(block,item)", kept in a row-key slot.
qint64 physicalKey(const QString& text) {
    const QStringView inner = QStringView(text).mid(1, text.size() - 2);
    const qsizetype comma = inner.indexOf(u',');
    if (comma < 0)
        return -1;
    return (inner.left(comma).toLongLong() << 16) | inner.mid(comma + 1).toLongLong();
}

QString physicalAddress(qint64 key) {
    return QStringLiteral("(%1,%2)").arg(key >> 16).arg(key & 0xffff);
}

const char* const PhysicalRowKey = "ctid";

// The server's answer to a prepared statement whose tables another
// workstation changed (a column added) since it was prepared.
bool planChanged(const QSqlError& error) {
    return error.nativeErrorCode() == QLatin1String("0A000") &&
           error.databaseText().contains(QLatin1String("cached plan"));
}

// Statements the server runs but will not prepare.
bool isTransactionControl(const QString& sql) {
    return sql.startsWith(QLatin1String("SAVEPOINT ")) ||
           sql.startsWith(QLatin1String("RELEASE ")) ||
           sql.startsWith(QLatin1String("ROLLBACK TO "));
}

// A statement and its values, as the key of an answer kept for reuse.
QString memoKeyOf(const QString& sql, const QVariantList& values) {
    QString key = sql;
    for (const QVariant& value : values)
        key += u'\x1f' + QString::number(value.typeId()) + u':' + value.toString();
    return key;
}

} // namespace

// Prepared statements by their translated text, with the description of
// their columns. The program asks the same few shapes again and again with
// another ID, so keeping them prepared spares the parse.
class StatementCache {
public:
    struct Entry {
        QString sql;
        QSqlQuery query;
        bool described = false;
        std::vector<RecordsetColumn> columns;
        std::shared_ptr<const QHash<QString, int>> lookup;
    };

    StatementCache(const QSqlDatabase& db, bool server) : m_db(db), m_server(server) {}

    Entry& get(const QString& sql) {
        QSqlError error;
        if (Entry* entry = find(sql, error)) {
            return *entry;
        }
        QString reason;
        if (m_server) {
            reason = DatabaseFailure::serverReason(error.nativeErrorCode(), error.databaseText());
            // The server folds names to lower case; say the name as written.
            static const QRegularExpression name(QStringLiteral("(table|column) (\\S+)$"));
            if (const auto m = name.match(reason); m.hasMatch()) {
                const QRegularExpression asWritten(
                    QStringLiteral("\\b%1\\b").arg(QRegularExpression::escape(m.captured(2))),
                    QRegularExpression::CaseInsensitiveOption);
                if (const auto w = asWritten.match(sql); w.hasMatch())
                    reason.replace(m.capturedStart(2), m.capturedLength(2), w.captured(0));
            }
        } else {
            reason = DatabaseFailure::reason(error.nativeErrorCode().toInt(), error.databaseText());
        }
        throw QmError(QmError::DatabaseError,
                      QStringLiteral("%1: %2 [%3]").arg(reason, error.text(), sql));
    }

    // Forgets every prepared statement: the server refuses to run one whose
    // tables changed shape since it was prepared.
    void clear() {
        m_index.clear();
        m_entries.clear();
    }

    // The same without throwing: null, with the engine's error, when the
    // statement cannot be prepared.
    Entry* find(const QString& sql, QSqlError& error) {
        const auto found = m_index.constFind(sql);
        if (found != m_index.constEnd()) {
            m_entries.splice(m_entries.begin(), m_entries, found.value());
            return &m_entries.front();
        }
        QSqlQuery query(m_db);
        query.setForwardOnly(true);
        if (!query.prepare(sql)) {
            error = query.lastError();
            return nullptr;
        }
        m_entries.push_front(Entry{sql, std::move(query), false, {}, {}});
        m_index.insert(sql, m_entries.begin());
        if (m_entries.size() > Capacity) {
            m_index.remove(m_entries.back().sql);
            m_entries.pop_back();
        }
        return &m_entries.front();
    }

private:
    static constexpr size_t Capacity = 48;
    QSqlDatabase m_db;
    bool m_server = false;
    std::list<Entry> m_entries; // most recent first
    QHash<QString, std::list<Entry>::iterator> m_index;
};

databaseControl::databaseControl()
    : m_connectionName(newConnectionName()), m_translations(std::make_unique<TranslationCache>()),
      m_readAhead(std::make_unique<ReadAhead>()) {}

databaseControl::~databaseControl() {
    disconnect();
}

void databaseControl::connect() {
    ProcedureScope scope(m_errors, QStringLiteral("QuillmerePad.exe-databaseControl-connect"));
    if (m_connected)
        disconnect();
    m_lastError.clear();
    m_readOnly = false;
    m_server = DatabaseLocation::looksLikeUri(m_path);
    if (m_server) {
        m_readOnly = m_forceReadOnly;
        openServerConnection();
        return;
    }
    const QFileInfo info(m_path);
    if (m_path.isEmpty() || !info.exists() || !info.isFile()) {
        m_lastError = QStringLiteral("The database file does not exist: %1").arg(m_path);
        return;
    }
    if (const auto problem = headerProblem(m_path)) {
        m_lastError = *problem;
        return;
    }
    // The journal mode is the practice's (or the host's) choice and stays as
    // it is; a file this program may not write is opened read-only rather
    // than refused, so that letters can still be merged from it.
    m_readOnly = m_forceReadOnly || !canWriteFile(info);
    if (!openConnection(false) && m_readOnly) {
        // A read-only folder cannot hold the lock files a shared database
        // needs; read the file as it stands instead.
        const QString first = m_lastError;
        m_lastError.clear();
        if (!openConnection(true))
            m_lastError = first;
    }
}

bool databaseControl::openConnection(bool immutable) {
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connectionName);
        QStringList options{QStringLiteral("QSQLITE_BUSY_TIMEOUT=10000")};
        if (m_readOnly)
            options << QStringLiteral("QSQLITE_OPEN_READONLY");
        if (immutable) {
            options << QStringLiteral("QSQLITE_OPEN_URI");
            db.setDatabaseName(QUrl::fromLocalFile(QFileInfo(m_path).absoluteFilePath())
                                   .toString(QUrl::FullyEncoded) +
                               QStringLiteral("?immutable=1"));
        } else {
            db.setDatabaseName(m_path);
        }
        db.setConnectOptions(options.join(u';'));
        if (!db.open()) {
            m_lastError = describeFailure(db.lastError());
        } else {
            QSqlQuery query(db);
            if (!query.exec(QStringLiteral("SELECT name FROM sqlite_master WHERE type='table'"))) {
                m_lastError = describeFailure(query.lastError());
            } else {
                QStringList tables;
                while (query.next())
                    tables << query.value(0).toString().toUpper();
                for (const char* required : {"COMPANIES", "CONTACTS", "CONTACTLINKS"}) {
                    if (!tables.contains(QLatin1String(required)))
                        m_lastError = QStringLiteral("The database has no table %1: %2")
                                          .arg(QLatin1String(required), m_path);
                }
            }
            query.finish();
        }
        if (m_lastError.isEmpty()) {
            m_statements = std::make_unique<StatementCache>(db, false);
            const QVariant handle = db.driver()->handle();
            if (handle.isValid() && qstrcmp(handle.typeName(), "sqlite3*") == 0)
                m_lookups = std::make_unique<LookupStatements>(
                    *static_cast<sqlite3* const*>(handle.constData()));
            m_connected = true;
            return true;
        }
        db.close();
    }
    QSqlDatabase::removeDatabase(m_connectionName);
    return false;
}

bool databaseControl::openServerConnection() {
    QString error;
    const auto location = DatabaseLocation::parse(m_path, &error);
    if (!location) {
        m_lastError = error;
        return false;
    }
    {
        QSqlDatabase db;
        if (location->open(db, m_connectionName, &error, m_readOnly)) {
            const QStringList present = db.tables();
            auto has = [&](const QString& table) {
                return present.contains(table, Qt::CaseInsensitive);
            };
            if (!has(QStringLiteral("Companies")) && !has(QStringLiteral("Contacts"))) {
                error = QStringLiteral("The database %1 has no client tables; make them with "
                                       "\"quillmere-pad import\" or \"quillmere-pad sample-db\"")
                            .arg(location->display());
            } else {
                // A server database is made from this program's schema, so
                // an older one shows as a table or column it lacks.
                QStringList lacking;
                for (const QString& table : ClientDatabaseSchema::tableNames()) {
                    if (!has(table)) {
                        lacking << QStringLiteral("table %1").arg(table);
                        continue;
                    }
                    const QSqlRecord record = db.record(table.toLower());
                    for (const QString& column : ClientDatabaseSchema::columnNames(table)) {
                        if (record.indexOf(column.toLower()) < 0)
                            lacking << QStringLiteral("column %1.%2").arg(table, column);
                    }
                }
                if (!lacking.isEmpty())
                    error =
                        QStringLiteral("The database %1 has an older schema than this "
                                       "program; it lacks %2")
                            .arg(location->display(),
                                 lacking.mid(0, 8).join(QStringLiteral(", ")) +
                                     (lacking.size() > 8 ? QStringLiteral(", ...") : QString()));
            }
        }
        if (error.isEmpty()) {
            m_translations->setDialect(SqlDialect::Postgres);
            m_statements = std::make_unique<StatementCache>(db, true);
            m_connected = true;
            return true;
        }
        m_lastError = error;
        db.close();
    }
    QSqlDatabase::removeDatabase(m_connectionName);
    return false;
}

bool databaseControl::reconnectIfLost(const QSqlError& error) {
    if (!m_server || !DatabaseFailure::isConnectionLost(
                         error.nativeErrorCode(), error.databaseText() + u' ' + error.driverText()))
        return false;
    return reconnectAfterLoss();
}

bool databaseControl::reconnectAfterLoss() {
    m_lostConnection = false;
    // The record sets already read stay; statements and the transaction go
    // with the connection.
    auto sets = std::move(m_sets);
    const int depth = m_batchDepth;
    const int holders = m_readHolders;
    m_batchOpen = false;
    m_batchDepth = 0;
    m_readHolders = 0;
    disconnect();
    connect();
    m_sets = std::move(sets);
    m_batchDepth = depth;
    m_readHolders = holders;
    if (m_connected && m_readHolders > 0 && m_batchDepth > 0)
        openBatchTransaction();
    return m_connected;
}

QString databaseControl::sqlName(const QString& name) const {
    return quoteName(m_server ? name.toLower() : name);
}

QString databaseControl::rowKeyColumn(const QString& table) const {
    if (!m_server)
        return QStringLiteral("rowid");
    const QString key = ClientDatabaseSchema::primaryKey(table);
    return key.isEmpty() ? QString::fromLatin1(PhysicalRowKey) : sqlName(key);
}

QString databaseControl::describeFailure(const QSqlError& error) const {
    if (m_server)
        return QStringLiteral("%1: %2 (%3)")
            .arg(DatabaseFailure::serverReason(error.nativeErrorCode(), error.databaseText()),
                 DatabaseLocation::parse(m_path, nullptr).value_or(DatabaseLocation{}).display(),
                 error.text());
    return QStringLiteral("%1: %2 (%3)")
        .arg(DatabaseFailure::reason(error.nativeErrorCode().toInt(), error.databaseText()), m_path,
             error.text());
}

QString databaseControl::readOnlyNotice() const {
    if (!m_readOnly)
        return {};
    return QStringLiteral("The database is open read-only, so the contact repairs and the "
                          "letters' folder rows are not saved to it: %1")
        .arg(m_path);
}

void databaseControl::refuseWriteIfReadOnly(const QString& what) const {
    if (m_readOnly)
        fail(QStringLiteral("The database is open read-only; %1 is not saved: %2")
                 .arg(what, m_path));
}

void databaseControl::disconnect() {
    // What a running batch wrote is kept, as its end would keep it.
    if (m_batchOpen) {
        // Committed for good: no new transaction on a closing connection.
        const int holders = std::exchange(m_readHolders, 0);
        try {
            commitWriteBatch();
        } catch (const QmError& fault) {
            m_lastError = fault.description();
        }
        m_readHolders = holders;
    }
    m_sets.clear();
    m_readMemo.clear();
    m_lookupMemo.clear();
    m_readAhead->forgetRows();
    m_readAhead->forgetStatements();
    m_schemaVersion = -1;
    m_columnTypes.clear();
    m_statements.reset();
    // Finalised before the engine closes, which refuses while statements live.
    m_lookups.reset();
    if (QSqlDatabase::contains(m_connectionName)) {
        {
            QSqlDatabase db = QSqlDatabase::database(m_connectionName, false);
            db.close();
        }
        QSqlDatabase::removeDatabase(m_connectionName);
    }
    m_connected = false;
}

void databaseControl::fail(const QString& text) const {
    throw QmError(QmError::DatabaseError, text);
}

void databaseControl::requireConnection() const {
    if (!m_connected)
        fail(QStringLiteral("The database is not open."));
}

Recordset& databaseControl::set(int handle) {
    const auto it = m_sets.find(handle);
    if (it == m_sets.end())
        fail(QStringLiteral("There is no record set %1.").arg(handle));
    return *it->second;
}

const Recordset& databaseControl::set(int handle) const {
    const auto it = m_sets.find(handle);
    if (it == m_sets.end())
        fail(QStringLiteral("There is no record set %1.").arg(handle));
    return *it->second;
}

int databaseControl::store(std::unique_ptr<Recordset> recordset) {
    const int handle = m_nextHandle++;
    if (m_nextHandle <= 0)
        m_nextHandle = 1;
    m_sets.emplace(handle, std::move(recordset));
    return handle;
}

int databaseControl::openRecordset(const QString& sql, int /*cursorType*/, int lockType) {
    ProcedureScope scope(m_errors,
                         QStringLiteral("QuillmerePad.exe-databaseControl-openRecordset"));
    requireConnection();
    TranslatedSql translated = m_translations->translate(sql);
    auto rs = std::make_unique<Recordset>();
    rs->editable = lockType == OptimisticLock;
    if (rs->editable) {
        // One table, written back through its row key: fetch the key too.
        static const QRegularExpression single(
            QStringLiteral("^\\s*SELECT\\s+(.*?)\\s+FROM\\s+(\\[[^\\]]+\\]|[A-Za-z_]\\w*)\\s*(;|$|"
                           "WHERE\\b|ORDER\\b)"),
            QRegularExpression::CaseInsensitiveOption |
                QRegularExpression::DotMatchesEverythingOption);
        const auto m = single.match(translated.sql);
        if (!m.hasMatch())
            fail(QStringLiteral("An editable record set must read one table: %1").arg(sql));
        rs->table = m.captured(2);
        if (rs->table.startsWith(u'['))
            rs->table = rs->table.mid(1, rs->table.size() - 2);
        const QString key = rowKeyColumn(rs->table);
        const QString keyText = key == QLatin1String(PhysicalRowKey)
                                    ? QStringLiteral("%1.ctid::text").arg(sqlName(rs->table))
                                    : QStringLiteral("%1.%2").arg(sqlName(rs->table), key);
        translated.sql.insert(
            m.capturedStart(1),
            QStringLiteral("%1 AS %2, ").arg(keyText, QLatin1String(RowKeyAlias)));
    }
    // A statement prepared before the host changed a table must not run:
    // the driver crashes on a result wider than the one it prepared for.
    // Only a fresh connection clears all it keeps; the record sets already
    // read stay as they are.
    if (m_lookups && !(m_batchOpen && m_schemaCheckedInBatch)) {
        int version = m_lookups->schemaVersion();
        if (m_schemaVersion != -1 && version != m_schemaVersion) {
            auto sets = std::move(m_sets);
            disconnect();
            connect();
            m_sets = std::move(sets);
            requireConnection();
            if (m_readHolders > 0 && m_batchDepth > 0)
                openBatchTransaction();
            version = m_lookups->schemaVersion();
        }
        m_schemaVersion = version;
        m_schemaCheckedInBatch = m_batchOpen;
    }
    // On a server every read is a round trip; the same read asked again
    // within a held batch (a merge reads the practice's own row for every
    // letter) is answered from the rows of the first, until a write or a
    // checkpoint. Editable sets are always read afresh.
    QString memoKey;
    if (m_server && m_batchOpen && m_readHolders > 0 && !rs->editable) {
        memoKey = memoKeyOf(translated.sql, translated.parameters);
        if (const auto found = m_readMemo.constFind(memoKey); found != m_readMemo.constEnd()) {
            rs->columns = found->columns;
            rs->lookup = found->lookup;
            rs->rows = found->rows;
            return store(std::move(rs));
        }
    }
    if (m_batchOpen && m_readHolders > 0 && !rs->editable) {
        QSqlDatabase db = QSqlDatabase::database(m_connectionName, false);
        if (const ReadAhead::Rows* ahead = m_readAhead->answer(
                db, translated.sql, translated.parameters, m_statementCount, m_server)) {
            rs->columns = *ahead->columns;
            rs->lookup = ahead->lookup;
            rs->rows = ahead->rows;
            return store(std::move(rs));
        }
    }
    runStatement(translated.sql, translated.parameters, sql);
    StatementCache::Entry& entry = m_statements->get(translated.sql);
    QSqlQuery& query = entry.query;
    const int first = rs->editable ? 1 : 0;
    if (!entry.described) {
        const QSqlRecord record = query.record();
        for (int i = first; i < record.count(); ++i)
            rs->columns.push_back(RecordsetColumn::describe(record.field(i), m_server));
        rs->buildColumnLookup();
        entry.columns = rs->columns;
        entry.lookup = rs->lookup;
        entry.described = true;
    } else {
        rs->columns = entry.columns;
        rs->lookup = entry.lookup;
    }
    const int width = int(rs->columns.size()) + first;
    const bool physical = rs->editable && rowKeyColumn(rs->table) == QLatin1String(PhysicalRowKey);
    while (query.next()) {
        std::vector<QVariant> row;
        row.reserve(size_t(width - first));
        for (int i = first; i < width; ++i)
            row.push_back(m_server && query.isNull(i) ? QVariant() : query.value(i));
        rs->rows.push_back(std::move(row));
        if (rs->editable)
            rs->rowKeys.push_back(physical ? physicalKey(query.value(0).toString())
                                           : query.value(0).toLongLong());
    }
    // Release the read lock at once: the host may want to write.
    query.finish();
    if (!memoKey.isEmpty()) {
        if (m_readMemo.size() >= 1024)
            m_readMemo.clear();
        MemoRows& memo = m_readMemo[memoKey];
        memo.columns = rs->columns;
        memo.lookup = rs->lookup;
        memo.rows = rs->rows;
    }
    return store(std::move(rs));
}

void databaseControl::closeRecordset(int handle) {
    m_sets.erase(handle);
}

std::optional<QVariant> databaseControl::lookupValue(const QString& sql,
                                                     const QVariantList& arguments,
                                                     const QString& column) {
    requireConnection();
    if (m_server)
        return serverLookup(sql, arguments, column);
    if (!m_lookups)
        fail(QStringLiteral("The database driver does not give lookups its engine."));
    if (!m_batchOpen || m_readHolders == 0) {
        ++m_statementCount;
        return m_lookups->firstValue(sql, arguments, column);
    }
    // As openRecordset: a lookup of an expected key within a held batch is
    // answered from the rows read ahead for its window; one of another key
    // asked again (a merge asks whether contact -1 exists for every letter
    // without a contact) from its first answer, until a write or a
    // checkpoint.
    if (m_readAhead->isExpecting()) {
        if (const auto bound = m_lookups->boundStatement(sql, arguments)) {
            QSqlDatabase db = QSqlDatabase::database(m_connectionName, false);
            if (const ReadAhead::Rows* ahead =
                    m_readAhead->answer(db, bound->first, bound->second, m_statementCount, false))
                return firstValueOf(*ahead, column, sql);
        }
    }
    const QString memoKey = memoKeyOf(sql + u'\x1e' + column, arguments);
    if (const auto found = m_lookupMemo.constFind(memoKey); found != m_lookupMemo.constEnd())
        return *found;
    ++m_statementCount;
    const std::optional<QVariant> answer = m_lookups->firstValue(sql, arguments, column);
    if (m_lookupMemo.size() >= 1024)
        m_lookupMemo.clear();
    m_lookupMemo.insert(memoKey, answer);
    return answer;
}

std::optional<QVariant> databaseControl::firstValueOf(const ReadAhead::Rows& ahead,
                                                      const QString& column,
                                                      const QString& sql) const {
    if (ahead.rows.empty())
        return std::nullopt;
    int at = 0;
    if (const QString key = column.trimmed().toUpper(); !key.isEmpty()) {
        at = ahead.lookup->value(key, -1);
        if (const qsizetype dot = key.lastIndexOf(u'.'); at < 0 && dot > 0)
            at = ahead.lookup->value(key.mid(dot + 1), -1);
        if (at < 0)
            fail(QStringLiteral("The lookup has no column %1: %2").arg(column, sql));
    }
    return Recordset::typedValue((*ahead.columns)[size_t(at)], ahead.rows.front()[size_t(at)]);
}

void databaseControl::runStatement(const QString& sql, const QVariantList& values,
                                   const QString& shown) {
    for (int attempt = 0;; ++attempt) {
        QSqlQuery& query = m_statements->get(sql).query;
        for (int i = 0; i < values.size(); ++i)
            query.bindValue(i, values[i]);
        ++m_statementCount;
        if (query.exec())
            return;
        const QSqlError failure = query.lastError();
        const QString error = describeFailure(failure);
        query.finish();
        // A server forgets nothing it prepared when another workstation
        // changes a table's shape; it refuses instead, and is asked afresh.
        if (attempt == 0 && planChanged(failure)) {
            m_statements->clear();
            continue;
        }
        // A read outside a transaction is simply asked again on a new
        // connection; one inside a batch fails, since the batch went with it.
        const bool inBatch = m_batchOpen;
        if (attempt > 0 || !reconnectIfLost(failure) || inBatch)
            fail(QStringLiteral("%1 [%2]").arg(error, shown));
    }
}

std::optional<QVariant> databaseControl::serverLookup(const QString& sql,
                                                      const QVariantList& arguments,
                                                      const QString& column) {
    std::vector<bool> text;
    for (const QVariant& argument : arguments)
        text.push_back(JetSqlTranslator::isTextValue(argument));
    const TranslatedSql translated = JetSqlTranslator::translate(sql, text, SqlDialect::Postgres);
    if (arguments.size() != qsizetype(translated.placeholders.size()))
        fail(QStringLiteral("The lookup takes %1 arguments, %2 given: %3")
                 .arg(translated.placeholders.size())
                 .arg(arguments.size())
                 .arg(sql));
    QVariantList values = translated.parameters;
    for (size_t k = 0; k < translated.placeholders.size(); ++k) {
        const QVariant& argument = arguments[qsizetype(k)];
        // The server would refuse to compare it at all; the embedded engine
        // finds no row, and so does this.
        bool number = false;
        if (translated.numberPlaceholders[k] && JetSqlTranslator::isTextValue(argument)) {
            argument.toString().trimmed().toDouble(&number);
            if (!number)
                return std::nullopt;
        }
        values[translated.placeholders[k]] = argument;
    }
    // As openRecordset: asked again within a held batch, answered from the
    // first answer.
    QString memoKey;
    if (m_batchOpen && m_readHolders > 0) {
        memoKey = memoKeyOf(translated.sql + u'\x1e' + column, values);
        if (const auto found = m_lookupMemo.constFind(memoKey); found != m_lookupMemo.constEnd())
            return *found;
    }
    auto remember = [&](const std::optional<QVariant>& answer) {
        if (!memoKey.isEmpty()) {
            if (m_lookupMemo.size() >= 1024)
                m_lookupMemo.clear();
            m_lookupMemo.insert(memoKey, answer);
        }
        return answer;
    };
    if (!memoKey.isEmpty()) {
        QSqlDatabase db = QSqlDatabase::database(m_connectionName, false);
        if (const ReadAhead::Rows* ahead =
                m_readAhead->answer(db, translated.sql, values, m_statementCount, true))
            return remember(firstValueOf(*ahead, column, sql));
    }
    runStatement(translated.sql, values, sql);
    QSqlQuery& query = m_statements->get(translated.sql).query;
    if (!query.next()) {
        query.finish();
        return remember(std::nullopt);
    }
    int at = 0;
    if (const QString key = column.trimmed(); !key.isEmpty()) {
        const QSqlRecord record = query.record();
        at = record.indexOf(key.toLower());
        if (at < 0) {
            const qsizetype dot = key.lastIndexOf(u'.');
            at = dot > 0 ? record.indexOf(key.mid(dot + 1).toLower()) : -1;
        }
        if (at < 0) {
            query.finish();
            fail(QStringLiteral("The lookup has no column %1: %2").arg(column, sql));
        }
    }
    RecordsetColumn description;
    description.name = ClientDatabaseSchema::canonicalColumnName(query.record().fieldName(at));
    description.yesNo = ClientDatabaseSchema::isYesNoColumn(description.name);
    description.date = ClientDatabaseSchema::isDateColumn(description.name);
    const QVariant value = query.isNull(at) ? QVariant() : query.value(at);
    query.finish();
    return remember(Recordset::typedValue(description, value));
}

void databaseControl::expectKeys(const QString& column, std::vector<qint64> keys) {
    m_readAhead->expect(column, std::move(keys));
}

void databaseControl::forgetReadAheadOf(const QString& sql) {
    static const QRegularExpression written(
        QStringLiteral(R"re(^\s*(?:INSERT\s+INTO|UPDATE|DELETE\s+FROM)\s+"?(\w+)"?)re"),
        QRegularExpression::CaseInsensitiveOption);
    if (isTransactionControl(sql))
        return;
    if (const auto m = written.match(sql); m.hasMatch())
        m_readAhead->forgetTable(m.captured(1));
    else
        m_readAhead->forgetRows(true);
}

int databaseControl::filterRecordset(int handle, const QString& filter) {
    ProcedureScope scope(m_errors,
                         QStringLiteral("QuillmerePad.exe-databaseControl-filterRecordset"));
    const Recordset& source = set(handle);
    RecordsetFilter parsed(filter);
    parsed.bind(source);
    auto rs = std::make_unique<Recordset>();
    rs->columns = source.columns;
    rs->lookup = source.lookup;
    rs->table = source.table;
    for (int r = 0; r < source.rowCount(); ++r) {
        if (parsed.matches(source, r)) {
            rs->rows.push_back(source.rows[size_t(r)]);
            if (!source.rowKeys.empty())
                rs->rowKeys.push_back(source.rowKeys[size_t(r)]);
        }
    }
    return store(std::move(rs));
}

int databaseControl::recordCount(int handle) const {
    return set(handle).rowCount();
}
bool databaseControl::isEmpty(int handle) const {
    return set(handle).rows.empty();
}
bool databaseControl::hasRecords(int handle) const {
    return !set(handle).rows.empty();
}
bool databaseControl::isEOF(int handle) const {
    return set(handle).atEnd();
}

void databaseControl::moveFirst(int handle) {
    set(handle).position = 0;
}

void databaseControl::moveNext(int handle) {
    Recordset& rs = set(handle);
    if (rs.position < rs.rowCount())
        ++rs.position;
}

int databaseControl::getPosition(int handle) const {
    return set(handle).position;
}

void databaseControl::setPosition(int handle, int position) {
    Recordset& rs = set(handle);
    rs.position = std::clamp(position, 0, rs.rowCount());
    // Resume the walk that stands on this row; inner walks are finished.
    for (size_t k = rs.finds.size(); k-- > 0;) {
        const auto& walk = rs.finds[k];
        if (!walk.exhausted() && walk.rows[walk.next] == rs.position) {
            rs.finds.resize(k + 1);
            break;
        }
    }
}

bool databaseControl::findRows(int handle, const QString& column, const QString& value) {
    Recordset& rs = set(handle);
    const int index = rs.columnIndex(column);
    if (index < 0)
        fail(QStringLiteral("The record set has no column %1.").arg(column));
    while (!rs.finds.empty() && rs.finds.back().exhausted())
        rs.finds.pop_back();
    constexpr size_t MaxDepth = 256;
    if (rs.finds.size() >= MaxDepth)
        rs.finds.erase(rs.finds.begin());
    Recordset::FindWalk walk;
    walk.column = index;
    walk.rows = rs.rowsWithValue(index, value);
    rs.position = walk.rows.empty() ? rs.rowCount() : walk.rows.front();
    const bool any = !walk.rows.empty();
    rs.finds.push_back(std::move(walk));
    return any;
}

void databaseControl::findNext(int handle) {
    Recordset& rs = set(handle);
    if (rs.finds.empty()) {
        rs.position = rs.rowCount();
        return;
    }
    auto& walk = rs.finds.back();
    if (!walk.exhausted() && walk.rows[walk.next] == rs.position) {
        ++walk.next;
    } else {
        // The caller moved the cursor: go on from where it stands.
        walk.next = size_t(std::upper_bound(walk.rows.begin(), walk.rows.end(), rs.position) -
                           walk.rows.begin());
    }
    rs.position = walk.exhausted() ? rs.rowCount() : walk.rows[walk.next];
}

bool databaseControl::isEndOfFound(int handle) const {
    const Recordset& rs = set(handle);
    return rs.finds.empty() || rs.finds.back().exhausted();
}

QVariant databaseControl::getField(int handle, const QString& column) const {
    const Recordset& rs = set(handle);
    const int index = rs.columnIndex(column);
    if (index < 0)
        fail(QStringLiteral("The record set has no column %1.").arg(column));
    if (rs.atEnd())
        fail(QStringLiteral("There is no current record (reading %1).").arg(column));
    return rs.value(rs.position, index);
}

bool databaseControl::hasField(int handle, const QString& column) const {
    return set(handle).columnIndex(column) >= 0;
}

QStringList databaseControl::fieldNames(int handle) const {
    QStringList names;
    for (const auto& c : set(handle).columns)
        names << c.name;
    return names;
}

QString databaseControl::tableColumnType(const QString& table, const QString& column) {
    auto it = m_columnTypes.find(table.toUpper());
    if (it == m_columnTypes.end()) {
        std::map<QString, QString> types;
        QSqlQuery query(QSqlDatabase::database(m_connectionName, false));
        ++m_statementCount;
        if (m_server) {
            query.prepare(QStringLiteral("SELECT column_name, data_type FROM "
                                         "information_schema.columns WHERE table_name = ? AND "
                                         "table_schema = current_schema()"));
            query.addBindValue(table.toLower());
            if (query.exec()) {
                while (query.next())
                    types[query.value(0).toString().toUpper()] = query.value(1).toString();
            }
        } else if (query.exec(QStringLiteral("PRAGMA table_info(%1)").arg(quoteName(table)))) {
            while (query.next())
                types[query.value(1).toString().toUpper()] = query.value(2).toString();
        }
        it = m_columnTypes.emplace(table.toUpper(), std::move(types)).first;
    }
    const auto found = it->second.find(column.toUpper());
    if (found == it->second.end())
        fail(QStringLiteral("The table %1 has no column %2.").arg(table, column));
    return found->second;
}

QVariant databaseControl::toStorage(const Recordset& rs, int column, const QVariant& value) {
    const RecordsetColumn& c = rs.columns[size_t(column)];
    if (value.typeId() != QMetaType::QString)
        return StorageConventions::toStored(value);
    const QString text = value.toString();
    const QString trimmed = text.trimmed();
    if (c.yesNo) {
        if (trimmed.compare(u"True", Qt::CaseInsensitive) == 0 ||
            trimmed.compare(u"Yes", Qt::CaseInsensitive) == 0)
            return 1;
        if (trimmed.isEmpty() || trimmed.compare(u"False", Qt::CaseInsensitive) == 0 ||
            trimmed.compare(u"No", Qt::CaseInsensitive) == 0)
            return 0;
        bool ok = false;
        const double d = trimmed.toDouble(&ok);
        if (!ok)
            throw QmError(QmError::TypeMismatch,
                          QStringLiteral("'%1' is not a Yes/No value for %2.").arg(text, c.name));
        return d != 0.0 ? 1 : 0;
    }
    if (c.date) {
        if (trimmed.isEmpty())
            return QVariant();
        const QVariant stored = StorageConventions::parseStoredDate(trimmed);
        if (stored.isValid())
            return StorageConventions::toStored(stored);
        if (const auto parsed = JetSqlTranslator::parseDateLiteral(trimmed)) {
            return JetSqlTranslator::storageText(
                *parsed, trimmed.contains(u'/') || trimmed.contains(u'-'), trimmed.contains(u':'));
        }
        throw QmError(QmError::TypeMismatch,
                      QStringLiteral("'%1' is not a date for %2.").arg(text, c.name));
    }
    if (isNumericAffinity(tableColumnType(rs.table, c.name))) {
        if (trimmed.isEmpty())
            return QVariant();
        if (trimmed.compare(u"True", Qt::CaseInsensitive) == 0)
            return 1;
        if (trimmed.compare(u"False", Qt::CaseInsensitive) == 0)
            return 0;
        bool ok = false;
        const qlonglong whole = trimmed.toLongLong(&ok);
        if (ok)
            return whole;
        const double d = trimmed.toDouble(&ok);
        if (ok)
            return d;
        throw QmError(QmError::TypeMismatch,
                      QStringLiteral("'%1' is not a number for %2.").arg(text, c.name));
    }
    // An empty text is stored as such; a null QString would bind as Null.
    return text.isNull() ? QStringLiteral("") : text;
}

bool databaseControl::execute(const QString& sql, const QVariantList& parameters,
                              qint64* insertedKey, QString* error) {
    m_readMemo.clear();
    m_lookupMemo.clear();
    forgetReadAheadOf(sql);
    if (m_server && isTransactionControl(sql)) {
        QSqlQuery control(QSqlDatabase::database(m_connectionName, false));
        ++m_statementCount;
        if (control.exec(sql))
            return true;
        const QSqlError failure = control.lastError();
        if (error)
            *error = describeFailure(failure);
        if (DatabaseFailure::isConnectionLost(failure.nativeErrorCode(),
                                              failure.databaseText() + u' ' + failure.driverText()))
            m_lostConnection = true;
        return false;
    }
    // Writes repeat a few shapes (and the savepoints around each), so they
    // are kept prepared as the reads are.
    QSqlError prepareError;
    StatementCache::Entry* entry = m_statements ? m_statements->find(sql, prepareError) : nullptr;
    if (!entry) {
        if (error)
            *error = describeFailure(m_statements ? prepareError
                                                  : QSqlError(QStringLiteral("Not connected")));
        return false;
    }
    QSqlQuery& query = entry->query;
    for (int i = 0; i < parameters.size(); ++i)
        query.bindValue(i, parameters[i]);
    ++m_statementCount;
    const bool ok = query.exec();
    if (!ok) {
        const QSqlError failure = query.lastError();
        if (error)
            *error = describeFailure(failure);
        query.finish();
        // The transaction went with a lost connection; the caller reports
        // this write as failed, and the next one runs on a new connection.
        if (m_server &&
            DatabaseFailure::isConnectionLost(
                failure.nativeErrorCode(), failure.databaseText() + u' ' + failure.driverText())) {
            m_lostConnection = true;
        }
        return false;
    }
    if (insertedKey) {
        if (m_server) {
            // The statement returns the row's key (RETURNING).
            *insertedKey = -1;
            if (query.next()) {
                const QVariant key = query.value(0);
                *insertedKey = key.typeId() == QMetaType::QString ? physicalKey(key.toString())
                                                                  : key.toLongLong();
            }
        } else {
            *insertedKey = query.lastInsertId().toLongLong();
        }
    }
    query.finish();
    return ok;
}

void databaseControl::runInTransaction(const QString& sql, const QVariantList& parameters,
                                       qint64* insertedKey) {
    if (m_batchDepth > 0) {
        runInBatch(sql, parameters, insertedKey);
        return;
    }
    QString error;
    // The connection's handle is let go before a reconnection replaces it.
    auto database = [this] { return QSqlDatabase::database(m_connectionName, false); };
    for (int attempt = 0;; ++attempt) {
        if (!database().transaction()) {
            const QSqlError failure = database().lastError();
            if (attempt == 0 && reconnectIfLost(failure))
                continue;
            fail(QStringLiteral("Cannot start a transaction: %1").arg(describeFailure(failure)));
        }
        if (execute(sql, parameters, insertedKey, &error))
            break;
        database().rollback();
        // The write died with its connection before its commit: nothing of
        // it was saved, so it is made once more on a new connection.
        if (m_lostConnection && attempt == 0 && reconnectAfterLoss())
            continue;
        if (m_lostConnection)
            reconnectAfterLoss();
        fail(QStringLiteral("%1 [%2]").arg(error, sql));
    }
    QSqlDatabase db = QSqlDatabase::database(m_connectionName, false);
    if (!db.commit()) {
        error = describeFailure(db.lastError());
        db.rollback();
        fail(QStringLiteral("Cannot save the change: %1").arg(error));
    }
}

void databaseControl::runInBatch(const QString& sql, const QVariantList& parameters,
                                 qint64* insertedKey) {
    openBatchTransaction();
    // A savepoint per write, so that a failing write is undone alone and the
    // batch's earlier writes stand.
    QString error;
    auto lost = [&] {
        // The batch's transaction went with the connection: its earlier
        // writes are not saved, and the next write starts on a new one.
        reconnectAfterLoss();
        fail(QStringLiteral("%1 [%2]; the changes made with it were not saved").arg(error, sql));
    };
    if (!execute(QStringLiteral("SAVEPOINT qm_write"), {}, nullptr, &error)) {
        if (m_lostConnection)
            lost();
        fail(QStringLiteral("Cannot start a transaction: %1").arg(error));
    }
    if (execute(sql, parameters, insertedKey, &error)) {
        execute(QStringLiteral("RELEASE qm_write"), {}, nullptr, nullptr);
        return;
    }
    if (m_lostConnection)
        lost();
    if (!execute(QStringLiteral("ROLLBACK TO qm_write"), {}, nullptr, nullptr) ||
        !execute(QStringLiteral("RELEASE qm_write"), {}, nullptr, nullptr)) {
        // The engine ended the whole transaction (a full disk, an I/O
        // fault): the batch's earlier writes went with it.
        QSqlDatabase::database(m_connectionName, false).rollback();
        m_batchOpen = false;
        fail(QStringLiteral("%1 [%2]; the changes made with it were not saved").arg(error, sql));
    }
    fail(QStringLiteral("%1 [%2]").arg(error, sql));
}

void databaseControl::openBatchTransaction() {
    if (m_batchOpen || !m_connected)
        return;
    QSqlDatabase db = QSqlDatabase::database(m_connectionName, false);
    if (!db.transaction())
        fail(QStringLiteral("Cannot start a transaction: %1").arg(describeFailure(db.lastError())));
    m_batchOpen = true;
    m_schemaCheckedInBatch = false;
}

void databaseControl::beginWriteBatch(bool holdReads) {
    ++m_batchDepth;
    if (holdReads) {
        ++m_readHolders;
        openBatchTransaction();
    }
}

void databaseControl::commitWriteBatch() {
    m_readMemo.clear();
    m_lookupMemo.clear();
    if (m_batchOpen) {
        m_batchOpen = false;
        QSqlDatabase db = QSqlDatabase::database(m_connectionName, false);
        if (!db.commit()) {
            const QString error = describeFailure(db.lastError());
            db.rollback();
            fail(QStringLiteral("Cannot save the changes: %1").arg(error));
        }
    }
    // A deferred start: no lock is taken until the next read or write. Also
    // after a write the engine undid with its whole transaction, so that the
    // holding goes on from the next checkpoint.
    if (m_readHolders > 0 && m_batchDepth > 0)
        openBatchTransaction();
}

void databaseControl::endWriteBatch(bool heldReads) noexcept {
    if (m_batchDepth == 0)
        return;
    if (heldReads && m_readHolders > 0)
        --m_readHolders;
    if (--m_batchDepth > 0)
        return;
    m_readHolders = 0;
    try {
        commitWriteBatch();
    } catch (const QmError& fault) {
        m_lastError = fault.description();
    }
}

void databaseControl::writeColumns(Recordset& rs, int row, const std::vector<int>& columns) {
    if (columns.empty())
        return;
    QStringList assignments;
    QVariantList values;
    for (int c : columns) {
        assignments << sqlName(rs.columns[size_t(c)].name) + QStringLiteral(" = ?");
        values << rs.rows[size_t(row)][size_t(c)];
    }
    const QString key = rowKeyColumn(rs.table);
    if (key != QLatin1String(PhysicalRowKey)) {
        values << rs.rowKeys[size_t(row)];
        runInTransaction(QStringLiteral("UPDATE %1 SET %2 WHERE %3 = ?")
                             .arg(sqlName(rs.table), assignments.join(u", "), key),
                         values, nullptr);
        return;
    }
    // A row without a key of its own is found by its address, which the
    // update moves: the new one is kept. No row there means another
    // workstation changed or removed it since it was read.
    values << physicalAddress(rs.rowKeys[size_t(row)]);
    qint64 moved = -1;
    runInTransaction(QStringLiteral("UPDATE %1 SET %2 WHERE ctid = CAST(? AS tid) RETURNING "
                                    "ctid::text")
                         .arg(sqlName(rs.table), assignments.join(u", ")),
                     values, &moved);
    if (moved < 0)
        fail(QStringLiteral("The row of %1 was changed or removed by another workstation since "
                            "it was read; the change is not saved")
                 .arg(rs.table));
    rs.rowKeys[size_t(row)] = moved;
}

void databaseControl::insertRow(Recordset& rs, int row) {
    QStringList names;
    QStringList marks;
    QVariantList values;
    for (int c : rs.staged) {
        names << sqlName(rs.columns[size_t(c)].name);
        marks << QStringLiteral("?");
        values << rs.rows[size_t(row)][size_t(c)];
    }
    QString sql = names.isEmpty()
                      ? QStringLiteral("INSERT INTO %1 DEFAULT VALUES").arg(sqlName(rs.table))
                      : QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                            .arg(sqlName(rs.table), names.join(u", "), marks.join(u", "));
    const QString keyColumn = rowKeyColumn(rs.table);
    const bool physical = keyColumn == QLatin1String(PhysicalRowKey);
    if (m_server)
        sql += physical ? QStringLiteral(" RETURNING ctid::text")
                        : QStringLiteral(" RETURNING %1").arg(keyColumn);
    qint64 key = -1;
    runInTransaction(sql, values, &key);
    rs.rowKeys[size_t(row)] = key;
    // Read the row back: the engine fills the key and the defaults.
    QSqlQuery query(QSqlDatabase::database(m_connectionName, false));
    query.prepare(QStringLiteral("SELECT * FROM %1 WHERE %2 = %3")
                      .arg(sqlName(rs.table), keyColumn,
                           physical ? QStringLiteral("CAST(? AS tid)") : QStringLiteral("?")));
    query.bindValue(0, physical ? QVariant(physicalAddress(key)) : QVariant(key));
    ++m_statementCount;
    if (query.exec() && query.next()) {
        const QSqlRecord record = query.record();
        for (size_t c = 0; c < rs.columns.size(); ++c) {
            const int i =
                record.indexOf(m_server ? rs.columns[c].name.toLower() : rs.columns[c].name);
            if (i >= 0)
                rs.rows[size_t(row)][c] = query.value(i);
        }
    }
    query.finish();
}

int databaseControl::writableColumn(const Recordset& rs, const QString& column) const {
    if (rs.table.isEmpty() || !rs.editable)
        fail(QStringLiteral("The record set is read-only (writing %1).").arg(column));
    const int index = rs.columnIndex(column);
    if (index < 0)
        fail(QStringLiteral("The record set has no column %1.").arg(column));
    if (rs.atEnd())
        fail(QStringLiteral("There is no current record (writing %1).").arg(column));
    return index;
}

void databaseControl::updateFieldNow(int handle, const QString& column, const QString& value) {
    ProcedureScope scope(m_errors,
                         QStringLiteral("QuillmerePad.exe-databaseControl-updateFieldNow"));
    requireConnection();
    Recordset& rs = set(handle);
    const int index = writableColumn(rs, column);
    refuseWriteIfReadOnly(QStringLiteral("the change to %1").arg(column));
    const QVariant stored = toStorage(rs, index, value);
    const QVariant previous = rs.rows[size_t(rs.position)][size_t(index)];
    rs.rows[size_t(rs.position)][size_t(index)] = stored;
    try {
        if (rs.pendingNewRow == rs.position) {
            rs.staged.push_back(index);
        } else {
            writeColumns(rs, rs.position, {index});
        }
    } catch (...) {
        rs.rows[size_t(rs.position)][size_t(index)] = previous;
        throw;
    }
    rs.dropIndexes();
}

void databaseControl::addNew(int handle) {
    requireConnection();
    Recordset& rs = set(handle);
    if (rs.table.isEmpty() || !rs.editable)
        fail(QStringLiteral("The record set is read-only."));
    refuseWriteIfReadOnly(QStringLiteral("a new row of %1").arg(rs.table));
    if (rs.pendingNewRow >= 0)
        saveRecord(handle);
    rs.rows.emplace_back(rs.columns.size());
    rs.rowKeys.push_back(-1);
    rs.pendingNewRow = rs.rowCount() - 1;
    rs.position = rs.pendingNewRow;
    rs.staged.clear();
    rs.dropIndexes();
}

void databaseControl::setField(int handle, const QString& column, const QVariant& value) {
    Recordset& rs = set(handle);
    const int index = writableColumn(rs, column);
    refuseWriteIfReadOnly(QStringLiteral("the change to %1").arg(column));
    rs.rows[size_t(rs.position)][size_t(index)] = toStorage(rs, index, value);
    if (std::find(rs.staged.begin(), rs.staged.end(), index) == rs.staged.end())
        rs.staged.push_back(index);
}

void databaseControl::saveRecord(int handle) {
    ProcedureScope scope(m_errors, QStringLiteral("QuillmerePad.exe-databaseControl-saveRecord"));
    requireConnection();
    Recordset& rs = set(handle);
    if (rs.pendingNewRow >= 0) {
        const int row = rs.pendingNewRow;
        try {
            insertRow(rs, row);
        } catch (...) {
            rs.rows.erase(rs.rows.begin() + row);
            rs.rowKeys.erase(rs.rowKeys.begin() + row);
            rs.pendingNewRow = -1;
            rs.staged.clear();
            rs.position = std::min(rs.position, rs.rowCount());
            throw;
        }
        rs.pendingNewRow = -1;
    } else if (!rs.atEnd()) {
        writeColumns(rs, rs.position, rs.staged);
    }
    rs.staged.clear();
    rs.dropIndexes();
}

void databaseControl::fillList(int handle, QStandardItemModel& list, const QString& column) {
    const Recordset& rs = set(handle);
    const int index = rs.columnIndex(column);
    if (index < 0)
        fail(QStringLiteral("The record set has no column %1.").arg(column));
    for (int r = 0; r < rs.rowCount(); ++r) {
        const QVariant v = rs.value(r, index);
        list.appendRow(new QStandardItem(v.isNull() ? QString() : v.toString()));
    }
}

QString databaseControl::formatDateForSQL(const QDate& date) {
    return QStringLiteral("%1/%2/%3")
        .arg(date.month())
        .arg(date.day())
        .arg(date.year(), 4, 10, QLatin1Char('0'));
}

void databaseControl::escapeSQLText(QString& text) {
    text.replace(u'\'', QStringLiteral("''"));
}

QString databaseControl::escapeLikeText(const QString& text) {
    QString out;
    out.reserve(text.size());
    for (const QChar c : text) {
        if (c == u'*' || c == u'?' || c == u'%' || c == u'_' || c == u'[') {
            out += u'[';
            out += c;
            out += u']';
        } else {
            out += c;
        }
    }
    return out;
}
