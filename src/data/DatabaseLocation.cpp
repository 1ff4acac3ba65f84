#include "data/DatabaseLocation.h"

#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QUrl>
#include <QUrlQuery>

namespace {

// The client library's connection keywords that make sense in a shared
// setting. "password" is left out on purpose.
const QStringList& knownOptions() {
    static const QStringList options = {QStringLiteral("application_name"),
                                        QStringLiteral("connect_timeout"),
                                        QStringLiteral("gssencmode"),
                                        QStringLiteral("keepalives"),
                                        QStringLiteral("keepalives_idle"),
                                        QStringLiteral("options"),
                                        QStringLiteral("passfile"),
                                        QStringLiteral("service"),
                                        QStringLiteral("sslcert"),
                                        QStringLiteral("sslkey"),
                                        QStringLiteral("sslmode"),
                                        QStringLiteral("sslrootcert"),
                                        QStringLiteral("target_session_attrs")};
    return options;
}

bool fail(QString* error, const QString& text) {
    if (error)
        *error = text;
    return false;
}

// The server's own words, first line, for the end of our message.
QString serverWords(const QSqlError& sqlError) {
    QString text = sqlError.databaseText().trimmed();
    if (text.isEmpty())
        text = sqlError.text().trimmed();
    text.replace(QStringLiteral("FATAL:  "), QString());
    const qsizetype newline = text.indexOf(u'\n');
    return newline > 0 ? text.left(newline).trimmed() : text;
}

QString where(const DatabaseLocation& location) {
    const QString host =
        location.host.isEmpty() ? QStringLiteral("the local socket") : location.host;
    return location.port > 0 ? QStringLiteral("%1 port %2").arg(host).arg(location.port) : host;
}

QString describeOpenFailure(const DatabaseLocation& location, const QSqlError& sqlError) {
    const QString words = serverWords(sqlError);
    const QString lower = words.toLower();
    if (lower.contains(u"password authentication failed") ||
        lower.contains(u"no password supplied") || lower.contains(u"password"))
        return QStringLiteral("The database server at %1 refused the password of user %2; give "
                              "the password in a .pgpass file, never in the settings (%3)")
            .arg(where(location),
                 location.user.isEmpty() ? QStringLiteral("(default)") : location.user, words);
    if (lower.contains(u"database") && lower.contains(u"does not exist"))
        return QStringLiteral("There is no database %1 on the server at %2 (%3)")
            .arg(location.database, where(location), words);
    if (lower.contains(u"role") && lower.contains(u"does not exist"))
        return QStringLiteral("The database server at %1 has no user %2 (%3)")
            .arg(where(location), location.user, words);
    if (lower.contains(u"connection refused") || lower.contains(u"could not connect") ||
        lower.contains(u"no such file") || lower.contains(u"timeout") ||
        lower.contains(u"could not translate host name") || lower.contains(u"no route"))
        return QStringLiteral("The database server at %1 cannot be reached; is it running? (%2)")
            .arg(where(location), words);
    return QStringLiteral("The database at %1 cannot be opened: %2").arg(location.display(), words);
}

} // namespace

bool DatabaseLocation::looksLikeUri(const QString& dataLocation) {
    const QString t = dataLocation.trimmed();
    return t.startsWith(QLatin1String("postgresql://"), Qt::CaseInsensitive) ||
           t.startsWith(QLatin1String("postgres://"), Qt::CaseInsensitive) ||
           (t.contains(QLatin1String("://")) && !QFileInfo::exists(t));
}

