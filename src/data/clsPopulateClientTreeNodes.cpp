// The walk of the client tree: one code path for the count-only pass and the
// building pass. In the count-only pass no tree is touched and every node
// pointer is null; the keys are still remembered, so that both passes pass
// over the same duplicates and arrive at the same count.
#include "data/DatabaseLookup.h"
#include "data/clsPopulateClientTree.h"
#include "data/modDatabaseFunctions.h"
#include "data/modSettings.h"
#include "platform/tree/ClientTreeView.h"

using namespace DatabaseLookup;

namespace {

// Unwinds a pass that the user cancelled; never leaves this file.
struct BuildCancelled {};

const QString InactiveMark = QStringLiteral(" -(Inactive)");

QString key(const char* prefix, int id) {
    return QLatin1String(prefix) + QString::number(id);
}

// Drawing comes back on however the build ends.
class RedrawOff {
public:
    explicit RedrawOff(ClientTreeView* tree) : m_tree(tree) {
        if (m_tree)
            m_tree->setRedraw(false);
    }
    ~RedrawOff() {
        if (m_tree)
            m_tree->setRedraw(true);
    }
    RedrawOff(const RedrawOff&) = delete;
    RedrawOff& operator=(const RedrawOff&) = delete;

private:
    ClientTreeView* m_tree;
};

} // namespace

void clsPopulateClientTree::populateContactLedgerTree(bool countOnly) {
    ProcedureScope scope(app().errors, QStringLiteral("QuillmerePad.exe-clsPopulateClientTree-"
                                                      "populateContactLedgerTree"));
    if (!connected() || (!countOnly && !m_tree))
        return;
    initializeRecordSets();
    if (!m_open)
        return;
    m_countOnly = countOnly;
    m_nodeCount = 0;
    m_keys.clear();
    m_categoryPath.clear();
    m_currentTaxYear.reset();
    RedrawOff redraw(countOnly ? nullptr : m_tree);
    if (!countOnly) {
        m_tree->clear();
        m_tree->setSorted(true);
        m_tree->setImageList(m_images);
        m_tree->setIndentation(79);
    }
    if (m_selectedName.isEmpty() && m_hostCategory >= 1)
        m_selectedName = key("Category:", m_hostCategory);

    m_buildCancelled = false;
    try {
        addRootsOfMode();
    } catch (const BuildCancelled&) {
        m_buildCancelled = true;
    }
}

void clsPopulateClientTree::addRootsOfMode() {

    auto addRoot = [this](const QString& rootKey, const QString& text) {
        if (ClientTreeNode* root = addNode(QString(), rootKey, text, CategoryImage, false)) {
            root->setSorted(true);
            root->setBold(true);
            root->setExpanded(true);
            root->setSelected(true);
        }
        raise();
    };

    if (m_onlyQuillmereCompanies || m_onlyQuillmereAndContacts) {
        m_showPersonalTax = false;
        m_showFirm = false;
        if (m_onlyQuillmereCompanies) {
            m_showCompanies = true;
            m_expandAllCompanies = false;
            m_showContacts = false;
        }
        const QString rootKey = key("Category:", m_businessCategory);
        addRoot(rootKey, getBusinessCategoryName());
        m_categoryPath.insert(m_businessCategory);
        addSubCategories(m_businessCategory, false, false);
        populateCompaniesInCategory(m_businessCategory, rootKey);
        if (m_showContacts)
            populateContactsInCategory(m_businessCategory, rootKey, false,
                                       m_countOnly ? nullptr : m_tree->find(rootKey));
    } else if (m_onlyPersonalTax) {
        m_showPersonalTax = true;
        m_showContacts = true;
        m_showFirm = false;
        m_showCompanies = false;
        const QString rootKey = key("TaxCategory:", m_personalCategory);
        addRoot(rootKey, getPersonalTaxCategoryName());
        m_categoryPath.insert(m_personalCategory);
        addSubCategories(m_personalCategory, true, false);
        populateContactsInCategory(m_personalCategory, rootKey, true,
                                   m_countOnly ? nullptr : m_tree->find(rootKey));
    } else if (m_onlyFirm) {
        const QString rootKey = key("FirmCategory:", m_firmCategory);
        addRoot(rootKey, getFirmCategoryName());
        m_categoryPath.insert(m_firmCategory);
        addSubCategories(m_firmCategory, false, true);
        populateFirmEmployeesInCategory(m_firmCategory, rootKey);
    } else {
        if (m_onlyCategories) {
            m_showCompanies = false;
            m_showContacts = false;
            m_expandAllCompanies = false;
            m_showFamilyMembers = false;
        }
        if (m_onlyCompanies) {
            m_showCompanies = true;
            m_showContacts = false;
            m_expandAllCompanies = false;
            m_showFamilyMembers = false;
        }
        const QString rootKey = key("Category:", m_mainCategory);
        addRoot(rootKey, getMainCategoryName());
        m_categoryPath.insert(m_mainCategory);
        ClientTreeNode* root = m_countOnly ? nullptr : m_tree->find(rootKey);
        if (m_showCompanies)
            populateCompaniesInCategory(m_mainCategory, rootKey);
        if (m_showContacts)
            populateContactsInCategory(m_mainCategory, rootKey, false, root);
        // The kind of each branch below the root is told by where it lies.
        const std::vector<int> children = m_categoryChildren.value(m_mainCategory);
        for (int index : children) {
            if (repairOwnParent(index))
                continue;
            const CategoryRow& c = m_categories[size_t(index)];
            const bool firm = categoryBelongsTo(c.id, m_firmCategory);
            const bool tax = !firm && categoryBelongsTo(c.id, m_personalCategory);
            if ((firm && !m_showFirm) || (tax && !m_showPersonalTax))
                continue;
            addCategoryNode(c, rootKey, tax, firm, true);
        }
    }
}

