#pragma once

#include <QHash>
#include <QIcon>
#include <QList>
#include <QSet>
#include <QString>
#include <functional>
#include <optional>
#include <vector>

class ClientTreeNode;
class ClientTreeView;
class databaseControl;

// Fills a client tree with the practice's contact ledger: the category tree
// and in it the companies, their associate companies and contacts, the
// personal-tax clients, family members and the firm's staff. The keys of the
// nodes carry the database identity ("Company:12", "Category:3Contact:40",
// ...), which is all the recipient dialog reads back.
//
// The record sets are read once each and grouped in memory, so that a build
// runs the same number of statements whatever the size of the ledger. The
// same walk serves the count-only pass (which sizes a progress bar) and the
// building pass.
//
// Without a connection (app().database missing or closed) every operation
// does nothing. Faults of the database, a company added twice and a category
// tree that loops back on itself are raised as QmError to the caller's
// handler; the tree then holds what was built up to the fault.
class clsPopulateClientTree {
public:
    // Raised after each node the building pass adds, with the running count.
    using IncProgressBar = std::function<void(int& nodeCount)>;

    // Pictures of the image list, 1-based.
    enum Image : int {
        CompanyImage = 1,
        ContactImage = 3,
        CategoryImage = 7,
        DefaultContactImage = 8
    };
    // Fore colour of an inactive client (red, as 0x00BBGGRR).
    static constexpr int InactiveColor = 255;

    clsPopulateClientTree();
    ~clsPopulateClientTree();
    clsPopulateClientTree(const clsPopulateClientTree&) = delete;
    clsPopulateClientTree& operator=(const clsPopulateClientTree&) = delete;

    // --- Properties ------------------------------------------------------
    ClientTreeView* treeViewControl() const { return m_tree; }
    void setTreeViewControl(ClientTreeView* tree) { m_tree = tree; }
    const QList<QIcon>& imageListControl() const { return m_images; }
    void setImageListControl(const QList<QIcon>& images) { m_images = images; }
    QString currentlySelectedNodeName() const { return m_selectedName; }
    void setCurrentlySelectedNodeName(const QString& key) { m_selectedName = key; }

    bool showFirm() const { return m_showFirm; }
    void setShowFirm(bool value) { m_showFirm = value; }
    bool showPersonalTax() const { return m_showPersonalTax; }
    void setShowPersonalTax(bool value) { m_showPersonalTax = value; }
    bool showFamilyMembers() const { return m_showFamilyMembers; }
    void setShowFamilyMembers(bool value) { m_showFamilyMembers = value; }
    bool showContacts() const { return m_showContacts; }
    void setShowContacts(bool value) { m_showContacts = value; }
    // No setter: driven by the "only" modes.
    bool showCompanies() const { return m_showCompanies; }
    bool expandAllCompanies() const { return m_expandAllCompanies; }
    void setExpandAllCompanies(bool value) { m_expandAllCompanies = value; }
    bool expandAllContacts() const { return m_expandAllContacts; }
    void setExpandAllContacts(bool value) { m_expandAllContacts = value; }
    bool expandAllPersonalTaxCategories() const { return m_expandAllPersonalTaxCategories; }
    void setExpandAllPersonalTaxCategories(bool value) { m_expandAllPersonalTaxCategories = value; }

    // The "only" modes: setting one to true overwrites the show and expand
    // flags and clears the modes it excludes; setting one to false changes
    // nothing else.
    bool ShowOnlyPersonalTaxClients() const { return m_onlyPersonalTax; }
    void setShowOnlyPersonalTaxClients(bool value);
    bool ShowOnlyCompanies() const { return m_onlyCompanies; }
    void setShowOnlyCompanies(bool value);
    bool ShowOnlyQuillmereCompanies() const { return m_onlyQuillmereCompanies; }
    void setShowOnlyQuillmereCompanies(bool value);
    bool ShowOnlyQuillmereCompaniesAndContacts() const { return m_onlyQuillmereAndContacts; }
    void setShowOnlyQuillmereCompaniesAndContacts(bool value);
    bool showOnlyCategories() const { return m_onlyCategories; }
    void setShowOnlyCategories(bool value);
    bool ShowOnlyFirm() const { return m_onlyFirm; }
    void setShowOnlyFirm(bool value);

