#include "data/clsPopulateClientTree.h"

#include "data/DatabaseLookup.h"
#include "data/modDatabaseFunctions.h"
#include "platform/tree/ClientTreeView.h"

using namespace DatabaseLookup;

namespace {

QString treeTag(const char* procedure) {
    return QStringLiteral("QuillmerePad.exe-clsPopulateClientTree-") + QLatin1String(procedure);
}

// The order of the contact rows follows the user's name display.
QString nameOrder() {
    switch (app().contactNameDisplayType) {
    case 2:
        return QStringLiteral("Contacts.FirstName, Contacts.LastName");
    case 3:
        return QStringLiteral("Contacts.LastName, Contacts.FirstName");
    default:
        return QStringLiteral("Contacts.DisplayName");
    }
}

const QString ContactFrom = QStringLiteral(
    "FROM ContactLinks INNER JOIN Contacts ON ContactLinks.ContactIDNum = Contacts.ContactID ");

QString categoryContactsSql(const QString& where) {
    return QStringLiteral("SELECT ContactLinks.ContactIDNum, ContactLinks.CategoryNum, "
                          "ContactLinks.IsPersonalTaxCategory, ContactLinks.FamilyRelationship, "
                          "ContactLinks.DefaultContact, Contacts.FirstName, Contacts.LastName, "
                          "Contacts.DisplayName ") +
           ContactFrom + where + QStringLiteral("ORDER BY ContactLinks.CategoryNum, ") +
           nameOrder() + u';';
}

QString companyContactsSql(const QString& where) {
    return QStringLiteral("SELECT ContactLinks.ContactIDNum, ContactLinks.CompanyNum, "
                          "ContactLinks.IsPersonalTaxCategory, ContactLinks.FamilyRelationship, "
                          "ContactLinks.DefaultContact, Contacts.FirstName, Contacts.LastName, "
                          "Contacts.DisplayName ") +
           ContactFrom + where + QStringLiteral("ORDER BY ContactLinks.CompanyNum, ") +
           nameOrder() + u';';
}

QString familySql() {
    return QStringLiteral("SELECT ContactLinks.ContactIDNum, ContactLinks.ContactNum, "
                          "ContactLinks.FamilyRelationship, ContactLinks.DefaultContact, "
                          "Contacts.FirstName, Contacts.LastName, Contacts.DisplayName ") +
           ContactFrom + QStringLiteral("Where ContactLinks.ContactNum Is Not Null ") +
           QStringLiteral("ORDER BY ContactLinks.ContactNum, ") + nameOrder() + u';';
}

QString taxFamilySql() {
    return QStringLiteral("SELECT ContactLinks.*, Contacts.FirstName, Contacts.LastName, "
                          "Contacts.DisplayName ") +
           ContactFrom + QStringLiteral("WHERE ContactLinks.IsPersonalTaxCategory = True ") +
           QStringLiteral("ORDER BY ") + nameOrder() + u';';
}

int open(databaseControl& db, const QString& sql, bool editable = false) {
    return db.openRecordset(sql, databaseControl::KeysetCursor,
                            editable ? databaseControl::OptimisticLock
                                     : databaseControl::ReadOnlyLock);
}

// Calls each(row) for every row of the set, the cursor on that row.
template <typename Each> void forEachRow(databaseControl& db, int handle, Each each) {
    if (!db.hasRecords(handle))
        return;
    for (db.moveFirst(handle); !db.isEOF(handle); db.moveNext(handle))
        each(db.getPosition(handle));
}

int idField(databaseControl& db, int handle, const QString& column) {
    return toID(db.getField(handle, column));
}

} // namespace

// The flags an "only" mode writes; the modes it clears besides itself.
struct clsPopulateClientTree::Modes {
    bool showFirm, showPersonalTax, showFamilyMembers, showCompanies, showContacts,
        expandAllCompanies, expandAllContacts;
    bool clearPersonalTax, clearQuillmereCompanies, clearQuillmereAndContacts;
};

clsPopulateClientTree::clsPopulateClientTree() = default;

clsPopulateClientTree::~clsPopulateClientTree() {
    destroyRecordSets();
}

