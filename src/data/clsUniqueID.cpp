#include "data/clsUniqueID.h"

#include "context/AppContext.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>
#include <atomic>
#include <cmath>
#include <filesystem>

namespace {

const QString kModule = QStringLiteral("QuillmerePad.exe-clsUniqueID-");
const QString kDriver = QStringLiteral("QSQLITE");
const QString kTable = QStringLiteral("UniqueID");
// Another process (a second instance) may hold the file for a moment.
const QString kOptions = QStringLiteral("QSQLITE_BUSY_TIMEOUT=3000");

QString tagOf(const char* procedure) {
    return kModule + QLatin1String(procedure);
}

QString newConnectionName(const char* purpose) {
    static std::atomic<int> counter{0};
    return QStringLiteral("clsUniqueID-%1-%2").arg(QLatin1String(purpose)).arg(++counter);
}

QString today() {
    return app().clock.today().toString(Qt::ISODate);
}

// A connection of its own for one check or one set-up step, removed again
// when the scope ends.
class TrialConnection {
public:
    explicit TrialConnection(const QString& path) : m_name(newConnectionName("trial")) {
        QSqlDatabase db = QSqlDatabase::addDatabase(kDriver, m_name);
        db.setDatabaseName(path);
        db.setConnectOptions(kOptions);
        m_open = db.open();
    }
    ~TrialConnection() {
        {
            QSqlDatabase db = QSqlDatabase::database(m_name, false);
            db.close();
        }
        QSqlDatabase::removeDatabase(m_name);
    }
    TrialConnection(const TrialConnection&) = delete;
    TrialConnection& operator=(const TrialConnection&) = delete;

    bool isOpen() const { return m_open; }
    QSqlDatabase database() const { return QSqlDatabase::database(m_name, false); }

private:
    QString m_name;
    bool m_open = false;
};

bool hasTable(const QSqlDatabase& db) {
    QSqlQuery query(db);
    query.prepare(QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table' AND "
                                 "name = ? COLLATE NOCASE"));
    query.addBindValue(kTable);
    return query.exec() && query.next();
}

} // namespace

clsUniqueID::clsUniqueID()
    : m_connectionName(newConnectionName("main")),
      m_random([] { return QRandomGenerator::global()->generateDouble(); }) {}

clsUniqueID::~clsUniqueID() {
    closeConnection();
}

QSqlDatabase clsUniqueID::connection() const {
    return QSqlDatabase::database(m_connectionName, false);
}

bool clsUniqueID::isOpen() const {
    return QSqlDatabase::contains(m_connectionName) && connection().isOpen();
}

void clsUniqueID::closeConnection() {
    if (!QSqlDatabase::contains(m_connectionName)) {
        return;
    }
    {
        QSqlDatabase db = connection();
        db.close();
    }
    QSqlDatabase::removeDatabase(m_connectionName);
}

void clsUniqueID::setDatabaseLocation(const QString& path) {
    ProcedureScope scope(app().errors, tagOf("DatabaseLocation"));
    closeConnection();
    m_databaseLocation = path;
    m_verifiedExisting = false;
    if (path.isEmpty()) {
        return;
    }
    if (!QFileInfo::exists(path)) {
        createLocalDatabase(path);
    } else if (verifyLocalDatabase(path)) {
        m_verifiedExisting = openDatabase(path);
    } else {
        // Holds nothing but the identifier: a new one is the whole loss.
        fileControl::DeleteFile(path);
        createLocalDatabase(path);
    }
}

bool clsUniqueID::openDatabase(const QString& path) {
    ProcedureScope scope(app().errors, tagOf("openDatabase"));
    closeConnection();
    QSqlDatabase db = QSqlDatabase::addDatabase(kDriver, m_connectionName);
    db.setDatabaseName(path);
    db.setConnectOptions(kOptions);
    return db.open();
}

// Builds the whole file under a temporary name and renames it into place,
// so that an interrupted start never leaves half a database behind.
bool clsUniqueID::createLocalDatabase(const QString& path) {
    ProcedureScope scope(app().errors, tagOf("createLocalDatabase"));
    const QString temp = path + QStringLiteral(".tmp");
    if (QFileInfo::exists(temp)) {
        QFile::remove(temp);
    }
    if (!createTables(temp)) {
        QFile::remove(temp);
        return false;
    }
    std::error_code error;
    std::filesystem::rename(QFile::encodeName(temp).toStdString(),
                            QFile::encodeName(path).toStdString(), error);
    if (error) {
        QFile::remove(temp);
        return false;
    }
    return openDatabase(path);
}