    // With no node name set, a host category of 1 or more selects
    // "Category:" + hostCategory.
    int hostCategory() const { return m_hostCategory; }
    void setHostCategory(int categoryID) { m_hostCategory = categoryID; }
    bool ShowActiveInactiveCompanies() const { return m_markInactiveCompanies; }
    void setShowActiveInactiveCompanies(bool value) { m_markInactiveCompanies = value; }
    bool ShowActiveInactiveContacts() const { return m_markInactiveContacts; }
    void setShowActiveInactiveContacts(bool value) { m_markInactiveContacts = value; }

    void setIncProgressBar(IncProgressBar handler) { m_incProgressBar = std::move(handler); }
    // Asked after each node of either pass; when it answers true the pass
    // stops there, the tree keeps the nodes built so far and
    // buildCancelled() holds until the next pass.
    void setCancelRequested(std::function<bool()> question) {
        m_cancelRequested = std::move(question);
    }
    bool buildCancelled() const { return m_buildCancelled; }

    // --- Building ----------------------------------------------------------
    // Opens the record sets of the mode in force; does nothing when they are
    // open already or without a connection.
    void initializeRecordSets();
    void destroyRecordSets();
    bool recordSetsOpen() const { return m_open; }
    // An estimate for the progress bar: the rows of every record set open
    // for the mode, plus 1 for the firm category when showFirm holds.
    // Opens the record sets when needed; 0 without a connection.
    int getRecordCount();
    // Builds the tree (countOnly false) or only counts the nodes it would
    // build. The building pass needs treeViewControl; without one it does
    // nothing.
    void populateContactLedgerTree(bool countOnly);
    // Nodes counted or added by the last pass.
    int nodeCount() const { return m_nodeCount; }

    // --- Reading nodes -----------------------------------------------------
    ClientTreeNode* getCurrentlySelectedNode() const;
    // "FirmContact", "Contact", "Company", "Category" or empty.
    static QString getSelectedNodeTypeFromNode(const ClientTreeNode* node);
    // The ID the key names, -1 for none.
    static int getSelectedNodeIDFromNode(const ClientTreeNode* node);
    static int getHostCompanyFromSelectedNode(const ClientTreeNode* node);
    // The nearest category at or above the node, -1 for none.
    static int getHostCategoryFromSelectedNode(const ClientTreeNode* node);
    // For a contact node, the nearest personal-tax year category above it.
    int getHostTaxCategoryFromContactNode(const ClientTreeNode* node) const;

    // --- Ticks -------------------------------------------------------------
    // Applies a tick of the user to the children of a node. selectionKind 1
    // ticks companies, 2 contacts; nodes of any other kind are unticked.
    void checkAllChildNodes(ClientTreeNode* node, bool value, short selectionKind);
    // Ticks or unticks one node by the selection kind of the last
    // checkAllChildNodes (or the one given).
    void checkNode(ClientTreeNode* node, bool value);
    void setSelectionKind(short selectionKind) { m_selectionKind = selectionKind; }

private:
    struct CategoryRow {
        int id = -1;
        int parent = -1; // -1: blank
        QString name;
        QString code;
        int row = 0;
    };
    struct CompanyRow {
        int id = -1;
        int category = -1;
        int host = -1;
        QString name;
        bool topLevel = true; // shown in its category, not below a host
    };
    struct LinkRow {
        int contactID = -1;
        int row = 0;
        bool isDefault = false;
    };
    using Groups = QHash<int, std::vector<int>>;

    struct Modes;
    void applyOnlyMode(const Modes& modes);

    // Reading the record sets into memory.
    void readCategories();
    void readCompanies();
    void readLinks(int handle, const QString& groupColumn, std::vector<LinkRow>& rows,
                   Groups& groups);
    void readEmployees();
    void readCompanyStatus();
    void readPersonalStatus();

