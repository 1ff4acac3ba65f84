#include "ClientDbFixture.h"

#include "data/ClientDatabaseSchema.h"

#include <QFile>

void ClientDbFixture::SetUp() {
    m_path = m_env.path(QStringLiteral("Data/Data.qmd"));
    m_hostConnection = QStringLiteral("host_%1").arg(quintptr(this));
    {
        QSqlDatabase host = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_hostConnection);
        host.setDatabaseName(m_path);
        ASSERT_TRUE(host.open());
        ClientDatabaseSchema::create(host);
    }
    m_db = std::make_unique<databaseControl>();
    m_db->setDatabasePath(m_path);
    m_db->connect();
    ASSERT_TRUE(m_db->isConnected()) << m_db->lastError().toStdString();
    m_context->database = m_db.get();
}

void ClientDbFixture::TearDown() {
    m_context->database = nullptr;
    m_db.reset();
    {
        QSqlDatabase host = QSqlDatabase::database(m_hostConnection, false);
        host.close();
    }
    QSqlDatabase::removeDatabase(m_hostConnection);
}

void ClientDbFixture::hostExec(const QString& sql) {
    QSqlQuery query(QSqlDatabase::database(m_hostConnection));
    ASSERT_TRUE(query.exec(sql)) << query.lastError().text().toStdString() << " in "
                                 << sql.toStdString();
}

QVariant ClientDbFixture::hostValue(const QString& sql) {
    QSqlQuery query(QSqlDatabase::database(m_hostConnection));
    if (!query.exec(sql) || !query.next()) {
        ADD_FAILURE() << "no value from " << sql.toStdString();
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
            hostExec(statement.trimmed());
            statement.clear();
        }
    }
}
