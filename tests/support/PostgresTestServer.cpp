#include "support/PostgresTestServer.h"

#include <QAtomicInt>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStandardPaths>
#include <QVersionNumber>
#include <arpa/inet.h>
#include <cerrno>
#include <csignal>
#include <netinet/in.h>
#include <pwd.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

const QString kSuperuser = QStringLiteral("qmtest");
const QString kUnprivilegedUser = QStringLiteral("nobody");

std::unique_ptr<PostgresTestServer>& sharedServer() {
    static std::unique_ptr<PostgresTestServer> server;
    return server;
}
QString& sharedFailure() {
    static QString failure;
    return failure;
}
bool& sharedMissing() {
    static bool missing = false;
    return missing;
}

// The folder holding initdb and pg_ctl: PATH first, then the newest of
// Debian's versioned folders.
std::optional<QString> serverPrograms() {
    const QString onPath = QStandardPaths::findExecutable(QStringLiteral("initdb"));
    if (!onPath.isEmpty()) {
        const QString folder = QFileInfo(onPath).canonicalPath();
        if (QFileInfo(folder + QStringLiteral("/pg_ctl")).isExecutable())
            return folder;
    }
    const QDir versions(QStringLiteral("/usr/lib/postgresql"));
    std::optional<QString> best;
    QVersionNumber bestVersion;
    for (const QString& name : versions.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QString folder = versions.filePath(name) + QStringLiteral("/bin");
        const QVersionNumber version = QVersionNumber::fromString(name);
        if (QFileInfo(folder + QStringLiteral("/initdb")).isExecutable() &&
            QFileInfo(folder + QStringLiteral("/pg_ctl")).isExecutable() &&
            (!best || version > bestVersion)) {
            best = folder;
            bestVersion = version;
        }
    }
    return best;
}

// A port nobody listens on now. Another process may take it before the
// server does; start() then tries another.
int freePort() {
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    if (fd < 0)
        return -1;
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = 0;
    socklen_t length = sizeof address;
    int port = -1;
    if (::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
        ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length) == 0)
        port = ntohs(address.sin_port);
    ::close(fd);
    return port;
}

QString databaseOf(const QString& uri) {
    const QString path = uri.section(u'/', 3);
    return path.section(u'?', 0, 0);
}

} // namespace

PostgresTestServer* PostgresTestServer::shared(QString* whyNot) {
    auto& server = sharedServer();
    if (!server && sharedFailure().isEmpty()) {
        std::unique_ptr<PostgresTestServer> candidate(new PostgresTestServer);
        QString error;
        if (candidate->start(&error, &sharedMissing()))
            server = std::move(candidate);
        else
            sharedFailure() = QStringLiteral("No PostgreSQL test server: %1").arg(error);
    }
    if (!server && whyNot)
        *whyNot = sharedFailure();
    return server.get();
}

bool PostgresTestServer::isMissing() {
    return sharedMissing();
}

void PostgresTestServer::stopShared() {
    sharedServer().reset();
}

PostgresTestServer::~PostgresTestServer() {
    stop();
}

QString PostgresTestServer::user() const {
    return kSuperuser;
}

QString PostgresTestServer::socketFolder() const {
    return m_dir ? m_dir->path() : QString();
}

QString PostgresTestServer::uri(const QString& database) const {
    return QStringLiteral("postgresql://%1@127.0.0.1:%2/%3")
        .arg(kSuperuser)
        .arg(m_port)
        .arg(database);
}

bool PostgresTestServer::run(const QString& program, const QStringList& arguments, int timeoutMs,
                             QString* error) const {
    QProcess process;
    process.setWorkingDirectory(m_dir->path());
    process.setProcessChannelMode(QProcess::MergedChannels);
    const QString path = m_bin + u'/' + program;
    if (m_runAs.isEmpty()) {
        process.start(path, arguments);
    } else {
        process.start(QStringLiteral("runuser"),
                      QStringList{QStringLiteral("-u"), m_runAs, QStringLiteral("--"), path} +
                          arguments);
    }
    if (!process.waitForStarted()) {
        *error = QStringLiteral("cannot run %1: %2").arg(path, process.errorString());
        return false;
    }
    const bool finished = process.waitForFinished(timeoutMs);
    if (!finished) {
        process.kill();
        process.waitForFinished();
    }
    if (!finished || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        *error = QStringLiteral("%1 failed%2: %3")
                     .arg(program, finished ? QString() : QStringLiteral(" (timed out)"),
                          QString::fromLocal8Bit(process.readAll()).trimmed());
        return false;
    }
    return true;
}

