#include "merge/MergeFiling.h"

#include "context/AppContext.h"
#include "documents/modDocument.h"
#include "merge/MergeLookups.h"
#include "merge/MergeResultDocument.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"
#include "platform/text/stringControl.h"

#include <algorithm>

namespace {

// Letters are forced to disk together: one sync for a batch costs what one
// letter's sync costs, and no letter takes its place before it is on disk.
constexpr size_t kLettersPerSync = 256;
// Letters are filed (and the snapshot let go) at least this often, so that
// a host writing to the practice's file never waits long.
constexpr qint64 kMostMillisecondsPerSync = 200;

// Letters merged ahead of the writer (a few megabytes), so that a slow
// moment of the disk or of the merge does not hold the other up.
constexpr size_t kLettersWaiting = 128;

bool connected() {
    return app().database && app().database->isConnected();
}

} // namespace

MergeFiling::MergeFiling(MergeResultDocument& document, const QString& vaultRoot)
    : m_document(document), m_vaultRoot(vaultRoot), m_saved(document.model),
      m_queue(std::make_unique<LetterWriteQueue>(kLettersWaiting,
                                                 MergeResultDocument::replacedFolderName())) {
    m_saved.documentType = DocumentModel::SavedMergeResult;
    try {
        m_trailer = documentFileBytes(QByteArray(), m_saved);
    } catch (const QmError& fault) {
        // Told against every letter, as writing each would tell it.
        m_trailerFault = fault;
    }
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

bool MergeFiling::dependsOnPending(const ClientFolderPlan& plan) const {
    return std::any_of(m_pending.begin(), m_pending.end(), [&](const PendingFolder& pending) {
        return planReadsWhatCompletes(plan, pending.plan);
    });
}

template <typename Plan> QString MergeFiling::plannedFolder(const Plan& plan, size_t index) {
    std::optional<ClientFolderPlan> planned;
    try {
        planned = plan();
    } catch (const QmError&) {
        if (m_pending.empty()) {
            throw;
        }
    }
    if (!planned || dependsOnPending(*planned)) {
        completeFolders(true);
        planned = plan();
    }
    if (planned->mustMake) {
        m_pending.push_back(
            PendingFolder{*planned, m_queue->makeFolder(planned->folder), index, std::nullopt});
    }
    return planned->folder;
}

QString MergeFiling::letterFolder(size_t index) {
    const MergedRecord& record = m_document.records[index];
    if (!m_index && connected()) {
        m_index.emplace(*app().database);
        m_index->listFolders();
    }
    if (!m_index) {
        // Without a connection nothing is made, so nothing waits.
        if (m_document.model.InformationType == InformationKind::Appointments) {
            const int client = MergeLookups::getClientDataIDFromCompanyID(
                MergeLookups::getCompanyIDFromAppointmentID(record.appointmentID));
            return MergeLookups::validClientID(client)
                       ? getBusinessClientDocFolder(client, m_vaultRoot)
                       : getMiscAppointmentsFolder(m_vaultRoot);
        }
        const int client = MergeLookups::getClientDataIDFromCompanyID(record.companyID);
        return MergeLookups::validClientID(client)
                   ? getBusinessClientDocFolder(client, m_vaultRoot)
                   : getPersonalClientDocFolder(record.contactID, m_vaultRoot);
    }
    DocVaultIndex& vault = *m_index;
    if (m_document.model.InformationType == InformationKind::Appointments) {
        const int client = MergeLookups::getClientDataIDFromCompanyID(
            MergeLookups::getCompanyIDFromAppointmentID(record.appointmentID));
        if (!MergeLookups::validClientID(client)) {
            // Made here, so after every folder asked for before it.
            completeFolders(true);
            return getMiscAppointmentsFolder(m_vaultRoot);
        }
        return plannedFolder(
            [&] { return planBusinessClientDocFolder(client, m_vaultRoot, vault); }, index);
    }
    const int client = MergeLookups::getClientDataIDFromCompanyID(record.companyID);
    if (MergeLookups::validClientID(client)) {
        return plannedFolder(
            [&] { return planBusinessClientDocFolder(client, m_vaultRoot, vault); }, index);
    }
    return plannedFolder(
        [&] { return planPersonalClientDocFolder(record.contactID, m_vaultRoot, vault); }, index);
}

void MergeFiling::completeFolders(bool wait) {
    while (!m_pending.empty()) {
        const PendingFolder& pending = m_pending.front();
        std::optional<QString> failure = m_queue->folderMade(pending.ticket, wait);
        if (!failure) {
            return;
        }
        if (failure->isEmpty()) {
            try {
                completeClientDocFolder(pending.plan, *m_index);
            } catch (const QmError& fault) {
                failure = fault.description();
            }
        }
        if (!failure->isEmpty()) {
            m_document.records[pending.record].failure = *failure;
            if (pending.staged) {
                m_open[*pending.staged].folderFailure = *failure;
            }
        }
        m_pending.pop_front();
    }
}

// The bytes of one saved letter: the text as the box writes it back (the
// round trip normalises the merged RTF), then the trailer, built in memory
// so that the letter is written once.
QByteArray MergeFiling::letterBytes(const QString& rtf) {
    if (m_trailerFault) {
        throw *m_trailerFault;
    }
    if (m_saved.fileSaveType == RichTextBox::rtfRTF && m_normalised) {
        if (std::optional<QByteArray> text =
                m_normalised->normalisedLatin1(rtf, m_trailer.size())) {
            return documentFileBytes(std::move(*text), m_trailer);
        }
    }
    m_scratch.setTextRTF(rtf);
    return documentFileBytes(m_scratch.fileBytes(m_saved.fileSaveType), m_trailer);
}

const QString& MergeFiling::letterFileName() {
    // The same for every letter of the day; a walk past midnight takes the
    // new day's name, as naming each letter would.
    const QDate today = app().clock.today();
    if (today != m_fileNameDay) {
        m_fileName =
            parseMergeFileName(m_document.templateCaption, m_document.model.fileSaveType,
                               DocumentModel::MergeResults, m_document.model.InformationType);
        m_fileNameDay = today;
    }
    return m_fileName;
}

void MergeFiling::file(size_t index) {
    // The folders of the records before, made while this one merged.
    completeFolders(false);
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
                letter.path = letterFolder(index) + letterFileName();
            }
            if (!m_vaultRoot.isEmpty()) {
                requireInsideVault(letter.path, m_vaultRoot);
            }
            const bool newFolder = !m_pending.empty() && m_pending.back().record == index;
            m_queue->add(letter.path, letterBytes(record.rtf),
                         newFolder ? std::optional(m_pending.back().ticket) : std::nullopt);
            letter.written = true;
        } catch (const QmError& fault) {
            record.failure = fault.description();
        }
    }
    m_open.push_back(std::move(letter));
    if (!m_pending.empty() && m_pending.back().record == index && m_open.back().written) {
        m_pending.back().staged = m_open.size() - 1;
    }
    if (m_open.size() >= kLettersPerSync || m_sinceClose.hasExpired(kMostMillisecondsPerSync)) {
        closeBatch();
    }
    placeFinished(false);
}

void MergeFiling::closeBatch() {
    // Every folder row goes in with the commit before its letter is placed.
    completeFolders(true);
    if (m_folderRows) {
        try {
            m_folderRows->commit();
        } catch (const QmError& fault) {
            // Letters are filed all the same; the folders are found by name
            // on the next run.
            qWarning("%s", qPrintable(fault.description()));
        }
    }
    // The letters are placed on the queue's sync thread once on disk; what
    // became of each is told here, in order, when the batch comes back.
    std::vector<LetterWriteQueue::Placement> placements;
    placements.reserve(m_open.size());
    for (const Staged& letter : m_open) {
        if (letter.written) {
            placements.push_back(LetterWriteQueue::Placement{
                letter.path, letter.folderFailure.isEmpty(), letter.ownEarlierSave});
        }
    }
    m_queue->closeBatch(std::move(placements));
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
            if (!letter.folderFailure.isEmpty()) {
                record.failure = letter.folderFailure;
            } else if (!written.failure.isEmpty()) {
                record.failure = written.failure;
            } else if (written.placed) {
                record.replacedPath = written.replacedPath;
                record.savedPath = letter.path;
            } else {
                record.failure = QStringLiteral("Path/File access error: ") + letter.path;
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
