#include "ui/RecipientCommands.h"

#include "context/AppContext.h"
#include "merge/RecipientSelection.h"
#include "platform/MsgboxClass.h"
#include "ui/MergeWindowCommands.h"
#include "ui/frmDocument.h"
#include "ui/frmMain.h"
#include "ui/frmSearchAppointments.h"
#include "ui/frmSearchTasks.h"
#include "ui/frmSelectCompanies.h"

#include <QMdiSubWindow>

namespace {

frmDocument* activeDocument(const frmMain& main) {
    QMdiSubWindow* sub = main.activeDocumentWindow();
    return sub ? qobject_cast<frmDocument*>(sub->widget()) : nullptr;
}

// A blank template of the kind, for a window that has no template routine of
// its own registered: the document window's routines own the real one.
void createTemplateDocument(frmMain& main, InformationKind kind, const QString& caption) {
    const int number = ++app().unnamedDocumentCount;
    main.newDocument(number);
    frmDocument* document = activeDocument(main);
    if (!document) {
        return;
    }
    document->setDocumentType(2);
    document->setInformationType(kind);
    document->DocumentCaption = caption + QString::number(number);
    if (QMdiSubWindow* sub = main.activeDocumentWindow()) {
        sub->setWindowTitle(document->DocumentCaption);
    }
}

} // namespace

bool openTaskSearchForm(frmDocument& document) {
    if (!frmSearchTasks::showAdvancedSearch(document.taskSearch, &document)) {
        return false;
    }
    document.IDList.clear();
    document.SQLFilter = document.taskSearch.SQLFilter;
    return true;
}

bool openAppointmentSearchForm(frmDocument& document) {
    if (!frmSearchAppointments::showAdvancedSearch(document.appointmentSearch, &document)) {
        return false;
    }
    document.IDList.clear();
    document.SQLFilter = document.appointmentSearch.SQLFilter;
    return true;
}

bool selectRecipients(frmDocument& document) {
    const InformationKind kind = document.InformationType();
    if (kind == InformationKind::Tasks) {
        return openTaskSearchForm(document);
    }
    if (kind == InformationKind::Appointments) {
        return openAppointmentSearchForm(document);
    }
    const auto mode = RecipientSelection::modeForInformationType(kind);
    return mode && frmSelectCompanies::selectRecipients(document.IDList, *mode, &document);
}

bool chooseRecipientsForMerge(frmDocument& document) {
    const InformationKind kind = document.InformationType();
    if (!isMergeableKind(kind)) {
        return false;
    }
    if (RecipientSelection::hasChosenRecipients(kind, document.IDList, document.SQLFilter)) {
        return true;
    }
    if (selectRecipients(document)) {
        return true;
    }
    if (app().msgbox) {
        app().msgbox->showMessage(RecipientSelection::nothingChosenMessage(kind));
    }
    return false;
}

void installRecipientCommands(frmMain& main) {
    const struct {
        const char* command;
        InformationKind kind;
        const char* caption;
    } commands[] = {
        {"mnuFileNewCompany", InformationKind::Companies, "Merge Template - Companies "},
        {"mnuFileNewCompanyContact", InformationKind::CompaniesAndContacts,
         "Merge Template - Contacts "},
        {"mnuFileNewContact", InformationKind::Contacts, "Merge Template - Contacts "},
        {"mnuFileNewRemitt", InformationKind::Tasks, "Merge Template - Tasks "},
        {"mnuFileNewAppointment", InformationKind::Appointments, "Merge Template - Appointments "},
    };
    for (const auto& c : commands) {
        const QString command = QLatin1String(c.command);
        const std::function<void()> create = main.route(command);
        const InformationKind kind = c.kind;
        const QString caption = QLatin1String(c.caption);
        main.addRoute(command, [&main, create, kind, caption] {
            frmDocument* before = activeDocument(main);
            if (create) {
                create();
            } else {
                createTemplateDocument(main, kind, caption);
            }
            // Only a template that was just made gets its recipients: the
            // routine may have refused (no database) and made nothing.
            frmDocument* made = activeDocument(main);
            if (made && made != before && made->InformationType() == kind) {
                selectRecipients(*made);
            }
        });
    }
    // The merge button and the panel's recipient button open the same dialogs.
    if (auto* merge = main.findChild<MergeWindowCommands*>()) {
        merge->setRecipientDialog([](frmDocument& document) { return selectRecipients(document); });
    }
}
