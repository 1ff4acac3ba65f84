#include "merge/RecipientSelection.h"

#include "data/ClientDbFixture.h"
#include "data/clsPopulateClientTree.h"
#include "merge/MergeRun.h"
#include "platform/FieldTable.h"
#include "platform/tree/ClientTreeModel.h"
#include "search/clsSearchAppointments.h"
#include "search/clsSearchTasks.h"

#include <QStandardItem>
#include <functional>

namespace {

class RecipientSelectionTest : public ClientDbFixture {
protected:
    void SetUp() override {
        ClientDbFixture::SetUp();
        loadFixture(QStringLiteral("../tree/ledger"));
        m_context->contactNameDisplayType = 2;
        m_context->clock.setFixed(QDateTime(QDate(2024, 3, 1), QTime(9, 0)));
    }

    // The tree of a mode, built as the dialog builds it.
    ClientTreeModel& build(int mode) {
        m_trees.push_back(std::make_unique<clsPopulateClientTree>());
        m_models.push_back(std::make_unique<ClientTreeModel>());
        clsPopulateClientTree& tree = *m_trees.back();
        RecipientSelection(mode).configureTree(tree);
        tree.setTreeViewControl(m_models.back().get());
        tree.populateContactLedgerTree(false);
        return *m_models.back();
    }

    // In key order, as one text for readable failures.
    static QString sorted(QStringList list) {
        list.sort();
        return list.join(QLatin1Char(' '));
    }

    static QStringList ticked(const ClientTreeView& view) {
        QStringList out;
        std::function<void(const ClientTreeNode*)> walk = [&](const ClientTreeNode* n) {
            for (; n; n = n->next()) {
                if (n->checked())
                    out << n->key();
                walk(n->child());
            }
        };
        walk(view.firstRoot());
        return out;
    }

    static QStringList rows(const FieldTable& ids) {
        QStringList out;
        for (int row = 1; row <= ids.rowCount(); ++row)
            out << ids.value(row, 1) + QLatin1Char('/') + ids.value(row, 2);
        return out;
    }

    // A tick as the user gives it: the node, then the rules for its children.
    void tick(int mode, ClientTreeModel& view, const char* key, bool value = true) {
        ClientTreeNode* node = view.find(QLatin1String(key));
        ASSERT_NE(node, nullptr) << key;
        node->setChecked(value);
        RecipientSelection(mode).nodeCheck(*m_trees.back(), node);
    }

