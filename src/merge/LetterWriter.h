#pragma once

#include <QByteArray>
#include <QSet>
#include <QString>

// Files merged letters into the vault so that a killed or failing run loses
// nothing: each letter is written whole to a recognisable temporary file
// beside its target, flushed to disk, checked and renamed into place, and
// the temporaries a killed run left in a folder are removed when a later
// run first writes there.
class LetterWriter {
public:
    // Writes `bytes` as the file `path`. On any failure the temporary file
    // is removed, the old file at `path` stays whole and QmError
    // PathFileAccessError is raised naming the path.
    void write(const QString& path, const QByteArray& bytes);

    // The same in steps, so that many letters share one sync: the bytes go
    // to a temporary beside `path` (returned), written and flushed but not
    // yet forced to disk; syncFileSystem() forces every temporary written so
    // far; place() then renames one over its target. Each raises QmError
    // PathFileAccessError and removes the temporary on failure.
    QString writeTemporary(const QString& path, const QByteArray& bytes);
    static void syncFileSystem(const QString& anyFolder);
    static void place(const QString& temporary, const QString& path);

    // writeTemporary without the sweep, for a caller that has swept the
    // folder first. It touches no writer, so another thread may call it.
    static QString writeTemporaryUnswept(const QString& path, const QByteArray& bytes);

    // Removes the temporaries a killed run left in `folder`, the first time
    // this writer is asked about the folder. Anything that writes a
    // temporary there must wait until the folder has been swept.
    void sweep(const QString& folder);
    // Takes `folder` as swept without looking: one this run has just made.
    void markSwept(const QString& folder);

    // Moves the existing file `path` into the subfolder `history` of its
    // folder, under its own name or, when that is taken, "name (2).ext"...
    // Returns the new path. Raises QmError PathFileAccessError when the
    // folder cannot be made or the file cannot be moved; the file stays.
    QString moveAside(const QString& path, const QString& history);

    // Whether a file name is one of this writer's temporaries.
    static bool isTemporaryName(const QString& fileName);

private:
    QSet<QString> m_sweptFolders;
};
