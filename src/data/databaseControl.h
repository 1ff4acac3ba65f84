#pragma once

#include "data/ReadAhead.h"
#include "data/Recordset.h"

#include <QDate>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <map>
#include <memory>
#include <optional>
#include <vector>

class QSqlError;
class QStandardItemModel;
class errorClass;
class QObject;
class StatementCache;
class TranslationCache;
class LookupStatements;

// The one access object to the client database: an SQLite file that the
// host program owns and writes at the same time, or a database on a
// PostgreSQL server shared by the practice's workstations (the path is then
// a connection URI; see DatabaseLocation). Record sets are known to
// callers by integer handles; -1 is "none". Each record set is a
// materialised keyset: its rows are read when it is opened, so walking it
// never touches the file again.
//
// SQL text is the dialect the rest of the program writes (qualified columns,
// #date# literals, True/False, Jet wildcards); it passes through
// JetSqlTranslator before it reaches the engine.
//
// Failure modes: every record-set operation on an unknown handle, a bad
// column name, a failing statement or a broken filter throws QmError
// (DatabaseError) to the caller's handler. Operations on a disconnected
// object throw too; callers test isConnected() first, as they must.
class databaseControl {
public:
    static constexpr int NoHandle = -1;

    // ADO's numbers, as the callers pass them.
    enum CursorType : int { KeysetCursor = 1 };
    enum LockType : int { ReadOnlyLock = 1, OptimisticLock = 3 };

    databaseControl();
    ~databaseControl();
    databaseControl(const databaseControl&) = delete;
    databaseControl& operator=(const databaseControl&) = delete;

    // Set-up in the order of the connection sequence. The numbered settings
    // are recorded and not otherwise used.
    void setErrorObject(errorClass* errors) { m_errors = errors; }
    void setOwnerWindow(QObject* owner) { m_owner = owner; }
    void setApplicationTitle(const QString& title) { m_title = title; }
    void setNumberedSetting(int value) { m_numberedSettings.push_back(value); }
    void setDatabasePath(const QString& path) { m_path = path; }
    // Opens the next connections read-only even where the file could be
    // written (a check that must leave the practice's file alone).
    void setOpenReadOnly(bool readOnly) { m_forceReadOnly = readOnly; }
    QString databasePath() const { return m_path; }

    // Opens the file (or server database) named by the path. On a server, a
    // database without the client tables, or with tables of an older schema
    // (a column missing), is refused with a message naming what is missing;
    // a connection lost later is made again before the next statement, and
    // a statement that ran on the lost one fails with a message saying so.
    // Never throws: a missing file, a
    // file that is not an SQLite database (text, zero bytes, encrypted,
    // truncated) or one that cannot be opened leaves the object
    // disconnected, with the reason in lastError(). Leaves the file's
    // journal mode as it is, and waits on a busy file instead of failing.
    // A file or folder this process may not write is opened read-only:
    // isReadOnly() is then true and every write throws (see below).
    void connect();
    // Closes every record set and the file.
    void disconnect();
    bool isConnected() const { return m_connected; }
    QString lastError() const { return m_lastError; }
    bool isReadOnly() const { return m_connected && m_readOnly; }
    // What a read-only connection does not save, for the user; empty when
    // the database is writable.
    QString readOnlyNotice() const;

    // Runs a SELECT and returns the handle of its rows, the cursor on the
    // first. Lock type 3 makes an editable set: the statement must read
    // from one table, whose rows are written back through their row key.
    int openRecordset(const QString& sql, int cursorType = KeysetCursor,
                      int lockType = ReadOnlyLock);
    // Unknown and -1 handles are ignored.
    void closeRecordset(int handle);
    // A one-value lookup: `sql` is a statement shape with "?" for each of
    // `arguments`; the answer is `column` (empty: the first column) of the
    // first row, typed as getField types it, or nothing when there is no
    // row. The shape is
    // prepared once per connection, so callers must keep the values out of
    // the text. Throws as openRecordset does.
    std::optional<QVariant> lookupValue(const QString& sql, const QVariantList& arguments,
                                        const QString& column);
    // A new handle holding the rows of `handle` that satisfy the filter
    // (ADO filter syntax, evaluated on the rows, never given to the engine).
    // The new set is read-only; both handles are the caller's to close.
    int filterRecordset(int handle, const QString& filter);

    int recordCount(int handle) const;
    bool isEmpty(int handle) const;
    bool hasRecords(int handle) const;
    bool isEOF(int handle) const;
    void moveFirst(int handle);
    void moveNext(int handle);
    // The current row's index; setPosition also resumes a find walk that
    // was running on that row (see findRows).
    int getPosition(int handle) const;
    void setPosition(int handle, int position);

