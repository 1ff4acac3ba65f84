#include "platform/fileControl.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Why a file would not open for reading, in words the user can act on.
QString readFailureReason(const QString& path, const QFile& file) {
    const QFileInfo info(path);
    if (!info.exists()) {
        return QStringLiteral("File not found: ") + path;
    }
    if (info.isDir()) {
        return QStringLiteral("Not a file but a folder: ") + path;
    }
    if (file.error() == QFileDevice::PermissionsError || !info.isReadable()) {
        return QStringLiteral("Permission denied: ") + path;
    }
    return QStringLiteral("Cannot read ") + path + QStringLiteral(": ") + file.errorString();
}

} // namespace

bool fileControl::FileExists(const QString& path) {
    if (path.isEmpty()) {
        return false;
    }
    const QFileInfo info(path);
    return info.exists() && info.isFile();
}

bool fileControl::FolderExists(const QString& path) {
    if (path.isEmpty()) {
        return false;
    }
    return QFileInfo(path).isDir();
}

qint64 fileControl::FileSize(const QString& path) {
    return QFileInfo(path).size();
}

QString fileControl::FileName(const QString& path) {
    const int slash = path.lastIndexOf(QLatin1Char('/'));
    return slash < 0 ? path : path.mid(slash + 1);
}

QString fileControl::FolderName(const QString& path) {
    const int slash = path.lastIndexOf(QLatin1Char('/'));
    if (slash < 0) {
        return {};
    }
    return slash == 0 ? QStringLiteral("/") : path.left(slash);
}

QString fileControl::Extension(const QString& path) {
    const QString name = FileName(path);
    const int dot = name.lastIndexOf(QLatin1Char('.'));
    return dot < 0 ? QString() : name.mid(dot + 1);
}

QString fileControl::RemoveExtension(const QString& path) {
    const QString name = FileName(path);
    const int dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot < 0) {
        return path;
    }
    return path.left(path.size() - (name.size() - dot));
}

QString fileControl::AddBackslash(const QString& path) {
    if (path.endsWith(QLatin1Char('/'))) {
        return path;
    }
    return path + QLatin1Char('/');
}

QString fileControl::RemoveBackslash(const QString& path) {
    QString result = path;
    while (result.size() > 1 && result.endsWith(QLatin1Char('/'))) {
        result.chop(1);
    }
    return result;
}

bool fileControl::CopyFile(const QString& from, const QString& to, bool overwrite) {
    if (!FileExists(from)) {
        return false;
    }
    if (!overwrite && QFileInfo::exists(to)) {
        return false;
    }
    const auto bytes = readWholeFile(from);
    if (!bytes) {
        return false;
    }
    return writeFileAtomically(to, *bytes);
}

bool fileControl::DeleteFile(const QString& path) {
    return QFile::remove(path);
}

bool fileControl::CopyFolder(const QString& from, const QString& to, bool overwrite) {
    const QDir source(from);
    if (!source.exists() || !QDir().mkpath(to)) {
        return false;
    }
    bool ok = true;
    QDirIterator it(from, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        const QString target = QDir(to).filePath(source.relativeFilePath(path));
        if (it.fileInfo().isDir()) {
            ok = QDir().mkpath(target) && ok;
        } else if (overwrite || !QFileInfo::exists(target)) {
            QDir().mkpath(QFileInfo(target).absolutePath());
            ok = CopyFile(path, target, true) && ok;
        }
    }
    return ok;
}

bool fileControl::writeFileAtomically(const QString& path, const QByteArray& bytes,
                                      QString* reason) {
    // Each step is checked by hand: a failed write must never be renamed
    // over the old file, and the data must be on disk before the rename
    // makes it the file.
    auto fail = [&](const QString& what, int error) {
        if (reason) {
            *reason = what + QStringLiteral(": ") + QString::fromLocal8Bit(std::strerror(error));
        }
        return false;
    };
    if (path.isEmpty()) {
        return fail(QStringLiteral("No file name"), ENOENT);
    }
    const QByteArray target = QFile::encodeName(path);
    QByteArray temporary = target + ".XXXXXX";
    const int fd = ::mkstemp(temporary.data());
    if (fd < 0) {
        return fail(QStringLiteral("Cannot create a file beside ") + path, errno);
    }
    auto abandon = [&](const QString& what, int error) {
        ::close(fd);
        ::unlink(temporary.constData());
        return fail(what, error);
    };
    // mkstemp makes the file private; a new file gets the usual mode, a
    // replaced one keeps the mode it had.
    struct stat old {};
    mode_t mode = 0666;
    if (::stat(target.constData(), &old) == 0) {
        mode = old.st_mode & 07777;
    } else {
        const mode_t mask = ::umask(0);
        ::umask(mask);
        mode &= ~mask;
    }
    if (::fchmod(fd, mode) != 0) {
        return abandon(QStringLiteral("Cannot set the mode of ") + path, errno);
    }
    const char* data = bytes.constData();
    qint64 left = bytes.size();
    while (left > 0) {
        const ssize_t written = ::write(fd, data, static_cast<size_t>(left));
        if (written < 0) {
            if (errno == EINTR) {
                continue;
            }
            return abandon(QStringLiteral("Cannot write ") + path, errno);
        }
        data += written;
        left -= written;
    }
    if (::fsync(fd) != 0) {
        return abandon(QStringLiteral("Cannot write ") + path, errno);
    }
    if (::close(fd) != 0) {
        const int error = errno;
        ::unlink(temporary.constData());
        return fail(QStringLiteral("Cannot write ") + path, error);
    }
    if (::rename(temporary.constData(), target.constData()) != 0) {
        const int error = errno;
        ::unlink(temporary.constData());
        return fail(QStringLiteral("Cannot replace ") + path, error);
    }
    // The rename itself is durable only once the folder is synced; a failure
    // here leaves the new file in place, so it is not reported.
    const QByteArray folder =
        QFile::encodeName(FolderName(path).isEmpty() ? QStringLiteral(".") : FolderName(path));
    const int dir = ::open(folder.constData(), O_RDONLY | O_DIRECTORY);
    if (dir >= 0) {
        ::fsync(dir);
        ::close(dir);
    }
    return true;
}

std::optional<QByteArray> fileControl::readWholeFile(const QString& path, QString* reason) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (reason) {
            *reason = readFailureReason(path, file);
        }
        return std::nullopt;
    }
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        if (reason) {
            *reason =
                QStringLiteral("Cannot read ") + path + QStringLiteral(": ") + file.errorString();
        }
        return std::nullopt;
    }
    return bytes;
}

bool fileControl::isBelowFolder(const QString& path, const QString& folder) {
    if (folder.isEmpty() || path.isEmpty()) {
        return false;
    }
    const QString p = QDir::cleanPath(path).toUpper();
    const QString f = QDir::cleanPath(folder).toUpper();
    return p == f || p.startsWith(AddBackslash(f));
}
