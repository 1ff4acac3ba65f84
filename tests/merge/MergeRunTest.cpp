#include "merge/MergeRun.h"

#include "context/AppContext.h"
#include "merge/MergeTestDatabase.h"
#include "merge/clsInsertFieldsInRTB.h"
#include "platform/ProgressReporter.h"
#include "platform/tree/ClientTreeModel.h"
#include "support/TestEnvironment.h"

#include <QFileInfo>
#include <gtest/gtest.h>

namespace {

QList<QStringList> rowsOf(const FieldTable& ids) {
    QList<QStringList> rows;
    for (int row = 1; row <= ids.rowCount(); ++row) {
        rows << QStringList{ids.value(row, 1), ids.value(row, 2)};
    }
    return rows;
}

class MergeRunTest : public ::testing::Test {
protected:
    void SetUp() override {
        db = std::make_unique<MergeTestDatabase>(env.path("client.qmd"));
        db->fillStandardPractice();
        fields.setLineBreaksAsParagraphs(false);
        request.templateCaption = "Merge Template - Year End";
        request.templateText = QStringLiteral("{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}}"
                                              "\\pard\\f0\\fs20 \\'abCompany Name\\'bb\\par\r\n}");
        request.today = QDate(2024, 3, 5);
        request.vaultRoot = env.root() + "/vault";
    }

    TestEnvironment env;
    ScopedAppContext context;
    clsInsertFieldsInRTB fields;
    std::unique_ptr<MergeTestDatabase> db;
    MergeRequest request;
    NullProgress progress;
};

TEST_F(MergeRunTest, AllRecipientsOfEachKind) {
    const struct {
        const char* name;
        InformationKind kind;
        QList<QStringList> rows;
    } cases[] = {
        {"Companies", InformationKind::Companies, {{"10", ""}, {"20", ""}, {"30", ""}}},
        {"Contacts", InformationKind::Contacts, {{"10", "100"}, {"30", "101"}}},
        {"Tasks", InformationKind::Tasks, {{"500", ""}}},
        {"Appointments", InformationKind::Appointments, {{"700", ""}, {"701", ""}}},
    };
    for (const auto& c : cases) {
        FieldTable ids(2);
        MergeRun::addAllRecipients(c.kind, db->db(), ids);
        EXPECT_EQ(rowsOf(ids), c.rows) << c.name;
    }
}

TEST_F(MergeRunTest, TickedTreeNodesBecomeRecipientRows) {
    ClientTreeModel tree;
    auto* category = tree.add("", ClientTreeView::tvwLast, "Category:1", "Clients", 7, 7);
    auto* acme = tree.add("Category:1", ClientTreeView::tvwChild, "Company:10", "Acme", 1, 1);
    auto* jo =
        tree.add("Company:10", ClientTreeView::tvwChild, "Company:10Contact:100", "Jo", 3, 3);
    tree.add("Company:10", ClientTreeView::tvwChild, "Company:10Contact:101", "Pat", 3, 3);
    auto* solo =
        tree.add("Category:1", ClientTreeView::tvwChild, "Category:1Contact:102", "Solo", 3, 3);
    auto* gamma = tree.add("Category:1", ClientTreeView::tvwChild, "Company:30", "Gamma", 1, 1);
    for (auto* node : {category, acme, jo, solo, gamma}) {
        node->setChecked(true);
    }
    const struct {
        int mode;
        QList<QStringList> rows;
    } cases[] = {
        {1, {{"10", ""}, {"30", ""}}},
        // A contact outside a company has no host company.
        {2, {{"10", "100"}, {"-1", "102"}}},
        {3, {{"10", "100"}, {"-1", "102"}}},
        {4, {}},
    };
    for (const auto& c : cases) {
        FieldTable ids(2);
        MergeRun::addTickedNodes(tree, c.mode, ids);
        EXPECT_EQ(rowsOf(ids), c.rows) << c.mode;
    }
}

TEST_F(MergeRunTest, ARunMergesAndFilesWithItsOwnDateAndRestoresTheContext) {
    context->clock.setFixed(QDateTime(QDate(2020, 1, 1), QTime(8, 0)));
    context->currentProvince = 3;
    request.model.InformationType = InformationKind::Companies;
    request.recipients = MergeRequest::Recipients::All;
    request.province = 8;
    MergeRun run(request);
    ASSERT_EQ(run.merge(fields, db->db(), progress), MergeRun::Outcome::Merged);
    EXPECT_EQ(context->clock.today(), QDate(2020, 1, 1));
    EXPECT_EQ(context->currentProvince, 3);
    QStringList filed;
    EXPECT_EQ(run.file(fields, db->db(), progress,
                       [&filed](const MergedRecord& r) { filed << r.savedPath; }),
              0);
    ASSERT_EQ(filed.size(), 3);
    EXPECT_EQ(filed[0], request.vaultRoot + "/Acme Widgets/Mar 5 2024 - Year End.qmw");
    EXPECT_TRUE(QFileInfo::exists(filed[2]));
    EXPECT_EQ(context->clock.today(), QDate(2020, 1, 1));
}

TEST_F(MergeRunTest, RequestsThatCannotBeMergedAreRefused) {
    request.model.InformationType = InformationKind::Companies;
    request.recipients = MergeRequest::Recipients::TaskCriteria;
    request.criteria = "taskName=GST";
    MergeRun wrongKind(request);
    EXPECT_EQ(wrongKind.merge(fields, db->db(), progress), MergeRun::Outcome::Refused);
    EXPECT_FALSE(wrongKind.problem().isEmpty());

    request.model.InformationType = InformationKind::Tasks;
    request.criteria = "noSuchField=1";
    MergeRun badCriteria(request);
    EXPECT_EQ(badCriteria.merge(fields, db->db(), progress), MergeRun::Outcome::Refused);
    EXPECT_TRUE(badCriteria.problem().contains("noSuchField"))
        << badCriteria.problem().toStdString();

    request.model.InformationType = informationKindFromInt(7);
    request.recipients = MergeRequest::Recipients::All;
    MergeRun otherKind(request);
    EXPECT_EQ(otherKind.merge(fields, db->db(), progress), MergeRun::Outcome::Refused);
    EXPECT_FALSE(QFileInfo::exists(request.vaultRoot));
}

} // namespace

