#include "merge/LetterWriter.h"

#include "platform/errorClass.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QUuid>
#include <fcntl.h>
#include <unistd.h>

namespace {

const QString kTemporaryPrefix = QStringLiteral(".qm-");
const QString kTemporarySuffix = QStringLiteral(".part");

[[noreturn]] void fail(const QString& path) {
    throw QmError(QmError::PathFileAccessError, QStringLiteral("Path/File access error: ") + path);
}

} // namespace

bool LetterWriter::isTemporaryName(const QString& fileName) {
    return fileName.startsWith(kTemporaryPrefix) && fileName.endsWith(kTemporarySuffix);
}

void LetterWriter::markSwept(const QString& folder) {
    m_sweptFolders.insert(QDir::cleanPath(folder));
}

void LetterWriter::sweep(const QString& folder) {
    const QString key = QDir::cleanPath(folder);
    if (m_sweptFolders.contains(key)) {
        return;
    }
    m_sweptFolders.insert(key);
    // Matched by hand: a name filter would build a pattern for every folder.
    QStringList left;
    for (QDirIterator it(folder, QDir::Files | QDir::Hidden | QDir::System); it.hasNext();) {
        it.next();
        if (isTemporaryName(it.fileName())) {
            left << it.filePath();
        }
    }
    for (const QString& path : left) {
        // A temporary that cannot be removed is harmless; the letters are not.
        QFile::remove(path);
    }
}

QString LetterWriter::writeTemporary(const QString& path, const QByteArray& bytes) {
    sweep(QFileInfo(path).absolutePath());
    return writeTemporaryUnswept(path, bytes);
}

QString LetterWriter::writeTemporaryUnswept(const QString& path, const QByteArray& bytes) {
    const QString folder = QFileInfo(path).absolutePath();
    const QString temporary = folder + QLatin1Char('/') + kTemporaryPrefix +
                              QUuid::createUuid().toString(QUuid::Id128) + kTemporarySuffix;
    QFile file(temporary);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
        fail(path);
    }
    // Every step is checked: a full disk must not leave a short letter.
    const bool written = file.write(bytes) == bytes.size() && file.flush();
    file.close();
    if (!written || file.error() != QFileDevice::NoError) {
        QFile::remove(temporary);
        fail(path);
    }
    return temporary;
}

void LetterWriter::syncFileSystem(const QString& anyFolder) {
    const int fd = ::open(QFile::encodeName(anyFolder).constData(), O_RDONLY | O_DIRECTORY);
    const bool synced = fd >= 0 && ::syncfs(fd) == 0;
    if (fd >= 0) {
        ::close(fd);
    }
    if (!synced) {
        fail(anyFolder);
    }
}

void LetterWriter::place(const QString& temporary, const QString& path) {
    if (::rename(QFile::encodeName(temporary).constData(), QFile::encodeName(path).constData()) !=
        0) {
        QFile::remove(temporary);
        fail(path);
    }
}

void LetterWriter::write(const QString& path, const QByteArray& bytes) {
    const QString temporary = writeTemporary(path, bytes);
    QFile file(temporary);
    const bool synced = file.open(QIODevice::ReadWrite) && ::fsync(file.handle()) == 0;
    file.close();
    if (!synced) {
        QFile::remove(temporary);
        fail(path);
    }
    place(temporary, path);
}

QString LetterWriter::moveAside(const QString& path, const QString& history) {
    const QFileInfo info(path);
    const QString folder = info.absolutePath() + QLatin1Char('/') + history;
    if (!QDir().mkpath(folder)) {
        fail(folder);
    }
    const QString base = info.completeBaseName();
    const QString suffix = info.suffix().isEmpty() ? QString() : QLatin1Char('.') + info.suffix();
    QString moved = folder + QLatin1Char('/') + info.fileName();
    for (int n = 2; QFileInfo::exists(moved); ++n) {
        moved = folder + QLatin1Char('/') + base + QStringLiteral(" (") + QString::number(n) +
                QLatin1Char(')') + suffix;
    }
    if (!QFile::rename(path, moved)) {
        fail(path);
    }
    return moved;
}
