#pragma once

#include <QString>
#include <QStringList>

// What the Quick Picks list of the side panel shows: the documents and
// templates of one folder, in the order a user reads them.

// True for a file name the list offers: the program's own document and
// template files, rich text and plain text. Hidden files, the word list and
// half-written temporary files are left out, as opening them makes no sense.
bool isQuickPickFile(const QString& fileName);

// The names (no folder) of the files of `folder` the list shows, sorted
// case-insensitively with numbers in numeric order ("Letter 2" before
// "Letter 10"). Empty when the folder is blank, missing or unreadable.
QStringList quickPickFiles(const QString& folder);

// The full path of a list entry: the folder, a separator if it lacks one,
// and the name.
QString quickPickPath(const QString& folder, const QString& fileName);

// The folder the list shows after refreshFileList(requested): the requested
// one when it is not blank and exists, otherwise the one it showed before.
QString nextQuickPickFolder(const QString& current, const QString& requested);

// True when two paths name the same file: the same file on disk when both
// exist (links and "." steps resolved), otherwise the same cleaned path.
// An empty path matches nothing.
bool isSameDocumentFile(const QString& a, const QString& b);
