#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>
#include <sys/mount.h>
#include <unistd.h>

// A folder on a small file system of its own (64 KiB of tmpfs), for tests of
// what happens when the disk fills up. Mounting needs root; without it
// available() is false and whySkipped() says so, for GTEST_SKIP.
class FullDiskFolder {
public:
    FullDiskFolder() {
        if (::geteuid() != 0) {
            m_skip = QStringLiteral("needs root to mount a small file system");
            return;
        }
        const QByteArray where = QFile::encodeName(m_dir.path());
        if (::mount("tmpfs", where.constData(), "tmpfs", 0, "size=64k") != 0) {
            m_skip = QStringLiteral("could not mount a small file system");
            return;
        }
        m_mounted = true;
    }
    ~FullDiskFolder() {
        if (m_mounted) {
            ::umount2(QFile::encodeName(m_dir.path()).constData(), MNT_DETACH);
        }
    }
    FullDiskFolder(const FullDiskFolder&) = delete;
    FullDiskFolder& operator=(const FullDiskFolder&) = delete;

    bool available() const { return m_mounted; }
    QString whySkipped() const { return m_skip; }
    QString path(const QString& name) const { return QDir(m_dir.path()).filePath(name); }

    // Fills what is left of the disk with a ballast file.
    void fill() const {
        QFile ballast(path(QStringLiteral("ballast")));
        if (!ballast.open(QIODevice::WriteOnly)) {
            return;
        }
        const QByteArray block(1024, 'x');
        while (ballast.write(block) == block.size() && ballast.flush()) {
        }
    }

private:
    QTemporaryDir m_dir;
    bool m_mounted = false;
    QString m_skip;
};
