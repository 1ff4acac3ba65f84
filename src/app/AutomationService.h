#pragma once

#include <QDBusConnection>
#include <QString>
#include <functional>
#include <memory>

class clsDocMerge;
class clsDocMergeDBus;

// Puts the automation object on the session bus: the object first, then the
// service name, so that a host never finds the name without the object.
class AutomationService {
public:
    static constexpr const char* ServiceName = "org.quillmere.QuillmerePad";
    static constexpr const char* ObjectPath = "/clsDocMerge";

    enum class Outcome {
        Serving,       // object registered and name owned
        AlreadyServed, // another process owns the name; this one should end
        NoBus,         // no session bus, or the object could not be registered
    };

    // `object` must outlive the service.
    AutomationService(clsDocMerge& object,
                      QDBusConnection connection = QDBusConnection::sessionBus());
    // Emits ExitDocMerge if it has not been, then leaves the bus.
    ~AutomationService();
    AutomationService(const AutomationService&) = delete;
    AutomationService& operator=(const AutomationService&) = delete;

    Outcome start();
    // Why start() did not serve, for the user.
    QString lastError() const { return m_error; }

    // Tells the host that the program ends: emits ExitDocMerge once, then
    // waits until the bus has taken the signal, so that it is not lost
    // when the connection closes right after.
    void programEnds();
    bool hasToldExit() const { return m_toldExit; }

    // Runs when the program would otherwise wait for nobody: every host left
    // before an opening call, or the bus went away.
    void setAbandonedHandler(std::function<void()> handler) { m_abandoned = std::move(handler); }

private:
    QDBusConnection m_connection;
    std::unique_ptr<clsDocMergeDBus> m_object;
    QString m_error;
    std::function<void()> m_abandoned;
    bool m_registered = false;
    bool m_ownsName = false;
    bool m_toldExit = false;
};