void clsPopulateClientTree::applyOnlyMode(const Modes& m) {
    m_showFirm = m.showFirm;
    m_showPersonalTax = m.showPersonalTax;
    m_showFamilyMembers = m.showFamilyMembers;
    m_showCompanies = m.showCompanies;
    m_showContacts = m.showContacts;
    m_expandAllCompanies = m.expandAllCompanies;
    m_expandAllContacts = m.expandAllContacts;
    if (m.clearPersonalTax)
        m_onlyPersonalTax = false;
    if (m.clearQuillmereCompanies)
        m_onlyQuillmereCompanies = false;
    if (m.clearQuillmereAndContacts)
        m_onlyQuillmereAndContacts = false;
}

void clsPopulateClientTree::setShowOnlyPersonalTaxClients(bool value) {
    m_onlyPersonalTax = value;
    if (value)
        applyOnlyMode({false, true, true, false, false, false, false, false, true, true});
}

void clsPopulateClientTree::setShowOnlyCompanies(bool value) {
    m_onlyCompanies = value;
    if (value)
        applyOnlyMode({false, false, false, true, false, false, false, true, false, false});
}

void clsPopulateClientTree::setShowOnlyQuillmereCompanies(bool value) {
    m_onlyQuillmereCompanies = value;
    if (value)
        applyOnlyMode({false, false, false, true, false, false, false, true, false, false});
}

void clsPopulateClientTree::setShowOnlyQuillmereCompaniesAndContacts(bool value) {
    m_onlyQuillmereAndContacts = value;
    if (value)
        applyOnlyMode({false, false, true, true, true, true, false, true, false, false});
}

void clsPopulateClientTree::setShowOnlyCategories(bool value) {
    m_onlyCategories = value;
    if (value)
        applyOnlyMode({false, false, false, false, false, false, false, false, false, false});
}

void clsPopulateClientTree::setShowOnlyFirm(bool value) {
    m_onlyFirm = value;
    if (value)
        applyOnlyMode({true, false, false, false, false, false, false, false, true, true});
}

// --- Record sets -----------------------------------------------------------

void clsPopulateClientTree::initializeRecordSets() {
    ProcedureScope scope(app().errors, treeTag("initializeRecordSets"));
    databaseControl* db = connected();
    if (!db || m_open)
        return;
    try {
        // The system categories heal themselves when missing; that happens
        // before the categories are read, so that the rows in memory hold
        // them.
        m_mainCategory = getMainCategoryNum();
        m_personalCategory = getPersonalTaxCategoryNum();
        m_businessCategory = getBusinessCategoryNum();
        m_firmCategory = getFirmCategoryNum();
        if (m_showFirm)
            m_employeesSet = open(
                *db,
                QStringLiteral("SELECT AccountantEmployeeInfo.* FROM AccountantEmployeeInfo;"));
        m_categoriesSet = open(*db, QStringLiteral("SELECT Categories.* FROM Categories;"), true);
        const QString allCompanies = QStringLiteral("SELECT Companies.* FROM Companies;");
        if (m_onlyPersonalTax) {
            m_categoryContactsSet = open(*db, categoryContactsSql(QStringLiteral(
                                                  "Where ContactLinks.CategoryNum Is Not Null AND "
                                                  "ContactLinks.isPersonalTaxCategory = True ")));
            m_familySet = open(*db, taxFamilySql());
        } else if (m_onlyQuillmereCompanies) {
            m_companiesSet = open(*db, getMainBusinessSQLString(false, 2));
        } else if (m_onlyQuillmereAndContacts) {
            m_companiesSet = open(*db, getMainBusinessSQLString(false, 2));
            m_categoryContactsSet = open(*db, categoryContactsSql(QStringLiteral(
                                                  "Where ContactLinks.CategoryNum Is Not Null AND "
                                                  "ContactLinks.isPersonalTaxCategory = False ")));
            m_companyContactsSet = open(*db, companyContactsSql(QStringLiteral(
                                                 "Where ContactLinks.CompanyNum Is Not Null And "
                                                 "ContactLinks.isPersonalTaxCategory = False ")));
        } else if (m_onlyCompanies) {
            m_companiesSet = open(*db, allCompanies);
        } else if (!m_onlyCategories) {
            m_companiesSet = open(*db, allCompanies);
            m_categoryContactsSet = open(*db, categoryContactsSql(QStringLiteral(
                                                  "Where ContactLinks.CategoryNum Is Not Null ")));
            m_companyContactsSet = open(*db, companyContactsSql(QStringLiteral(
                                                 "Where ContactLinks.CompanyNum Is Not Null ")));
            m_familySet = open(*db, familySql());
        }
        m_open = true;
        readCategories();
        readCompanies();
        readLinks(m_categoryContactsSet, QStringLiteral("CategoryNum"), m_categoryContacts,
                  m_categoryContactsByCategory);
        readLinks(m_companyContactsSet, QStringLiteral("CompanyNum"), m_companyContacts,
                  m_companyContactsByCompany);
        readLinks(m_familySet, QStringLiteral("ContactNum"), m_family, m_familyByContact);
        readEmployees();
    } catch (...) {
        destroyRecordSets();
        throw;
    }
}