    // Narrows the walk to the rows whose column equals the value (compared
    // as text, without regard to case; a Null never matches) and puts the
    // cursor on the first. Returns whether any exists. Find walks nest: a
    // findRows inside another walk, followed by setPosition back to a row of
    // the outer walk, lets findNext continue the outer one.
    bool findRows(int handle, const QString& column, const QString& value);
    void findNext(int handle);
    bool isEndOfFound(int handle) const;

    // The value of the column in the current row. Column names match
    // without regard to case; "Table.Column" picks one of two columns of
    // the same name. Null comes back as a null QVariant, distinct from "".
    // Yes/No columns come back as bool, dates as QDate (QDateTime with a
    // time of day). Throws past the end or for an unknown column.
    QVariant getField(int handle, const QString& column) const;
    // True when the record set has the column.
    bool hasField(int handle, const QString& column) const;
    QStringList fieldNames(int handle) const;

    // The writes below throw QmError(DatabaseError) on a read-only
    // connection, naming what was not saved, before anything changes.
    //
    // Writes one column of the current row and commits it at once. The
    // value is text as callers pass it: "True"/"False" for Yes/No columns,
    // an empty text into a number or date column stores Null.
    void updateFieldNow(int handle, const QString& column, const QString& value);
    // Starts a new row (the cursor moves onto it), sets its columns, and
    // saves it in one transaction. The saved row stays in the set.
    void addNew(int handle);
    void setField(int handle, const QString& column, const QVariant& value);
    void saveRecord(int handle);

    // Writes made between beginWriteBatch() and the matching endWriteBatch()
    // share one transaction, so that a run of many small writes (a merge's
    // repairs and folder rows) pays for one durable commit instead of one
    // each. Every write still takes effect alone or not at all; a failing
    // one is undone by itself and throws as outside a batch. Batches nest.
    // By default the transaction starts at the first write, so a batch that
    // only reads holds no lock on the host's file. With `holdReads` it
    // starts at once and again after every commit, so that the reads between
    // two commits share one snapshot instead of taking and dropping the
    // file's lock each: the caller then commits often (a merge does every
    // 200 ms) to keep the host's writes waiting no longer than that.
    // commitWriteBatch() makes what the batch wrote durable now (a caller's
    // checkpoint) and throws when the commit fails, with the batch's writes
    // undone. Use WriteBatch.
    void beginWriteBatch(bool holdReads = false);
    void commitWriteBatch();
    // Commits what is pending when the outermost batch ends. Never throws:
    // a failure is left in lastError(); callers that must know commit first.
    void endWriteBatch(bool heldReads = false) noexcept;
    bool inWriteBatch() const { return m_batchDepth > 0; }

    // Appends the column's value of every row to the model as items (text
    // only; a Null appends an empty item).
    void fillList(int handle, QStandardItemModel& list, const QString& column);

    // Date text for use between # marks (m/d/yyyy, which the translation
    // step reads back).
    static QString formatDateForSQL(const QDate& date);
    // Doubles single quotes, in place, for use inside a '...' literal.
    static void escapeSQLText(QString& text);
    // Makes a text that a LIKE pattern must contain match itself: each
    // wildcard character (* ? % _) and "[" becomes "[c]". Quotes are left to
    // escapeSQLText.
    static QString escapeLikeText(const QString& text);

    // The keys a run of reads by one key is about to ask for, in order (a
    // merge's recipients), and the column they are values of. Inside a
    // batch that holds its reads, a read of one of them by a plain
    // "column = ?" statement then fetches the rows of the next keys with it
    // in one statement (on a server, one round trip; on a file, one pass of
    // the engine instead of one per key), and the next reads are answered
    // from those rows until a write to a table they read. Commits of the
    // batch do not refresh them: a letter's rows are as of the read of its
    // window, a few hundred letters at most before it. Lookups of such
    // keys are answered the same way. Empty ends it. Use ExpectedKeys.
    void expectKeys(const QString& column, std::vector<qint64> keys);

    // Whether the database is on a server (the path is a URI).
    bool isServer() const { return m_server; }

