#include "app/clsDocMergeDBus.h"

#include "app/clsDocMerge.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QRegularExpression>
#include <QTimer>

namespace {

// How long a process no host has opened waits for a host to call again.
constexpr int kHostGraceMs = 5000;

const QString kHostErrorInterface = QStringLiteral("org.quillmere.errorClass");

// The host's error object on the bus. Every call is a one-way message: a
// host that has gone away must not make the program wait.
class DBusHostErrorObject : public HostErrorObject {
public:
    DBusHostErrorObject(QDBusConnection connection, HostErrorAddress address)
        : m_connection(std::move(connection)), m_address(std::move(address)) {}

    void enterProcedure(const QString& tag) override {
        send(QStringLiteral("enterProcedure"), {tag});
    }
    void leaveProcedure() override { send(QStringLiteral("leaveProcedure"), {}); }
    void reportError(int number, const QString& description) override {
        send(QStringLiteral("reportError"), {number, description});
    }

private:
    void send(const QString& member, const QVariantList& arguments) {
        QDBusMessage call = QDBusMessage::createMethodCall(m_address.service, m_address.path.path(),
                                                           kHostErrorInterface, member);
        call.setArguments(arguments);
        call.setAutoStartService(false);
        m_connection.send(call);
    }

    QDBusConnection m_connection;
    HostErrorAddress m_address;
};

bool isValidBusName(const QString& name) {
    // Unique names (":1.42") and well-known names of two or more elements.
    static const QRegularExpression pattern(QStringLiteral(
        R"(^(:[A-Za-z0-9_-]+(\.[A-Za-z0-9_-]+)+|[A-Za-z_-][A-Za-z0-9_-]*(\.[A-Za-z_-][A-Za-z0-9_-]*)+)$)"));
    return name.size() <= 255 && pattern.match(name).hasMatch();
}

// The value a host put into a variant, as plain Qt values: nested variants
// unwrapped, arrays as lists. Structures and dictionaries stay as they came
// and are ignored by the object.
QVariant plainValue(const QVariant& value) {
    if (value.metaType() == QMetaType::fromType<QDBusVariant>()) {
        return plainValue(value.value<QDBusVariant>().variant());
    }
    if (value.metaType() == QMetaType::fromType<QDBusArgument>()) {
        const QDBusArgument argument = value.value<QDBusArgument>();
        if (argument.currentType() != QDBusArgument::ArrayType) {
            return value;
        }
        QVariantList elements;
        argument.beginArray();
        while (!argument.atEnd()) {
            elements << plainValue(argument.asVariant());
        }
        argument.endArray();
        return elements;
    }
    return value;
}

} // namespace

QDBusArgument& operator<<(QDBusArgument& argument, const HostErrorAddress& address) {
    argument.beginStructure();
    argument << address.service << address.path;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, HostErrorAddress& address) {
    argument.beginStructure();
    argument >> address.service >> address.path;
    argument.endStructure();
    return argument;
}

QString docMergeErrorName(DocMergeError::Kind kind) {
    const char* name = "";
    switch (kind) {
    case DocMergeError::Kind::NoActiveDocument:
        name = "NoActiveDocument";
        break;
    case DocMergeError::Kind::AlreadyOpen:
        name = "AlreadyOpen";
        break;
    case DocMergeError::Kind::Overflow:
        name = "Overflow";
        break;
    case DocMergeError::Kind::TypeMismatch:
        name = "TypeMismatch";
        break;
    case DocMergeError::Kind::NotAvailable:
        name = "NotAvailable";
        break;
    }
    return QStringLiteral("org.quillmere.clsDocMerge.Error.") + QLatin1String(name);
}

clsDocMergeDBus::clsDocMergeDBus(clsDocMerge& object, QObject* parent)
    : QObject(parent), m_object(object), m_hosts(new QDBusServiceWatcher(this)) {
    m_hosts->setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    connect(m_hosts, &QDBusServiceWatcher::serviceUnregistered, this, &clsDocMergeDBus::hostLeft);
    m_hostGrace = new QTimer(this);
    m_hostGrace->setSingleShot(true);
    m_hostGrace->setInterval(kHostGraceMs);
    connect(m_hostGrace, &QTimer::timeout, this, [this] {
        if (m_hosts->watchedServices().isEmpty() && !m_object.isOpened()) {
            Q_EMIT hostsGone();
        }
    });
    m_object.setExitDocMergeHandler([this] { Q_EMIT ExitDocMerge(); });
}

void clsDocMergeDBus::registerTypes() {
    qDBusRegisterMetaType<HostErrorAddress>();
    qDBusRegisterMetaType<QList<QStringList>>();
}

void clsDocMergeDBus::replyWithError(const QString& name, const QString& message) const {
    if (calledFromDBus()) {
        sendErrorReply(name, message);
    }
}

bool clsDocMergeDBus::isDocumentProperty(const QString& name) {
    return name == QLatin1String("SQLFilter") || name == QLatin1String("IDList");
}