bool clsUniqueID::createTables(const QString& path) {
    ProcedureScope scope(app().errors, tagOf("createTables"));
    TrialConnection trial(path);
    if (!trial.isOpen()) {
        return false;
    }
    QSqlDatabase db = trial.database();
    QSqlQuery query(db);
    if (!query.exec(QStringLiteral(
            "CREATE TABLE IF NOT EXISTS UniqueID (uniqueID TEXT NULL, InstallDate TEXT NULL)"))) {
        return false;
    }
    if (!query.exec(QStringLiteral("SELECT COUNT(*) FROM UniqueID")) || !query.next()) {
        return false;
    }
    if (query.value(0).toInt() > 0) {
        return true;
    }
    query.prepare(QStringLiteral("INSERT INTO UniqueID (uniqueID, InstallDate) VALUES (?, ?)"));
    query.addBindValue(createUniqueID());
    query.addBindValue(today());
    return query.exec();
}

bool clsUniqueID::verifyLocalDatabase(const QString& path) {
    ProcedureScope scope(app().errors, tagOf("verifyLocalDatabase"));
    const QFileInfo info(path);
    if (!info.isFile() || !info.isReadable()) {
        return false;
    }
    bool tableMissing = false;
    {
        TrialConnection trial(path);
        if (!trial.isOpen()) {
            return false;
        }
        QSqlDatabase db = trial.database();
        // SQLite opens any file; the first read tells whether it is one.
        QSqlQuery check(db);
        if (!check.exec(QStringLiteral("PRAGMA quick_check")) || !check.next() ||
            check.value(0).toString() != QLatin1String("ok")) {
            return false;
        }
        tableMissing = !hasTable(db);
        if (!tableMissing) {
            QSqlQuery columns(db);
            if (!columns.exec(
                    QStringLiteral("SELECT uniqueID, InstallDate FROM UniqueID LIMIT 1"))) {
                return false;
            }
        }
    }
    return tableMissing ? createTables(path) : true;
}

bool clsUniqueID::doesTableExist() {
    ProcedureScope scope(app().errors, tagOf("doesTableExist"));
    return isOpen() && hasTable(connection());
}

QChar clsUniqueID::characterForDraw(int n) {
    if (n >= 1 && n <= 10) {
        return QChar(n + 47);
    }
    if (n >= 11 && n <= 36) {
        return QChar(n + 54);
    }
    if (n >= 37 && n <= 62) {
        return QChar(n + 60);
    }
    return {};
}

QString clsUniqueID::createUniqueID() const {
    QString id;
    // A source that keeps giving values outside the range must not hang
    // the start-up; the fixed identifier then takes over.
    int draws = 0;
    constexpr int maxDraws = IdLength * 64;
    while (id.size() < IdLength && draws < maxDraws) {
        ++draws;
        const double value = m_random ? std::floor(62.0 * m_random() + 1.0) : 0.0;
        if (!std::isfinite(value) || value < 1.0 || value > 62.0) {
            continue;
        }
        id += characterForDraw(static_cast<int>(value));
    }
    return verifyUniqueID(id) ? id : QString::fromLatin1(FallbackID);
}

// The identifier of the first row, renewed when it is missing or malformed.
// Nothing when the file cannot be read at all; a file that can be read but
// not written still yields an identifier, though a new one each time.
std::optional<QString> clsUniqueID::readOrRenewID() {
    if (!isOpen()) {
        return std::nullopt;
    }
    QSqlDatabase db = connection();
    QSqlQuery query(db);
    if (!query.exec(
            QStringLiteral("SELECT rowid, uniqueID FROM UniqueID ORDER BY rowid LIMIT 1"))) {
        return std::nullopt;
    }
    const bool hasRow = query.next();
    if (hasRow && !query.value(1).isNull()) {
        const QString stored = query.value(1).toString();
        if (verifyUniqueID(stored)) {
            return stored;
        }
    }
    const qlonglong rowid = hasRow ? query.value(0).toLongLong() : -1;
    query.finish();

    const QString id = createUniqueID();
    QSqlQuery write(db);
    if (hasRow) {
        write.prepare(
            QStringLiteral("UPDATE UniqueID SET uniqueID = ?, InstallDate = ? WHERE rowid = ?"));
        write.addBindValue(id);
        write.addBindValue(today());
        write.addBindValue(rowid);
    } else {
        write.prepare(QStringLiteral("INSERT INTO UniqueID (uniqueID, InstallDate) VALUES (?, ?)"));
        write.addBindValue(id);
        write.addBindValue(today());
    }
    write.exec();
    return id;
}

bool clsUniqueID::repairDatabase() {
    if (m_databaseLocation.isEmpty()) {
        return false;
    }
    closeConnection();
    m_verifiedExisting = false;
    fileControl::DeleteFile(m_databaseLocation);
    return createLocalDatabase(m_databaseLocation);
}

QString clsUniqueID::getUniqueID() {
    ProcedureScope scope(app().errors, tagOf("getUniqueID"));
    if (auto id = readOrRenewID()) {
        return *id;
    }
    // The file passed its checks but fails under use: it is made anew once.
    if (isOpen() && repairDatabase()) {
        if (auto id = readOrRenewID()) {
            return *id;
        }
    }
    return createUniqueID();
}