    // Diagnostics for tests and benchmarks.
    int openRecordsetCount() const { return static_cast<int>(m_sets.size()); }
    // SQL statements run against the file by this object: each opened
    // record set and each write, so that callers can show that a walk reads
    // a fixed number of sets whatever the size of the data.
    qint64 statementCount() const { return m_statementCount; }
    const std::vector<int>& numberedSettings() const { return m_numberedSettings; }

private:
    Recordset& set(int handle);
    const Recordset& set(int handle) const;
    int store(std::unique_ptr<Recordset> recordset);
    void requireConnection() const;
    [[noreturn]] void fail(const QString& text) const;
    bool openConnection(bool immutable);
    bool openServerConnection();
    // After a failure: whether the server connection is gone, in which case
    // it is made again (a batch's transaction is lost with it).
    bool reconnectIfLost(const QSqlError& error);
    bool reconnectAfterLoss();
    // A table or column name as the engine wants it in statement text.
    QString sqlName(const QString& name) const;
    // The row key of an editable set's table: the embedded engine's rowid,
    // a server table's own key, or its physical row address for a table
    // without a key.
    QString rowKeyColumn(const QString& table) const;
    // Runs a prepared statement of the cache with its values, asking again
    // once after a changed table or a lost connection (see connect()).
    // Throws with `shown` in the message.
    void runStatement(const QString& sql, const QVariantList& values, const QString& shown);
    // The lookup's column of the first row read ahead (as firstValue).
    std::optional<QVariant> firstValueOf(const ReadAhead::Rows& ahead, const QString& column,
                                         const QString& sql) const;
    std::optional<QVariant> serverLookup(const QString& sql, const QVariantList& arguments,
                                         const QString& column);
    QString describeFailure(const QSqlError& error) const;
    void refuseWriteIfReadOnly(const QString& what) const;
    // Forgets the rows read ahead that a write may have changed.
    void forgetReadAheadOf(const QString& sql);
    // The index of a column of the current row that may be written; throws
    // for a read-only set, an unknown column or no current row.
    int writableColumn(const Recordset& rs, const QString& column) const;
    QVariant toStorage(const Recordset& rs, int column, const QVariant& value);
    QString tableColumnType(const QString& table, const QString& column);
    void writeColumns(Recordset& rs, int row, const std::vector<int>& columns);
    void insertRow(Recordset& rs, int row);
    void runInTransaction(const QString& sql, const QVariantList& parameters, qint64* insertedKey);
    void runInBatch(const QString& sql, const QVariantList& parameters, qint64* insertedKey);
    bool execute(const QString& sql, const QVariantList& parameters, qint64* insertedKey,
                 QString* error);

    errorClass* m_errors = nullptr;
    QObject* m_owner = nullptr;
    QString m_title;
    QString m_path;
    std::vector<int> m_numberedSettings;

    QString m_connectionName;
    bool m_connected = false;
    bool m_readOnly = false;
    bool m_forceReadOnly = false;
    bool m_server = false;
    bool m_lostConnection = false; // the last statement failed with its connection
    std::unique_ptr<TranslationCache> m_translations;
    QString m_lastError;
    std::unique_ptr<StatementCache> m_statements;
    std::unique_ptr<LookupStatements> m_lookups;
    std::unique_ptr<ReadAhead> m_readAhead;
    int m_schemaVersion = -1;
    std::map<int, std::unique_ptr<Recordset>> m_sets;
    struct MemoRows {
        std::vector<RecordsetColumn> columns;
        std::shared_ptr<const QHash<QString, int>> lookup;
        std::vector<std::vector<QVariant>> rows;
    };
    QHash<QString, MemoRows> m_readMemo; // reads of a held batch on a server
    QHash<QString, std::optional<QVariant>> m_lookupMemo;
    std::map<QString, std::map<QString, QString>> m_columnTypes; // TABLE -> COLUMN -> declared type
    int m_nextHandle = 1;
    qint64 m_statementCount = 0;
    int m_batchDepth = 0;
    int m_readHolders = 0;    // batches that keep a transaction open for their reads
    bool m_batchOpen = false; // a transaction of the batch is running
    // The schema cannot change under a running transaction: checked once in it.
    bool m_schemaCheckedInBatch = false;

    void openBatchTransaction();
};

// The scope of a write batch (see beginWriteBatch). What it wrote is
// committed when it ends, however it ends: the writes are each whole, and a
// merge that stops half-way keeps the repairs and folders it made.
class WriteBatch {
public:
    enum class Reads { Free, Held };
    explicit WriteBatch(databaseControl& db, Reads reads = Reads::Free) : m_db(db) {
        m_db.beginWriteBatch(reads == Reads::Held);
        m_holds = reads == Reads::Held;
    }
    ~WriteBatch() { m_db.endWriteBatch(m_holds); }
    WriteBatch(const WriteBatch&) = delete;
    WriteBatch& operator=(const WriteBatch&) = delete;
    void commit() { m_db.commitWriteBatch(); }

private:
    databaseControl& m_db;
    bool m_holds = false;
};

// The scope of an expectation of keys (see expectKeys).
class ExpectedKeys {
public:
    ExpectedKeys(databaseControl& db, const QString& column, std::vector<qint64> keys) : m_db(db) {
        m_db.expectKeys(column, std::move(keys));
    }
    ~ExpectedKeys() { m_db.expectKeys({}, {}); }
    ExpectedKeys(const ExpectedKeys&) = delete;
    ExpectedKeys& operator=(const ExpectedKeys&) = delete;

private:
    databaseControl& m_db;
};