namespace {

// A practice on a read-only medium: the default-contact repair and the
// folder rows cannot be saved, and the merge failed on the first write.
TEST_F(MergeRunTest, AReadOnlyPracticeFailedToMergeBecauseRepairsWrote) {
    db->exec("UPDATE ContactLinks SET DefaultContact = 0;");
    db->db().disconnect();
    db->db().setOpenReadOnly(true);
    db->db().connect();
    ASSERT_TRUE(db->db().isReadOnly());

    request.model.InformationType = InformationKind::Companies;
    request.recipients = MergeRequest::Recipients::All;
    MergeRun run(request);
    ASSERT_EQ(run.merge(fields, db->db(), progress), MergeRun::Outcome::Merged);
    QStringList filed;
    EXPECT_EQ(run.file(fields, db->db(), progress,
                       [&filed](const MergedRecord& r) {
                           if (r.failure.isEmpty())
                               filed << r.savedPath;
                       }),
              0);
    EXPECT_EQ(filed.size(), 3);

    // Nothing was written to the practice's file.
    db->db().disconnect();
    db->db().setOpenReadOnly(false);
    db->db().connect();
    const int links = db->db().openRecordset("SELECT ContactLinks.ContactIDNum FROM ContactLinks "
                                             "WHERE ContactLinks.DefaultContact <> 0;");
    EXPECT_FALSE(db->db().hasRecords(links));
    db->db().closeRecordset(links);
    const int rows =
        db->db().openRecordset("SELECT ClientDocumentStorage.* FROM ClientDocumentStorage;");
    EXPECT_FALSE(db->db().hasRecords(rows));
    db->db().closeRecordset(rows);
}

} // namespace
