#include "merge/modMergeControl.h"

#include "app/AppContext.h"
#include "documents/modDocument.h"
#include "merge/MergeLookups.h"
#include "merge/clsInsertFieldsInRTB.h"
#include "merge/modDocVaultFolders.h"
#include "platform/ProgressReporter.h"
#include "platform/RichTextBox.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"
#include "platform/stringControl.h"

#include <QFile>
#include <QUuid>
#include <filesystem>

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

void MergeResultDocument::createMergeDocument(ProgressReporter& progress) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-frmDocument-createMergeDocument");
    clsInsertFieldsInRTB& fields = inserter();
    const int type = model.InformationType;
    records.clear();
    totalPagesMergeDocs = 0;
    progress.begin(QStringLiteral("Merging information"), IDList.rowCount());
    if (type < 1 || type > 5) {
        progress.end();
        return;
    }
    if (type <= 3 && !IDList.isEmpty()) {
        IDList.sortOnFirstTwoColumns();
    }
    records.reserve(size_t(IDList.rowCount()));
    for (int row = 1; row <= IDList.rowCount(); ++row) {
        MergedRecord record;
        int company = -1;
        int contact = -1;
        QString name;
        if (type <= 3) {
            company = idFrom(IDList.value(row, 1));
            if (MergeLookups::validCompanyID(company)) {
                name = MergeLookups::getCompanyNameFromCompanyID(company);
            } else {
                company = -1;
            }
            if (type == 1 && stringControl::isBlank(name)) {
                name = QStringLiteral("Information");
            }
            contact = idFrom(IDList.value(row, 2));
            if (!MergeLookups::validContactID(contact)) {
                contact = MergeLookups::getDefaultContactIDFromCompanyID(company);
            }
            if (type == 1) {
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
        } else if (type == 4) {
            record.scheduleID = idFrom(IDList.value(row, 1));
            progress.step(QStringLiteral("Merging ") +
                          MergeLookups::getScheduleNameFromScheduleID(record.scheduleID));
            company = MergeLookups::getCompanyIDFromScheduleID(record.scheduleID);
            contact = MergeLookups::getDefaultContactIDFromCompanyID(company);
            name = MergeLookups::getCompanyNameFromCompanyID(company);
            fields.initializeDataRecordsets(4, false, record.scheduleID, true, true, true, true,
                                            true, company, contact);
        } else {
            record.appointmentID = idFrom(IDList.value(row, 1));
            progress.step(
                QStringLiteral("Merging ") +
                MergeLookups::getAppointmentSubjectFromAppointmentID(record.appointmentID));
            company = MergeLookups::getCompanyIDFromAppointmentID(record.appointmentID);
            contact = MergeLookups::getDefaultContactIDFromCompanyID(company);
            name = MergeLookups::getCompanyNameFromCompanyID(company);
            fields.initializeDataRecordsets(5, false, record.appointmentID, true, true, true, true,
                                            true, company, contact);
        }
        const int firmID = MergeLookups::getAccountantFirmID();
        record.rtf =
            fields.parseRTBComment(templateText, company, contact, record.scheduleID, firmID,
                                   record.appointmentID, -1, -1, false, true, true);
        record.emptyPlaceholders = fields.emptyPlaceholders();
        record.name = name;
        record.companyID = company;
        record.contactID = contact;
        records.push_back(std::move(record));
        totalPagesMergeDocs += templatePages;
        doEventsIfInputPending();
    }
    progress.end();
}

void MergeResultDocument::saveMergeDocument(ProgressReporter& progress, const QString& vaultRoot) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-frmDocument-saveMergeDocument");
    progress.begin(QStringLiteral("Saving documents"), int(records.size()));
    RichTextBox scratch;
    DocumentModel saved = model;
    saved.documentType = DocumentModel::SavedMergeResult;
    const int type = model.InformationType;

    for (MergedRecord& record : records) {
        progress.step(QStringLiteral("Saving document for ") + record.name);
        scratch.setTextRTF(record.rtf);
        doEventsIfInputPending();

        QString path = record.savedPath;
        if (stringControl::isBlank(path) || !fileControl::FileExists(path)) {
            QString folder;
            if (type == 5) {
                const int client = MergeLookups::getClientDataIDFromCompanyID(
                    MergeLookups::getCompanyIDFromAppointmentID(record.appointmentID));
                folder = MergeLookups::validClientID(client)
                             ? getBusinessClientDocFolder(client, vaultRoot)
                             : getMiscAppointmentsFolder(vaultRoot);
            } else {
                const int client = MergeLookups::getClientDataIDFromCompanyID(record.companyID);
                folder = MergeLookups::validClientID(client)
                             ? getBusinessClientDocFolder(client, vaultRoot)
                             : getPersonalClientDocFolder(record.contactID, vaultRoot);
            }
            if (folder.isEmpty()) {
                folder = vaultRoot.isEmpty() ? QString() : fileControl::AddBackslash(vaultRoot);
            }
            path = folder + parseMergeFileName(templateCaption, model.fileSaveType,
                                               DocumentModel::MergeResults, type);
        }
        record.savedPath = path;

        // The text and its trailer go to a temporary file beside the target,
        // which then replaces it in one step.
        const QString temporary = fileControl::FolderName(path) + QStringLiteral("/.") +
                                  QUuid::createUuid().toString(QUuid::Id128) +
                                  QStringLiteral(".part");
        try {
            scratch.SaveFile(temporary, model.fileSaveType);
            saveCompanionInformation(temporary, saved);
            std::error_code error;
            std::filesystem::rename(temporary.toStdString(), path.toStdString(), error);
            if (error) {
                throw QmError(QmError::PathFileAccessError,
                              QStringLiteral("Path/File access error: ") + path);
            }
        } catch (...) {
            QFile::remove(temporary);
            throw;
        }
    }
    progress.end();
}
