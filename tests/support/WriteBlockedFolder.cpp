#include "support/WriteBlockedFolder.h"

#include <QFile>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <unistd.h>

WriteBlockedFolder::WriteBlockedFolder(QString path, QFileDevice::Permissions modeBits)
    : m_path(std::move(path)), m_saved(QFile::permissions(m_path)) {
    QFile::setPermissions(m_path, modeBits);
    m_blocked = writeIsRefused();
    if (!m_blocked && setImmutable(true)) {
        m_blocked = writeIsRefused();
    }
    if (!m_blocked && mountReadOnly()) {
        m_blocked = writeIsRefused();
    }
}

WriteBlockedFolder::~WriteBlockedFolder() {
    if (m_mounted) {
        ::umount2(QFile::encodeName(m_path).constData(), MNT_DETACH);
    }
    if (m_immutable) {
        setImmutable(false);
    }
    QFile::setPermissions(m_path, m_saved);
}

QString WriteBlockedFolder::whyNot() const {
    return QStringLiteral("neither mode bits, the immutable attribute nor a read-only bind "
                          "mount stop writes to ") +
           m_path + QStringLiteral(" for this user");
}

bool WriteBlockedFolder::writeIsRefused() const {
    const QByteArray probe = QFile::encodeName(m_path + QStringLiteral("/.write-probe"));
    const int fd = ::open(probe.constData(), O_WRONLY | O_CREAT | O_EXCL, 0600);
    if (fd < 0) {
        return true;
    }
    ::close(fd);
    ::unlink(probe.constData());
    return false;
}

bool WriteBlockedFolder::setImmutable(bool on) {
    const int fd = ::open(QFile::encodeName(m_path).constData(), O_RDONLY | O_DIRECTORY);
    if (fd < 0) {
        return false;
    }
    // The kernel reads and writes an int here, whatever the ioctl's name says.
    int flags = 0;
    bool ok = ::ioctl(fd, FS_IOC_GETFLAGS, &flags) == 0;
    if (ok) {
        flags = on ? (flags | FS_IMMUTABLE_FL) : (flags & ~FS_IMMUTABLE_FL);
        ok = ::ioctl(fd, FS_IOC_SETFLAGS, &flags) == 0;
    }
    ::close(fd);
    m_immutable = on && ok;
    return ok;
}

bool WriteBlockedFolder::mountReadOnly() {
    const QByteArray path = QFile::encodeName(m_path);
    if (::mount(path.constData(), path.constData(), nullptr, MS_BIND, nullptr) != 0) {
        return false;
    }
    m_mounted = true;
    return ::mount(nullptr, path.constData(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr) ==
           0;
}
