#include "platform/fileControl.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

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

bool fileControl::writeFileAtomically(const QString& path, const QByteArray& bytes) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        return false;
    }
    if (file.write(bytes) != bytes.size()) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}

std::optional<QByteArray> fileControl::readWholeFile(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    return file.readAll();
}

bool fileControl::isBelowFolder(const QString& path, const QString& folder) {
    if (folder.isEmpty() || path.isEmpty()) {
        return false;
    }
    const QString p = QDir::cleanPath(path).toUpper();
    const QString f = QDir::cleanPath(folder).toUpper();
    return p == f || p.startsWith(AddBackslash(f));
}
