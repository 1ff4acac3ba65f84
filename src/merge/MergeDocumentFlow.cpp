#include "merge/MergeDocumentFlow.h"

#include "context/AppContext.h"
#include "data/databaseControl.h"
#include "documents/DocumentFile.h"
#include "merge/clsInsertFieldsInRTB.h"
#include "platform/MsgboxClass.h"
#include "platform/errorClass.h"
#include "platform/text/stringControl.h"

namespace MergeDocumentFlow {

namespace {

void tell(const QString& text) {
    if (app().msgbox) {
        app().msgbox->showMessage(text);
    }
}

QString withoutDatabase(const char* feature) {
    return QStringLiteral("You cannot ") + QLatin1String(feature) +
           QStringLiteral(" at this time.  You need to open the Quillmere Pad from within "
                          "Quillmere to link to the client's data properly.");
}

QString nothingChosen(InformationKind kind) {
    const char* what = "companies";
    switch (kind) {
    case InformationKind::Tasks:
        what = "tasks";
        break;
    case InformationKind::Appointments:
        what = "appointments";
        break;
    case InformationKind::CompaniesAndContacts:
    case InformationKind::Contacts:
        what = "contacts";
        break;
    default:
        break;
    }
    return QStringLiteral("You must choose some ") + QLatin1String(what) +
           QStringLiteral(" to merge to create a merge document");
}

bool hasDatabase() {
    return app().database != nullptr && app().fieldInserter != nullptr;
}

} // namespace

bool requireDatabase(const QString& message) {
    if (hasDatabase()) {
        return true;
    }
    tell(message);
    return false;
}

bool testMergeDocument(const MergeTemplateSource& source) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-modDocument-testMergeDocument");
    if (!requireDatabase(withoutDatabase("use the merge test feature"))) {
        return false;
    }
    AppContext& ctx = app();
    const bool was = ctx.isCreatingDocument;
    ctx.isCreatingDocument = true;
    bool fault = false;
    try {
        // The names are checked against the fields of the template's kind.
        ctx.fieldInserter->createDefaultFieldListStructure(source.model.InformationType, true,
                                                           true);
        fault = ctx.fieldInserter->testRTBComment(source.rtf, true, true, false);
    } catch (...) {
        ctx.isCreatingDocument = was;
        throw;
    }
    ctx.isCreatingDocument = was;
    return !fault;
}

void testMergeButton(const MergeTemplateSource& source) {
    if (!requireDatabase(withoutDatabase("create or test merge documents"))) {
        return;
    }
    if (testMergeDocument(source)) {
        tell(QStringLiteral("There are no merge errors in this document."));
    }
}

bool approveMerge(const MergeTemplateSource& source) {
    if (!requireDatabase(withoutDatabase("create or test merge documents"))) {
        return false;
    }
    if (testMergeDocument(source)) {
        return true;
    }
    MsgboxClass* box = app().msgbox;
    return box &&
           box->askQuestion(QStringLiteral(
               "There are some merge syntax errors in this document.  Would you like to "
               "merge the client's information into the document anyway?")) == MsgboxClass::Yes;
}

std::optional<MergeRequest> chooseRecipients(const MergeTemplateSource& source,
                                             const RecipientChooser& chooser) {
    if (!requireDatabase(withoutDatabase("use the merge feature"))) {
        return std::nullopt;
    }
    const InformationKind kind = source.model.InformationType;
    if (!isMergeableKind(kind)) {
        return std::nullopt;
    }
    MergeRequest request;
    request.model = source.model;
    request.templateCaption = source.caption;
    request.templateText = source.rtf;
    request.templatePages = std::max(1, source.pages);
    FieldTable ids(2);
    source.IDList.copyEntireListToSecondList(ids);
    QString filter = source.SQLFilter;
    bool chosen = false;
    if (isSearchKind(kind)) {
        chosen = !ids.isEmpty() || !stringControl::isBlank(filter);
        if (!chosen && chooser) {
            chosen = chooser(kind, ids, filter);
        }
        chosen = chosen && (!ids.isEmpty() || !stringControl::isBlank(filter));
    } else {
        chosen = chooser ? chooser(kind, ids, filter) : true;
        chosen = chosen && !ids.isEmpty();
    }
    if (!chosen) {
        tell(nothingChosen(kind));
        return std::nullopt;
    }
    if (!ids.isEmpty()) {
        request.recipients = MergeRequest::Recipients::Listed;
        ids.copyEntireListToSecondList(request.IDList);
    } else {
        request.recipients = MergeRequest::Recipients::Filtered;
        request.SQLFilter = filter;
    }
    return request;
}

std::unique_ptr<MergeRun> createMergeDoc(MergeRequest request, ProgressReporter& progress) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-frmDocument-createMergeDoc");
    AppContext& ctx = app();
    if (!requireDatabase(withoutDatabase("use the merge feature"))) {
        return nullptr;
    }
    auto run = std::make_unique<MergeRun>(std::move(request));
    switch (run->merge(*ctx.fieldInserter, *ctx.database, progress)) {
    case MergeRun::Outcome::Refused:
        tell(run->problem());
        return nullptr;
    case MergeRun::Outcome::NothingToMerge:
        return nullptr;
    case MergeRun::Outcome::Merged:
        break;
    }
    if (run->result().records.empty()) {
        return nullptr;
    }
    return run;
}

QString resultCaption(const QString& templateCaption) {
    return captionOfType(templateCaption, DocumentModel::MergeResults);
}

QString captionOfType(const QString& current, int documentType) {
    QString base = current;
    for (const char* prefix :
         {"Merge Template - ", "Merge Template -", "Merge Template ", "Merge Template",
          "Merge Results - ", "Merge Results -", "Merge Results ", "Merge Results",
          "Client Merge Doc - ", "Client Merge Doc -", "Client Merge Doc ", "Client Merge Doc"}) {
        base.remove(QLatin1String(prefix));
    }
    return DocumentFile::caption(documentType, base);
}

bool changeTemplateInformation(DocumentModel& model, QString& caption, InformationKind kind) {
    if (model.documentType == DocumentModel::MergeResults ||
        model.documentType == DocumentModel::SavedMergeResult) {
        return false;
    }
    model.documentType = DocumentModel::Template;
    model.InformationType = kind;
    caption = captionOfType(caption, DocumentModel::Template);
    return true;
}

} // namespace MergeDocumentFlow