ClientTreeNode* clsPopulateClientTree::addNode(const QString& relativeKey, const QString& nodeKey,
                                               const QString& text, int image,
                                               bool passOverDuplicate) {
    if (m_keys.contains(nodeKey)) {
        // One person may be linked twice to the same place.
        if (passOverDuplicate)
            return nullptr;
        throw QmError(ClientTreeView::KeyNotUnique,
                      QStringLiteral("Key is not unique in collection: %1").arg(nodeKey));
    }
    ClientTreeNode* node = nullptr;
    if (!m_countOnly)
        node = m_tree->add(relativeKey, ClientTreeView::tvwChild, nodeKey, text, image, image);
    m_keys.insert(nodeKey);
    ++m_nodeCount;
    return node;
}

bool clsPopulateClientTree::isSelectedKey(const QString& nodeKey) const {
    return !m_selectedName.isEmpty() && nodeKey.compare(m_selectedName, Qt::CaseInsensitive) == 0;
}

void clsPopulateClientTree::raise() {
    if (!m_countOnly && m_incProgressBar)
        m_incProgressBar(m_nodeCount);
    if (m_cancelRequested && m_cancelRequested())
        throw BuildCancelled{};
}

void clsPopulateClientTree::addCategoryNode(const CategoryRow& category, const QString& parentKey,
                                            bool isTax, bool isFirm, bool topLevel) {
    // A legitimate tree never meets a category again below itself, nor runs
    // deeper than the table has rows.
    if (m_categoryPath.contains(category.id) ||
        m_categoryPath.size() > qsizetype(m_categories.size()))
        throw QmError(QmError::DatabaseError,
                      QStringLiteral("The category tree loops: category %1 lies below itself.")
                          .arg(category.id));
    const QString nodeKey =
        key(isFirm ? "FirmCategory:" : (isTax ? "TaxCategory:" : "Category:"), category.id);
    ClientTreeNode* node = addNode(parentKey, nodeKey, category.name, CategoryImage, false);
    if (node) {
        if (isSelectedKey(nodeKey))
            node->setSelected(true);
        node->setSorted(true);
        node->setBold(true);
        bool open = true;
        if (isTax && !topLevel)
            open = m_expandAllPersonalTaxCategories ||
                   taxYearOfCategory(category.id) == currentTaxYear();
        node->setExpanded(open);
    }
    raise();
    m_categoryPath.insert(category.id);
    addSubCategories(category.id, isTax, isFirm);
    populateCategoryContent(category.id, nodeKey, isTax, isFirm);
    m_categoryPath.remove(category.id);
}

