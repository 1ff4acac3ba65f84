#pragma once

#include "documents/DocumentModel.h"
#include "platform/FieldTable.h"
#include "search/clsSearchAppointments.h"
#include "search/clsSearchTasks.h"

#include <QString>
#include <QStringList>
#include <functional>
#include <optional>
#include <vector>

class MergeFiling;
class ProgressReporter;

// One recipient of a merge: the name of column 0, the complete RTF of
// column 1, the placeholders that got an empty value, and where the record
// was saved.
struct MergedRecord {
    QString name;
    QString rtf;
    QStringList emptyPlaceholders;
    // Client values that may break the letter (RTF control characters or
    // guillemets), as "Field Name: value", for the practice to correct.
    QStringList suspectValues;
    // Fields whose column the practice's database has in none of the tables
    // they are read from, as "Field (column Name)"; they merged as nothing.
    QStringList missingColumns;
    QString savedPath;
    // Where an earlier letter of the same name was moved before this one
    // took its place; empty when nothing was replaced.
    QString replacedPath;
    // Why the record could not be merged or filed; empty when it was.
    QString failure;
    // The failure happened in the merge, so there is no letter to file.
    bool mergeFailed = false;
    int companyID = -1;
    int contactID = -1;
    int scheduleID = -1;
    int appointmentID = -1;
};

// The merge result of a template without its window: the record walk of
// createMergeDocument and the save walk of saveMergeDocument. The field
// inserter is app().fieldInserter and the database app().database; both
// must exist.
class MergeResultDocument {
public:
    MergeResultDocument() = default;
    // Closes the filter record sets.
    ~MergeResultDocument();
    MergeResultDocument(const MergeResultDocument&) = delete;
    MergeResultDocument& operator=(const MergeResultDocument&) = delete;

    // The template's page setup and kind; InformationType chooses the walk.
    DocumentModel model;
    // Caption of the template ("Merge Template - Year End Letter"), used
    // for the file names.
    QString templateCaption;
    // The template's whole text as RTF (what mergeRTBText collects).
    QString templateText;
    int templatePages = 1;
    // Recipients: company and contact IDs for kinds 1 to 3, schedule or
    // appointment IDs in column 1 for kinds 4 and 5.
    FieldTable IDList{2};

    // A task or appointment merge without IDList rows walks the SELECT of
    // its search object, narrowed by this record-set filter (what a host or
    // the search dialog hands in; blank keeps every row of the SELECT).
    QString SQLFilter;
    clsSearchTasks taskSearch;
    clsSearchAppointments appointmentSearch;

    std::vector<MergedRecord> records;
    int totalPagesMergeDocs = 0;
    // Set when a walk stopped because the progress was cancelled; the
    // records made or filed before that stay as they are.
    bool stoppedByUser = false;

    // Told of every record as soon as the save walk is done with it (filed
    // or failed), so a listing survives a run that is killed later.
    std::function<void(const MergedRecord&)> onFiled;

    // The subfolder of a client's folder that keeps a letter replaced by a
    // later one of the same name.
    static QString replacedFolderName() { return QStringLiteral("Replaced"); }

    // Fills `records`, one per IDList row (sorted for kinds 1 to 3) or, for
    // kinds 4 and 5 without rows, one per row of the filter record set, and
    // tells the progress each step. Kinds other than 1 to 5 make nothing.
    // A record whose merge fails keeps the reason in `failure` and the walk
    // goes on; a cancelled progress ends the walk between records.
    // False only when the filter record set cannot be had (the user has been
    // told through app().msgbox). Faults (a database that went away, a
    // filter that does not parse) pass as QmError to the caller.
    bool createMergeDocument(ProgressReporter& progress);

    // Writes every record into its client's vault folder below `vaultRoot`
    // (empty: the working folders' vault root) as a saved merge result with
    // its trailer, reusing the paths of an earlier save while their files
    // exist. Each file is written whole to a ".qm-*.part" temporary and
    // renamed into place; such temporaries left in a folder by a killed run
    // are removed when the walk first writes there. A letter of the same name
    // already in the folder is moved into its "Replaced" subfolder first. A
    // record that cannot be filed (a folder outside the vault, a folder or
    // file that cannot be written) keeps the reason in `failure` and the walk
    // goes on. New folders are made and the temporaries written and synced
    // by other threads while the walk goes on (see MergeFiling); renames,
    // moves into "Replaced" and onFiled stay on the calling thread, in
    // record order.
    // Returns the number of records not filed, those that failed to merge
    // included.
    int saveMergeDocument(ProgressReporter& progress, const QString& vaultRoot = QString());

    // createMergeDocument and saveMergeDocument in one walk, for a caller
    // that does not look at the records in between: each record is filed as
    // soon as it is merged, its letter written to disk by other threads
    // while the next record merges. The records, the files and what onFiled
    // hears, in its order, are those of the two walks one after the other;
    // the progress shows the merge walk only, and its cancel ends both. A
    // fault outside one record files what was merged before it, then
    // passes on. Nothing when createMergeDocument would return false; else
    // the number of records not filed.
    std::optional<int> mergeAndSaveDocument(ProgressReporter& progress,
                                            const QString& vaultRoot = QString());

    // Opens the SELECT of the search object of this kind (4 tasks, 5
    // appointments) and the set of its rows that pass SQLFilter, closing
    // earlier ones. True when the filtered set is open; false without a
    // connection or for another kind. A SELECT or filter that fails throws
    // QmError, with nothing left open.
    bool connectToRemittRST();
    // Whether the filtered set is open and has rows, connecting first when
    // it is not open. An empty set tells the user there are no items; when
    // the answer is false for another reason and showMessages is set, the
    // user is told the items could not be opened.
    bool isRemittRSTConnected(bool showMessages);
    // Rows of the filtered set, -1 when it is not open.
    int remittRecordCount() const;

private:
    // The record walk; with `filing`, each record is handed to it as soon
    // as it is made.
    bool mergeRecords(ProgressReporter& progress, MergeFiling* filing);
    void closeRemittRST();
    bool mergesFromFilter() const;

    int m_remittRST = -1;
    int m_remittFilteredRST = -1;
};
