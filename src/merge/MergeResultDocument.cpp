#include "merge/MergeResultDocument.h"

#include "context/AppContext.h"
#include "data/databaseControl.h"
#include "documents/modDocument.h"
#include "merge/LetterWriter.h"
#include "merge/MergeLookups.h"
#include "merge/NormalisedLetter.h"
#include "merge/clsInsertFieldsInRTB.h"
#include "merge/modDocVaultFolders.h"
#include "platform/MsgboxClass.h"
#include "platform/ProgressReporter.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"
#include "platform/richtext/RichTextBox.h"
#include "platform/text/stringControl.h"

#include <QElapsedTimer>
#include <QFile>
#include <QUuid>
#include <optional>

namespace {

int idFrom(const QString& text) {
    bool ok = false;
    const int id = text.trimmed().toInt(&ok);
    return ok ? id : -1;
}

clsInsertFieldsInRTB& inserter() {
    if (!app().fieldInserter) {
        throw QmError(QmError::Internal, QStringLiteral("The merge fields are not available."));
    }
    return *app().fieldInserter;
}

// The bytes of one saved letter: the text as the box writes it back (the
// round trip normalises the merged RTF), then the trailer, built in memory
// so that the letter is written once.
QByteArray letterBytes(RichTextBox& scratch, const QString& rtf, const DocumentModel& saved,
                       const QString& scratchFolder, const NormalisedLetter* normalised) {
    if (saved.fileSaveType == RichTextBox::rtfRTF && normalised) {
        if (const std::optional<QString> text = normalised->normalisedText(rtf)) {
            return documentFileBytes(text->toLatin1(), saved);
        }
    }
    scratch.setTextRTF(rtf);
    if (saved.fileSaveType == RichTextBox::rtfRTF) {
        return documentFileBytes(scratch.TextRTF().toLatin1(), saved);
    }
    // Plain text takes the box's own encoding, which only its file save
    // gives; a rare kind, so the extra file is accepted.
    const QString temporary = scratchFolder + QStringLiteral("/.qm-") +
                              QUuid::createUuid().toString(QUuid::Id128) + QStringLiteral(".part");
    try {
        scratch.SaveFile(temporary, saved.fileSaveType);
        const auto content = fileControl::readWholeFile(temporary);
        QFile::remove(temporary);
        if (!content) {
            throw QmError(QmError::PathFileAccessError,
                          QStringLiteral("Path/File access error: ") + temporary);
        }
        return documentFileBytes(*content, saved);
    } catch (...) {
        QFile::remove(temporary);
        throw;
    }
}

} // namespace

