#include "data/clsPopulateClientTree.h"

#include "ClientDbFixture.h"
#include "platform/errorClass.h"
#include "platform/tree/ClientTreeModel.h"

#include <functional>

namespace {

class ClientTreeTest : public ClientDbFixture {
protected:
    void SetUp() override {
        ClientDbFixture::SetUp();
        loadFixture(QStringLiteral("../tree/ledger"));
        m_context->contactNameDisplayType = 2;
        setToday(QDate(2024, 3, 1)); // tax year 2023
    }

    void setToday(const QDate& day) { m_context->clock.setFixed(QDateTime(day, QTime(9, 0))); }

    // Builds into a fresh model; the model lives as long as the fixture.
    ClientTreeModel& build(clsPopulateClientTree& tree) {
        m_models.push_back(std::make_unique<ClientTreeModel>());
        tree.setTreeViewControl(m_models.back().get());
        tree.populateContactLedgerTree(false);
        return *m_models.back();
    }

    static QStringList keys(const ClientTreeView& view) {
        QStringList out;
        std::function<void(const ClientTreeNode*)> walk = [&](const ClientTreeNode* n) {
            for (; n; n = n->next()) {
                out << n->key();
                walk(n->child());
            }
        };
        walk(view.firstRoot());
        return out;
    }

