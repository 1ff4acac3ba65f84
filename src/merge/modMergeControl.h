#pragma once

#include "documents/DocumentModel.h"
#include "platform/FieldTable.h"

#include <QString>
#include <QStringList>
#include <vector>

class ProgressReporter;

// One recipient of a merge: the name of column 0, the complete RTF of
// column 1, the placeholders that got an empty value, and where the record
// was saved.
struct MergedRecord {
    QString name;
    QString rtf;
    QStringList emptyPlaceholders;
    QString savedPath;
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

    std::vector<MergedRecord> records;
    int totalPagesMergeDocs = 0;

    // Fills `records`, one per IDList row (sorted for kinds 1 to 3), and
    // tells the progress each step. Kinds other than 1 to 5 make nothing.
    // Faults (a database that went away) pass as QmError to the caller.
    void createMergeDocument(ProgressReporter& progress);

    // Writes every record into its client's vault folder below `vaultRoot`
    // (empty: the working folders' vault root) as a saved merge result with
    // its trailer, reusing the paths of an earlier save while their files
    // exist. Each file is written whole and renamed into place.
    void saveMergeDocument(ProgressReporter& progress, const QString& vaultRoot = QString());
};