    std::vector<std::unique_ptr<clsPopulateClientTree>> m_trees;
    std::vector<std::unique_ptr<ClientTreeModel>> m_models;
};

TEST_F(RecipientSelectionTest, EachModeShowsTheNodesItCanTick) {
    const struct {
        int mode;
        const char* present;
        const char* absent;
    } cases[] = {
        {1, "Company:22", "Company:20Contact:201"},
        {3, "Company:20Contact:201", "Category:1Contact:202"},
        {2, "TaxCategory:7TaxContact:206", ""},
        {2, "Company:24Contact:201", ""},
    };
    for (const auto& c : cases) {
        ClientTreeModel& view = build(c.mode);
        EXPECT_NE(view.find(QLatin1String(c.present)), nullptr) << c.mode << c.present;
        if (*c.absent) {
            EXPECT_EQ(view.find(QLatin1String(c.absent)), nullptr) << c.mode << c.absent;
        }
    }
}

TEST_F(RecipientSelectionTest, EveryNodeReportsItsTickToTheModel) {
    // A tick given in the view reaches the rules only through the model.
    ClientTreeModel& view = build(RecipientSelection::Contacts);
    QStringList lost;
    std::function<void(ClientTreeNode*)> walk = [&](ClientTreeNode* n) {
        for (; n; n = n->next()) {
            if (dynamic_cast<QStandardItem*>(n)->model() != &view.model())
                lost << n->key();
            walk(n->child());
        }
    };
    walk(view.firstRoot());
    EXPECT_EQ(lost.join(QLatin1Char(' ')), QString());
}

TEST_F(RecipientSelectionTest, TicksSpreadByTheRulesOfTheMode) {
    const struct {
        int mode;
        const char* key;
        QStringList expected;
    } cases[] = {
        // A category ticks its companies but not their associates.
        {1, "Category:8", {"Category:8", "Company:20", "Company:21"}},
        // A company ticks its associates.
        {1, "Company:20", {"Company:20", "Company:22"}},
        // In a contact merge a company ticks its people, not its associates
        // or their family.
        {2, "Company:20", {"Company:20", "Company:20Contact:200", "Company:20Contact:201"}},
        {3, "Company:21", {"Company:21", "Company:21Contact:202"}},
        {2, "TaxCategory:7", {"TaxCategory:7", "TaxCategory:7TaxContact:206"}},
    };
    for (const auto& c : cases) {
        ClientTreeModel& view = build(c.mode);
        tick(c.mode, view, c.key);
        EXPECT_EQ(sorted(ticked(view)), sorted(c.expected)) << c.mode << c.key;
        tick(c.mode, view, c.key, false);
        EXPECT_TRUE(ticked(view).isEmpty()) << c.mode << c.key;
    }
}

TEST_F(RecipientSelectionTest, SavedTicksComeBackOnTheSameNodesOnly) {
    const struct {
        int mode;
        QStringList keys;
        QStringList rows;
        QStringList shownAgain; // what the next opening ticks
    } cases[] = {
        {1, {"Company:20", "Company:21", "Company:22"}, {"20/", "21/", "22/"}, {}},
        // Bob Roy belongs to two clients: only the chosen one comes back.
        {2,
         {"Company:24Contact:201", "Category:1Contact:202", "TaxCategory:7TaxContact:206"},
         {"24/201", "-1/202", "-1/206"},
         {}},
        // Contacts are written; their company is ticked again on opening.
        {3,
         {"Company:20Contact:200", "Company:21"},
         {"20/200"},
         {"Company:20", "Company:20Contact:200"}},
    };
    for (const auto& c : cases) {
        const RecipientSelection rules(c.mode);
        ClientTreeModel& first = build(c.mode);
        for (const QString& key : c.keys)
            first.find(key)->setChecked(true);
        FieldTable ids(2);
        ids.addRow(1, {QStringLiteral("999"), QStringLiteral("999")}); // replaced
        EXPECT_TRUE(rules.saveInfo(first, ids));
        EXPECT_EQ(sorted(rows(ids)), sorted(c.rows)) << c.mode;

        ClientTreeModel& again = build(c.mode);
        int yields = 0;
        rules.populateCheckedItems(again, ids, [&yields] { ++yields; });
        const QStringList expected = c.shownAgain.isEmpty() ? c.keys : c.shownAgain;
        EXPECT_EQ(sorted(ticked(again)), sorted(expected)) << c.mode;
    }
}

TEST_F(RecipientSelectionTest, AFamilyMemberShownTwiceIsOneRecipient) {
    const RecipientSelection rules(RecipientSelection::Contacts);
    ClientTreeModel& view = build(RecipientSelection::Contacts);
    view.find(QStringLiteral("Company:20Contact:201Family:201Contact:200"))->setChecked(true);
    view.find(QStringLiteral("Company:24Contact:201Family:201Contact:200"))->setChecked(true);
    FieldTable ids(2);
    rules.saveInfo(view, ids);
    EXPECT_EQ(sorted(rows(ids)), QStringLiteral("-1/200"));
}

TEST_F(RecipientSelectionTest, NoTickEmptiesTheListWithoutASelection) {
    const RecipientSelection rules(RecipientSelection::Companies);
    ClientTreeModel& view = build(RecipientSelection::Companies);
    view.find(QStringLiteral("Category:8"))->setChecked(true); // not a recipient
    FieldTable ids(2);
    ids.addRow(1, {QStringLiteral("20"), QString()});
    EXPECT_FALSE(rules.saveInfo(view, ids));
    EXPECT_TRUE(ids.isEmpty());
}

TEST(RecipientSelectionRules, ModesCaptionsAndMessagesByKind) {
    const struct {
        InformationKind kind;
        std::optional<int> mode;
        const char* caption;
        const char* message;
    } cases[] = {
        {InformationKind::Companies, 1, "Select Companies",
         "You must choose some companies to merge to create a merge document"},
        {InformationKind::CompaniesAndContacts, 3, "Select Companies",
         "You must choose some contacts to merge to create a merge document"},
        {InformationKind::Contacts, 2, "Select Contacts",
         "You must choose some contacts to merge to create a merge document"},
        {InformationKind::Tasks, std::nullopt, "",
         "You must choose some tasks to merge to create a merge document"},
        {InformationKind::Appointments, std::nullopt, "",
         "You must choose some appointments to merge to create a merge document"},
        {InformationKind::Dockets, std::nullopt, "", nullptr},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(RecipientSelection::modeForInformationType(c.kind), c.mode) << toInt(c.kind);
        if (c.mode) {
            EXPECT_EQ(RecipientSelection(*c.mode).caption(), QLatin1String(c.caption));
        }
        if (c.message) {
            EXPECT_EQ(RecipientSelection::nothingChosenMessage(c.kind), QLatin1String(c.message));
        }
    }
    EXPECT_EQ(RecipientSelection(2).label(),
              QStringLiteral("Select the contacts you would like to merge"));
}

TEST(RecipientSelectionRules, ATemplateHandsItsChoiceToTheMergeRequest) {
    FieldTable none(2);
    FieldTable listed(2);
    listed.addRow(1, {QStringLiteral("300"), QString()});
    clsSearchTasks tasks;
    tasks.searchByTaskName = true;
    tasks.taskName = QStringLiteral("GST; Q1");
    tasks.generateSQLFilter();
    clsSearchAppointments appointments;

    MergeRequest request;
    RecipientSelection::requestRecipients(InformationKind::Tasks, none, tasks.SQLFilter, tasks,
                                          appointments, request);
    EXPECT_EQ(request.recipients, MergeRequest::Recipients::TaskCriteria);
    clsSearchTasks rerun;
    ASSERT_EQ(rerun.setCriteria(request.criteria), QString());
    rerun.generateSQLFilter();
    EXPECT_EQ(rerun.SQLFilter, tasks.SQLFilter);

    // Rows given by a host win over a search.
    RecipientSelection::requestRecipients(InformationKind::Tasks, listed, tasks.SQLFilter, tasks,
                                          appointments, request);
    EXPECT_EQ(request.recipients, MergeRequest::Recipients::Listed);
    EXPECT_EQ(request.IDList.value(1, 1), QStringLiteral("300"));
    EXPECT_TRUE(request.criteria.isEmpty());

    EXPECT_TRUE(RecipientSelection::hasChosenRecipients(InformationKind::Tasks, listed, {}));
    EXPECT_TRUE(RecipientSelection::hasChosenRecipients(InformationKind::Appointments, none,
                                                        QStringLiteral("BackColour = 0")));
    EXPECT_FALSE(RecipientSelection::hasChosenRecipients(InformationKind::Tasks, none, {}));
    EXPECT_FALSE(RecipientSelection::hasChosenRecipients(InformationKind::Companies, listed, {}));
}

} // namespace