bool MergeResultDocument::createMergeDocument(ProgressReporter& progress) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-frmDocument-createMergeDocument");
    clsInsertFieldsInRTB& fields = inserter();
    const InformationKind type = model.InformationType;
    records.clear();
    totalPagesMergeDocs = 0;
    stoppedByUser = false;
    const bool fromFilter = mergesFromFilter();
    if (fromFilter && !isRemittRSTConnected(true)) {
        return false;
    }
    const int count = fromFilter ? remittRecordCount() : IDList.rowCount();
    databaseControl* db = app().database;
    auto column = [&](const char* name) {
        return db->getField(m_remittFilteredRST, QString::fromLatin1(name)).toString();
    };
    if (fromFilter) {
        db->moveFirst(m_remittFilteredRST);
    }
    progress.begin(QStringLiteral("Merging information"), count);
    if (!isMergeableKind(type)) {
        progress.end();
        return true;
    }
    if (isClientKind(type) && !IDList.isEmpty()) {
        IDList.sortOnFirstTwoColumns();
    }
    records.reserve(size_t(count));
    // A first merge repairs clients as it reads them (default contacts);
    // those writes commit together every few hundred records rather than
    // one durable commit each, and never hold the host's file for long.
    // The reads between two commits share one snapshot, so each lookup does
    // not take and drop the file's lock again.
    std::optional<WriteBatch> repairs;
    if (db && db->isConnected()) {
        repairs.emplace(*db, WriteBatch::Reads::Held);
    }
    // One firm for the whole run: it cannot change under the snapshot.
    std::optional<int> firmID;
    constexpr int kRecordsPerCommit = 256;
    constexpr qint64 kMostMillisecondsPerCommit = 200;
    QElapsedTimer sinceCommit;
    sinceCommit.start();
    for (int row = 1; row <= count; ++row) {
        if (repairs &&
            (row % kRecordsPerCommit == 0 || sinceCommit.hasExpired(kMostMillisecondsPerCommit))) {
            repairs->commit();
            sinceCommit.restart();
        }
        if (progress.cancelled()) {
            stoppedByUser = true;
            break;
        }
        MergedRecord record;
        int company = -1;
        int contact = -1;
        QString name;
        try {
            if (isClientKind(type)) {
                company = idFrom(IDList.value(row, 1));
                if (MergeLookups::validCompanyID(company)) {
                    name = MergeLookups::getCompanyNameFromCompanyID(company);
                } else {
                    company = -1;
                }
                if (type == InformationKind::Companies && stringControl::isBlank(name)) {
                    name = QStringLiteral("Information");
                }
                contact = idFrom(IDList.value(row, 2));
                if (!MergeLookups::validContactID(contact)) {
                    contact = MergeLookups::getDefaultContactIDFromCompanyID(company);
                }
                if (type == InformationKind::Companies) {
                    if (stringControl::isBlank(name)) {
                        name = MergeLookups::getDisplayNameFromContactID(contact);
                    }
                } else {
                    name = MergeLookups::getDisplayNameFromContactID(contact);
                    if (stringControl::isBlank(name)) {
                        name = QStringLiteral("Information");
                    }
                }
                progress.step(QStringLiteral("Merging ") + name);
                fields.initializeDataRecordsets(2, false, -1, true, true, true, true, true, company,
                                                contact);
            } else if (type == InformationKind::Tasks) {
                if (fromFilter) {
                    record.scheduleID = idFrom(column("ScheduleID"));
                    progress.step(QStringLiteral("Merging ") + column("scheduleName"));
                    company =
                        MergeLookups::getCompanyIDFromClientDataID(idFrom(column("ClientNum")));
                } else {
                    record.scheduleID = idFrom(IDList.value(row, 1));
                    progress.step(QStringLiteral("Merging ") +
                                  MergeLookups::getScheduleNameFromScheduleID(record.scheduleID));
                    company = MergeLookups::getCompanyIDFromScheduleID(record.scheduleID);
                }
                contact = MergeLookups::getDefaultContactIDFromCompanyID(company);
                name = MergeLookups::getCompanyNameFromCompanyID(company);
                fields.initializeDataRecordsets(4, false, record.scheduleID, true, true, true, true,
                                                true, company, contact);
            } else {
                if (fromFilter) {
                    record.appointmentID = idFrom(column("AppointmentID"));
                    progress.step(QStringLiteral("Merging appointment: ") + column("Subject"));
                } else {
                    record.appointmentID = idFrom(IDList.value(row, 1));
                    progress.step(
                        QStringLiteral("Merging ") +
                        MergeLookups::getAppointmentSubjectFromAppointmentID(record.appointmentID));
                }
                company = MergeLookups::getCompanyIDFromAppointmentID(record.appointmentID);
                contact = MergeLookups::getDefaultContactIDFromCompanyID(company);
                name = MergeLookups::getCompanyNameFromCompanyID(company);
                fields.initializeDataRecordsets(5, false, record.appointmentID, true, true, true,
                                                true, true, company, contact);
            }
            if (!firmID) {
                firmID = MergeLookups::getAccountantFirmID();
            }
            record.rtf =
                fields.parseRTBComment(templateText, company, contact, record.scheduleID, *firmID,
                                       record.appointmentID, -1, -1, false, true, true);
            record.emptyPlaceholders = fields.emptyPlaceholders();
            record.suspectValues = fields.suspectValues();
            record.missingColumns = fields.missingColumns();
        } catch (const QmError& fault) {
            // One client's bad data must not cost the other letters.
            record.failure = fault.description();
            record.mergeFailed = true;
            record.rtf.clear();
            if (stringControl::isBlank(name)) {
                name = QStringLiteral("Record ") + QString::number(row);
            }
        }
        record.name = name;
        record.companyID = company;
        record.contactID = contact;
        records.push_back(std::move(record));
        totalPagesMergeDocs += templatePages;
        if (fromFilter) {
            db->moveNext(m_remittFilteredRST);
        }
        doEventsIfInputPending();
    }
    progress.end();
    return true;
}

