#include "merge/MergeFiling.h"

#include "context/AppContext.h"
#include "documents/modDocument.h"
#include "merge/MergeLookups.h"
#include "merge/MergeResultDocument.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"
#include "platform/text/stringControl.h"

#include <QFile>
#include <QFileInfo>
#include <QUuid>

namespace {

// Letters are forced to disk together: one sync for a batch costs what one
// letter's sync costs, and no letter takes its place before it is on disk.
constexpr size_t kLettersPerSync = 256;
// Letters are filed (and the snapshot let go) at least this often, so that
// a host writing to the practice's file never waits long.
constexpr qint64 kMostMillisecondsPerSync = 200;

bool connected() {
    return app().database && app().database->isConnected();
}

} // namespace

MergeFiling::MergeFiling(MergeResultDocument& document, const QString& vaultRoot)
    : m_document(document), m_vaultRoot(vaultRoot), m_saved(document.model),
      m_queue(std::make_unique<LetterWriteQueue>()) {
    m_saved.documentType = DocumentModel::SavedMergeResult;
    m_normalised = NormalisedLetter::fromTemplate(m_scratch, document.templateText);
    // The vault rows of new folders are written in batches that commit with
    // the letters they file: one durable commit per batch, not per client.
    if (connected()) {
        m_folderRows.emplace(*app().database, WriteBatch::Reads::Held);
    }
    m_sinceClose.start();
}

MergeFiling::~MergeFiling() {
    // The queue removes what it wrote for batches nobody took back; letters
    // staged but not handed over have nothing on disk.
    m_queue.reset();
}

QString MergeFiling::letterFolder(const MergedRecord& record) {
    if (!m_index && connected()) {
        m_index.emplace(*app().database);
    }
    DocVaultIndex* index = m_index ? &*m_index : nullptr;
    QString folder;
    if (m_document.model.InformationType == InformationKind::Appointments) {
        const int client = MergeLookups::getClientDataIDFromCompanyID(
            MergeLookups::getCompanyIDFromAppointmentID(record.appointmentID));
        folder = MergeLookups::validClientID(client)
                     ? getBusinessClientDocFolder(client, m_vaultRoot, index)
                     : getMiscAppointmentsFolder(m_vaultRoot);
    } else {
        const int client = MergeLookups::getClientDataIDFromCompanyID(record.companyID);
        folder = MergeLookups::validClientID(client)
                     ? getBusinessClientDocFolder(client, m_vaultRoot, index)
                     : getPersonalClientDocFolder(record.contactID, m_vaultRoot, index);
    }
    if (folder.isEmpty()) {
        folder = m_vaultRoot.isEmpty() ? QString() : fileControl::AddBackslash(m_vaultRoot);
    }
    return folder;
}

// The bytes of one saved letter: the text as the box writes it back (the
// round trip normalises the merged RTF), then the trailer, built in memory
// so that the letter is written once.
QByteArray MergeFiling::letterBytes(const QString& rtf, const QString& scratchFolder) {
    if (m_saved.fileSaveType == RichTextBox::rtfRTF && m_normalised) {
        if (const std::optional<QString> text = m_normalised->normalisedText(rtf)) {
            return documentFileBytes(text->toLatin1(), m_saved);
        }
    }
    m_scratch.setTextRTF(rtf);
    if (m_saved.fileSaveType == RichTextBox::rtfRTF) {
        return documentFileBytes(m_scratch.TextRTF().toLatin1(), m_saved);
    }
    // Plain text takes the box's own encoding, which only its file save
    // gives; a rare kind, so the extra file is accepted.
    const QString temporary = scratchFolder + QStringLiteral("/.qm-") +
                              QUuid::createUuid().toString(QUuid::Id128) + QStringLiteral(".part");
    try {
        m_scratch.SaveFile(temporary, m_saved.fileSaveType);
        const auto content = fileControl::readWholeFile(temporary);
        QFile::remove(temporary);
        if (!content) {
            throw QmError(QmError::PathFileAccessError,
                          QStringLiteral("Path/File access error: ") + temporary);
        }
        return documentFileBytes(*content, m_saved);
    } catch (...) {
        QFile::remove(temporary);
        throw;
    }
}

