#include "merge/MergeResultDocument.h"

#include "context/AppContext.h"
#include "data/databaseControl.h"
#include "merge/MergeFiling.h"
#include "merge/MergeLookups.h"
#include "merge/clsInsertFieldsInRTB.h"
#include "platform/MsgboxClass.h"
#include "platform/ProgressReporter.h"
#include "platform/errorClass.h"
#include "platform/text/stringControl.h"

#include <QElapsedTimer>
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

} // namespace

bool MergeResultDocument::createMergeDocument(ProgressReporter& progress) {
    return mergeRecords(progress, nullptr);
}

bool MergeResultDocument::mergeRecords(ProgressReporter& progress, MergeFiling* filing) {
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
    // The rows of many recipients come in one read (on a server, one round
    // trip).
    std::optional<ExpectedKeys> expected;
    if (repairs && !fromFilter && count > 1) {
        std::vector<qint64> keys;
        keys.reserve(size_t(count));
        for (int row = 1; row <= count; ++row) {
            keys.push_back(idFrom(IDList.value(row, 1)));
        }
        const QString keyColumn = isClientKind(type) ? QStringLiteral("CompanyID")
                                  : type == InformationKind::Tasks
                                      ? QStringLiteral("ScheduleID")
                                      : QStringLiteral("AppointmentID");
        expected.emplace(*db, keyColumn, std::move(keys));
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
        if (filing) {
            filing->file(records.size() - 1);
        }
        if (fromFilter) {
            db->moveNext(m_remittFilteredRST);
        }
        doEventsIfInputPending();
    }
    progress.end();
    return true;
}

int MergeResultDocument::saveMergeDocument(ProgressReporter& progress, const QString& vaultRoot) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-frmDocument-saveMergeDocument");
    progress.begin(QStringLiteral("Saving documents"), int(records.size()));
    stoppedByUser = false;
    MergeFiling filing(*this, vaultRoot);
    const bool appointmentsFromFilter =
        model.InformationType == InformationKind::Appointments && mergesFromFilter();
    try {
        for (size_t index = 0; index < records.size(); ++index) {
            if (progress.cancelled()) {
                stoppedByUser = true;
                break;
            }
            const MergedRecord& record = records[index];
            progress.step(
                appointmentsFromFilter
                    ? QStringLiteral("Saving document for appointment: ") +
                          MergeLookups::getAppointmentSubjectFromAppointmentID(record.appointmentID)
                    : QStringLiteral("Saving document for ") + record.name);
            filing.file(index);
            doEventsIfInputPending();
        }
    } catch (...) {
        // A fault outside one record (the database went away) still files
        // what was written before it.
        filing.finish();
        throw;
    }
    filing.finish();
    progress.end();
    return filing.failures();
}

std::optional<int> MergeResultDocument::mergeAndSaveDocument(ProgressReporter& progress,
                                                             const QString& vaultRoot) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-frmDocument-saveMergeDocument");
    MergeFiling filing(*this, vaultRoot);
    bool merged = false;
    try {
        merged = mergeRecords(progress, &filing);
    } catch (...) {
        filing.finish();
        throw;
    }
    filing.finish();
    if (!merged) {
        return std::nullopt;
    }
    return filing.failures();
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
