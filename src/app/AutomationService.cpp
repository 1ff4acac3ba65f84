#include "app/AutomationService.h"

#include "app/DocMergePropertiesAdaptor.h"
#include "app/clsDocMerge.h"
#include "app/clsDocMergeDBus.h"
#include "clsdocmergeadaptor.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>

AutomationService::AutomationService(clsDocMerge& object, QDBusConnection connection)
    : m_connection(std::move(connection)), m_object(std::make_unique<clsDocMergeDBus>(object)) {
    clsDocMergeDBus::registerTypes();
    // The adaptors are owned by the object they expose.
    auto* adaptor = new ClsDocMergeAdaptor(m_object.get());
    new DocMergePropertiesAdaptor(m_object.get(), adaptor);
    QObject::connect(m_object.get(), &clsDocMergeDBus::hostsGone, [this] {
        if (m_abandoned) {
            m_abandoned();
        }
    });
}

AutomationService::~AutomationService() {
    programEnds();
    if (m_ownsName) {
        m_connection.unregisterService(QLatin1String(ServiceName));
    }
    if (m_registered) {
        m_connection.unregisterObject(QLatin1String(ObjectPath));
    }
}

AutomationService::Outcome AutomationService::start() {
    if (!m_connection.isConnected()) {
        m_error = QStringLiteral("There is no session bus to serve the host on: %1")
                      .arg(m_connection.lastError().message());
        return Outcome::NoBus;
    }
    if (!m_connection.registerObject(QLatin1String(ObjectPath), m_object.get(),
                                     QDBusConnection::ExportAdaptors)) {
        m_error = QStringLiteral("The object %1 could not be put on the session bus.")
                      .arg(QLatin1String(ObjectPath));
        return Outcome::NoBus;
    }
    m_registered = true;
    QDBusConnectionInterface* bus = m_connection.interface();
    const auto reply =
        bus->registerService(QLatin1String(ServiceName), QDBusConnectionInterface::DontQueueService,
                             QDBusConnectionInterface::DontAllowReplacement);
    if (!reply.isValid()) {
        m_error = QStringLiteral("The name %1 could not be taken on the session bus: %2")
                      .arg(QLatin1String(ServiceName), reply.error().message());
        return Outcome::NoBus;
    }
    if (reply.value() != QDBusConnectionInterface::ServiceRegistered) {
        m_error = QStringLiteral("Another Quillmere Pad process serves the host already (%1).")
                      .arg(QLatin1String(ServiceName));
        return Outcome::AlreadyServed;
    }
    m_ownsName = true;
    return Outcome::Serving;
}

void AutomationService::programEnds() {
    if (m_toldExit || !m_ownsName) {
        return;
    }
    m_toldExit = true;
    Q_EMIT m_object->ExitDocMerge();
    // Messages leave in order: once the bus has answered this, it has the
    // signal too. The bus daemon answers at once; a host is not involved.
    const QDBusMessage ping = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus.Peer"), QStringLiteral("Ping"));
    m_connection.call(ping, QDBus::Block, 2000);
}
