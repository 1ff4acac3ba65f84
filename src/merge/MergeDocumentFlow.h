#pragma once

#include "documents/DocumentModel.h"
#include "merge/MergeRun.h"
#include "platform/FieldTable.h"

#include <QString>
#include <functional>
#include <memory>
#include <optional>

class ProgressReporter;

// A template window as the merge reads it.
struct MergeTemplateSource {
    DocumentModel model;
    // The window's caption ("Merge Template - Year End Letter").
    QString caption;
    // The whole text as RTF.
    QString rtf;
    int pages = 1;
    // Recipients as the recipient dialog or the host left them.
    FieldTable IDList{2};
    // A record-set filter of tasks or appointments, from a search.
    QString SQLFilter;
};

// The steps of a merge started from the windows, each deciding and telling
// the user through app().msgbox; the windows only carry the answers out.
// All of them read app().database and app().fieldInserter.
namespace MergeDocumentFlow {

// Picks recipients for a template of this kind: fills `ids` or `sqlFilter`
// and returns true, or returns false when the user chose nothing.
using RecipientChooser =
    std::function<bool(InformationKind kind, FieldTable& ids, QString& sqlFilter)>;

// Whether the database and the merge fields are there; false after telling
// the user `message`.
bool requireDatabase(const QString& message);

// The template test: true when it has no fault. A fault's own message has
// been shown. Without a database, says the merge test cannot run.
bool testMergeDocument(const MergeTemplateSource& source);

// The Test Merge button: its test, then "no errors" when there are none.
void testMergeButton(const MergeTemplateSource& source);

// The merge button up to the merge itself: true when the merge should go
// ahead (no fault, or faults and the user answered Yes to merging anyway).
bool approveMerge(const MergeTemplateSource& source);

// The recipients for the merge of `source`, or nothing after telling the
// user why. Companies and contacts are chosen through `chooser` when there
// is one, and otherwise are the template's IDList; tasks and appointments
// take the template's IDList or filter first, then the chooser.
std::optional<MergeRequest> chooseRecipients(const MergeTemplateSource& source,
                                             const RecipientChooser& chooser);

// Merges every recipient under `progress` (Cancel stops between records and
// keeps what was merged). Null when there is nothing to show: a refusal
// has been told to the user. Faults of the database pass as QmError.
std::unique_ptr<MergeRun> createMergeDoc(MergeRequest request, ProgressReporter& progress);

// A caption of another document type: `current` without the prefix of any
// merge type, behind the prefix of `documentType` ("Merge Template - ").
QString captionOfType(const QString& current, int documentType);
// A document taking another kind of merge data becomes a template of that
// kind: documentType 2, InformationType `kind`, the caption that of a
// template. A merge result (type 3 or 4) keeps the kind of its run and is
// left as it is: false then.
bool changeTemplateInformation(DocumentModel& model, QString& caption, InformationKind kind);
// "Merge Results - " and the template's caption without its own prefix.
QString resultCaption(const QString& templateCaption);

} // namespace MergeDocumentFlow
