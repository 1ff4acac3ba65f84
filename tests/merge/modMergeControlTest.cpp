#include "merge/modMergeControl.h"

#include "app/AppContext.h"
#include "merge/MergeTestDatabase.h"
#include "merge/clsInsertFieldsInRTB.h"
#include "platform/ProgressReporter.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

namespace {

class MergeRunTest : public ::testing::Test {
protected:
    void SetUp() override {
        context->clock.setFixed(QDateTime(QDate(2024, 3, 5), QTime(9, 0)));
        context->fieldInserter = &fields;
        db = std::make_unique<MergeTestDatabase>(env.path("client.qmd"));
        db->fillStandardPractice();
        fields.setLineBreaksAsParagraphs(false);
        result.templateCaption = "Merge Template - Year End";
        result.templateText = QStringLiteral(
            "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0 Arial;}}\\pard\\f0\\fs20 "
            "\\'abCompany Name\\'bb / \\'abContact Display Name\\'bb / \\'abAppointment "
            "Name\\'bb / \\'abTask Name\\'bb\\par\r\n}");
    }
    void TearDown() override { db.reset(); }

    void run(int type, const QList<QStringList>& ids) {
        result.model.InformationType = type;
        result.model.documentType = 2;
        fields.createDefaultFieldListStructure(type, true, true);
        result.IDList.clear();
        for (const QStringList& row : ids) {
            result.IDList.addRow(result.IDList.rowCount() + 1, row);
        }
        result.createMergeDocument(progress);
    }
    QStringList names() const {
        QStringList out;
        for (const MergedRecord& r : result.records) {
            out << r.name;
        }
        return out;
    }

    TestEnvironment env;
    ScopedAppContext context;
    clsInsertFieldsInRTB fields;
    std::unique_ptr<MergeTestDatabase> db;
    MergeResultDocument result;
    RecordingProgress progress;
};

TEST_F(MergeRunTest, CompanyMergeSortsAndNamesTheRecipients) {
    run(1, {{"30", ""}, {"10", "x"}, {"999", "102"}, {"20", "-1"}});
    EXPECT_EQ(names(),
              QStringList({"Acme Widgets", "Beta {Braces} \\Back", "Gamma Ltd", "Information"}));
    EXPECT_EQ(progress.caption(), "Merging information");
    EXPECT_EQ(progress.maximum(), 4);
    EXPECT_EQ(progress.steps().first(), "Merging Acme Widgets");
    EXPECT_TRUE(result.records[0].rtf.contains("Acme Widgets / Jo Smith / "));
    // A company without contacts: contact fields are empty.
    EXPECT_EQ(result.records[1].contactID, -1);
    EXPECT_TRUE(result.records[1].rtf.contains(" Beta {Braces} \\Back /  / "));
    // A contact without a company: its name, no company.
    EXPECT_EQ(result.records[3].contactID, 102);
    EXPECT_EQ(result.totalPagesMergeDocs, 4);
}

TEST_F(MergeRunTest, ContactMergesNameTheContact) {
    run(3, {{"", "100"}, {"30", ""}});
    EXPECT_EQ(names(), QStringList({"Jo Smith", "Pat Lee"}));
    run(2, {{"", ""}});
    EXPECT_EQ(result.records.back().name, "Information");
}

TEST_F(MergeRunTest, TaskAndAppointmentMerges) {
    run(4, {{"500", ""}});
    ASSERT_EQ(result.records.size(), 1u);
    EXPECT_EQ(result.records[0].name, "Acme Widgets");
    EXPECT_EQ(progress.steps(), QStringList({"Merging 1st Quarterly GST Payment"}));
    EXPECT_TRUE(result.records[0].rtf.contains(" 1st Quarterly GST Payment"));
    RecordingProgress appointments;
    result.IDList.clear();
    result.model.InformationType = 5;
    fields.createDefaultFieldListStructure(5, true, true);
    result.IDList.addRow(1, {"700", ""});
    result.IDList.addRow(2, {"701", ""});
    result.createMergeDocument(appointments);
    EXPECT_EQ(appointments.steps(), QStringList({"Merging Year end review", "Merging Walk-in"}));
    EXPECT_TRUE(result.records[0].rtf.contains(" Year end review"));
}

TEST_F(MergeRunTest, SavingFilesEachRecordAndReusesThePathsTheSecondTime) {
    run(1, {{"10", ""}, {"20", ""}});
    run(5, {});
    result.IDList.clear();
    result.model.InformationType = 1;
    fields.createDefaultFieldListStructure(1, true, true);
    result.IDList.addRow(1, {"10", ""});
    result.IDList.addRow(2, {"-1", "102"});
    result.createMergeDocument(progress);
    const QString root = env.root() + "/vault";
    RecordingProgress saving;
    result.saveMergeDocument(saving, root);
    EXPECT_EQ(saving.caption(), "Saving documents");
    // Sorted on the IDs: the personal client (no company) comes first.
    EXPECT_EQ(saving.steps(),
              QStringList({"Saving document for Information", "Saving document for Acme Widgets"}));
    std::swap(result.records[0], result.records[1]);
    EXPECT_EQ(result.records[0].savedPath, root + "/Acme Widgets/Mar 5 2024 - Year End.qmw");
    EXPECT_EQ(result.records[1].savedPath,
              root + "/Personal Tax Clients/Solo Person/Mar 5 2024 - Year End.qmw");
    const QByteArray saved = *fileControl::readWholeFile(result.records[0].savedPath);
    EXPECT_TRUE(saved.startsWith("{\\rtf1"));
    EXPECT_TRUE(saved.contains("Acme Widgets"));
    EXPECT_TRUE(saved.contains("{\\QuillmereInfo{\\QMFileSaveType \\val 0}\r\n"
                               "{\\QMDocumentType \\val 4}\r\n{\\QMInformationType \\val 1}"));
    // No temporary file is left beside it.
    EXPECT_EQ(QDir(root + "/Acme Widgets").entryList(QDir::Files | QDir::Hidden).size(), 1);

    // The client is renamed on another day; the stored paths still serve.
    db->exec("UPDATE Companies SET CompanyName = 'Acme Renamed' WHERE CompanyID = 10");
    context->clock.setFixed(QDateTime(QDate(2024, 3, 6), QTime(9, 0)));
    result.records[0].rtf.replace("Acme Widgets", "Edited");
    result.saveMergeDocument(saving, root);
    EXPECT_EQ(result.records[0].savedPath, root + "/Acme Widgets/Mar 5 2024 - Year End.qmw");
    EXPECT_TRUE(fileControl::readWholeFile(result.records[0].savedPath)->contains("Edited"));
}

TEST_F(MergeRunTest, AnUnwritableVaultFailsWithoutAFile) {
    run(1, {{"10", ""}});
    const QString blocker = env.path("blocked");
    QFile file(blocker);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    // A file where the vault root should be: no folder can be made below it.
    EXPECT_THROW(result.saveMergeDocument(progress, blocker), QmError);
    EXPECT_TRUE(result.records[0].savedPath.isEmpty() ||
                !QFileInfo::exists(result.records[0].savedPath));
}

} // namespace
