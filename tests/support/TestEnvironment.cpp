#include "support/TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

TestEnvironment::TestEnvironment() {
    QDir root(m_dir.path());
    for (const char* sub : {"home", "home/.config", "home/.local/share", "home/Documents",
                            "common", "program"}) {
        root.mkpath(QString::fromLatin1(sub));
    }
    set("HOME", home());
    set("XDG_CONFIG_HOME", configHome());
    set("XDG_DATA_HOME", dataHome());
    set("QM_COMMON_APPDATA_DIR", commonAppData());
    set("QM_PROGRAM_DIR", programFolder());
    // The documents folder is read from user-dirs.dirs; with none, Qt uses
    // HOME/Documents, which is what we made above.
}

TestEnvironment::~TestEnvironment() {
    for (const auto& [name, value] : m_saved) {
        if (value) {
            qputenv(name.constData(), *value);
        } else {
            qunsetenv(name.constData());
        }
    }
}

void TestEnvironment::set(const char* name, const QString& value) {
    if (m_saved.find(name) == m_saved.end()) {
        m_saved[name] = qEnvironmentVariableIsSet(name)
                            ? std::optional<QByteArray>(qgetenv(name))
                            : std::nullopt;
    }
    qputenv(name, value.toLocal8Bit());
}

QString TestEnvironment::home() const {
    return m_dir.filePath(QStringLiteral("home"));
}
QString TestEnvironment::configHome() const {
    return m_dir.filePath(QStringLiteral("home/.config"));
}
QString TestEnvironment::dataHome() const {
    return m_dir.filePath(QStringLiteral("home/.local/share"));
}
QString TestEnvironment::commonAppData() const {
    return m_dir.filePath(QStringLiteral("common"));
}
QString TestEnvironment::documents() const {
    return m_dir.filePath(QStringLiteral("home/Documents"));
}
QString TestEnvironment::programFolder() const {
    return m_dir.filePath(QStringLiteral("program"));
}

QString TestEnvironment::path(const QString& relative) const {
    const QString full = m_dir.filePath(relative);
    QDir().mkpath(QFileInfo(full).absolutePath());
    return full;
}

QString testDataPath(const QString& relative) {
    return QDir(QStringLiteral(QM_TEST_DATA_DIR)).filePath(relative);
}

void writeTestFile(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        file.write(bytes);
    }
}

QByteArray readTestFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