void clsPopulateClientTree::destroyRecordSets() {
    databaseControl* db = app().database;
    for (int* handle : {&m_employeesSet, &m_categoriesSet, &m_companiesSet, &m_categoryContactsSet,
                        &m_companyContactsSet, &m_familySet}) {
        if (*handle != -1 && db)
            db->closeRecordset(*handle);
        *handle = -1;
    }
    m_open = false;
    m_categories.clear();
    m_categoryByID.clear();
    m_categoryChildren.clear();
    m_companies.clear();
    m_companiesByCategory.clear();
    m_companiesByHost.clear();
    m_categoryContacts.clear();
    m_categoryContactsByCategory.clear();
    m_companyContacts.clear();
    m_companyContactsByCompany.clear();
    m_family.clear();
    m_familyByContact.clear();
    m_employees.clear();
    m_employeesByCategory.clear();
    m_employeeFamily.clear();
    m_companyStatus.reset();
    m_personalStatus.reset();
}

int clsPopulateClientTree::getRecordCount() {
    ProcedureScope scope(app().errors, treeTag("getRecordCount"));
    databaseControl* db = connected();
    if (!db)
        return 0;
    initializeRecordSets();
    int count = 0;
    if (m_showFirm && m_employeesSet != -1)
        count += db->recordCount(m_employeesSet) + 1;
    for (int handle : {m_categoriesSet, m_companiesSet, m_categoryContactsSet, m_companyContactsSet,
                       m_familySet}) {
        if (handle != -1)
            count += db->recordCount(handle);
    }
    return count;
}

void clsPopulateClientTree::readCategories() {
    databaseControl& db = *app().database;
    const int h = m_categoriesSet;
    forEachRow(db, h, [&](int row) {
        CategoryRow c;
        c.id = idField(db, h, QStringLiteral("CategoryID"));
        c.parent = idField(db, h, QStringLiteral("CategoryNum"));
        c.name = toText(db.getField(h, QStringLiteral("CategoryName")));
        c.code = toText(db.getField(h, QStringLiteral("CategorySpecialCode")));
        c.row = row;
        const int index = int(m_categories.size());
        if (!m_categoryByID.contains(c.id))
            m_categoryByID.insert(c.id, index);
        if (c.parent != -1)
            m_categoryChildren[c.parent].push_back(index);
        m_categories.push_back(std::move(c));
    });
}

void clsPopulateClientTree::readCompanies() {
    if (m_companiesSet == -1)
        return;
    databaseControl& db = *app().database;
    const int h = m_companiesSet;
    QHash<int, int> byID;
    forEachRow(db, h, [&](int) {
        CompanyRow c;
        c.id = idField(db, h, QStringLiteral("Companies.CompanyID"));
        c.category = idField(db, h, QStringLiteral("Companies.CategoryNum"));
        c.host = idField(db, h, QStringLiteral("Companies.CompanyNum"));
        c.name = toText(db.getField(h, QStringLiteral("Companies.CompanyName")));
        byID.insert(c.id, int(m_companies.size()));
        m_companies.push_back(std::move(c));
    });
    // An associate shows below its host, and only there. A company whose
    // host is not in the set, or whose chain of hosts comes back to itself,
    // stands in its category instead, so that damaged links neither hide a
    // company nor loop.
    const int limit = int(m_companies.size()) + 1;
    for (CompanyRow& c : m_companies) {
        if (c.host == -1 || !byID.contains(c.host))
            continue;
        int at = c.host;
        int steps = 0;
        while (at != -1 && at != c.id && byID.contains(at) && steps++ < limit)
            at = m_companies[size_t(byID.value(at))].host;
        c.topLevel = at == c.id || steps >= limit;
    }
    for (int i = 0; i < int(m_companies.size()); ++i) {
        const CompanyRow& c = m_companies[size_t(i)];
        if (c.topLevel) {
            if (c.category != -1)
                m_companiesByCategory[c.category].push_back(i);
        } else {
            m_companiesByHost[c.host].push_back(i);
        }
    }
}

