#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

// File and folder helpers. Paths use this platform's separator; "backslash"
// in the names means the path separator.
class fileControl {
public:
    // File names as the file system gives them: bytes, usually but not
    // always UTF-8. A name that is not UTF-8 keeps each stray byte as the
    // code unit 0xDC00 + byte, so that nativePath() gives the same bytes back
    // and the file can still be opened, written or listed. Valid UTF-8 reads
    // as usual. Every file access in this class goes through nativePath().
    static QString pathFromNative(const QByteArray& bytes);
    static QByteArray nativePath(const QString& path);

    static bool FileExists(const QString& path);
    static bool FolderExists(const QString& path);
    static qint64 FileSize(const QString& path);
    // The name without its folder.
    static QString FileName(const QString& path);
    // The folder without a trailing separator.
    static QString FolderName(const QString& path);
    // Without the point; empty when the name has none.
    static QString Extension(const QString& path);
    static QString RemoveExtension(const QString& path);
    static QString AddBackslash(const QString& path);
    static QString RemoveBackslash(const QString& path);
    // Copies a file; with overwrite false an existing target is kept and
    // the call fails. The copy is written whole and renamed into place.
    static bool CopyFile(const QString& from, const QString& to, bool overwrite);
    static bool DeleteFile(const QString& path);

    // Copies a folder tree; returns false if any file could not be copied.
    static bool CopyFolder(const QString& from, const QString& to, bool overwrite);

    // Writes the bytes to a temporary file in the target's folder, syncs it
    // and renames it over the target, so a crash or a full disk leaves the
    // old or the new file, never a part. Returns false on any failure (open,
    // write, sync, close, rename), with the temporary file removed, the
    // target untouched and, when `reason` is given, why in words.
    static bool writeFileAtomically(const QString& path, const QByteArray& bytes,
                                    QString* reason = nullptr);
    // The whole file, or nothing when it cannot be read; `reason` then says
    // whether it is missing, refused ("Permission denied") or unreadable.
    static std::optional<QByteArray> readWholeFile(const QString& path, QString* reason = nullptr);

    // True when `path` lies at or below `folder`, compared case-insensitively
    // as the old program compared upper-cased paths.
    static bool isBelowFolder(const QString& path, const QString& folder);
};
