#pragma once

#include "documents/DocumentModel.h"
#include "merge/MergeResultDocument.h"
#include "platform/FieldTable.h"

#include <QDate>
#include <QString>
#include <functional>
#include <optional>

class ClientTreeView;
class ProgressReporter;
class clsInsertFieldsInRTB;
class databaseControl;

// What a merge is asked to do: the template, whom it goes to and where the
// letters are filed.
struct MergeRequest {
    enum class Recipients {
        Listed,              // the rows of IDList
        All,                 // every client, contact, task or appointment
        TaskCriteria,        // the task search narrowed by `criteria`
        AppointmentCriteria, // the appointment search narrowed by `criteria`
        Filtered,            // every task or appointment passing `SQLFilter`
    };

    // Page setup and kind; InformationType chooses the walk.
    DocumentModel model;
    // "Merge Template - Year End Letter": the letters' file names.
    QString templateCaption;
    QString templateText;
    int templatePages = 1;
    Recipients recipients = Recipients::Listed;
    // Company and contact IDs (kinds 1 to 3), schedule or appointment IDs in
    // column 1 (kinds 4 and 5).
    FieldTable IDList{2};
    // Search fields by name: "taskName=GST;searchByTaskName=1".
    QString criteria;
    // A record-set filter over all tasks or appointments (a search's).
    QString SQLFilter;
    // Empty: the working folders' vault root.
    QString vaultRoot;
    // Invalid: the clock's own date. Dates the letters and their names.
    QDate today;
    std::optional<short> province;
};

// One merge from request to filed letters, shared by the merge command, the
// result window and the host's merge: the recipients are gathered, every
// record is merged, then every letter filed. The field inserter and the
// database are handed in and stand as the application's for the length of
// each call (the lookups read them there), as do the request's date and
// province; what stood before is put back afterwards.
class MergeRun {
public:
    enum class Outcome {
        Merged,         // records made (some may carry a failure)
        NothingToMerge, // no recipient; the user has been told why
        Refused,        // the request cannot be merged; problem() says why
    };

    explicit MergeRun(MergeRequest request);

    // Gathers the recipients and merges each, checking the progress for a
    // cancel between records. Faults of the database pass as QmError.
    Outcome merge(clsInsertFieldsInRTB& fields, databaseControl& db, ProgressReporter& progress);
    // Files the merged records into the vault, telling `onFiled` of each as
    // it is done. Returns the number of records not filed.
    int file(clsInsertFieldsInRTB& fields, databaseControl& db, ProgressReporter& progress,
             std::function<void(const MergedRecord&)> onFiled = {});
    // merge() then file() in one walk, each letter filed while the next
    // record merges, for a caller that does not look at the records in
    // between (the merge command). Outcome, records, files and what
    // `onFiled` hears are those of the two calls; the progress shows the
    // merge only. notFiled() tells what file() would have returned.
    Outcome mergeAndFile(clsInsertFieldsInRTB& fields, databaseControl& db,
                         ProgressReporter& progress,
                         std::function<void(const MergedRecord&)> onFiled = {});
    int notFiled() const { return m_notFiled; }

    QString problem() const { return m_problem; }
    const MergeResultDocument& result() const { return m_result; }
    // The records, for a window that lets the user edit them.
    MergeResultDocument& result() { return m_result; }
    bool stoppedByUser() const { return m_result.stoppedByUser; }

    // Every visible active client (kinds 1, 2), every contact linked to one
    // (kind 3), every schedule (4) or appointment (5), appended as rows.
    static void addAllRecipients(InformationKind type, databaseControl& db, FieldTable& ids);
    // The ticked nodes of a client tree as rows: company nodes as (company,
    // no contact) in mode 1; contact nodes as (host company, contact) in
    // modes 2 and 3. Other nodes add nothing.
    static void addTickedNodes(const ClientTreeView& tree, int mode, FieldTable& ids);

private:
    bool prepareRecipients(databaseControl& db);
    // The checks and recipients common to both merges; false when refused.
    bool prepare(clsInsertFieldsInRTB& fields, databaseControl& db);

    MergeRequest m_request;
    MergeResultDocument m_result;
    QString m_problem;
    int m_notFiled = 0;
};