void clsPopulateClientTree::readLinks(int handle, const QString& groupColumn,
                                      std::vector<LinkRow>& rows, Groups& groups) {
    if (handle == -1)
        return;
    databaseControl& db = *app().database;
    const bool hasDefault = db.hasField(handle, QStringLiteral("DefaultContact"));
    forEachRow(db, handle, [&](int row) {
        const int group = idField(db, handle, groupColumn);
        if (group == -1)
            return;
        LinkRow link;
        link.contactID = idField(db, handle, QStringLiteral("ContactIDNum"));
        link.row = row;
        link.isDefault =
            hasDefault && db.getField(handle, QStringLiteral("DefaultContact")).toBool();
        groups[group].push_back(int(rows.size()));
        rows.push_back(link);
    });
}

void clsPopulateClientTree::readEmployees() {
    if (m_employeesSet == -1)
        return;
    databaseControl& db = *app().database;
    const int h = m_employeesSet;
    const int firm = m_firmCategory;
    forEachRow(db, h, [&](int row) {
        EmployeeRow e;
        e.id = idField(db, h, QStringLiteral("ContactID"));
        e.row = row;
        e.category = idField(db, h, QStringLiteral("CategoryNum"));
        const int familyOf = idField(db, h, QStringLiteral("ContactNum"));
        const int index = int(m_employees.size());
        m_employees.push_back(e);
        if (familyOf != -1) {
            m_employeeFamily[familyOf].push_back(index);
            return;
        }
        // Staff without a category of the firm's own show in the firm
        // category itself rather than nowhere.
        const bool placed = e.category != -1 && m_categoryByID.contains(e.category) &&
                            ancestry(e.category, firm).value_or(false);
        m_employeesByCategory[placed ? e.category : firm].push_back(index);
    });
}

void clsPopulateClientTree::readCompanyStatus() {
    if (m_companyStatus)
        return;
    databaseControl& db = *app().database;
    QHash<int, short> status;
    ScopedRecordset rs(db,
                       QStringLiteral("SELECT ClientData.ClientDataID, ClientData.CompanyIDNum, "
                                      "ClientData.ActiveStatus FROM ClientData;"));
    forEachRow(db, rs.handle(), [&](int) {
        const int company = toID(rs.field(QStringLiteral("CompanyIDNum")));
        // The first client row of a company answers, as the lookup by ID does.
        if (!status.contains(company)) {
            const QVariant value = rs.field(QStringLiteral("ActiveStatus"));
            status.insert(company, stringControl::isBlank(value) ? short(0) : short(value.toInt()));
        }
    });
    m_companyStatus = std::move(status);
}

void clsPopulateClientTree::readPersonalStatus() {
    if (m_personalStatus)
        return;
    databaseControl& db = *app().database;
    QHash<QPair<int, int>, short> status;
    ScopedRecordset rs(db,
                       QStringLiteral("SELECT PersonalTaxStatus.ContactNum, "
                                      "PersonalTaxStatus.TaxYear, "
                                      "PersonalTaxStatus.ActiveStatus FROM PersonalTaxStatus;"));
    forEachRow(db, rs.handle(), [&](int) {
        const QPair<int, int> key(toID(rs.field(QStringLiteral("ContactNum"))),
                                  toID(rs.field(QStringLiteral("TaxYear"))));
        if (!status.contains(key)) {
            const QVariant value = rs.field(QStringLiteral("ActiveStatus"));
            status.insert(key, stringControl::isBlank(value) ? short(0) : short(value.toInt()));
        }
    });
    m_personalStatus = std::move(status);
}

// --- Category questions, answered from the rows in memory -----------------

std::optional<bool> clsPopulateClientTree::ancestry(int categoryID, int ancestorID) const {
    int at = categoryID;
    // A chain longer than the table has rows has come back on itself.
    for (size_t step = 0; step <= m_categories.size(); ++step) {
        if (at == ancestorID)
            return true;
        const auto it = m_categoryByID.constFind(at);
        if (it == m_categoryByID.constEnd())
            return false;
        const CategoryRow& c = m_categories[size_t(it.value())];
        if (c.parent == -1 || c.parent == c.id)
            return false;
        at = c.parent;
    }
    return std::nullopt;
}