bool PostgresTestServer::start(QString* error, bool* missing) {
    const auto bin = serverPrograms();
    *missing = true;
    if (!bin) {
        *error = QStringLiteral("initdb and pg_ctl were found neither on PATH nor under "
                                "/usr/lib/postgresql/*/bin (install the postgresql package)");
        return false;
    }
    m_bin = *bin;
    if (!QSqlDatabase::isDriverAvailable(QStringLiteral("QPSQL"))) {
        *error = QStringLiteral("Qt's QPSQL driver is missing (install libqt6sql6-psql)");
        return false;
    }
    *missing = false;
    const bool root = ::geteuid() == 0;
    // A short folder name: the socket's path must fit in 107 bytes. The
    // unprivileged user must be able to reach it.
    const QString base = root && !QFileInfo(QDir::tempPath()).permission(QFile::ExeOther)
                             ? QStringLiteral("/tmp")
                             : QDir::tempPath();
    stopAbandonedServers(base, root);
    m_dir = std::make_unique<QTemporaryDir>(base + QStringLiteral("/qmpg-XXXXXX"));
    if (!m_dir->isValid()) {
        *error = QStringLiteral("cannot create a temporary folder: %1").arg(m_dir->errorString());
        return false;
    }
    // Whose server this is, for the next run to tell if it was abandoned.
    QFile owner(m_dir->path() + QStringLiteral("/owner.pid"));
    if (owner.open(QIODevice::WriteOnly))
        owner.write(QByteArray::number(qint64(::getpid())));
    owner.close();
    if (root) {
        // The server will not run as root; the folder becomes the user's.
        const passwd* account = ::getpwnam(kUnprivilegedUser.toLocal8Bit().constData());
        if (!account) {
            *error = QStringLiteral("running as root and there is no user '%1' to run the "
                                    "server as")
                         .arg(kUnprivilegedUser);
            return false;
        }
        if (::chown(QFile::encodeName(m_dir->path()).constData(), account->pw_uid,
                    account->pw_gid) != 0) {
            *error =
                QStringLiteral("cannot give %1 to user '%2'").arg(m_dir->path(), kUnprivilegedUser);
            return false;
        }
        m_runAs = kUnprivilegedUser;
    }
    const QString data = m_dir->path() + QStringLiteral("/data");
    if (!run(QStringLiteral("initdb"),
             {QStringLiteral("-D"), data, QStringLiteral("-U"), kSuperuser, QStringLiteral("-A"),
              QStringLiteral("trust"), QStringLiteral("-E"), QStringLiteral("UTF8"),
              QStringLiteral("--locale=C"), QStringLiteral("--no-sync")},
             120000, error))
        return false;
    // Durability is not what these tests check: no waiting on the disk.
    const QString settings = QStringLiteral("-c fsync=off -c synchronous_commit=off "
                                            "-c full_page_writes=off -c max_connections=60");
    const QString log = m_dir->path() + QStringLiteral("/server.log");
    for (int attempt = 0; attempt < 3; ++attempt) {
        m_port = freePort();
        if (m_port <= 0) {
            *error = QStringLiteral("no free TCP port on 127.0.0.1");
            return false;
        }
        const QString options = QStringLiteral("-k %1 -p %2 -h 127.0.0.1 %3")
                                    .arg(m_dir->path())
                                    .arg(m_port)
                                    .arg(settings);
        if (run(QStringLiteral("pg_ctl"),
                {QStringLiteral("-D"), data, QStringLiteral("-l"), log, QStringLiteral("-w"),
                 QStringLiteral("-t"), QStringLiteral("60"), QStringLiteral("-o"), options,
                 QStringLiteral("start")},
                90000, error)) {
            m_running = true;
            break;
        }
        QFile file(log);
        if (file.open(QIODevice::ReadOnly))
            *error += QStringLiteral("\n") + QString::fromLocal8Bit(file.readAll()).trimmed();
    }
    if (!m_running)
        return false;

    static QAtomicInt counter;
    m_adminConnection = QStringLiteral("qm_pg_admin_%1").arg(counter.fetchAndAddRelaxed(1));
    QSqlDatabase admin = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), m_adminConnection);
    admin.setHostName(QStringLiteral("127.0.0.1"));
    admin.setPort(m_port);
    admin.setUserName(kSuperuser);
    admin.setDatabaseName(QStringLiteral("postgres"));
    if (!admin.open()) {
        *error = QStringLiteral("cannot connect to the started server: %1")
                     .arg(admin.lastError().text());
        return false;
    }
    return true;
}

