#pragma once

#include <QFileDevice>
#include <QString>

// Makes a folder refuse new entries for its lifetime, whoever runs the test.
// Mode bits come first (they are what the code under test meets on a user's
// machine); for a user whom they do not stop (root, as CI runs), the folder
// is also marked immutable, and where the file system has no such attribute
// it is bind-mounted read-only over itself. Everything is undone, in
// reverse, on destruction.
class WriteBlockedFolder {
public:
    WriteBlockedFolder(QString path, QFileDevice::Permissions modeBits);
    ~WriteBlockedFolder();
    WriteBlockedFolder(const WriteBlockedFolder&) = delete;
    WriteBlockedFolder& operator=(const WriteBlockedFolder&) = delete;

    // False when nothing available here stops a write to the folder; the
    // caller then skips with whyNot().
    bool blocked() const { return m_blocked; }
    QString whyNot() const;

private:
    bool writeIsRefused() const;
    bool setImmutable(bool on);
    bool mountReadOnly();

    QString m_path;
    QFileDevice::Permissions m_saved;
    bool m_immutable = false;
    bool m_mounted = false;
    bool m_blocked = false;
};
