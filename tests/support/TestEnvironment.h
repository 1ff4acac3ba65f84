#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <map>
#include <optional>

// Points HOME, the XDG folders and the shared data folder at a fresh
// temporary tree for its lifetime and restores the previous values after,
// so that no test touches the user's folders or leaves the environment
// changed.
class TestEnvironment {
public:
    TestEnvironment();
    ~TestEnvironment();
    TestEnvironment(const TestEnvironment&) = delete;
    TestEnvironment& operator=(const TestEnvironment&) = delete;

    QString root() const { return m_dir.path(); }
    QString home() const;
    QString configHome() const;    // roaming application data
    QString dataHome() const;      // local application data
    QString commonAppData() const; // all-users application data
    QString documents() const;     // My Documents
    QString programFolder() const; // stands in for the executable's folder

    // A path below the root; folders on the way are created.
    QString path(const QString& relative) const;

private:
    void set(const char* name, const QString& value);

    QTemporaryDir m_dir;
    std::map<QByteArray, std::optional<QByteArray>> m_saved;
};

// A fixture file under tests/data.
QString testDataPath(const QString& relative);

// Writes bytes to a file, creating its folder.
void writeTestFile(const QString& path, const QByteArray& bytes);
QByteArray readTestFile(const QString& path);