std::optional<DatabaseLocation> DatabaseLocation::parse(const QString& dataLocation,
                                                        QString* error) {
    DatabaseLocation location;
    const QString text = dataLocation.trimmed();
    if (!looksLikeUri(text)) {
        location.path = dataLocation;
        return location;
    }
    const QUrl url(text, QUrl::StrictMode);
    const QString scheme = url.scheme().toLower();
    if (!url.isValid()) {
        fail(error, QStringLiteral("The database location is not a valid URI: %1 (%2)")
                        .arg(text, url.errorString()));
        return std::nullopt;
    }
    if (scheme != u"postgresql" && scheme != u"postgres") {
        fail(error, QStringLiteral("The database location names an unknown kind of server "
                                   "\"%1\"; only postgresql:// is known: %2")
                        .arg(url.scheme(), text));
        return std::nullopt;
    }
    if (!url.password().isEmpty()) {
        fail(error, QStringLiteral("The database location holds a password; the settings file "
                                   "must not. Keep the password in a .pgpass file or a service "
                                   "file and remove it from the location: %1")
                        .arg(url.toString(QUrl::RemovePassword)));
        return std::nullopt;
    }
    location.engine = Engine::Postgres;
    location.host = url.host();
    location.user = url.userName();
    location.port = url.port(-1);
    QString path = url.path();
    while (path.startsWith(u'/'))
        path.remove(0, 1);
    location.database = path;
    const QUrlQuery query(url);
    for (const auto& [key, value] : query.queryItems(QUrl::FullyDecoded)) {
        const QString name = key.toLower();
        if (name == u"password") {
            fail(error, QStringLiteral("The database location holds a password; the settings "
                                       "file must not. Keep it in a .pgpass file: %1")
                            .arg(location.display()));
            return std::nullopt;
        }
        if (name == u"host") {
            location.host = value;
        } else if (name == u"port") {
            bool ok = false;
            location.port = value.toInt(&ok);
            if (!ok)
                location.port = 0;
        } else if (name == u"user") {
            location.user = value;
        } else if (name == u"dbname") {
            location.database = value;
        } else if (knownOptions().contains(name)) {
            location.options << name + u'=' + value;
        } else {
            fail(error, QStringLiteral("The database location has an unknown option \"%1\": %2")
                            .arg(key, location.display()));
            return std::nullopt;
        }
    }
    if (location.port == 0 || location.port > 65535) {
        fail(error, QStringLiteral("The database location has a bad port: %1").arg(text));
        return std::nullopt;
    }
    if (location.database.isEmpty() && !location.options.join(u' ').contains(u"service=")) {
        fail(error,
             QStringLiteral("The database location names no database (postgresql://user@host/"
                            "DATABASE): %1")
                 .arg(location.display()));
        return std::nullopt;
    }
    return location;
}

QString DatabaseLocation::display() const {
    if (!isServer())
        return path;
    QUrl url;
    url.setScheme(QStringLiteral("postgresql"));
    url.setUserName(user);
    url.setHost(host.startsWith(u'/') ? QString() : host);
    if (port > 0)
        url.setPort(port);
    url.setPath(u'/' + database);
    QUrlQuery query;
    if (host.startsWith(u'/'))
        query.addQueryItem(QStringLiteral("host"), host);
    for (const QString& option : options) {
        const qsizetype eq = option.indexOf(u'=');
        query.addQueryItem(option.left(eq), option.mid(eq + 1));
    }
    url.setQuery(query);
    return url.toString();
}

QString DatabaseLocation::driverName() const {
    return isServer() ? QStringLiteral("QPSQL") : QStringLiteral("QSQLITE");
}

bool DatabaseLocation::open(QSqlDatabase& db, const QString& connectionName, QString* error,
                            bool readOnly) const {
    if (!QSqlDatabase::isDriverAvailable(driverName()))
        return fail(error,
                    QStringLiteral("This installation cannot reach a %1 database: the "
                                   "Qt driver %2 is not installed")
                        .arg(isServer() ? QStringLiteral("PostgreSQL") : QStringLiteral("SQLite"),
                             driverName()));
    db = QSqlDatabase::addDatabase(driverName(), connectionName);
    if (!isServer()) {
        db.setDatabaseName(path);
        if (readOnly)
            db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
        if (!db.open())
            return fail(error, QStringLiteral("The database file cannot be opened: %1 (%2)")
                                   .arg(path, serverWords(db.lastError())));
        return true;
    }
    db.setHostName(host);
    if (port > 0)
        db.setPort(port);
    db.setUserName(user);
    db.setDatabaseName(database);
    QStringList connectOptions = options;
    if (!options.join(u' ').contains(QLatin1String("connect_timeout=")))
        connectOptions << QStringLiteral("connect_timeout=10");
    db.setConnectOptions(connectOptions.join(u';'));
    if (!db.open())
        return fail(error, describeOpenFailure(*this, db.lastError()));
    QSqlQuery setup(db);
    // Text stays UTF-8 and the session's dates never depend on the server's
    // settings: the program keeps dates as text, but functions still read
    // the style.
    if (!setup.exec(QStringLiteral("SET client_encoding TO 'UTF8'")) ||
        !setup.exec(QStringLiteral("SET DateStyle TO ISO, MDY")) ||
        (readOnly &&
         !setup.exec(QStringLiteral("SET SESSION CHARACTERISTICS AS TRANSACTION READ ONLY")))) {
        const QString words = serverWords(setup.lastError());
        db.close();
        return fail(
            error, QStringLiteral("The database at %1 cannot be set up: %2").arg(display(), words));
    }
    return true;
}
