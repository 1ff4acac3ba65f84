#include "ClientDbFixture.h"

#include "data/ClientDatabaseSchema.h"
#include "data/IdentitySequences.h"
#include "support/PostgresTestServer.h"

#include <QFile>
#include <QUrl>

bool ClientDbFixture::onPostgres() {
    return qgetenv("QM_TEST_ENGINE") == "postgres";
}

void ClientDbFixture::SetUp() {
    m_hostConnection = QStringLiteral("host_%1").arg(quintptr(this));
    if (onPostgres()) {
        QM_REQUIRE_POSTGRES(server);
        QString error;
        const auto uri = server->createDatabase(
            QString::fromUtf8(::testing::UnitTest::GetInstance()->current_test_info()->name()),
            &error);
        ASSERT_TRUE(uri) << error.toStdString();
        m_path = *uri;
    } else {
        m_path = m_env.path(QStringLiteral("Data/Data.qmd"));
    }
    {
        ASSERT_TRUE(openHost());
        QSqlDatabase host = QSqlDatabase::database(m_hostConnection);
        ClientDatabaseSchema::create(host);
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
    if (!onPostgres()) {
        QSqlDatabase host = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_hostConnection);
        host.setDatabaseName(m_path);
        EXPECT_TRUE(host.open()) << host.lastError().text().toStdString();
        return host.isOpen();
    }
    const QUrl url(m_path);
    QSqlDatabase host = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), m_hostConnection);
    host.setHostName(url.host());
    host.setPort(url.port());
    host.setUserName(url.userName());
    host.setDatabaseName(url.path().mid(1));
    EXPECT_TRUE(host.open()) << host.lastError().text().toStdString();
    return host.isOpen();
}

void ClientDbFixture::TearDown() {
    m_context->database = nullptr;
    m_db.reset();
    if (QSqlDatabase::contains(m_hostConnection)) {
        {
            QSqlDatabase host = QSqlDatabase::database(m_hostConnection, false);
            host.close();
        }
        QSqlDatabase::removeDatabase(m_hostConnection);
    }
    if (onPostgres() && !m_path.isEmpty()) {
        if (PostgresTestServer* server = PostgresTestServer::shared(nullptr))
            server->dropDatabase(m_path);
    }
}

void ClientDbFixture::hostExec(const QString& sql) {
    QSqlQuery query(QSqlDatabase::database(m_hostConnection));
    ASSERT_TRUE(query.exec(sql)) << query.lastError().text().toStdString() << " in "
                                 << sql.toStdString();
    if (onPostgres() && sql.trimmed().startsWith(QLatin1String("INSERT"), Qt::CaseInsensitive))
        advanceServerSequences();
}

QVariant ClientDbFixture::hostValue(const QString& sql) {
    QSqlQuery query(QSqlDatabase::database(m_hostConnection));
    if (!query.exec(sql) || !query.next()) {
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
            ASSERT_TRUE(query.exec(statement.trimmed()))
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