void clsPopulateClientTree::addSubCategories(int categoryID, bool isTax, bool isFirm) {
    const auto found = m_categoryChildren.constFind(categoryID);
    if (found == m_categoryChildren.constEnd())
        return;
    const std::vector<int> children = found.value();
    const QString parentKey =
        key(isFirm ? "FirmCategory:" : (isTax ? "TaxCategory:" : "Category:"), categoryID);
    for (int index : children) {
        const CategoryRow& c = m_categories[size_t(index)];
        if (repairOwnParent(index))
            continue;
        addCategoryNode(c, parentKey, isTax, isFirm, false);
    }
}

bool clsPopulateClientTree::repairOwnParent(int index) {
    CategoryRow& c = m_categories[size_t(index)];
    if (c.parent != c.id)
        return false;
    // The one write of the tree, and the reason the set is editable. The
    // row is not followed, so the walk cannot loop on it.
    databaseControl& db = *app().database;
    db.setPosition(m_categoriesSet, c.row);
    db.updateFieldNow(m_categoriesSet, QStringLiteral("CategoryNum"), QString());
    auto& siblings = m_categoryChildren[c.parent];
    siblings.erase(std::remove(siblings.begin(), siblings.end(), index), siblings.end());
    c.parent = -1;
    return true;
}

void clsPopulateClientTree::populateCategoryContent(int categoryID, const QString& nodeKey,
                                                    bool isTax, bool isFirm) {
    ClientTreeNode* node = m_countOnly ? nullptr : m_tree->find(nodeKey);
    if (isFirm) {
        populateFirmEmployeesInCategory(categoryID, nodeKey);
        return;
    }
    if (m_showCompanies)
        populateCompaniesInCategory(categoryID, nodeKey);
    if (m_showContacts)
        populateContactsInCategory(categoryID, nodeKey, isTax, node);
}

void clsPopulateClientTree::populateCompaniesInCategory(int categoryID, const QString& parentKey) {
    const auto found = m_companiesByCategory.constFind(categoryID);
    if (found == m_companiesByCategory.constEnd())
        return;
    for (int index : found.value())
        addCompanyNode(m_companies[size_t(index)], parentKey);
}

void clsPopulateClientTree::addCompanyNode(const CompanyRow& company, const QString& parentKey) {
    const QString nodeKey = key("Company:", company.id);
    QString text = company.name;
    bool inactive = false;
    if (m_markInactiveCompanies) {
        readCompanyStatus();
        inactive = m_companyStatus->value(company.id, 0) == 2;
        if (inactive)
            text += InactiveMark;
    }
    ClientTreeNode* node = addNode(parentKey, nodeKey, text, CompanyImage, false);
    if (node) {
        if (inactive)
            node->setForeColor(InactiveColor);
        if (isSelectedKey(nodeKey)) {
            node->setSelected(true);
            node->setExpanded(true);
        } else if (m_expandAllCompanies) {
            node->setExpanded(true);
        }
        node->setSorted(true);
    }
    raise();
    if (m_showContacts)
        populateContactsInCompany(company.id, nodeKey, node);
    addAssociateCompanies(company.id, nodeKey);
}

void clsPopulateClientTree::addAssociateCompanies(int hostID, const QString& hostKey) {
    const auto found = m_companiesByHost.constFind(hostID);
    if (found == m_companiesByHost.constEnd())
        return;
    for (int index : found.value())
        addCompanyNode(m_companies[size_t(index)], hostKey);
}

QString clsPopulateClientTree::contactName(int handle, int row, int hostContactID,
                                           bool showRelationship) const {
    app().database->setPosition(handle, row);
    return getNodeContactNameDisplayed(handle, hostContactID, showRelationship);
}

void clsPopulateClientTree::populateContactsInCompany(int companyID, const QString& parentKey,
                                                      ClientTreeNode* parentNode) {
    const auto found = m_companyContactsByCompany.constFind(companyID);
    if (found == m_companyContactsByCompany.constEnd())
        return;
    for (int index : found.value()) {
        const LinkRow& link = m_companyContacts[size_t(index)];
        const QString nodeKey = parentKey + key("Contact:", link.contactID);
        addContactNode(parentKey, nodeKey, contactName(m_companyContactsSet, link.row, -1, false),
                       link, false, false, parentNode);
    }
}

