#include "merge/RecipientSelection.h"

#include "context/AppContext.h"
#include "data/clsPopulateClientTree.h"
#include "data/databaseControl.h"
#include "merge/MergeRun.h"
#include "platform/FieldTable.h"
#include "platform/tree/ClientTreeView.h"
#include "search/clsSearchAppointments.h"
#include "search/clsSearchTasks.h"

#include <QSet>

namespace {

// How often the walk over the tree lets the window breathe.
constexpr int kNodesPerYield = 256;

QString pairKey(const QString& company, const QString& contact) {
    const QString host = company.trimmed().isEmpty() ? QStringLiteral("-1") : company.trimmed();
    return host + QLatin1Char('/') + contact.trimmed();
}

} // namespace

std::optional<int> RecipientSelection::modeForInformationType(InformationKind kind) {
    switch (kind) {
    case InformationKind::Companies:
        return Companies;
    case InformationKind::CompaniesAndContacts:
        return CompaniesWithContacts;
    case InformationKind::Contacts:
        return Contacts;
    default:
        return std::nullopt;
    }
}

QString RecipientSelection::nothingChosenMessage(InformationKind kind) {
    const char* what = "contacts";
    if (kind == InformationKind::Companies) {
        what = "companies";
    } else if (kind == InformationKind::Tasks) {
        what = "tasks";
    } else if (kind == InformationKind::Appointments) {
        what = "appointments";
    }
    return QStringLiteral("You must choose some %1 to merge to create a merge document")
        .arg(QLatin1String(what));
}

bool RecipientSelection::hasChosenRecipients(InformationKind kind, const FieldTable& ids,
                                             const QString& SQLFilter) {
    return isSearchKind(kind) && (!ids.isEmpty() || !SQLFilter.trimmed().isEmpty());
}

void RecipientSelection::requestRecipients(InformationKind kind, const FieldTable& ids,
                                           const QString& SQLFilter, const clsSearchTasks& tasks,
                                           const clsSearchAppointments& appointments,
                                           MergeRequest& request) {
    request.IDList.clear();
    request.criteria.clear();
    if (isSearchKind(kind) && ids.isEmpty() && !SQLFilter.trimmed().isEmpty()) {
        const bool isTasks = kind == InformationKind::Tasks;
        request.recipients = isTasks ? MergeRequest::Recipients::TaskCriteria
                                     : MergeRequest::Recipients::AppointmentCriteria;
        request.criteria = isTasks ? tasks.criteriaText() : appointments.criteriaText();
        return;
    }
    request.recipients = MergeRequest::Recipients::Listed;
    for (int row = 1; row <= ids.rowCount(); ++row) {
        request.IDList.addRow(row, {ids.value(row, 1), ids.value(row, 2)});
    }
}

bool RecipientSelection::available() {
    return app().database && app().database->isConnected();
}

QString RecipientSelection::unavailableMessage() {
    return QStringLiteral("You cannot select companies at this time.  You need to open the "
                          "Quillmere Pad from within Quillmere to link to the client's data "
                          "properly.");
}

QString RecipientSelection::caption() const {
    return m_mode == Contacts ? QStringLiteral("Select Contacts")
                              : QStringLiteral("Select Companies");
}

QString RecipientSelection::label() const {
    return m_mode == Contacts ? QStringLiteral("Select the contacts you would like to merge")
                              : QStringLiteral("Select the companies you would like to merge");
}

void RecipientSelection::configureTree(clsPopulateClientTree& tree) const {
    if (m_mode == Companies) {
        tree.setShowOnlyQuillmereCompanies(true);
    } else if (m_mode == CompaniesWithContacts) {
        tree.setShowOnlyQuillmereCompaniesAndContacts(true);
    }
    // A contact merge shows the whole ledger: contacts stand in categories,
    // companies and personal-tax years alike.
}

void RecipientSelection::populateCheckedItems(ClientTreeView& tree, const FieldTable& ids,
                                              const std::function<void()>& yield) const {
    if (ids.isEmpty()) {
        return;
    }
    QSet<QString> companies;
    QSet<QString> pairs;
    for (int row = 1; row <= ids.rowCount(); ++row) {
        companies.insert(ids.value(row, 1).trimmed());
        pairs.insert(pairKey(ids.value(row, 1), ids.value(row, 2)));
    }
    const bool ticksCompanies = m_mode == Companies || m_mode == CompaniesWithContacts;
    const bool ticksContacts = m_mode == Contacts || m_mode == CompaniesWithContacts;
    int walked = 0;
    std::function<void(ClientTreeNode*)> walk = [&](ClientTreeNode* node) {
        for (; node; node = node->next()) {
            const QString type = clsPopulateClientTree::getSelectedNodeTypeFromNode(node);
            const QString id =
                QString::number(clsPopulateClientTree::getSelectedNodeIDFromNode(node));
            if (ticksCompanies && type == QLatin1String("Company") && companies.contains(id)) {
                node->setChecked(true);
            } else if (ticksContacts && type == QLatin1String("Contact")) {
                const QString host =
                    QString::number(clsPopulateClientTree::getHostCompanyFromSelectedNode(node));
                if (pairs.contains(host + QLatin1Char('/') + id)) {
                    node->setChecked(true);
                }
            }
            if (yield && ++walked % kNodesPerYield == 0) {
                yield();
            }
            walk(node->child());
        }
    };
    walk(tree.firstRoot());
}

bool RecipientSelection::saveInfo(const ClientTreeView& tree, FieldTable& ids) const {
    FieldTable ticked(2);
    MergeRun::addTickedNodes(tree, m_mode, ticked);
    // A family member shown below each of a person's clients is one
    // recipient, however many of its nodes carry a tick.
    ids.clear();
    QSet<QString> written;
    for (int row = 1; row <= ticked.rowCount(); ++row) {
        const QString company = ticked.value(row, 1);
        const QString contact = ticked.value(row, 2);
        if (!written.contains(pairKey(company, contact))) {
            written.insert(pairKey(company, contact));
            ids.addRow(ids.rowCount() + 1, {company, contact});
        }
    }
    return !ids.isEmpty();
}

void RecipientSelection::nodeCheck(clsPopulateClientTree& rules, ClientTreeNode* node) const {
    if (!node) {
        return;
    }
    rules.checkAllChildNodes(node, node->checked(), m_mode == Companies ? 1 : 2);
}
