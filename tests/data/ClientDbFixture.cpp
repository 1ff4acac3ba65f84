#include "ClientDbFixture.h"

#include "data/ClientDatabaseSchema.h"
#include "data/IdentitySequences.h"
#include "support/PostgresTestServer.h"

#include <QFile>
#include <QRegularExpression>
#include <QUrl>

namespace {

// A server database of an earlier test, emptied and with the schema as
// made: a new database costs the server far more than emptying one.
QString& reusableDatabase() {
    static QString uri;
    return uri;
}

// What a test could change in a server database besides its rows.
const char* const kSchemaFingerprint =
    "SELECT md5(string_agg(item, ',' ORDER BY item)) FROM ("
    "  SELECT table_name || '.' || column_name || ':' || data_type || ':' ||"
    "         coalesce(column_default, '') || ':' || is_nullable AS item"
    "  FROM information_schema.columns WHERE table_schema = current_schema()"
    "  UNION ALL SELECT relname || ':' || relkind::text FROM pg_class"
    "  WHERE relnamespace = current_schema()::regnamespace"
    "  UNION ALL SELECT tgname::text FROM pg_trigger WHERE NOT tgisinternal"
    "  UNION ALL SELECT proname::text FROM pg_proc WHERE pronamespace = "
    "current_schema()::regnamespace"
    ") AS everything";

} // namespace

bool ClientDbFixture::onPostgres() {
    return qgetenv("QM_TEST_ENGINE") == "postgres";
}

void ClientDbFixture::SetUp() {
    m_hostConnection = QStringLiteral("host_%1").arg(quintptr(this));
    bool needsSchema = true;
    if (onPostgres()) {
        QM_REQUIRE_POSTGRES(server);
        if (!reusableDatabase().isEmpty()) {
            m_path = std::exchange(reusableDatabase(), QString());
            needsSchema = false;
        } else {
            QString error;
            const auto uri = server->createDatabase(QStringLiteral("client"), &error);
            ASSERT_TRUE(uri) << error.toStdString();
            m_path = *uri;
        }
    } else {
        m_path = m_env.path(QStringLiteral("Data/Data.qmd"));
    }
    ASSERT_TRUE(openHost());
    if (needsSchema) {
        QSqlDatabase host = QSqlDatabase::database(m_hostConnection);
        ClientDatabaseSchema::create(host);
        if (onPostgres())
            m_schemaFingerprint = hostValue(QString::fromLatin1(kSchemaFingerprint)).toString();
    }
    m_db = std::make_unique<databaseControl>();
    m_db->setDatabasePath(m_path);
    m_db->connect();
    ASSERT_TRUE(m_db->isConnected()) << m_db->lastError().toStdString();
    m_context->database = m_db.get();
}

// Opened by hand, not through the program's code: the host is the other
// side of what is tested.
bool ClientDbFixture::openHost() {
    QSqlDatabase host;
    if (onPostgres()) {
        const QUrl url(m_path);
        host = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), m_hostConnection);
        host.setHostName(url.host());
        host.setPort(url.port());
        host.setUserName(url.userName());
        host.setDatabaseName(url.path().mid(1));
    } else {
        host = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_hostConnection);
        host.setDatabaseName(m_path);
    }
    EXPECT_TRUE(host.open()) << host.lastError().text().toStdString();
    return host.isOpen();
}

void ClientDbFixture::TearDown() {
    m_context->database = nullptr;
    m_db.reset();
    bool reusable = false;
    if (QSqlDatabase::contains(m_hostConnection)) {
        if (onPostgres() && !m_path.isEmpty())
            reusable = emptyForTheNextTest();
        {
            QSqlDatabase host = QSqlDatabase::database(m_hostConnection, false);
            host.close();
        }
        QSqlDatabase::removeDatabase(m_hostConnection);
    }
    if (!onPostgres() || m_path.isEmpty())
        return;
    if (reusable) {
        reusableDatabase() = m_path;
    } else if (PostgresTestServer* server = PostgresTestServer::shared(nullptr)) {
        server->dropDatabase(m_path);
    }
}

bool ClientDbFixture::emptyForTheNextTest() {
    static QString pristine;
    QSqlQuery query(QSqlDatabase::database(m_hostConnection));
    if (!query.exec(QString::fromLatin1(kSchemaFingerprint)) || !query.next())
        return false;
    if (!m_schemaFingerprint.isEmpty())
        pristine = m_schemaFingerprint;
    if (pristine.isEmpty() || query.value(0).toString() != pristine)
        return false;
    // DELETE, not TRUNCATE: the tables are small, and TRUNCATE makes new
    // files for every table and index.
    QStringList statements;
    for (const QString& table : ClientDatabaseSchema::tableNames())
        statements << QStringLiteral("DELETE FROM %1").arg(table);
    return query.exec(statements.join(QStringLiteral("; ")));
}

QString ClientDbFixture::inHostDialect(const QString& sql) {
    if (!onPostgres())
        return sql;
    // The server names the character function differently.
    static const QRegularExpression character(QStringLiteral("\\bchar\\((\\d+)\\)"));
    return QString(sql).replace(character, QStringLiteral("chr(\\1)"));
}

void ClientDbFixture::hostExec(const QString& sql) {
    QSqlQuery query(QSqlDatabase::database(m_hostConnection));
    ASSERT_TRUE(query.exec(inHostDialect(sql)))
        << query.lastError().text().toStdString() << " in " << sql.toStdString();
    if (onPostgres() && sql.trimmed().startsWith(QLatin1String("INSERT"), Qt::CaseInsensitive))
        advanceServerSequences();
}

QVariant ClientDbFixture::hostValue(const QString& sql) {
    QSqlQuery query(QSqlDatabase::database(m_hostConnection));
    if (!query.exec(inHostDialect(sql)) || !query.next()) {
        ADD_FAILURE() << "no value from " << sql.toStdString() << ": "
                      << query.lastError().text().toStdString();
        return {};
    }
    return query.value(0);
}

void ClientDbFixture::loadFixture(const QString& name) {
    QFile file(testDataPath(QStringLiteral("db/%1.sql").arg(name)));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    const QString text = QString::fromUtf8(file.readAll());
    QString statement;
    for (const QString& line : text.split(u'\n')) {
        if (line.trimmed().startsWith(QStringLiteral("--")))
            continue;
        statement += line + u'\n';
        if (line.trimmed().endsWith(u';')) {
            QSqlQuery query(QSqlDatabase::database(m_hostConnection));
            ASSERT_TRUE(query.exec(inHostDialect(statement.trimmed())))
                << query.lastError().text().toStdString() << " in " << statement.toStdString();
            statement.clear();
        }
    }
    if (onPostgres())
        advanceServerSequences();
}

void ClientDbFixture::advanceServerSequences() {
    QSqlDatabase host = QSqlDatabase::database(m_hostConnection);
    QString error;
    EXPECT_TRUE(IdentitySequences::advancePastRows(host, &error)) << error.toStdString();
}