QString MergeResultDocument::letterFolder(const MergedRecord& record, const QString& vaultRoot,
                                          DocVaultIndex* index) const {
    QString folder;
    if (model.InformationType == InformationKind::Appointments) {
        const int client = MergeLookups::getClientDataIDFromCompanyID(
            MergeLookups::getCompanyIDFromAppointmentID(record.appointmentID));
        folder = MergeLookups::validClientID(client)
                     ? getBusinessClientDocFolder(client, vaultRoot, index)
                     : getMiscAppointmentsFolder(vaultRoot);
    } else {
        const int client = MergeLookups::getClientDataIDFromCompanyID(record.companyID);
        folder = MergeLookups::validClientID(client)
                     ? getBusinessClientDocFolder(client, vaultRoot, index)
                     : getPersonalClientDocFolder(record.contactID, vaultRoot, index);
    }
    if (folder.isEmpty()) {
        folder = vaultRoot.isEmpty() ? QString() : fileControl::AddBackslash(vaultRoot);
    }
    return folder;
}

namespace {

// Letters are forced to disk together: one sync for a batch costs what one
// letter's sync costs, and no letter takes its place before it is on disk.
constexpr size_t kLettersPerSync = 256;

struct StagedLetter {
    MergedRecord* record = nullptr;
    QString temporary; // empty when the record failed before it was written
    QString path;
    bool ownEarlierSave = false;
};

} // namespace

int MergeResultDocument::saveMergeDocument(ProgressReporter& progress, const QString& vaultRoot) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-frmDocument-saveMergeDocument");
    progress.begin(QStringLiteral("Saving documents"), int(records.size()));
    stoppedByUser = false;
    RichTextBox scratch;
    DocumentModel saved = model;
    saved.documentType = DocumentModel::SavedMergeResult;
    const InformationKind type = model.InformationType;
    LetterWriter writer;
    int failures = 0;
    std::vector<StagedLetter> staged;
    // Read when the first letter needs a folder, then kept for the walk.
    std::optional<DocVaultIndex> index;
    const std::optional<NormalisedLetter> normalised =
        NormalisedLetter::fromTemplate(scratch, templateText);

    // The vault rows of new folders are written in batches that commit with
    // the letters they file: one durable commit per batch, not per client.
    std::optional<WriteBatch> folderRows;
    if (app().database && app().database->isConnected()) {
        folderRows.emplace(*app().database, WriteBatch::Reads::Held);
    }
    // Letters are filed (and the snapshot let go) at least this often, so
    // that a host writing to the practice's file never waits long.
    constexpr qint64 kMostMillisecondsPerSync = 200;
    QElapsedTimer sinceSync;
    sinceSync.start();

    auto fileStaged = [&] {
        QString syncFailure;
        if (folderRows) {
            try {
                folderRows->commit();
            } catch (const QmError& fault) {
                // Letters are filed all the same; the folders are found by
                // name on the next run.
                qWarning("%s", qPrintable(fault.description()));
            }
        }
        for (const StagedLetter& letter : staged) {
            if (!letter.temporary.isEmpty()) {
                try {
                    writer.syncFileSystem(fileControl::FolderName(letter.path));
                } catch (const QmError& fault) {
                    syncFailure = fault.description();
                }
                break;
            }
        }
        for (StagedLetter& letter : staged) {
            MergedRecord& record = *letter.record;
            if (!letter.temporary.isEmpty()) {
                try {
                    if (!syncFailure.isEmpty()) {
                        QFile::remove(letter.temporary);
                        throw QmError(QmError::PathFileAccessError, syncFailure);
                    }
                    // A letter of this name from an earlier record or run is
                    // another letter: it is kept in the history folder.
                    if (!letter.ownEarlierSave && fileControl::FileExists(letter.path)) {
                        record.replacedPath = writer.moveAside(letter.path, replacedFolderName());
                    }
                    writer.place(letter.temporary, letter.path);
                    record.savedPath = letter.path;
                } catch (const QmError& fault) {
                    QFile::remove(letter.temporary);
                    record.failure = fault.description();
                }
            }
            if (!record.failure.isEmpty()) {
                ++failures;
            }
            if (onFiled) {
                onFiled(record);
            }
        }
        staged.clear();
    };

    const bool appointmentsFromFilter = type == InformationKind::Appointments && mergesFromFilter();
    try {
        for (MergedRecord& record : records) {
            if (progress.cancelled()) {
                stoppedByUser = true;
                break;
            }
            progress.step(
                appointmentsFromFilter
                    ? QStringLiteral("Saving document for appointment: ") +
                          MergeLookups::getAppointmentSubjectFromAppointmentID(record.appointmentID)
                    : QStringLiteral("Saving document for ") + record.name);
            StagedLetter letter;
            letter.record = &record;
            if (!record.mergeFailed) {
                record.replacedPath.clear();
                record.failure.clear();
                try {
                    letter.path = record.savedPath;
                    letter.ownEarlierSave = !stringControl::isBlank(letter.path) &&
                                            fileControl::FileExists(letter.path);
                    if (!letter.ownEarlierSave) {
                        if (!index && app().database && app().database->isConnected()) {
                            index.emplace(*app().database);
                        }
                        letter.path = letterFolder(record, vaultRoot, index ? &*index : nullptr) +
                                      parseMergeFileName(templateCaption, model.fileSaveType,
                                                         DocumentModel::MergeResults, type);
                    }
                    if (!vaultRoot.isEmpty()) {
                        requireInsideVault(letter.path, vaultRoot);
                    }
                    const QByteArray bytes = letterBytes(scratch, record.rtf, saved,
                                                         fileControl::FolderName(letter.path),
                                                         normalised ? &*normalised : nullptr);
                    letter.temporary = writer.writeTemporary(letter.path, bytes);
                } catch (const QmError& fault) {
                    record.failure = fault.description();
                }
            }
            staged.push_back(std::move(letter));
            if (staged.size() >= kLettersPerSync ||
                sinceSync.hasExpired(kMostMillisecondsPerSync)) {
                fileStaged();
                sinceSync.restart();
            }
            doEventsIfInputPending();
        }
    } catch (...) {
        // A fault outside one record (the database went away) still files
        // what was written before it.
        fileStaged();
        throw;
    }
    fileStaged();
    progress.end();
    return failures;
}

