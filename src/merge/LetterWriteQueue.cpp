#include "merge/LetterWriteQueue.h"

#include "merge/LetterWriter.h"
#include "merge/modDocVaultFolders.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"

#include <QFile>
#include <QFileInfo>
#include <sys/stat.h>

namespace {

void removeTemporaries(const LetterWriteQueue::Batch& batch) {
    for (const LetterWriteQueue::Written& letter : batch.letters) {
        if (!letter.temporary.isEmpty()) {
            QFile::remove(letter.temporary);
        }
    }
}

} // namespace

LetterWriteQueue::LetterWriteQueue(size_t mostWaiting, QString history)
    : m_mostWaiting(std::max<size_t>(1, mostWaiting)), m_history(std::move(history)),
      m_writer([this] { write(); }), m_syncer([this] { sync(); }) {}

LetterWriteQueue::~LetterWriteQueue() {
    {
        std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    m_jobAdded.notify_one();
    m_writer.join();
    m_syncer.join();
    for (const Batch& batch : m_finished) {
        removeTemporaries(batch);
    }
}

LetterWriteQueue::FolderTicket LetterWriteQueue::makeFolder(const QString& folder) {
    FolderTicket ticket = 0;
    bool idle = false;
    {
        std::lock_guard lock(m_mutex);
        ticket = m_nextTicket++;
        idle = isIdle();
        m_folderJobs.push_back(FolderJob{ticket, folder});
    }
    if (idle) {
        m_jobAdded.notify_one();
    }
    return ticket;
}

std::optional<QString> LetterWriteQueue::folderMade(FolderTicket ticket, bool wait) {
    std::unique_lock lock(m_mutex);
    if (wait) {
        m_progressed.wait(lock, [&] { return m_madeFolders.count(ticket) > 0; });
    }
    const auto made = m_madeFolders.find(ticket);
    if (made == m_madeFolders.end()) {
        return std::nullopt;
    }
    QString failure = std::move(made->second);
    m_madeFolders.erase(made);
    return failure;
}

void LetterWriteQueue::add(const QString& path, QByteArray bytes,
                           std::optional<FolderTicket> folder) {
    bool idle = false;
    {
        std::unique_lock lock(m_mutex);
        m_progressed.wait(lock, [this] { return m_lettersWaiting < m_mostWaiting; });
        idle = isIdle();
        m_jobs.push_back(Job{path, std::move(bytes), folder, false, {}});
        ++m_lettersWaiting;
    }
    if (idle) {
        m_jobAdded.notify_one();
    }
}

void LetterWriteQueue::closeBatch(std::vector<Placement> placements) {
    bool idle = false;
    {
        std::lock_guard lock(m_mutex);
        idle = isIdle();
        m_jobs.push_back(Job{QString(), QByteArray(), std::nullopt, true, std::move(placements)});
        ++m_batchesOut;
    }
    if (idle) {
        m_jobAdded.notify_one();
    }
}

std::optional<LetterWriteQueue::Batch> LetterWriteQueue::takeBatch(bool wait) {
    std::unique_lock lock(m_mutex);
    if (wait) {
        m_progressed.wait(lock, [this] { return !m_finished.empty() || m_batchesOut == 0; });
    }
    if (m_finished.empty()) {
        return std::nullopt;
    }
    Batch batch = std::move(m_finished.front());
    m_finished.pop_front();
    --m_batchesOut;
    return batch;
}

int LetterWriteQueue::batchesOut() const {
    std::lock_guard lock(m_mutex);
    return m_batchesOut;
}

void LetterWriteQueue::write() {
    LetterWriter sweeper;
    // Only the failures: a letter whose folder was made needs nothing more.
    std::unordered_map<FolderTicket, QString> failedFolders;
    Closed current;
    for (;;) {
        std::optional<FolderJob> folderJob;
        Job job;
        {
            std::unique_lock lock(m_mutex);
            m_jobAdded.wait(
                lock, [this] { return !m_folderJobs.empty() || !m_jobs.empty() || m_stopping; });
            // Folders first: the caller may be waiting for one, and no
            // letter of it can be waiting before it.
            if (!m_folderJobs.empty()) {
                folderJob = std::move(m_folderJobs.front());
                m_folderJobs.pop_front();
            } else if (!m_jobs.empty()) {
                job = std::move(m_jobs.front());
                m_jobs.pop_front();
                if (!job.closesBatch) {
                    --m_lettersWaiting;
                }
            } else {
                break;
            }
        }
        if (folderJob) {
            QString failure;
            try {
                // A folder this call made holds nothing to sweep.
                if (::mkdir(QFile::encodeName(folderJob->folder).constData(), 0777) == 0) {
                    sweeper.markSwept(folderJob->folder);
                } else {
                    makeVaultFolder(folderJob->folder);
                }
            } catch (const QmError& fault) {
                failure = fault.description();
                failedFolders.emplace(folderJob->ticket, failure);
            }
            {
                std::lock_guard lock(m_mutex);
                m_madeFolders.emplace(folderJob->ticket, std::move(failure));
            }
            m_progressed.notify_all();
            continue;
        }
        m_progressed.notify_all();
        if (!job.closesBatch) {
            Written written;
            const auto folderFailure =
                job.folder ? failedFolders.find(*job.folder) : failedFolders.end();
            if (folderFailure != failedFolders.end()) {
                written.failure = folderFailure->second;
            } else {
                try {
                    const QString folder = QFileInfo(job.path).absolutePath();
                    sweeper.sweep(folder);
                    written.temporary = LetterWriter::writeTemporaryUnswept(job.path, job.bytes);
                    if (current.syncFolder.isEmpty()) {
                        current.syncFolder = folder;
                    }
                } catch (const QmError& fault) {
                    written.failure = fault.description();
                } catch (const std::exception&) {
                    // Out of memory for one letter: that letter is not filed.
                    written.failure = QStringLiteral("Path/File access error: ") + job.path;
                }
            }
            current.batch.letters.push_back(std::move(written));
            continue;
        }
        current.placements = std::move(job.placements);
        {
            std::lock_guard lock(m_mutex);
            m_toSync.push_back(std::move(current));
        }
        m_batchClosed.notify_one();
        current = Closed();
    }
    // Letters added after the last close were never asked for.
    removeTemporaries(current.batch);
    {
        std::lock_guard lock(m_mutex);
        m_writerDone = true;
    }
    m_batchClosed.notify_one();
}

void LetterWriteQueue::place(Closed& closed) const {
    if (closed.placements.empty()) {
        return;
    }
    LetterWriter writer;
    std::vector<Written>& letters = closed.batch.letters;
    for (size_t i = 0; i < letters.size() && i < closed.placements.size(); ++i) {
        Written& letter = letters[i];
        const Placement& placement = closed.placements[i];
        if (letter.temporary.isEmpty()) {
            continue; // failed on the writer thread
        }
        if (!placement.place) {
            QFile::remove(letter.temporary);
            letter.temporary.clear();
            continue;
        }
        try {
            if (!closed.batch.syncFailure.isEmpty()) {
                throw QmError(QmError::PathFileAccessError, closed.batch.syncFailure);
            }
            // A letter of this name from an earlier record or run is another
            // letter: it is kept in the history folder.
            if (!placement.keepEarlier && fileControl::FileExists(placement.path)) {
                letter.replacedPath = writer.moveAside(placement.path, m_history);
            }
            LetterWriter::place(letter.temporary, placement.path);
            letter.placed = true;
        } catch (const QmError& fault) {
            QFile::remove(letter.temporary);
            letter.failure = fault.description();
        } catch (const std::exception&) {
            QFile::remove(letter.temporary);
            letter.failure = QStringLiteral("Path/File access error: ") + placement.path;
        }
        letter.temporary.clear();
    }
}

void LetterWriteQueue::sync() {
    for (;;) {
        Closed closed;
        {
            std::unique_lock lock(m_mutex);
            m_batchClosed.wait(lock, [this] { return !m_toSync.empty() || m_writerDone; });
            if (m_toSync.empty()) {
                break;
            }
            closed = std::move(m_toSync.front());
            m_toSync.pop_front();
        }
        // One sync for the batch: syncfs forces the whole file system, so
        // any folder of the batch names it.
        if (!closed.syncFolder.isEmpty()) {
            try {
                LetterWriter::syncFileSystem(closed.syncFolder);
            } catch (const QmError& fault) {
                closed.batch.syncFailure = fault.description();
            }
        }
        place(closed);
        {
            std::lock_guard lock(m_mutex);
            m_finished.push_back(std::move(closed.batch));
        }
        m_progressed.notify_all();
    }
}