void PostgresTestServer::stopAbandonedServers(const QString& base, bool root) const {
    // A test program killed at its time limit leaves its server running;
    // the next one stops it, so that servers do not pile up on the machine.
    const QFileInfoList folders =
        QDir(base).entryInfoList({QStringLiteral("qmpg-*")}, QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QFileInfo& folder : folders) {
        QFile owner(folder.filePath() + QStringLiteral("/owner.pid"));
        if (!owner.open(QIODevice::ReadOnly))
            continue; // not ours, or still being made
        bool number = false;
        const qint64 pid = owner.readAll().trimmed().toLongLong(&number);
        owner.close();
        if (!number || pid <= 0 || ::kill(pid_t(pid), 0) == 0 || errno != ESRCH)
            continue;
        const QString data = folder.filePath() + QStringLiteral("/data");
        QProcess stopper;
        const QString pgCtl = m_bin + QStringLiteral("/pg_ctl");
        const QStringList arguments{QStringLiteral("-D"), data,
                                    QStringLiteral("-m"), QStringLiteral("immediate"),
                                    QStringLiteral("-w"), QStringLiteral("stop")};
        if (root)
            stopper.start(
                QStringLiteral("runuser"),
                QStringList{QStringLiteral("-u"), kUnprivilegedUser, QStringLiteral("--"), pgCtl} +
                    arguments);
        else
            stopper.start(pgCtl, arguments);
        stopper.waitForFinished(60000);
        QDir(folder.filePath()).removeRecursively();
    }
}

void PostgresTestServer::stop() {
    if (!m_adminConnection.isEmpty()) {
        QSqlDatabase::database(m_adminConnection, false).close();
        QSqlDatabase::removeDatabase(m_adminConnection);
        m_adminConnection.clear();
    }
    if (m_running) {
        QString ignored;
        run(QStringLiteral("pg_ctl"),
            {QStringLiteral("-D"), m_dir->path() + QStringLiteral("/data"), QStringLiteral("-m"),
             QStringLiteral("immediate"), QStringLiteral("-w"), QStringLiteral("stop")},
            60000, &ignored);
        m_running = false;
    }
    m_dir.reset(); // removes the folder
}

bool PostgresTestServer::exec(const QString& sql, QString* error) {
    QSqlQuery query(QSqlDatabase::database(m_adminConnection));
    if (query.exec(sql))
        return true;
    if (error)
        *error = query.lastError().text();
    return false;
}

std::optional<QString> PostgresTestServer::createDatabase(const QString& hint, QString* error,
                                                          const QString& templateUri) {
    static QAtomicInt counter;
    QString name = QStringLiteral("%1_%2").arg(hint.toLower()).arg(counter.fetchAndAddRelaxed(1));
    name.replace(QRegularExpression(QStringLiteral("[^a-z0-9_]")), QStringLiteral("_"));
    const QString source =
        templateUri.isEmpty() ? QStringLiteral("template0") : databaseOf(templateUri);
    if (!exec(QStringLiteral("CREATE DATABASE %1 TEMPLATE %2").arg(name, source), error))
        return std::nullopt;
    return uri(name);
}

void PostgresTestServer::dropDatabase(const QString& uri) {
    exec(QStringLiteral("DROP DATABASE IF EXISTS %1 WITH (FORCE)").arg(databaseOf(uri)), nullptr);
}