MergeResultDocument::~MergeResultDocument() {
    closeRemittRST();
}

bool MergeResultDocument::mergesFromFilter() const {
    return isSearchKind(model.InformationType) && IDList.isEmpty();
}

void MergeResultDocument::closeRemittRST() {
    databaseControl* db = app().database;
    if (db && db->isConnected()) {
        db->closeRecordset(m_remittFilteredRST);
        db->closeRecordset(m_remittRST);
    }
    m_remittFilteredRST = -1;
    m_remittRST = -1;
}

bool MergeResultDocument::connectToRemittRST() {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-frmDocument-connectToRemittRST");
    databaseControl* db = app().database;
    if (!db || !db->isConnected()) {
        return false;
    }
    closeRemittRST();
    QString sql;
    if (model.InformationType == InformationKind::Tasks) {
        sql = taskSearch.generateSQLStr();
    } else if (model.InformationType == InformationKind::Appointments) {
        sql = appointmentSearch.generateSQLStr();
    } else {
        return false;
    }
    m_remittRST =
        db->openRecordset(sql, databaseControl::KeysetCursor, databaseControl::ReadOnlyLock);
    try {
        m_remittFilteredRST = db->filterRecordset(m_remittRST, SQLFilter);
    } catch (...) {
        closeRemittRST();
        throw;
    }
    return m_remittFilteredRST >= 0;
}

int MergeResultDocument::remittRecordCount() const {
    databaseControl* db = app().database;
    if (m_remittFilteredRST < 0 || !db || !db->isConnected()) {
        return -1;
    }
    return db->recordCount(m_remittFilteredRST);
}

bool MergeResultDocument::isRemittRSTConnected(bool showMessages) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-frmDocument-isRemittRSTConnected");
    auto tell = [](const QString& text) {
        if (app().msgbox) {
            app().msgbox->showMessage(text);
        }
    };
    bool answer = false;
    databaseControl* db = app().database;
    if (db && db->isConnected()) {
        // A set left from an earlier walk is reused; otherwise one is made.
        if (m_remittFilteredRST >= 0 || connectToRemittRST()) {
            if (db->recordCount(m_remittFilteredRST) == 0) {
                tell(QStringLiteral("There are no items that match the search criteria you have "
                                    "indicated.  Please try again."));
                showMessages = false;
            } else {
                answer = true;
            }
        }
    }
    if (!answer && showMessages) {
        tell(QStringLiteral("Quillmere Pad was unable to open the required items for merge.  "
                            "Please try again."));
    }
    return answer;
}
