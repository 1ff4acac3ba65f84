#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QStringList>
#include <functional>

// One windowed program per desktop session: files opened from a file
// manager while the program runs go to the running one, which opens them
// and comes to the front, and the new process ends. Without a session bus
// every start stands alone, as before.
class DesktopInstance : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.quillmere.QuillmerePad.Desktop")

public:
    static constexpr const char* ServiceName = "org.quillmere.QuillmerePad.Desktop";
    static constexpr const char* ObjectPath = "/Desktop";
    static constexpr const char* InterfaceName = "org.quillmere.QuillmerePad.Desktop";

    explicit DesktopInstance(QDBusConnection connection = QDBusConnection::sessionBus());
    ~DesktopInstance() override;

    // Gives the files (made absolute against this process's folder) to the
    // program that holds the name. True when it took them; false when none
    // runs, there is no bus, or it did not answer in time.
    bool handOver(const QStringList& files);
    // Takes the name for this program; files handed over later reach
    // `open`. False without a bus or when another program holds the name.
    bool claim(std::function<void(const QStringList&)> open);

public Q_SLOTS:
    // The method on the bus; the paths are absolute.
    Q_SCRIPTABLE void OpenFiles(const QStringList& files);

private:
    QDBusConnection m_connection;
    std::function<void(const QStringList&)> m_open;
    bool m_claimed = false;
};
