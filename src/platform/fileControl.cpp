#include "platform/fileControl.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// The stray bytes of a name that is not UTF-8 live in this range.
constexpr char16_t kStrayByteBase = 0xDC00;

bool isStrayByte(char16_t unit) {
    return unit >= kStrayByteBase + 0x80 && unit <= kStrayByteBase + 0xFF;
}

// The length of the well-formed UTF-8 sequence at `at`, or 0 when the byte
// there does not start one (stray, truncated, overlong or a surrogate).
int utf8SequenceLength(const QByteArray& bytes, qsizetype at) {
    const auto byte = [&](qsizetype i) { return static_cast<unsigned char>(bytes[i]); };
    const unsigned char lead = byte(at);
    if (lead < 0x80) {
        return 1;
    }
    int length = 0;
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        low = lead == 0xE0 ? 0xA0 : 0x80;
        high = lead == 0xED ? 0x9F : 0xBF;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        low = lead == 0xF0 ? 0x90 : 0x80;
        high = lead == 0xF4 ? 0x8F : 0xBF;
    } else {
        return 0;
    }
    if (at + length > bytes.size()) {
        return 0;
    }
    if (byte(at + 1) < low || byte(at + 1) > high) {
        return 0;
    }
    for (int i = 2; i < length; ++i) {
        if (byte(at + i) < 0x80 || byte(at + i) > 0xBF) {
            return 0;
        }
    }
    return length;
}

struct PathStatus {
    bool exists = false;
    bool isDir = false;
    bool isFile = false;
    qint64 size = 0;
};

PathStatus statusOf(const QString& path) {
    PathStatus status;
    struct stat info {};
    if (path.isEmpty() || ::stat(fileControl::nativePath(path).constData(), &info) != 0) {
        return status;
    }
    status.exists = true;
    status.isDir = S_ISDIR(info.st_mode);
    status.isFile = S_ISREG(info.st_mode);
    status.size = info.st_size;
    return status;
}

// Why a file would not open for reading, in words the user can act on.
QString readFailureReason(const QString& path, int error) {
    const PathStatus status = statusOf(path);
    if (!status.exists) {
        return QStringLiteral("File not found: ") + path;
    }
    if (status.isDir || error == EISDIR) {
        return QStringLiteral("Not a file but a folder: ") + path;
    }
    if (error == EACCES || error == EPERM) {
        return QStringLiteral("Permission denied: ") + path;
    }
    return QStringLiteral("Cannot read ") + path + QStringLiteral(": ") +
           QString::fromLocal8Bit(std::strerror(error));
}

} // namespace

QString fileControl::pathFromNative(const QByteArray& bytes) {
    QString path;
    path.reserve(bytes.size());
    qsizetype run = 0; // start of the well-formed stretch not yet appended
    qsizetype at = 0;
    while (at < bytes.size()) {
        const int length = utf8SequenceLength(bytes, at);
        if (length > 0) {
            at += length;
            continue;
        }
        path += QString::fromUtf8(bytes.constData() + run, at - run);
        path += QChar(char16_t(kStrayByteBase + static_cast<unsigned char>(bytes[at])));
        ++at;
        run = at;
    }
    path += QString::fromUtf8(bytes.constData() + run, at - run);
    return path;
}

QByteArray fileControl::nativePath(const QString& path) {
    const auto stray =
        std::find_if(path.cbegin(), path.cend(), [](QChar c) { return isStrayByte(c.unicode()); });
    if (stray == path.cend()) {
        return QFile::encodeName(path);
    }
    QByteArray bytes;
    qsizetype run = 0;
    for (qsizetype i = 0; i < path.size(); ++i) {
        const char16_t unit = path.at(i).unicode();
        if (!isStrayByte(unit)) {
            continue;
        }
        bytes += QStringView(path).mid(run, i - run).toUtf8();
        bytes += char(unit - kStrayByteBase);
        run = i + 1;
    }
    bytes += QStringView(path).mid(run).toUtf8();
    return bytes;
}

bool fileControl::FileExists(const QString& path) {
    return statusOf(path).isFile;
}

bool fileControl::FolderExists(const QString& path) {
    return statusOf(path).isDir;
}

qint64 fileControl::FileSize(const QString& path) {
    return statusOf(path).size;
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
    if (!overwrite && statusOf(to).exists) {
        return false;
    }
    const auto bytes = readWholeFile(from);
    if (!bytes) {
        return false;
    }
    return writeFileAtomically(to, *bytes);
}

bool fileControl::DeleteFile(const QString& path) {
    return !path.isEmpty() && ::unlink(nativePath(path).constData()) == 0;
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
    const QByteArray target = nativePath(path);
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
        nativePath(FolderName(path).isEmpty() ? QStringLiteral(".") : FolderName(path));
    const int dir = ::open(folder.constData(), O_RDONLY | O_DIRECTORY);
    if (dir >= 0) {
        ::fsync(dir);
        ::close(dir);
    }
    return true;
}

std::optional<QByteArray> fileControl::readWholeFile(const QString& path, QString* reason) {
    const auto fail = [&](int error) -> std::optional<QByteArray> {
        if (reason) {
            *reason = readFailureReason(path, error);
        }
        return std::nullopt;
    };
    const int fd = ::open(nativePath(path).constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        return fail(errno);
    }
    struct stat info {};
    if (::fstat(fd, &info) != 0 || S_ISDIR(info.st_mode)) {
        const int error = S_ISDIR(info.st_mode) ? EISDIR : errno;
        ::close(fd);
        return fail(error);
    }
    QByteArray bytes;
    if (info.st_size > 0) {
        bytes.reserve(qsizetype(info.st_size));
    }
    char chunk[65536];
    for (;;) {
        const ssize_t got = ::read(fd, chunk, sizeof chunk);
        if (got < 0) {
            if (errno == EINTR) {
                continue;
            }
            const int error = errno;
            ::close(fd);
            return fail(error);
        }
        if (got == 0) {
            break;
        }
        bytes.append(chunk, qsizetype(got));
    }
    ::close(fd);
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