void MergeFiling::file(size_t index) {
    MergedRecord& record = m_document.records[index];
    Staged letter;
    letter.index = index;
    if (!record.mergeFailed) {
        record.replacedPath.clear();
        record.failure.clear();
        try {
            letter.path = record.savedPath;
            if (!stringControl::isBlank(letter.path)) {
                // Whether the earlier save is still there is asked of the
                // vault as the letters before this batch left it.
                while (!m_closed.empty()) {
                    placeFinished(true);
                }
            }
            letter.ownEarlierSave =
                !stringControl::isBlank(letter.path) && fileControl::FileExists(letter.path);
            if (!letter.ownEarlierSave) {
                letter.path =
                    letterFolder(record) + parseMergeFileName(m_document.templateCaption,
                                                              m_document.model.fileSaveType,
                                                              DocumentModel::MergeResults,
                                                              m_document.model.InformationType);
            }
            if (!m_vaultRoot.isEmpty()) {
                requireInsideVault(letter.path, m_vaultRoot);
            }
            const QString folder = fileControl::FolderName(letter.path);
            // Before any temporary of this run goes there, the scratch
            // file of a plain-text letter included.
            m_writer.sweep(QFileInfo(letter.path).absolutePath());
            m_queue->add(letter.path, letterBytes(record.rtf, folder));
            letter.written = true;
        } catch (const QmError& fault) {
            record.failure = fault.description();
        }
    }
    m_open.push_back(std::move(letter));
    if (m_open.size() >= kLettersPerSync || m_sinceClose.hasExpired(kMostMillisecondsPerSync)) {
        closeBatch();
    }
    placeFinished(false);
}

void MergeFiling::closeBatch() {
    if (m_folderRows) {
        try {
            m_folderRows->commit();
        } catch (const QmError& fault) {
            // Letters are filed all the same; the folders are found by name
            // on the next run.
            qWarning("%s", qPrintable(fault.description()));
        }
    }
    m_queue->closeBatch();
    m_closed.push_back(std::move(m_open));
    m_open.clear();
    m_sinceClose.restart();
}

void MergeFiling::placeFinished(bool wait) {
    while (!m_closed.empty()) {
        std::optional<LetterWriteQueue::Batch> batch = m_queue->takeBatch(wait);
        if (!batch) {
            return;
        }
        // Off the list first: a throwing onFiled must not see it placed twice.
        const std::vector<Staged> staged = std::move(m_closed.front());
        m_closed.pop_front();
        place(staged, *batch);
        wait = false;
    }
}

void MergeFiling::place(const std::vector<Staged>& staged, LetterWriteQueue::Batch& batch) {
    size_t next = 0;
    for (const Staged& letter : staged) {
        MergedRecord& record = m_document.records[letter.index];
        if (letter.written) {
            const LetterWriteQueue::Written& written = batch.letters.at(next++);
            if (!written.failure.isEmpty()) {
                record.failure = written.failure;
            } else {
                try {
                    if (!batch.syncFailure.isEmpty()) {
                        throw QmError(QmError::PathFileAccessError, batch.syncFailure);
                    }
                    // A letter of this name from an earlier record or run is
                    // another letter: it is kept in the history folder.
                    if (!letter.ownEarlierSave && fileControl::FileExists(letter.path)) {
                        record.replacedPath = m_writer.moveAside(
                            letter.path, MergeResultDocument::replacedFolderName());
                    }
                    LetterWriter::place(written.temporary, letter.path);
                    record.savedPath = letter.path;
                } catch (const QmError& fault) {
                    QFile::remove(written.temporary);
                    record.failure = fault.description();
                }
            }
        }
        if (!record.failure.isEmpty()) {
            ++m_failures;
        }
        if (m_document.onFiled) {
            m_document.onFiled(record);
        }
    }
}

void MergeFiling::finish() {
    closeBatch();
    while (!m_closed.empty()) {
        placeFinished(true);
    }
    m_folderRows.reset();
}