    // The walk.
    ClientTreeNode* addNode(const QString& relativeKey, const QString& key, const QString& text,
                            int image, bool passOverDuplicate);
    bool isSelectedKey(const QString& key) const;
    void raise();
    void addRootsOfMode();
    void addCategoryNode(const CategoryRow& category, const QString& parentKey, bool isTax,
                         bool isFirm, bool topLevel);
    void addSubCategories(int categoryID, bool isTax, bool isFirm);
    // Repairs a category that is its own parent; true when it was one.
    bool repairOwnParent(int index);
    void populateCategoryContent(int categoryID, const QString& key, bool isTax, bool isFirm);
    void populateCompaniesInCategory(int categoryID, const QString& parentKey);
    void addCompanyNode(const CompanyRow& company, const QString& parentKey);
    void addAssociateCompanies(int hostID, const QString& hostKey);
    void populateContactsInCompany(int companyID, const QString& parentKey,
                                   ClientTreeNode* parentNode);
    void populateContactsInCategory(int categoryID, const QString& parentKey, bool isTax,
                                    ClientTreeNode* parentNode);
    void addFamilyMembers(int contactID, const QString& parentKey, bool isTax,
                          ClientTreeNode* parentNode);
    void populateFirmEmployeesInCategory(int categoryID, const QString& parentKey);
    void addFirmFamilyMembers(int employeeID, const QString& parentKey, ClientTreeNode* parentNode);
    // A contact below its company or category, with its family; a duplicate
    // key is passed over.
    void addContactNode(const QString& parentKey, const QString& nodeKey, const QString& text,
                        const LinkRow& link, bool inactive, bool isTax, ClientTreeNode* parentNode);
    // A family member below its person; a duplicate key is passed over.
    void addFamilyNode(const QString& parentKey, const QString& nodeKey, const QString& text,
                       ClientTreeNode* parentNode);
    QString contactName(int handle, int row, int hostContactID, bool showRelationship) const;

    // In-memory answers of the category lookups.
    // Whether the category lies at or below the ancestor; nothing when its
    // chain of parents loops. categoryBelongsTo raises the loop as a fault.
    std::optional<bool> ancestry(int categoryID, int ancestorID) const;
    bool categoryBelongsTo(int categoryID, int ancestorID) const;
    int taxYearOfCategory(int categoryID) const;
    int currentTaxYear();
    void checkChildren(ClientTreeNode* node, bool value);

    ClientTreeView* m_tree = nullptr;
    QList<QIcon> m_images;
    QString m_selectedName;
    bool m_showFirm = true;
    bool m_showPersonalTax = true;
    bool m_showFamilyMembers = true;
    bool m_showContacts = true;
    bool m_showCompanies = true;
    bool m_expandAllCompanies = false;
    bool m_expandAllContacts = false;
    bool m_expandAllPersonalTaxCategories = false;
    bool m_onlyPersonalTax = false;
    bool m_onlyCompanies = false;
    bool m_onlyQuillmereCompanies = false;
    bool m_onlyQuillmereAndContacts = false;
    bool m_onlyCategories = false;
    bool m_onlyFirm = false;
    int m_hostCategory = -1;
    bool m_markInactiveCompanies = true;
    bool m_markInactiveContacts = true;
    IncProgressBar m_incProgressBar;
    std::function<bool()> m_cancelRequested;
    bool m_buildCancelled = false;

    // Record sets, -1 when closed.
    bool m_open = false;
    int m_employeesSet = -1;
    int m_categoriesSet = -1;
    int m_companiesSet = -1;
    int m_categoryContactsSet = -1;
    int m_companyContactsSet = -1;
    int m_familySet = -1;

    // Their rows, grouped by the column each level finds by.
    std::vector<CategoryRow> m_categories;
    QHash<int, int> m_categoryByID;
    Groups m_categoryChildren;
    std::vector<CompanyRow> m_companies;
    Groups m_companiesByCategory;
    Groups m_companiesByHost;
    std::vector<LinkRow> m_categoryContacts;
    Groups m_categoryContactsByCategory;
    std::vector<LinkRow> m_companyContacts;
    Groups m_companyContactsByCompany;
    std::vector<LinkRow> m_family;
    Groups m_familyByContact;
    struct EmployeeRow {
        int id = -1;
        int row = 0;
        int category = -1;
    };
    std::vector<EmployeeRow> m_employees;
    Groups m_employeesByCategory; // employees (no ContactNum) by the category they show in
    Groups m_employeeFamily;      // family rows by the employee's ContactID
    std::optional<QHash<int, short>> m_companyStatus;
    std::optional<QHash<QPair<int, int>, short>> m_personalStatus;

    // State of one pass.
    bool m_countOnly = false;
    int m_nodeCount = 0;
    QSet<QString> m_keys;
    QSet<int> m_categoryPath;
    std::optional<int> m_currentTaxYear;
    int m_mainCategory = -1;
    int m_personalCategory = -1;
    int m_businessCategory = -1;
    int m_firmCategory = -1;
    short m_selectionKind = 0;
    short m_tickedType = 0;
};
