#include "merge/LetterWriteQueue.h"

#include "merge/LetterWriter.h"
#include "platform/errorClass.h"

#include <QFile>
#include <QFileInfo>

LetterWriteQueue::LetterWriteQueue(size_t mostWaiting)
    : m_mostWaiting(std::max<size_t>(1, mostWaiting)), m_thread([this] { run(); }) {}

LetterWriteQueue::~LetterWriteQueue() {
    {
        std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    m_jobAdded.notify_one();
    m_thread.join();
    for (const Batch& batch : m_finished) {
        for (const Written& letter : batch.letters) {
            if (!letter.temporary.isEmpty()) {
                QFile::remove(letter.temporary);
            }
        }
    }
}

void LetterWriteQueue::add(const QString& path, QByteArray bytes) {
    {
        std::unique_lock lock(m_mutex);
        m_progressed.wait(lock, [this] { return m_lettersWaiting < m_mostWaiting; });
        m_jobs.push_back(Job{path, std::move(bytes), false});
        ++m_lettersWaiting;
    }
    m_jobAdded.notify_one();
}

void LetterWriteQueue::closeBatch() {
    {
        std::lock_guard lock(m_mutex);
        m_jobs.push_back(Job{QString(), QByteArray(), true});
        ++m_batchesOut;
    }
    m_jobAdded.notify_one();
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

void LetterWriteQueue::run() {
    Batch current;
    QString syncFolder;
    for (;;) {
        Job job;
        {
            std::unique_lock lock(m_mutex);
            m_jobAdded.wait(lock, [this] { return !m_jobs.empty() || m_stopping; });
            if (m_jobs.empty()) {
                break;
            }
            job = std::move(m_jobs.front());
            m_jobs.pop_front();
            if (!job.closesBatch) {
                --m_lettersWaiting;
            }
        }
        m_progressed.notify_all();
        if (!job.closesBatch) {
            Written written;
            try {
                written.temporary = LetterWriter::writeTemporaryUnswept(job.path, job.bytes);
                if (syncFolder.isEmpty()) {
                    syncFolder = QFileInfo(job.path).absolutePath();
                }
            } catch (const QmError& fault) {
                written.failure = fault.description();
            } catch (const std::exception&) {
                // Out of memory for one letter: that letter is not filed.
                written.failure = QStringLiteral("Path/File access error: ") + job.path;
            }
            current.letters.push_back(std::move(written));
            continue;
        }
        // One sync for the batch: syncfs forces the whole file system, so
        // any folder of the batch names it.
        if (!syncFolder.isEmpty()) {
            try {
                LetterWriter::syncFileSystem(syncFolder);
            } catch (const QmError& fault) {
                current.syncFailure = fault.description();
            }
        }
        {
            std::lock_guard lock(m_mutex);
            m_finished.push_back(std::move(current));
        }
        m_progressed.notify_all();
        current = Batch();
        syncFolder.clear();
    }
    // Letters added after the last close were never asked for.
    for (const Written& letter : current.letters) {
        if (!letter.temporary.isEmpty()) {
            QFile::remove(letter.temporary);
        }
    }
}
