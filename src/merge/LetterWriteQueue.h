#pragma once

#include <QByteArray>
#include <QString>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

// Writes the temporaries of letters on a thread of its own, so that the disk
// works while the caller merges and lays out the next letter. The caller
// adds letters and closes batches; the thread writes each letter to a
// temporary beside its target (LetterWriter::writeTemporaryUnswept) and, at
// the end of a batch, forces every temporary of the batch to disk with one
// sync. The caller takes the finished batches back in the order it closed
// them and places the letters itself, so that whatever tells the user a
// letter is filed runs on the caller's thread right after its rename.
//
// The caller must have swept each target folder (LetterWriter::sweep)
// before adding a letter for it. At most `mostWaiting` letters wait to be
// written; add() blocks beyond that, so memory stays flat however slow the
// disk. Nothing here throws across threads: failures come back as text.
class LetterWriteQueue {
public:
    // One letter as written: the temporary, or why there is none.
    struct Written {
        QString temporary;
        QString failure;
    };
    struct Batch {
        // In the order the letters were added.
        std::vector<Written> letters;
        // Set when the batch could not be forced to disk; its temporaries
        // are not safe to place.
        QString syncFailure;
    };

    explicit LetterWriteQueue(size_t mostWaiting = 32);
    // Writes what was added, then stops the thread. Temporaries of batches
    // never taken back are removed, so an abandoned queue leaves no file.
    ~LetterWriteQueue();
    LetterWriteQueue(const LetterWriteQueue&) = delete;
    LetterWriteQueue& operator=(const LetterWriteQueue&) = delete;

    void add(const QString& path, QByteArray bytes);
    // The letters added since the last call form one batch.
    void closeBatch();
    // The oldest closed batch once it is finished; with `wait`, waits for
    // it when one is closed. Nothing when no closed batch is (yet) finished.
    std::optional<Batch> takeBatch(bool wait);
    // Closed batches not yet taken back.
    int batchesOut() const;

private:
    struct Job {
        QString path;
        QByteArray bytes;
        bool closesBatch = false;
    };

    void run();

    const size_t m_mostWaiting;
    mutable std::mutex m_mutex;
    std::condition_variable m_jobAdded;
    std::condition_variable m_progressed;
    std::deque<Job> m_jobs;
    size_t m_lettersWaiting = 0;
    std::deque<Batch> m_finished;
    int m_batchesOut = 0;
    bool m_stopping = false;
    // Started last, once every member it reads exists.
    std::thread m_thread;
};
