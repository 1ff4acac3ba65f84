#include "data/NewClientDatabase.h"

#include "data/ClientDatabaseSchema.h"
#include "data/IdentitySequences.h"
#include "platform/errorClass.h"

#include <QAtomicInt>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>

namespace {

QAtomicInt g_counter;

} // namespace

NewClientDatabase::NewClientDatabase(const DatabaseLocation& location, const QString& purpose)
    : m_location(location),
      m_connection(QStringLiteral("qm_new_db_%1").arg(g_counter.fetchAndAddRelaxed(1))) {
    try {
        if (m_location.isServer())
            openServer(purpose);
        else
            openFile();
        createSchema();
    } catch (...) {
        discard();
        throw;
    }
}

NewClientDatabase::~NewClientDatabase() {
    if (!m_committed)
        discard();
}

void NewClientDatabase::openFile() {
    const QString& path = m_location.path;
    if (QFileInfo::exists(path))
        throw QmError(QmError::FileAlreadyOpen,
                      QStringLiteral("The file already exists: %1").arg(path));
    const QFileInfo target(path);
    if (!QDir().mkpath(target.absolutePath()))
        throw QmError(QmError::PathNotFound,
                      QStringLiteral("Cannot create the folder of %1").arg(path));
    m_temporaryFile =
        target.absolutePath() +
        QStringLiteral("/.%1.%2.tmp").arg(target.fileName()).arg(g_counter.fetchAndAddRelaxed(1));
    QFile::remove(m_temporaryFile);
    m_db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connection);
    m_db.setDatabaseName(m_temporaryFile);
    if (!m_db.open())
        throw QmError(QmError::DatabaseError,
                      QStringLiteral("Cannot create %1: %2").arg(path, m_db.lastError().text()));
    // Nobody else sees the file before the rename: the journal that lets a
    // refused statement be undone can stay in memory. The commit still waits
    // for the disk, so the renamed file is whole.
    QSqlQuery(m_db).exec(QStringLiteral("PRAGMA journal_mode=MEMORY"));
}

void NewClientDatabase::openServer(const QString& purpose) {
    QString error;
    if (!m_location.open(m_db, m_connection, &error))
        throw QmError(QmError::DatabaseError, error);
    QStringList present;
    const QStringList tables = m_db.tables(QSql::Tables);
    for (const QString& table : ClientDatabaseSchema::tableNames()) {
        if (tables.contains(table, Qt::CaseInsensitive))
            present << table;
    }
    if (!present.isEmpty())
        throw QmError(
            QmError::FileAlreadyOpen,
            QStringLiteral("The database %1 already holds client tables (%2); %3 "
                           "needs an empty database")
                .arg(m_location.display(), present.mid(0, 3).join(QStringLiteral(", ")), purpose));
}

void NewClientDatabase::createSchema() {
    if (!m_location.isServer()) {
        ClientDatabaseSchema::create(m_db);
        if (!m_db.transaction())
            throw QmError(QmError::DatabaseError, m_db.lastError().text());
        m_inTransaction = true;
        return;
    }
    // On a server the schema is made in the rows' transaction, so that a
    // failure at any point leaves the database exactly as it was found.
    if (!m_db.transaction())
        throw QmError(QmError::DatabaseError, m_db.lastError().text());
    m_inTransaction = true;
    QSqlQuery query(m_db);
    for (const QString& statement : ClientDatabaseSchema::serverStatements()) {
        if (!query.exec(statement))
            throw QmError(QmError::DatabaseError,
                          QStringLiteral("Cannot create the schema in %1: %2")
                              .arg(m_location.display(), query.lastError().text()));
    }
}

void NewClientDatabase::commit() {
    try {
        QString error;
        if (!IdentitySequences::advancePastRows(m_db, &error))
            throw QmError(QmError::DatabaseError,
                          QStringLiteral("Cannot renumber the new rows' keys: %1").arg(error));
        if (!m_db.commit())
            throw QmError(QmError::DatabaseError,
                          QStringLiteral("Cannot save %1: %2")
                              .arg(m_location.display(), m_db.lastError().text()));
        m_inTransaction = false;
        if (!m_temporaryFile.isEmpty()) {
            QSqlQuery(m_db).exec(QStringLiteral("PRAGMA journal_mode=DELETE"));
            m_db.close();
            if (!QFile::rename(m_temporaryFile, m_location.path))
                throw QmError(QmError::DatabaseError,
                              QStringLiteral("Cannot move the new database into place: %1")
                                  .arg(m_location.path));
            m_temporaryFile.clear();
        }
        m_committed = true;
        m_db.close();
        m_db = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_connection);
    } catch (...) {
        discard();
        throw;
    }
}

void NewClientDatabase::discard() noexcept {
    if (m_db.isOpen()) {
        if (m_inTransaction)
            m_db.rollback();
        m_inTransaction = false;
        m_db.close();
    }
    m_db = QSqlDatabase();
    if (QSqlDatabase::contains(m_connection))
        QSqlDatabase::removeDatabase(m_connection);
    if (!m_temporaryFile.isEmpty()) {
        QFile::remove(m_temporaryFile);
        m_temporaryFile.clear();
    }
}
