#pragma once

#include "data/databaseControl.h"
#include "documents/DocumentModel.h"
#include "merge/LetterWriteQueue.h"
#include "merge/NormalisedLetter.h"
#include "merge/modDocVaultFolders.h"
#include "platform/errorClass.h"
#include "platform/richtext/RichTextBox.h"

#include <QDate>
#include <QElapsedTimer>
#include <QString>
#include <deque>
#include <memory>
#include <optional>
#include <vector>

class MergeResultDocument;
struct MergedRecord;

// Files the records of a merge result one by one, as the save walk of
// MergeResultDocument does, for that walk and for a merge that files each
// record as soon as it is made. On the calling thread: the record's folder
// as the database and the vault name it, its bytes, and onFiled. On the
// writer threads (LetterWriteQueue): new folders, the sweep of each folder,
// the temporary file, the sync and then, for each letter of the batch in
// turn, the move of an older letter into "Replaced" and the rename into
// place. A new folder's row is written once the folder is there, while the
// next record merges, and committed before its letters are placed. Records
// are told to onFiled in the order they were filed, after their batch's
// renames, failures included.
//
// The database is app().database; the document must outlive this object and
// its record vector must not shrink while records are being filed.
class MergeFiling {
public:
    // Letters go below `vaultRoot` (empty: the working folders' vault root).
    MergeFiling(MergeResultDocument& document, const QString& vaultRoot);
    // Without finish(), letters written but not placed are removed.
    ~MergeFiling();
    MergeFiling(const MergeFiling&) = delete;
    MergeFiling& operator=(const MergeFiling&) = delete;

    // Files document.records[index]: a record that fails here keeps the
    // reason in `failure`, as does one whose letter later fails to reach the
    // disk. Letters already on disk are placed and told on the way.
    void file(size_t index);
    // Places every letter filed so far and lets go of the database batch.
    void finish();
    // Records told so far that were not filed, merge failures included.
    int failures() const { return m_failures; }

private:
    struct Staged {
        size_t index = 0;
        QString path;
        bool written = false; // handed to the writer thread
        bool ownEarlierSave = false;
        // Set when the letter's new folder failed after the letter was
        // handed over: the letter is not placed.
        QString folderFailure;
    };
    // A new folder being made on the writer thread for records[record].
    struct PendingFolder {
        ClientFolderPlan plan;
        LetterWriteQueue::FolderTicket ticket = 0;
        size_t record = 0;
        std::optional<size_t> staged; // the letter's place in m_open
    };

    void closeBatch();
    void placeFinished(bool wait);
    void place(const std::vector<Staged>& staged, LetterWriteQueue::Batch& batch);
    QString letterFolder(size_t index);
    // The folder the lookup `plan` finds, looked up again once every pending
    // folder is recorded when it read what one of them changes; a new one
    // is handed to the writer to make.
    template <typename Plan> QString plannedFolder(const Plan& plan, size_t index);
    bool dependsOnPending(const ClientFolderPlan& plan) const;
    // Writes the rows of the pending folders the writer has made, in their
    // order; with `wait`, of all of them. A failure is the record's, as when
    // the folder was made in one step.
    void completeFolders(bool wait);
    QByteArray letterBytes(const QString& rtf);
    const QString& letterFileName();

    MergeResultDocument& m_document;
    const QString m_vaultRoot;
    DocumentModel m_saved;
    QByteArray m_trailer; // the same for every letter of the walk
    std::optional<QmError> m_trailerFault;
    RichTextBox m_scratch;
    std::optional<NormalisedLetter> m_normalised;
    // Read when the first letter needs a folder, then kept for the walk.
    std::optional<DocVaultIndex> m_index;
    std::optional<WriteBatch> m_folderRows;
    std::deque<PendingFolder> m_pending;
    // Declared after what its batches refer to, destroyed before it.
    std::unique_ptr<LetterWriteQueue> m_queue;
    std::vector<Staged> m_open;
    std::deque<std::vector<Staged>> m_closed;
    QElapsedTimer m_sinceClose;
    QString m_fileName;
    QDate m_fileNameDay;
    int m_failures = 0;
};