void clsPopulateClientTree::populateContactsInCategory(int categoryID, const QString& parentKey,
                                                       bool isTax, ClientTreeNode* parentNode) {
    const auto found = m_categoryContactsByCategory.constFind(categoryID);
    if (found == m_categoryContactsByCategory.constEnd())
        return;
    for (int index : found.value()) {
        const LinkRow& link = m_categoryContacts[size_t(index)];
        const QString nodeKey = isTax ? parentKey + key("TaxContact:", link.contactID)
                                      : parentKey + key("Contact:", link.contactID);
        QString text = contactName(m_categoryContactsSet, link.row, -1, false);
        bool inactive = false;
        if (isTax && m_markInactiveContacts) {
            readPersonalStatus();
            inactive = m_personalStatus->value(
                           qMakePair(link.contactID, taxYearOfCategory(categoryID)), 0) == 2;
            if (inactive)
                text += InactiveMark;
        }
        addContactNode(parentKey, nodeKey, text, link, inactive, isTax, parentNode);
    }
}

void clsPopulateClientTree::addContactNode(const QString& parentKey, const QString& nodeKey,
                                           const QString& text, const LinkRow& link, bool inactive,
                                           bool isTax, ClientTreeNode* parentNode) {
    const int before = m_nodeCount;
    ClientTreeNode* node = addNode(parentKey, nodeKey, text,
                                   link.isDefault ? DefaultContactImage : ContactImage, true);
    if (m_nodeCount == before)
        return; // a duplicate key, passed over
    if (node) {
        if (inactive)
            node->setForeColor(InactiveColor);
        if (m_expandAllCompanies && parentNode)
            parentNode->setExpanded(true);
        if (isSelectedKey(nodeKey)) {
            node->setSelected(true);
            node->setExpanded(true);
        }
        node->setSorted(true);
    }
    raise();
    if (m_showFamilyMembers)
        addFamilyMembers(link.contactID, nodeKey, isTax, node);
}

void clsPopulateClientTree::addFamilyMembers(int contactID, const QString& parentKey, bool isTax,
                                             ClientTreeNode* parentNode) {
    const auto found = m_familyByContact.constFind(contactID);
    if (found == m_familyByContact.constEnd())
        return;
    for (int index : found.value()) {
        const LinkRow& link = m_family[size_t(index)];
        const QString nodeKey = parentKey + key("Family:", contactID) +
                                key(isTax ? "TaxContact:" : "Contact:", link.contactID);
        addFamilyNode(parentKey, nodeKey, contactName(m_familySet, link.row, contactID, true),
                      parentNode);
    }
}

void clsPopulateClientTree::populateFirmEmployeesInCategory(int categoryID,
                                                            const QString& parentKey) {
    const auto found = m_employeesByCategory.constFind(categoryID);
    if (found == m_employeesByCategory.constEnd())
        return;
    for (int index : found.value()) {
        const EmployeeRow& e = m_employees[size_t(index)];
        const QString nodeKey = key("FirmContact:", e.id);
        ClientTreeNode* node = addNode(
            parentKey, nodeKey, contactName(m_employeesSet, e.row, -1, false), ContactImage, false);
        if (node) {
            if (isSelectedKey(nodeKey)) {
                node->setSelected(true);
                node->setExpanded(true);
            }
            node->setSorted(true);
        }
        raise();
        addFirmFamilyMembers(e.id, nodeKey, node);
    }
}

void clsPopulateClientTree::addFirmFamilyMembers(int employeeID, const QString& parentKey,
                                                 ClientTreeNode* parentNode) {
    const auto found = m_employeeFamily.constFind(employeeID);
    if (found == m_employeeFamily.constEnd())
        return;
    for (int index : found.value()) {
        const EmployeeRow& member = m_employees[size_t(index)];
        const QString nodeKey =
            parentKey + key("Family:", employeeID) + key("FirmContact:", member.id);
        addFamilyNode(parentKey, nodeKey, contactName(m_employeesSet, member.row, employeeID, true),
                      parentNode);
    }
}

void clsPopulateClientTree::addFamilyNode(const QString& parentKey, const QString& nodeKey,
                                          const QString& text, ClientTreeNode* parentNode) {
    const int before = m_nodeCount;
    ClientTreeNode* node = addNode(parentKey, nodeKey, text, ContactImage, true);
    if (m_nodeCount == before)
        return; // a duplicate key, passed over
    if (node) {
        if (m_expandAllContacts && parentNode)
            parentNode->setExpanded(true);
        if (isSelectedKey(nodeKey))
            node->setSelected(true);
    }
    raise();
}
