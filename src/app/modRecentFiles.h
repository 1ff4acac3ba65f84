#pragma once

#include <QString>
#include <QStringList>
#include <optional>

class clsINI;

// The recent-files list of the File menu: at most eight paths, most recent
// first, kept in section QuillmerePadMRU as Name1 to Name8.
class RecentFiles {
public:
    static constexpr int MaxEntries = 8;

    // Replaces the list with Name1 to Name8 in that order. Values of two
    // characters or fewer, and the "<not_set>" a read writes into an empty
    // key, are skipped and the later entries move up. Without a settings
    // object the list stays as it is.
    void GetMRUList(clsINI* ini);

    // Puts the path at the head (an entry equal to it without regard to case
    // is taken out first), drops a ninth entry, writes Name1 to Name8 (empty
    // past the end) and reads the list back. Without a settings object only
    // the list in memory changes. An empty path is ignored.
    void SaveMRUFile(clsINI* ini, const QString& path);

    const QStringList& entries() const { return m_entries; }

    // The menu caption of an entry: "3. Letter" for ".../Letter.qmw". An "&"
    // in the name is doubled so that it shows instead of marking a key.
    static QString itemCaption(int position, const QString& path);

private:
    QStringList m_entries;
};

// What choosing a recent file leads to: nothing when it can be opened, else
// the message for the user. A folder or a vanished file counts as missing;
// a file that exists but cannot be read is left to the opening routine,
// which says why.
std::optional<QString> recentFileProblem(const QString& path);
