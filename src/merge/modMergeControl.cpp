#include "merge/modMergeControl.h"

#include "context/AppContext.h"
#include "merge/MergeSubstitution.h"
#include "merge/clsInsertFieldsInRTB.h"
#include "platform/errorClass.h"
#include "platform/text/VBFormat.h"

#include <QStandardItem>
#include <QStandardItemModel>

namespace {

QString templateHelp(const char* kind) {
    return QStringLiteral(" ") + QLatin1String(kind) +
           QStringLiteral(" Template Document - You setup the template document by inserting "
                          "placeholder fields.  Click the 'Insert Fields' button to insert "
                          "fields.  To execute the merge, click the 'Create Merge Doc' button.");
}

const QList<int> kAllCategories = {0, 1, 2, 3, 4, 5, 6};

void fill(QStandardItemModel& model, const QStringList& texts) {
    model.clear();
    for (int i = 0; i < texts.size(); ++i) {
        auto* item = new QStandardItem(texts.at(i));
        item->setData(i + 1, Qt::UserRole);
        model.appendRow(item);
    }
}

} // namespace

modMergeControl::modMergeControl()
    : m_kinds(std::make_unique<QStandardItemModel>()),
      m_fields(std::make_unique<QStandardItemModel>()),
      m_firm(std::make_unique<QStandardItemModel>()),
      m_dates(std::make_unique<QStandardItemModel>()) {}

modMergeControl::~modMergeControl() {
    // The inserter outlives the panel; it must not fill lists that are gone.
    if (clsInsertFieldsInRTB* fields = app().fieldInserter) {
        fields->setListBox(nullptr);
        fields->setAccountantListBox(nullptr);
    }
}

QStringList modMergeControl::categoryCaptions() {
    return {QStringLiteral("Merge Category"),  QStringLiteral("Select Recipients"),
            QStringLiteral("Insert Fields"),   QStringLiteral("Firm Fields"),
            QStringLiteral("Insert Date"),     QStringLiteral("Test Merge"),
            QStringLiteral("Create Merge Doc")};
}

QStringList modMergeControl::templateKindEntries() {
    return {QStringLiteral("New Company Merge Document (use default contact)"),
            QStringLiteral("New Company Merge Document (use specified contacts)"),
            QStringLiteral("New Contact Merge Document"), QStringLiteral("New Task Merge Document"),
            QStringLiteral("New Appointment Merge Document")};
}

QStringList modMergeControl::currentDateEntries(const QDate& today) {
    QStringList out;
    for (const QString& format : MergeSyntax::dateFormats()) {
        out << VBFormat::formatDate(today, format);
    }
    return out;
}

QString modMergeControl::noDocumentHelpLine() {
    return QStringLiteral(" No document selected - To open a document, chose from the Quick Picks "
                          "list below or open a new document.");
}

MergeToolBarSetup modMergeControl::setupMergeToolBar(int documentType,
                                                     InformationKind informationType,
                                                     bool hasPages) {
    using Tools = MergeToolBarSetup::Tools;
    MergeToolBarSetup s;
    switch (documentType) {
    case 2:
        s.categories = kAllCategories;
        switch (informationType) {
        case InformationKind::Companies:
            s.tools = Tools::Company;
            s.helpLine = templateHelp("Company");
            break;
        case InformationKind::CompaniesAndContacts:
        case InformationKind::Contacts:
            s.tools = Tools::Contact;
            s.helpLine = templateHelp("Contact");
            break;
        case InformationKind::Tasks:
            s.tools = Tools::Remitt;
            s.helpLine = templateHelp("Tasks");
            break;
        case InformationKind::Appointments:
            s.tools = Tools::Appointment;
            s.helpLine = templateHelp("Appointment");
            break;
        default:
            // A kind this program cannot merge: only a new kind can be chosen.
            s.categories = {0};
            s.helpLine = templateHelp("Company");
            break;
        }
        break;
    case 3:
        s.navigationShown = true;
        s.navigationEnabled = true;
        s.helpLine = QStringLiteral(
            " Merge Document - This is a merge document with the results of the merge you "
            "executed.  To view and edit each merge document, click the arrow buttons below.  To "
            "print the merge results, click the Print button below.");
        break;
    case 4:
        s.navigationShown = true;
        s.formattingEnabled = false;
        s.helpLine = QStringLiteral(
            " Client Merge Results Document - This document is the result of a merge you have "
            "completed in the past.  This document has been locked for archival purposes and is "
            "meant to be opened for viewing purposes only.");
        break;
    default:
        s.categories = {0};
        s.helpLine = QStringLiteral(
            " Standard Document - This is a standard document with no merge capabilities.  To "
            "merge client information into this document, click the 'Merge Category' button "
            "below.");
        break;
    }
    s.formattingEnabled = s.formattingEnabled && hasPages;
    return s;
}

void modMergeControl::initializeMergeToolBar() {
    fill(*m_kinds, templateKindEntries());
    refreshDates();
    if (clsInsertFieldsInRTB* fields = app().fieldInserter) {
        fields->setListBox(m_fields.get());
        fields->setAccountantListBox(m_firm.get());
    }
}

void modMergeControl::refreshDates() {
    fill(*m_dates, currentDateEntries(app().clock.today()));
}

void modMergeControl::fillFieldLists(InformationKind informationType) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-modMergeControl-fillFieldLists");
    clsInsertFieldsInRTB* fields = app().fieldInserter;
    if (!fields) {
        return;
    }
    fields->setListBox(m_fields.get());
    fields->setAccountantListBox(m_firm.get());
    fields->createDefaultFieldListStructure(informationType, false, true);
}

QStandardItemModel* modMergeControl::list(int list) const {
    switch (list) {
    case 0:
        return m_kinds.get();
    case 2:
        return m_fields.get();
    case 3:
        return m_firm.get();
    case 4:
        return m_dates.get();
    default:
        return nullptr;
    }
}

MergeListAction modMergeControl::onListClick(int listIndex, int entry, RichTextBox* target) {
    ProcedureScope scope(app().errors,
                         "QuillmerePad.exe-modMergeControl-cboWordMergeCategory_Click");
    MergeListAction action;
    QStandardItemModel* model = list(listIndex);
    if (!model || entry < 0 || entry >= model->rowCount()) {
        return action;
    }
    const QStandardItem* item = model->item(entry);
    if (listIndex == 0) {
        action.kind = MergeListAction::Kind::ChangeKind;
        action.informationType = informationKindFromInt(item->data(Qt::UserRole).toInt());
        return action;
    }
    if (listIndex == 3 && entry == 0) {
        action.kind = MergeListAction::Kind::InsertLetterhead;
        return action;
    }
    clsInsertFieldsInRTB* fields = app().fieldInserter;
    if (!fields || !target) {
        return action;
    }
    fields->setTargetTextBox(target);
    if (listIndex == 4) {
        fields->insertCurrentDate(entry + 1);
        action.kind = MergeListAction::Kind::Inserted;
        return action;
    }
    const int row = item->data(Qt::UserRole).toInt();
    if (fields->parseListItem(row, true).isEmpty()) {
        return action;
    }
    fields->onListClick(row);
    action.kind = MergeListAction::Kind::Inserted;
    return action;
}
