#include "app/DesktopInstance.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDir>
#include <QFileInfo>

namespace {

// A running program answers at once; a hung one must not hold the new one.
constexpr int kAnswerMilliseconds = 5000;

} // namespace

DesktopInstance::DesktopInstance(QDBusConnection connection)
    : m_connection(std::move(connection)) {}

DesktopInstance::~DesktopInstance() {
    if (m_claimed) {
        m_connection.unregisterService(QLatin1String(ServiceName));
        m_connection.unregisterObject(QLatin1String(ObjectPath));
    }
}

bool DesktopInstance::handOver(const QStringList& files) {
    if (!m_connection.isConnected()) {
        return false;
    }
    QDBusConnectionInterface* bus = m_connection.interface();
    if (!bus || !bus->isServiceRegistered(QLatin1String(ServiceName)).value()) {
        return false;
    }
    QStringList absolute;
    for (const QString& file : files) {
        absolute << QFileInfo(file).absoluteFilePath();
    }
    QDBusMessage call =
        QDBusMessage::createMethodCall(QLatin1String(ServiceName), QLatin1String(ObjectPath),
                                       QLatin1String(InterfaceName), QStringLiteral("OpenFiles"));
    call << absolute;
    const QDBusMessage reply = m_connection.call(call, QDBus::Block, kAnswerMilliseconds);
    return reply.type() == QDBusMessage::ReplyMessage;
}

bool DesktopInstance::claim(std::function<void(const QStringList&)> open) {
    if (!m_connection.isConnected() ||
        !m_connection.registerObject(QLatin1String(ObjectPath), this,
                                     QDBusConnection::ExportScriptableSlots)) {
        return false;
    }
    const auto reply = m_connection.interface()->registerService(
        QLatin1String(ServiceName), QDBusConnectionInterface::DontQueueService,
        QDBusConnectionInterface::DontAllowReplacement);
    if (!reply.isValid() || reply.value() != QDBusConnectionInterface::ServiceRegistered) {
        m_connection.unregisterObject(QLatin1String(ObjectPath));
        return false;
    }
    m_open = std::move(open);
    m_claimed = true;
    return true;
}

void DesktopInstance::OpenFiles(const QStringList& files) {
    if (m_open) {
        m_open(files);
    }
}