bool clsPopulateClientTree::categoryBelongsTo(int categoryID, int ancestorID) const {
    if (const std::optional<bool> belongs = ancestry(categoryID, ancestorID))
        return *belongs;
    throw QmError(
        QmError::DatabaseError,
        QStringLiteral("The category tree loops: category %1 lies below itself.").arg(categoryID));
}

int clsPopulateClientTree::taxYearOfCategory(int categoryID) const {
    int at = categoryID;
    for (int step = 0; step < 100; ++step) {
        const auto it = m_categoryByID.constFind(at);
        if (it == m_categoryByID.constEnd())
            return 0;
        const CategoryRow& c = m_categories[size_t(it.value())];
        if (c.code.contains(QStringLiteral("TaxYear:")))
            return int(stringControl::leadingNumber(c.code.right(4)));
        if (c.parent == -1)
            return 0;
        at = c.parent;
    }
    return 0;
}

int clsPopulateClientTree::currentTaxYear() {
    if (!m_currentTaxYear)
        m_currentTaxYear = getCurrentTaxYear();
    return *m_currentTaxYear;
}

// --- Reading nodes ---------------------------------------------------------

ClientTreeNode* clsPopulateClientTree::getCurrentlySelectedNode() const {
    return m_tree ? m_tree->selectedItem() : nullptr;
}

QString clsPopulateClientTree::getSelectedNodeTypeFromNode(const ClientTreeNode* node) {
    if (!node)
        return {};
    const QString key = node->key();
    for (const char* type : {"FirmContact", "Contact", "Company", "Category"}) {
        if (key.contains(QLatin1String(type) + u':', Qt::CaseInsensitive))
            return QLatin1String(type);
    }
    return {};
}

int clsPopulateClientTree::getSelectedNodeIDFromNode(const ClientTreeNode* node) {
    return node ? getSelectedNodeIDFromString(node->key()) : -1;
}

int clsPopulateClientTree::getHostCompanyFromSelectedNode(const ClientTreeNode* node) {
    const ClientTreeNode* parent = node ? node->parent() : nullptr;
    if (getSelectedNodeTypeFromNode(parent) != QLatin1String("Company"))
        return -1;
    return getSelectedNodeIDFromNode(parent);
}

int clsPopulateClientTree::getHostCategoryFromSelectedNode(const ClientTreeNode* node) {
    for (const ClientTreeNode* at = node; at; at = at->parent()) {
        if (getSelectedNodeTypeFromNode(at) == QLatin1String("Category"))
            return getCategoryIDFromCategoryNodeKey(at->key());
    }
    return -1;
}

int clsPopulateClientTree::getHostTaxCategoryFromContactNode(const ClientTreeNode* node) const {
    const QString type = getSelectedNodeTypeFromNode(node);
    if (type != QLatin1String("Contact") && type != QLatin1String("FirmContact"))
        return -1;
    for (const ClientTreeNode* at = node->parent(); at; at = at->parent()) {
        if (getSelectedNodeTypeFromNode(at) != QLatin1String("Category"))
            continue;
        const int id = getCategoryIDFromCategoryNodeKey(at->key());
        const auto it = m_categoryByID.constFind(id);
        const bool isTaxYear =
            it != m_categoryByID.constEnd()
                ? m_categories[size_t(it.value())].code.contains(QStringLiteral("TaxYear"))
                : isCategoryPersonalTaxYearCategory(id);
        if (isTaxYear)
            return id;
    }
    return -1;
}

// --- Ticks -----------------------------------------------------------------

void clsPopulateClientTree::checkAllChildNodes(ClientTreeNode* node, bool value,
                                               short selectionKind) {
    if (!node)
        return;
    m_tickedType = getSelectedMajorNodeTypeFromString(node->key());
    m_selectionKind = selectionKind;
    checkChildren(node, value);
}

void clsPopulateClientTree::checkChildren(ClientTreeNode* node, bool value) {
    for (ClientTreeNode* child = node->child(); child; child = child->next()) {
        checkNode(child, value);
        if (m_tickedType == 3 && m_selectionKind == 1)
            continue;
        const short type = getSelectedMajorNodeTypeFromString(child->key());
        if (type == 2 && child->children() > 0)
            checkChildren(child, value);
    }
}

void clsPopulateClientTree::checkNode(ClientTreeNode* node, bool value) {
    if (!node)
        return;
    const short type = getSelectedMajorNodeTypeFromString(node->key());
    const bool rightKind =
        (m_selectionKind == 2 && type == 1) || (m_selectionKind == 1 && type == 2);
    node->setChecked(rightKind ? value : false);
}