    std::vector<std::unique_ptr<ClientTreeModel>> m_models;
};

using Setter = void (clsPopulateClientTree::*)(bool);

TEST_F(ClientTreeTest, EveryKindOfNodeHasItsKeyTextPictureAndPlace) {
    clsPopulateClientTree tree;
    ClientTreeModel& view = build(tree);
    const struct {
        const char* key;
        const char* parent;
        const char* text;
        int image;
        bool bold;
        int color;
    } cases[] = {
        {"Category:1", "", "Contact Ledger", 7, true, 0},
        {"Category:8", "Category:2", "Retail", 7, true, 0},
        {"FirmCategory:4", "Category:1", "Firm Staff", 7, true, 0},
        {"FirmCategory:10", "FirmCategory:4", "Partners", 7, true, 0},
        {"TaxCategory:3", "Category:1", "Personal clients", 7, true, 0},
        {"TaxCategory:7", "TaxCategory:6", "Seniors", 7, true, 0},
        {"Company:20", "Category:8", "Acme Widgets", 1, false, 0},
        {"Company:21", "Category:8", "Bakery on Main -(Inactive)", 1, false, 255},
        {"Company:22", "Company:20", "Acme Holdings", 1, false, 0},
        {"Company:25", "Category:12", "Loop A", 1, false, 0},
        {"Company:26", "Category:12", "Loop B", 1, false, 0},
        {"Category:1Contact:202", "Category:1", "Cy Ng", 3, false, 0},
        {"Category:12Contact:208", "Category:12", "Jo Sun", 3, false, 0},
        {"Company:20Contact:201", "Company:20", "Bob Roy", 8, false, 0},
        {"Company:24Contact:201", "Company:24", "Bob Roy", 3, false, 0},
        {"Company:20Contact:201Family:201Contact:200", "Company:20Contact:201", "Ann Lee", 3, false,
         0},
        {"TaxCategory:5TaxContact:205", "TaxCategory:5", "Gus Old -(Inactive)", 3, false, 255},
        {"TaxCategory:7TaxContact:206", "TaxCategory:7", "Hal Kim", 3, false, 0},
        {"TaxCategory:11TaxContact:207", "TaxCategory:11", "Ivy Poe", 3, false, 0},
        {"TaxCategory:6TaxContact:203Family:203TaxContact:204", "TaxCategory:6TaxContact:203",
         "Eve Fox (Spouse)", 3, false, 0},
        {"FirmContact:300", "FirmCategory:4", "Margaret Ellis", 3, false, 0},
        {"FirmContact:301", "FirmCategory:10", "Dan Okafor", 3, false, 0},
        {"FirmContact:303", "FirmCategory:4", "Pat Nowhere", 3, false, 0},
        {"FirmContact:300Family:300FirmContact:302", "FirmContact:300", "Robert Ellis (Spouse)", 3,
         false, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.key);
        const ClientTreeNode* node = view.find(QString::fromLatin1(c.key));
        ASSERT_NE(node, nullptr);
        EXPECT_EQ(node->text(), QString::fromLatin1(c.text));
        EXPECT_EQ(node->image(), c.image);
        EXPECT_EQ(node->bold(), c.bold);
        EXPECT_EQ(node->foreColor(), c.color);
        EXPECT_EQ(node->parent() ? node->parent()->key() : QString(),
                  QString::fromLatin1(c.parent));
    }
    // Passed over or unreachable: the second link of Ann to Acme, the link
    // to a vanished company, an associate's own place in its category.
    const QStringList all = keys(view);
    EXPECT_EQ(all.count(QStringLiteral("Company:20Contact:200")), 1);
    EXPECT_FALSE(all.join(u' ').contains(QStringLiteral("Contact:209")));
    EXPECT_EQ(all.count(QStringLiteral("Company:22")), 1);
    EXPECT_EQ(view.count(), all.size());
}

TEST_F(ClientTreeTest, SortedChildrenIgnoreCase) {
    clsPopulateClientTree tree;
    ClientTreeModel& view = build(tree);
    QStringList texts;
    for (const ClientTreeNode* n = view.firstRoot()->child(); n; n = n->next())
        texts << n->text();
    EXPECT_EQ(texts, QStringList({"Business clients", "Cy Ng", "Firm Staff", "Personal clients",
                                  "prospects"}));
}

TEST_F(ClientTreeTest, CountingPassMatchesBuildingPassInEveryMode) {
    const struct {
        const char* name;
        Setter mode;
        int nodes;
    } cases[] = {
        {"Default", nullptr, 35},
        {"PersonalTax", &clsPopulateClientTree::setShowOnlyPersonalTaxClients, 10},
        {"Companies", &clsPopulateClientTree::setShowOnlyCompanies, 11},
        {"QuillmereCompanies", &clsPopulateClientTree::setShowOnlyQuillmereCompanies, 5},
        {"QuillmereAndContacts", &clsPopulateClientTree::setShowOnlyQuillmereCompaniesAndContacts,
         8},
        {"Categories", &clsPopulateClientTree::setShowOnlyCategories, 4},
        {"Firm", &clsPopulateClientTree::setShowOnlyFirm, 6},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        clsPopulateClientTree counter;
        if (c.mode)
            (counter.*c.mode)(true);
        counter.populateContactLedgerTree(true);

        clsPopulateClientTree builder;
        if (c.mode)
            (builder.*c.mode)(true);
        std::vector<int> events;
        builder.setIncProgressBar([&](int& count) { events.push_back(count); });
        ClientTreeModel& view = build(builder);

        EXPECT_EQ(counter.nodeCount(), c.nodes);
        EXPECT_EQ(builder.nodeCount(), c.nodes);
        EXPECT_EQ(view.count(), c.nodes);
        ASSERT_EQ(int(events.size()), c.nodes);
        for (size_t i = 0; i < events.size(); ++i)
            EXPECT_EQ(events[i], int(i) + 1);
    }
}

TEST_F(ClientTreeTest, OnlyModesOverwriteTheFlags) {
    // firm, tax, family, companies, contacts, expand companies, expand contacts
    using Flags = std::array<bool, 7>;
    const struct {
        const char* name;
        Setter mode;
        Flags flags;
    } cases[] = {
        {"PersonalTax",
         &clsPopulateClientTree::setShowOnlyPersonalTaxClients,
         {false, true, true, false, false, false, false}},
        {"Companies",
         &clsPopulateClientTree::setShowOnlyCompanies,
         {false, false, false, true, false, false, false}},
        {"QuillmereCompanies",
         &clsPopulateClientTree::setShowOnlyQuillmereCompanies,
         {false, false, false, true, false, false, false}},
        {"QuillmereAndContacts",
         &clsPopulateClientTree::setShowOnlyQuillmereCompaniesAndContacts,
         {false, false, true, true, true, true, false}},
        {"Categories",
         &clsPopulateClientTree::setShowOnlyCategories,
         {false, false, false, false, false, false, false}},
        {"Firm",
         &clsPopulateClientTree::setShowOnlyFirm,
         {true, false, false, false, false, false, false}},
    };
    auto flags = [](const clsPopulateClientTree& t) {
        return Flags{t.showFirm(),         t.showPersonalTax(), t.showFamilyMembers(),
                     t.showCompanies(),    t.showContacts(),    t.expandAllCompanies(),
                     t.expandAllContacts()};
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        clsPopulateClientTree t;
        t.setExpandAllContacts(true);
        (t.*c.mode)(true);
        EXPECT_EQ(flags(t), c.flags);
        // Switching the mode off leaves what it wrote.
        (t.*c.mode)(false);
        EXPECT_EQ(flags(t), c.flags);
    }

    clsPopulateClientTree t;
    t.setShowOnlyQuillmereCompanies(true);
    t.setShowOnlyPersonalTaxClients(true);
    EXPECT_FALSE(t.ShowOnlyQuillmereCompanies());
    t.setShowOnlyCompanies(true);
    EXPECT_FALSE(t.ShowOnlyPersonalTaxClients());
    t.setShowOnlyQuillmereCompaniesAndContacts(true);
    t.setShowOnlyFirm(true);
    EXPECT_FALSE(t.ShowOnlyQuillmereCompaniesAndContacts());
    EXPECT_TRUE(t.ShowOnlyCompanies()); // not among the modes Firm clears
}

TEST_F(ClientTreeTest, RootFollowsTheMode) {
    const struct {
        const char* name;
        Setter mode;
        const char* root;
    } cases[] = {
        {"Default", nullptr, "Category:1"},
        {"QuillmereCompanies", &clsPopulateClientTree::setShowOnlyQuillmereCompanies, "Category:2"},
        {"PersonalTax", &clsPopulateClientTree::setShowOnlyPersonalTaxClients, "TaxCategory:3"},
        {"Firm", &clsPopulateClientTree::setShowOnlyFirm, "FirmCategory:4"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        clsPopulateClientTree tree;
        if (c.mode)
            (tree.*c.mode)(true);
        ClientTreeModel& view = build(tree);
        ASSERT_NE(view.firstRoot(), nullptr);
        EXPECT_EQ(view.firstRoot()->key(), QString::fromLatin1(c.root));
        EXPECT_EQ(view.firstRoot()->next(), nullptr);
    }
}

TEST_F(ClientTreeTest, OnlyTheCurrentTaxYearStartsOpen) {
    const struct {
        const char* name;
        QDate today;
        bool expandAll;
        bool open2022, open2023, openSeniors, openUnfiled;
    } cases[] = {
        {"April30IsLastYear", QDate(2023, 4, 30), false, true, false, false, false},
        {"May1IsThisYear", QDate(2023, 5, 1), false, false, true, true, false},
        {"ExpandAll", QDate(2023, 5, 1), true, true, true, true, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        hostExec(QStringLiteral("DELETE FROM DataVersion"));
        setToday(c.today);
        clsPopulateClientTree tree;
        tree.setExpandAllPersonalTaxCategories(c.expandAll);
        ClientTreeModel& view = build(tree);
        EXPECT_EQ(view.find("TaxCategory:5")->expanded(), c.open2022);
        EXPECT_EQ(view.find("TaxCategory:6")->expanded(), c.open2023);
        EXPECT_EQ(view.find("TaxCategory:7")->expanded(), c.openSeniors);
        EXPECT_EQ(view.find("TaxCategory:11")->expanded(), c.openUnfiled);
        EXPECT_TRUE(view.find("TaxCategory:3")->expanded());
        EXPECT_TRUE(view.find("Category:8")->expanded());
    }
}

TEST_F(ClientTreeTest, SelectionByNodeNameOrHostCategory) {
    const struct {
        const char* name;
        const char* nodeName;
        int hostCategory;
        const char* selected;
        bool expanded;
    } cases[] = {
        {"Company", "Company:21", -1, "Company:21", true},
        {"ContactInCompany", "Company:20Contact:200", -1, "Company:20Contact:200", true},
        {"TaxContact", "TaxCategory:7TaxContact:206", -1, "TaxCategory:7TaxContact:206", true},
        {"HostCategory", "", 8, "Category:8", true},
        {"NameWinsOverHost", "Company:23", 8, "Company:23", true},
        {"NoSuchNode", "Company:999", -1, "Category:1", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        clsPopulateClientTree tree;
        tree.setCurrentlySelectedNodeName(QString::fromLatin1(c.nodeName));
        tree.setHostCategory(c.hostCategory);
        ClientTreeModel& view = build(tree);
        const ClientTreeNode* selected = tree.getCurrentlySelectedNode();
        ASSERT_NE(selected, nullptr);
        EXPECT_EQ(selected->key(), QString::fromLatin1(c.selected));
        EXPECT_EQ(selected->expanded(), c.expanded);
        EXPECT_EQ(view.selectedItem(), selected);
        EXPECT_EQ(selected->key() != "Category:1", !view.firstRoot()->selected());
    }
}

TEST_F(ClientTreeTest, InactiveMarkingCanBeSwitchedOff) {
    clsPopulateClientTree tree;
    tree.setShowActiveInactiveCompanies(false);
    tree.setShowActiveInactiveContacts(false);
    ClientTreeModel& view = build(tree);
    EXPECT_EQ(view.find("Company:21")->text(), "Bakery on Main");
    EXPECT_EQ(view.find("Company:21")->foreColor(), 0);
    EXPECT_EQ(view.find("TaxCategory:5TaxContact:205")->text(), "Gus Old");
}

TEST_F(ClientTreeTest, QueriesStayConstantAsTheLedgerGrows) {
    auto statementsOfOneBuild = [this] {
        clsPopulateClientTree tree;
        const qint64 before = m_db->statementCount();
        build(tree);
        return m_db->statementCount() - before;
    };
    // The first build heals the stored tax year; later ones only read.
    statementsOfOneBuild();
    const qint64 small = statementsOfOneBuild();
    for (int i = 0; i < 40; ++i) {
        const int company = 1000 + i;
        hostExec(QStringLiteral("INSERT INTO Companies (CompanyID, CategoryNum, CompanyName) "
                                "VALUES (%1, 8, 'Co %1')")
                     .arg(company));
        hostExec(QStringLiteral("INSERT INTO ClientData (ClientDataID, CompanyIDNum, "
                                "ActiveStatus) VALUES (%1, %1, %2)")
                     .arg(company)
                     .arg(i % 2 + 1));
        hostExec(QStringLiteral("INSERT INTO Contacts (ContactID, DisplayName) VALUES (%1, 'P')")
                     .arg(company));
        hostExec(QStringLiteral("INSERT INTO ContactLinks (ContactIDNum, CompanyNum) VALUES (%1, "
                                "%1)")
                     .arg(company));
        hostExec(QStringLiteral("INSERT INTO ContactLinks (ContactIDNum, CategoryNum, "
                                "IsPersonalTaxCategory) VALUES (%1, 6, 1)")
                     .arg(company));
    }
    EXPECT_EQ(statementsOfOneBuild(), small);
    EXPECT_LT(small, 25);
}

TEST_F(ClientTreeTest, RecordCountAddsEveryOpenSet) {
    const int employees = hostValue("SELECT COUNT(*) FROM AccountantEmployeeInfo").toInt();
    const int categories = hostValue("SELECT COUNT(*) FROM Categories").toInt();
    const int companies = hostValue("SELECT COUNT(*) FROM Companies").toInt();
    const int joined = hostValue("SELECT COUNT(*) FROM ContactLinks INNER JOIN Contacts ON "
                                 "ContactIDNum = ContactID WHERE CategoryNum IS NOT NULL")
                           .toInt() +
                       hostValue("SELECT COUNT(*) FROM ContactLinks INNER JOIN Contacts ON "
                                 "ContactIDNum = ContactID WHERE CompanyNum IS NOT NULL")
                           .toInt() +
                       hostValue("SELECT COUNT(*) FROM ContactLinks INNER JOIN Contacts ON "
                                 "ContactIDNum = ContactID WHERE ContactNum IS NOT NULL")
                           .toInt();
    clsPopulateClientTree full;
    EXPECT_EQ(full.getRecordCount(), employees + 1 + categories + companies + joined);
    clsPopulateClientTree onlyCategories;
    onlyCategories.setShowOnlyCategories(true);
    EXPECT_EQ(onlyCategories.getRecordCount(), categories);
}

TEST_F(ClientTreeTest, CategoryThatIsItsOwnParentIsRepaired) {
    const struct {
        const char* name;
        int category;
        Setter mode;
    } cases[] = {
        {"Root", 1, nullptr},
        {"BusinessRoot", 2, &clsPopulateClientTree::setShowOnlyQuillmereCompanies},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        hostExec(QStringLiteral("UPDATE Categories SET CategoryNum = %1 WHERE CategoryID = %1")
                     .arg(c.category));
        clsPopulateClientTree tree;
        if (c.mode)
            (tree.*c.mode)(true);
        ClientTreeModel& view = build(tree);
        EXPECT_TRUE(hostValue(QStringLiteral("SELECT CategoryNum IS NULL FROM Categories WHERE "
                                             "CategoryID = %1")
                                  .arg(c.category))
                        .toBool());
        EXPECT_NE(view.find(QStringLiteral("Category:%1").arg(c.category)), nullptr);
        EXPECT_NE(view.find("Company:20"), nullptr);
    }
}

TEST_F(ClientTreeTest, MissingSystemCategoriesAppearInTheFirstBuild) {
    hostExec(QStringLiteral("DELETE FROM Categories WHERE CategoryID IN (3, 4)"));
    clsPopulateClientTree tree;
    ClientTreeModel& view = build(tree);
    const int firm =
        hostValue("SELECT CategoryID FROM Categories WHERE CategorySpecialCode = 'FirmCategory'")
            .toInt();
    const ClientTreeNode* node = view.find(QStringLiteral("FirmCategory:%1").arg(firm));
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->text(), "Firm Staff");
    EXPECT_EQ(node->parent(), view.firstRoot());
    // Staff whose category vanished, or is cut off from the firm's, stand in
    // the firm category.
    EXPECT_EQ(view.find("FirmContact:300")->parent(), node);
    EXPECT_EQ(view.find("FirmContact:301")->parent(), node);
    EXPECT_EQ(view.find("FirmCategory:10"), nullptr);
    // The tax years lost their parent and are no longer in the tree.
    EXPECT_EQ(view.find("TaxCategory:6"), nullptr);
}

TEST_F(ClientTreeTest, CategoryCyclesEndInAnErrorNotAHang) {
    const struct {
        const char* name;
        const char* damage;
        Setter mode;
        bool fails;
    } cases[] = {
        {"ThroughTheRoot", "UPDATE Categories SET CategoryNum = 12 WHERE CategoryID = 1", nullptr,
         true},
        {"ThroughTheBusinessRoot", "UPDATE Categories SET CategoryNum = 8 WHERE CategoryID = 2",
         &clsPopulateClientTree::setShowOnlyQuillmereCompanies, true},
        // Off the tree, and holding an employee's category.
        {"ThreeCategoriesOffTheTree",
         "UPDATE Categories SET CategoryNum = CASE CategoryID WHEN 8 THEN 10 WHEN 10 THEN 12 "
         "ELSE 8 END WHERE CategoryID IN (8, 10, 12)",
         nullptr, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        hostExec(QString::fromLatin1(c.damage));
        for (bool countOnly : {true, false}) {
            clsPopulateClientTree tree;
            if (c.mode)
                (tree.*c.mode)(true);
            ClientTreeModel view;
            tree.setTreeViewControl(&view);
            if (c.fails) {
                EXPECT_THROW(tree.populateContactLedgerTree(countOnly), QmError);
                EXPECT_TRUE(view.redraw());
            } else {
                EXPECT_NO_THROW(tree.populateContactLedgerTree(countOnly));
            }
        }
        hostExec(QStringLiteral("UPDATE Categories SET CategoryNum = 1 WHERE CategoryID IN (2, "
                                "12)"));
        hostExec(QStringLiteral("UPDATE Categories SET CategoryNum = NULL WHERE CategoryID = 1"));
        hostExec(QStringLiteral("UPDATE Categories SET CategoryNum = 2 WHERE CategoryID = 8"));
        hostExec(QStringLiteral("UPDATE Categories SET CategoryNum = 4 WHERE CategoryID = 10"));
    }
}

TEST_F(ClientTreeTest, ALoopReachesTheErrorObjectAtTheEventBoundary) {
    errorClass errors(&m_context->clock);
    errors.setLogFolder(m_env.path(QStringLiteral("work/Logs")));
    m_context->errors = &errors;
    ErrorReport seen;
    errors.setPrompt([&](const ErrorReport& report) {
        seen = report;
        return int(errorClass::Leave);
    });
    hostExec(QStringLiteral("UPDATE Categories SET CategoryNum = 12 WHERE CategoryID = 1"));
    clsPopulateClientTree tree;
    ClientTreeModel view;
    tree.setTreeViewControl(&view);
    EXPECT_FALSE(runGuarded(&errors, [&] { tree.populateContactLedgerTree(false); }));
    EXPECT_EQ(seen.number, QmError::DatabaseError);
    EXPECT_TRUE(seen.description.contains(QStringLiteral("loops")));
    EXPECT_TRUE(seen.tagStack.contains(
        QStringLiteral("QuillmerePad.exe-clsPopulateClientTree-populateContactLedgerTree")));
    m_context->errors = nullptr;
}

TEST_F(ClientTreeTest, TicksStayOnNodesOfTheChosenKind) {
    // Every node starts ticked, so that a node the walk reaches and wrongly
    // leaves alone shows; nodes it must not reach keep their tick.
    const struct {
        const char* name;
        const char* ticked;
        short kind;
        QStringList on;
        QStringList off;
    } cases[] = {
        {"CategoryForCompaniesDoesNotDescend",
         "Category:2",
         1,
         {"Company:23", "Company:20", "Company:20Contact:200"},
         {"Category:8"}},
        {"CompanyForContacts",
         "Company:20",
         2,
         {"Company:20Contact:200", "Company:20Contact:201",
          "Company:20Contact:201Family:201Contact:200"},
         {"Company:22"}},
        {"CategoryForContactsDescendsIntoCompanies",
         "Category:12",
         2,
         {"Category:12Contact:208", "Company:24Contact:201",
          "Company:24Contact:201Family:201Contact:200"},
         {"Company:24", "Company:25", "Company:26"}},
        {"CompanyForCompanies",
         "Company:20",
         1,
         {"Company:22", "Company:20Contact:201Family:201Contact:200"},
         {"Company:20Contact:200", "Company:20Contact:201"}},
        {"OtherKindsClearEverything",
         "Company:20",
         3,
         {"Company:20", "Company:20Contact:201Family:201Contact:200"},
         {"Company:22", "Company:20Contact:200", "Company:20Contact:201"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        clsPopulateClientTree tree;
        ClientTreeModel& view = build(tree);
        for (const QString& k : keys(view))
            view.find(k)->setChecked(true);
        tree.checkAllChildNodes(view.find(QString::fromLatin1(c.ticked)), true, c.kind);
        for (const QString& k : c.on)
            EXPECT_TRUE(view.find(k)->checked()) << k.toStdString();
        for (const QString& k : c.off)
            EXPECT_FALSE(view.find(k)->checked()) << k.toStdString();
    }
    // Unticking clears the right kind too.
    clsPopulateClientTree tree;
    ClientTreeModel& view = build(tree);
    view.find("Company:20")->setChecked(true);
    tree.checkAllChildNodes(view.find("Category:8"), true, 1);
    tree.checkAllChildNodes(view.find("Category:8"), false, 1);
    EXPECT_FALSE(view.find("Company:20")->checked());
    EXPECT_FALSE(view.find("Company:21")->checked());
}

TEST_F(ClientTreeTest, NodeReadersParseTheKeys) {
    clsPopulateClientTree tree;
    ClientTreeModel& view = build(tree);
    const struct {
        const char* key;
        const char* type;
        int id, hostCompany, hostCategory, hostTaxCategory;
    } cases[] = {
        {"Category:8", "Category", 8, -1, 8, -1},
        {"TaxCategory:7", "Category", 7, -1, 7, -1},
        {"FirmCategory:10", "Category", 10, -1, 10, -1},
        {"Company:22", "Company", 22, 20, 8, -1},
        {"Company:20Contact:201", "Contact", 201, 20, 8, -1},
        {"Company:20Contact:201Family:201Contact:200", "Contact", 200, -1, 8, -1},
        {"TaxCategory:7TaxContact:206", "Contact", 206, -1, 7, 6},
        {"TaxCategory:6TaxContact:203Family:203TaxContact:204", "Contact", 204, -1, 6, 6},
        {"TaxCategory:11TaxContact:207", "Contact", 207, -1, 11, -1},
        {"FirmContact:301", "FirmContact", 301, -1, 10, -1},
        {"FirmContact:300Family:300FirmContact:302", "FirmContact", 302, -1, 4, -1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.key);
        const ClientTreeNode* node = view.find(QString::fromLatin1(c.key));
        ASSERT_NE(node, nullptr);
        EXPECT_EQ(clsPopulateClientTree::getSelectedNodeTypeFromNode(node), c.type);
        EXPECT_EQ(clsPopulateClientTree::getSelectedNodeIDFromNode(node), c.id);
        EXPECT_EQ(clsPopulateClientTree::getHostCompanyFromSelectedNode(node), c.hostCompany);
        EXPECT_EQ(clsPopulateClientTree::getHostCategoryFromSelectedNode(node), c.hostCategory);
        EXPECT_EQ(tree.getHostTaxCategoryFromContactNode(node), c.hostTaxCategory);
    }
    EXPECT_EQ(clsPopulateClientTree::getSelectedNodeIDFromNode(nullptr), -1);
}

TEST_F(ClientTreeTest, WithoutAConnectionNothingChanges) {
    ClientTreeModel view;
    view.add(QString(), ClientTreeView::tvwLast, "Keep:1", "kept", 0, 0);
    m_db->disconnect();
    clsPopulateClientTree tree;
    tree.setTreeViewControl(&view);
    tree.populateContactLedgerTree(false);
    tree.populateContactLedgerTree(true);
    EXPECT_EQ(tree.getRecordCount(), 0);
    EXPECT_FALSE(tree.recordSetsOpen());
    EXPECT_EQ(view.count(), 1);
    EXPECT_EQ(tree.nodeCount(), 0);
}

TEST_F(ClientTreeTest, RecordSetsCloseWithTheObject) {
    const int before = m_db->openRecordsetCount();
    {
        clsPopulateClientTree tree;
        tree.initializeRecordSets();
        EXPECT_EQ(m_db->openRecordsetCount(), before + 6);
        tree.initializeRecordSets(); // idempotent
        EXPECT_EQ(m_db->openRecordsetCount(), before + 6);
    }
    EXPECT_EQ(m_db->openRecordsetCount(), before);
}

} // namespace

namespace {

TEST_F(ClientTreeTest, CancelledBuildKeepsWhatWasBuiltAndTheNextBuildIsWhole) {
    clsPopulateClientTree tree;
    int asked = 0;
    tree.setCancelRequested([&] { return ++asked >= 10; });
    ClientTreeModel& partial = build(tree);
    EXPECT_TRUE(tree.buildCancelled());
    EXPECT_EQ(tree.nodeCount(), 10);
    EXPECT_EQ(partial.count(), 10);

    tree.setCancelRequested({});
    ClientTreeModel& whole = build(tree);
    EXPECT_FALSE(tree.buildCancelled());
    EXPECT_EQ(whole.count(), 35);

    // The counting pass stops at the same question.
    clsPopulateClientTree counter;
    counter.setCancelRequested([] { return true; });
    counter.populateContactLedgerTree(true);
    EXPECT_TRUE(counter.buildCancelled());
    EXPECT_EQ(counter.nodeCount(), 1);
}

} // namespace