bool clsDocMergeDBus::hasActiveDocument() const {
    return m_object.hasActiveDocument();
}

void clsDocMergeDBus::noteCaller() const {
    if (!calledFromDBus()) {
        return;
    }
    m_hostGrace->stop();
    const QString caller = message().service();
    if (m_hosts->watchedServices().isEmpty()) {
        m_hosts->setConnection(connection());
    }
    if (!caller.isEmpty() && !m_hosts->watchedServices().contains(caller)) {
        m_hosts->addWatchedService(caller);
    }
}

void clsDocMergeDBus::hostLeft(const QString& name) {
    m_hosts->removeWatchedService(name);
    // Once a window is open the user owns the session; before that, an
    // unattended process would wait for nobody.
    if (m_hosts->watchedServices().isEmpty() && !m_object.isOpened()) {
        m_hostGrace->start();
    }
}

template <typename Result, typename Call> Result clsDocMergeDBus::guarded(Call&& call) const {
    noteCaller();
    try {
        return call();
    } catch (const DocMergeError& broken) {
        replyWithError(docMergeErrorName(broken.kind()), QString::fromUtf8(broken.what()));
        return Result();
    } catch (const std::exception& fault) {
        // A fault of an untagged member reaches the caller, as it has no
        // handler of its own; it must never unwind into the event loop.
        replyWithError(QStringLiteral("org.quillmere.clsDocMerge.Error.Failed"),
                       QString::fromUtf8(fault.what()));
        return Result();
    }
}

void clsDocMergeDBus::setErrorClass(const HostErrorAddress& address) {
    if (address.service.isEmpty()) {
        m_errorAddress = {};
        m_object.setErrorClass(nullptr);
        return;
    }
    if (!isValidBusName(address.service) || address.path.path().isEmpty()) {
        if (calledFromDBus()) {
            sendErrorReply(QDBusError::InvalidArgs,
                           QStringLiteral("errorClass needs a bus name and an object path; \"%1\" "
                                          "is not a bus name.")
                               .arg(address.service));
        }
        return;
    }
    m_errorAddress = address;
    const QDBusConnection connection =
        calledFromDBus() ? this->connection() : QDBusConnection::sessionBus();
    m_object.setErrorClass(std::make_unique<DBusHostErrorObject>(connection, address));
}

QString clsDocMergeDBus::AppWorkingDataFolder() const {
    return m_object.AppWorkingDataFolder();
}
void clsDocMergeDBus::setAppWorkingDataFolder(const QString& folder) {
    m_object.setAppWorkingDataFolder(folder);
}
short clsDocMergeDBus::currentProvince() const {
    return m_object.currentProvince();
}
void clsDocMergeDBus::setCurrentProvince(short province) {
    m_object.setCurrentProvince(province);
}
int clsDocMergeDBus::userID() const {
    return m_object.userID();
}
void clsDocMergeDBus::setUserID(int id) {
    m_object.setUserID(id);
}
QString clsDocMergeDBus::DatabaseLocation() const {
    return m_object.DatabaseLocation();
}
void clsDocMergeDBus::setDatabaseLocation(const QString& path) {
    guarded<void>([&] { m_object.setDatabaseLocation(path); });
}

QString clsDocMergeDBus::SQLFilter() const {
    return guarded<QString>([&] { return m_object.SQLFilter(); });
}

void clsDocMergeDBus::setSQLFilter(const QString& filter) {
    guarded<void>([&] { m_object.setSQLFilter(filter); });
}

void clsDocMergeDBus::setIDListArray(const QVariant& value) {
    guarded<void>([&] { m_object.setIDListArray(plainValue(value)); });
}

QList<QStringList> clsDocMergeDBus::IDList() const {
    return guarded<QList<QStringList>>([&] {
        const std::vector<QStringList> rows = m_object.IDList();
        return QList<QStringList>(rows.begin(), rows.end());
    });
}

void clsDocMergeDBus::setIDList(const QList<QStringList>& rows) {
    guarded<void>([&] { m_object.setIDList(std::vector<QStringList>(rows.begin(), rows.end())); });
}

void clsDocMergeDBus::RaiseEventExitDocMerge() {
    m_object.RaiseEventExitDocMerge();
}
void clsDocMergeDBus::Quit() {
    guarded<void>([&] { m_object.Quit(); });
}
void clsDocMergeDBus::openDocMergeProgram() {
    guarded<void>([&] { m_object.openDocMergeProgram(); });
}
void clsDocMergeDBus::openExistingMergeDocument(const QString& filePath, short mergeType) {
    guarded<void>([&] { m_object.openExistingMergeDocument(filePath, mergeType); });
}
void clsDocMergeDBus::openNewMergeDocument(short mergeType) {
    guarded<void>([&] { m_object.openNewMergeDocument(mergeType); });
}
void clsDocMergeDBus::performMerge() {
    guarded<void>([&] { m_object.performMerge(); });
}
void clsDocMergeDBus::bringQuillmerePadToTop() {
    guarded<void>([&] { m_object.bringQuillmerePadToTop(); });
}
