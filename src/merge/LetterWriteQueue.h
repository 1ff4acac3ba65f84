#pragma once

#include <QByteArray>
#include <QString>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>
#include <unordered_map>
#include <vector>

// Writes the temporaries of letters on threads of their own, so that the
// disk works while the caller merges and lays out the next letter. The
// caller asks for new folders, adds letters and closes batches. A writer
// thread makes the folders (before any letter still waiting), removes the
// temporaries a killed run left in a folder the first time a letter goes
// there (LetterWriter::sweep) and writes each letter to a temporary beside
// its target. A second thread forces each closed batch to disk with one sync
// while the writer goes on with the next, and then, for a batch closed with
// placements, renames its letters into place in their order (moving an
// earlier letter of the same name aside first), so that the caller's thread
// is left to merge. The caller takes the finished batches back in the order
// it closed them, with each letter's outcome, and tells the user; a batch
// closed without placements comes back with its temporaries for the caller
// to place.
//
// At most `mostWaiting` letters wait to be written; add() blocks beyond
// that, so memory stays flat however slow the disk. Nothing here throws
// across threads: failures come back as text.
class LetterWriteQueue {
public:
    // One letter as written: the temporary, or why there is none.
    struct Written {
        QString temporary; // empty once placed
        QString failure;
        bool placed = false;
        QString replacedPath; // where an earlier letter of its name went
    };
    // Where a letter of a batch goes once the batch is on disk.
    struct Placement {
        QString path;
        bool place = true;        // false: its temporary is removed instead
        bool keepEarlier = false; // a file at `path` is this letter's own earlier save
    };
    struct Batch {
        // In the order the letters were added.
        std::vector<Written> letters;
        // Set when the batch could not be forced to disk; its temporaries
        // are not safe to place.
        QString syncFailure;
    };
    // A folder asked for with makeFolder.
    using FolderTicket = quint64;

    // `history` names the subfolder an earlier letter of the same name is
    // moved into when a placement puts a letter over it.
    explicit LetterWriteQueue(size_t mostWaiting = 32, QString history = QString());
    // Writes what was added, then stops the threads. Temporaries of batches
    // never taken back are removed, so an abandoned queue leaves no file.
    ~LetterWriteQueue();
    LetterWriteQueue(const LetterWriteQueue&) = delete;
    LetterWriteQueue& operator=(const LetterWriteQueue&) = delete;

    // Makes `folder` and its parents (makeVaultFolder) ahead of the letters
    // waiting to be written.
    FolderTicket makeFolder(const QString& folder);
    // Once the folder is made: empty, or why it could not be; with `wait`,
    // waits for it. Nothing while it is still to be made. A ticket is
    // answered once.
    std::optional<QString> folderMade(FolderTicket ticket, bool wait);

    // A letter given the ticket of its folder fails with the folder's
    // failure when the folder could not be made.
    void add(const QString& path, QByteArray bytes, std::optional<FolderTicket> folder = {});
    // The letters added since the last call form one batch. With
    // placements, one per letter in their order, the letters are placed
    // once the batch is on disk, whether or not the batch is taken back: a
    // letter placed is filed. Without, the caller places them.
    void closeBatch(std::vector<Placement> placements = {});
    // The oldest closed batch once it is on disk; with `wait`, waits for
    // it when one is closed. Nothing when no closed batch is (yet) finished.
    std::optional<Batch> takeBatch(bool wait);
    // Closed batches not yet taken back.
    int batchesOut() const;

private:
    struct Job {
        QString path;
        QByteArray bytes;
        std::optional<FolderTicket> folder;
        bool closesBatch = false;
        std::vector<Placement> placements; // of a closing job
    };
    struct FolderJob {
        FolderTicket ticket = 0;
        QString folder;
    };
    struct Closed {
        Batch batch;
        QString syncFolder; // empty when no letter of the batch was written
        std::vector<Placement> placements;
    };

    void write();
    void sync();
    // Whether the writer has nothing to do, and so may be asleep: only then
    // is it woken (a wake-up for every letter costs the caller more than
    // the letter's own hand-over). Under the lock.
    bool isIdle() const { return m_jobs.empty() && m_folderJobs.empty(); }

    void place(Closed& closed) const;

    const size_t m_mostWaiting;
    const QString m_history;
    mutable std::mutex m_mutex;
    std::condition_variable m_jobAdded;
    std::condition_variable m_batchClosed;
    std::condition_variable m_progressed;
    std::deque<FolderJob> m_folderJobs;
    std::deque<Job> m_jobs;
    size_t m_lettersWaiting = 0;
    FolderTicket m_nextTicket = 1;
    // Failures of made folders (empty: made), until asked for.
    std::unordered_map<FolderTicket, QString> m_madeFolders;
    std::deque<Closed> m_toSync;
    std::deque<Batch> m_finished;
    int m_batchesOut = 0;
    bool m_stopping = false;
    bool m_writerDone = false;
    // Started last, once every member they read exists.
    std::thread m_writer;
    std::thread m_syncer;
};
