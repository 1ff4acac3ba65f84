#include "merge/MergeResultDocument.h"

#include "StandardPracticeTest.h"
#include "context/AppContext.h"
#include "merge/MergeTestDatabase.h"
#include "merge/clsInsertFieldsInRTB.h"
#include "platform/MsgboxClass.h"
#include "platform/ProgressReporter.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

namespace {

class MergeRunTest : public StandardPracticeTest {
protected:
    void SetUp() override {
        StandardPracticeTest::SetUp();
        fields.setLineBreaksAsParagraphs(false);
        result.templateCaption = "Merge Template - Year End";
        result.templateText = QStringLiteral(
            "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0 Arial;}}\\pard\\f0\\fs20 "
            "\\'abCompany Name\\'bb / \\'abContact Display Name\\'bb / \\'abAppointment "
            "Name\\'bb / \\'abTask Name\\'bb\\par\r\n}");
    }

    void run(int type, const QList<QStringList>& ids) {
        result.model.InformationType = informationKindFromInt(type);
        result.model.documentType = 2;
        fields.createDefaultFieldListStructure(informationKindFromInt(type), true, true);
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
    result.model.InformationType = informationKindFromInt(5);
    fields.createDefaultFieldListStructure(InformationKind::Appointments, true, true);
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
    result.model.InformationType = informationKindFromInt(1);
    fields.createDefaultFieldListStructure(InformationKind::Companies, true, true);
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
    EXPECT_EQ(result.saveMergeDocument(progress, blocker), 1);
    EXPECT_FALSE(result.records[0].failure.isEmpty());
    EXPECT_TRUE(result.records[0].savedPath.isEmpty() ||
                !QFileInfo::exists(result.records[0].savedPath));
}

TEST_F(MergeRunTest, OneBadClientStoppedTheWholeMergeAndListedNothing) {
    // The first client's stored folder leaves the vault; the others must
    // still be filed and every record told as soon as it is done.
    db->exec("INSERT INTO ClientDocumentStorage (ClientDataNum, FolderPath) VALUES (1010, "
             "'../../escaped')");
    run(1, {{"10", ""}, {"30", ""}, {"-1", "102"}});
    const QString root = env.root() + "/deep/vault";
    QStringList told;
    result.onFiled = [&told](const MergedRecord& r) {
        told << r.name + (r.failure.isEmpty() ? QString(" saved") : QString(" failed"));
    };
    EXPECT_EQ(result.saveMergeDocument(progress, root), 1);
    EXPECT_EQ(told, QStringList({"Information saved", "Acme Widgets failed", "Gamma Ltd saved"}));
    EXPECT_TRUE(result.records[1].failure.contains("outside the document vault"))
        << result.records[1].failure.toStdString();
    EXPECT_FALSE(QFileInfo::exists(env.root() + "/escaped"));
    EXPECT_TRUE(QFileInfo::exists(result.records[2].savedPath));
    EXPECT_TRUE(result.records[2].savedPath.startsWith(root + "/Gamma Ltd/"));
}

TEST_F(MergeRunTest, ASecondLetterOfTheSameNameOverwroteTheFirst) {
    const QString root = env.root() + "/vault";
    const QString target = root + "/Acme Widgets/Mar 5 2024 - Year End.qmw";
    // Two letters for one client, template and day in one run, then a third
    // from a later run: the last stands, the others are kept in order.
    run(1, {{"10", ""}, {"10", ""}});
    result.records[0].rtf.replace("Acme Widgets /", "first /");
    result.records[1].rtf.replace("Acme Widgets /", "second /");
    EXPECT_EQ(result.saveMergeDocument(progress, root), 0);
    EXPECT_TRUE(result.records[0].replacedPath.isEmpty());
    EXPECT_EQ(result.records[1].replacedPath,
              root + "/Acme Widgets/Replaced/Mar 5 2024 - Year End.qmw");

    MergeResultDocument later;
    later.model = result.model;
    later.templateCaption = result.templateCaption;
    later.templateText = result.templateText;
    later.IDList.addRow(1, {"10", ""});
    ASSERT_TRUE(later.createMergeDocument(progress));
    later.records[0].rtf.replace("Acme Widgets /", "third /");
    EXPECT_EQ(later.saveMergeDocument(progress, root), 0);
    EXPECT_EQ(later.records[0].replacedPath,
              root + "/Acme Widgets/Replaced/Mar 5 2024 - Year End (2).qmw");
    EXPECT_TRUE(fileControl::readWholeFile(target)->contains("third /"));
    EXPECT_TRUE(fileControl::readWholeFile(result.records[1].replacedPath)->contains("first /"));
    EXPECT_TRUE(fileControl::readWholeFile(later.records[0].replacedPath)->contains("second /"));
}

TEST_F(MergeRunTest, TemporariesOfAKilledRunWereLeftBehind) {
    const QString folder = env.root() + "/vault/Acme Widgets";
    ASSERT_TRUE(QDir().mkpath(folder));
    for (const char* name : {".qm-1234.part", ".qm-dead.part", ".keep", "notes.part"}) {
        ASSERT_TRUE(fileControl::writeFileAtomically(folder + "/" + name, "x"));
    }
    run(1, {{"10", ""}});
    EXPECT_EQ(result.saveMergeDocument(progress, env.root() + "/vault"), 0);
    QStringList left = QDir(folder).entryList(QDir::Files | QDir::Hidden);
    left.sort();
    EXPECT_EQ(left, QStringList({".keep", "Mar 5 2024 - Year End.qmw", "notes.part"}));
}

TEST_F(MergeRunTest, CancellingStopsBetweenRecordsAndKeepsWhatWasDone) {
    progress.cancelAfter(2);
    run(1, {{"10", ""}, {"20", ""}, {"30", ""}});
    EXPECT_TRUE(result.stoppedByUser);
    EXPECT_EQ(names(), QStringList({"Acme Widgets", "Beta {Braces} \\Back"}));

    RecordingProgress saving;
    saving.cancelAfter(1);
    EXPECT_EQ(result.saveMergeDocument(saving, env.root() + "/vault"), 0);
    EXPECT_TRUE(result.stoppedByUser);
    EXPECT_TRUE(QFileInfo::exists(result.records[0].savedPath));
    EXPECT_TRUE(result.records[1].savedPath.isEmpty());
}

TEST_F(MergeRunTest, ValuesThatBreakTheLetterWentUnnoticed) {
    db->exec("UPDATE Contacts SET DisplayName = '\u00abJo\u00bb' WHERE ContactID = 100");
    run(2, {{"20", ""}, {"10", "100"}, {"30", ""}});
    ASSERT_EQ(result.records.size(), 3u);
    EXPECT_EQ(result.records[0].suspectValues,
              QStringList({QString::fromUtf8("Contact Display Name: \u00abJo\u00bb")}));
    EXPECT_EQ(result.records[1].suspectValues, QStringList({"Company Name: Beta {Braces} \\Back"}));
    EXPECT_TRUE(result.records[2].suspectValues.isEmpty());
}

// Task and appointment merges that walk a filter instead of IDList rows.
class FilteredMergeTest : public MergeRunTest {
protected:
    void SetUp() override {
        MergeRunTest::SetUp();
        context->msgbox = &msgbox;
        db->insert("Schedule", {{"ScheduleID", 501},
                                {"ClientNum", 1030},
                                {"scheduleName", "GST Return Q2"},
                                {"DueDate", "2024-05-31"}});
        db->insert("Schedule", {{"ScheduleID", 502},
                                {"ClientNum", 1010},
                                {"scheduleName", "Payroll Remittance"},
                                {"DueDate", "2024-02-15"},
                                {"Closed", 1}});
        db->insert("Schedule", {{"ScheduleID", 503},
                                {"ClientNum", 1020},
                                {"scheduleName", "GST Hidden"},
                                {"DueDate", "2024-03-31"},
                                {"hideInTasks", 1}});
        db->insert("Appointments", {{"AppointmentID", 702},
                                    {"CompanyIDNum", 30},
                                    {"Subject", "GST planning"},
                                    {"DateFrom", "2024-05-10"},
                                    {"TimeFrom", "1899-12-30 09:00:00"}});
        db->insert("Appointments", {{"AppointmentID", 703},
                                    {"CompanyIDNum", 10},
                                    {"Subject", "O'Neil's review"},
                                    {"DateFrom", "2024-06-03"},
                                    {"TimeFrom", "1899-12-30 08:00:00"}});
    }
    void prepare(int type) {
        result.model.InformationType = informationKindFromInt(type);
        result.model.documentType = 2;
        result.IDList.clear();
        fields.createDefaultFieldListStructure(informationKindFromInt(type), true, true);
    }
    QList<int> ids() const {
        QList<int> out;
        for (const MergedRecord& r : result.records) {
            out << (result.model.InformationType == InformationKind::Tasks ? r.scheduleID
                                                                           : r.appointmentID);
        }
        return out;
    }
    ScriptedMsgbox msgbox;
};

TEST_F(FilteredMergeTest, TaskMergeWalksTheFilteredTasksInOrder) {
    prepare(4);
    result.taskSearch.searchByTaskName = true;
    result.taskSearch.taskName = "GST";
    result.taskSearch.SQLSort = "ORDER BY Schedule.DueDate;";
    result.taskSearch.generateSQLFilter();
    result.SQLFilter = result.taskSearch.SQLFilter;
    ASSERT_TRUE(result.connectToRemittRST());
    ASSERT_TRUE(result.createMergeDocument(progress));
    EXPECT_EQ(ids(), QList<int>({500, 501}));
    EXPECT_EQ(names(), QStringList({"Acme Widgets", "Gamma Ltd"}));
    EXPECT_EQ(progress.maximum(), 2);
    EXPECT_EQ(progress.steps(),
              QStringList({"Merging 1st Quarterly GST Payment", "Merging GST Return Q2"}));
    EXPECT_TRUE(result.records[1].rtf.contains(
        "Gamma Ltd / Pat Lee / \\'abAppointment Name\\'bb / GST Return Q2"))
        << result.records[1].rtf.toStdString();
    EXPECT_EQ(result.records[0].contactID, 100);
    EXPECT_TRUE(msgbox.texts().isEmpty());

    // The save walk goes the same way, into each client's folder.
    RecordingProgress saving;
    const QString root = env.root() + "/vault";
    result.saveMergeDocument(saving, root);
    EXPECT_EQ(saving.steps(),
              QStringList({"Saving document for Acme Widgets", "Saving document for Gamma Ltd"}));
    EXPECT_TRUE(result.records[1].savedPath.startsWith(root + "/Gamma Ltd/"));
    EXPECT_TRUE(QFileInfo::exists(result.records[1].savedPath));
}

TEST_F(FilteredMergeTest, AppointmentMergeWalksTheSelectInDateAndTimeOrder) {
    prepare(5);
    result.appointmentSearch.searchBySubject = true;
    result.appointmentSearch.subjectText = "review";
    // Connected on demand by the walk itself.
    ASSERT_TRUE(result.createMergeDocument(progress));
    EXPECT_EQ(ids(), QList<int>({703, 700}));
    EXPECT_EQ(progress.steps(), QStringList({"Merging appointment: O'Neil's review",
                                             "Merging appointment: Year end review"}));
    EXPECT_EQ(names(), QStringList({"Acme Widgets", "Acme Widgets"}));
    EXPECT_TRUE(result.records[0].rtf.contains(" O'Neil's review"))
        << result.records[0].rtf.toStdString();

    RecordingProgress saving;
    result.saveMergeDocument(saving, env.root() + "/vault");
    EXPECT_EQ(saving.steps(), QStringList({"Saving document for appointment: O'Neil's review",
                                           "Saving document for appointment: Year end review"}));
}

TEST_F(FilteredMergeTest, AHostFilterNarrowsTheRowsOfTheSelect) {
    const struct {
        const char* name;
        int type;
        const char* filter;
        QList<int> ids;
    } cases[] = {
        {"AllTasksOfTheSelect", 4, "", {500, 501, 502, 503}},
        {"TaskFilterAsTheSearchMakesIt", 4, "Closed = False AND hideInTasks = False", {500, 501}},
        {"TasksOfOneClient", 4, "ClientDataID = 1010", {500, 502}},
        {"AppointmentWhereBody", 5, "DateFrom >= #6/1/2024# AND TimeFrom >= #1:00:00 PM#", {700}},
        {"AppointmentSubject", 5, "Subject LIKE '%O''Neil%'", {703}},
    };
    for (const auto& c : cases) {
        prepare(c.type);
        result.taskSearch.SQLSort = "ORDER BY Schedule.ScheduleID;";
        result.SQLFilter = c.filter;
        ASSERT_TRUE(result.connectToRemittRST()) << c.name;
        ASSERT_TRUE(result.createMergeDocument(progress)) << c.name;
        EXPECT_EQ(ids(), c.ids) << c.name;
    }
    // Rows given in IDList win over the filter.
    prepare(4);
    result.IDList.addRow(1, {"502", ""});
    ASSERT_TRUE(result.createMergeDocument(progress));
    EXPECT_EQ(ids(), QList<int>({502}));
}

TEST_F(FilteredMergeTest, NoItemsAndNoConnectionTellTheUser) {
    const QString noItems = "There are no items that match the search criteria you have "
                            "indicated.  Please try again.";
    const QString unable =
        "Quillmere Pad was unable to open the required items for merge.  Please try again.";

    prepare(4);
    result.SQLFilter = "scheduleName LIKE '*nothing*'";
    EXPECT_FALSE(result.createMergeDocument(progress));
    EXPECT_TRUE(result.records.empty());
    // The empty case says so once, without the second message.
    EXPECT_EQ(msgbox.texts(), QStringList({noItems}));

    msgbox.clear();
    EXPECT_FALSE(result.isRemittRSTConnected(false));
    EXPECT_EQ(msgbox.texts(), QStringList({noItems}));

    // Another kind has no filter record set.
    msgbox.clear();
    prepare(1);
    EXPECT_FALSE(result.connectToRemittRST());
    EXPECT_FALSE(result.isRemittRSTConnected(true));
    EXPECT_EQ(msgbox.texts(), QStringList({unable}));
    msgbox.clear();
    EXPECT_FALSE(result.isRemittRSTConnected(false));
    EXPECT_TRUE(msgbox.texts().isEmpty());

    // Without a connection.
    prepare(5);
    databaseControl* database = context->database;
    context->database = nullptr;
    EXPECT_FALSE(result.connectToRemittRST());
    EXPECT_FALSE(result.createMergeDocument(progress));
    EXPECT_EQ(msgbox.texts(), QStringList({unable}));
    context->database = database;
}

TEST_F(FilteredMergeTest, BrokenFiltersFailWithNothingLeftOpen) {
    const int before = db->db().openRecordsetCount();
    const struct {
        const char* name;
        int type;
        const char* filter;
    } cases[] = {
        {"UnbalancedQuote", 4, "scheduleName LIKE 'GST"},
        {"UnknownColumn", 4, "NoSuchColumn = 1"},
        {"BareJoin", 4, " AND hideInTasks = False"},
        {"BadDate", 5, "DateFrom >= #13/45/2024#"},
    };
    for (const auto& c : cases) {
        prepare(c.type);
        result.SQLFilter = c.filter;
        EXPECT_THROW(result.connectToRemittRST(), QmError) << c.name;
        EXPECT_EQ(db->db().openRecordsetCount(), before) << c.name;
        EXPECT_THROW(result.createMergeDocument(progress), QmError) << c.name;
        EXPECT_EQ(db->db().openRecordsetCount(), before) << c.name;
    }
    // A database without the tables fails the same way.
    prepare(4);
    result.SQLFilter.clear();
    db->exec("DROP TABLE Schedule");
    EXPECT_THROW(result.connectToRemittRST(), QmError);
}

} // namespace

namespace {

TEST_F(MergeRunTest, AColumnMissingFromThePracticeWentUnreported) {
    db->exec("ALTER TABLE ClientOptions DROP COLUMN ClientCustom1");
    result.templateText =
        QStringLiteral("{\\rtf1 \\'abCompany Name\\'bb: \\'abFile Number\\'bb\\par}");
    run(1, {{"10", ""}});
    ASSERT_EQ(result.records.size(), 1u);
    EXPECT_TRUE(result.records[0].failure.isEmpty());
    EXPECT_EQ(result.records[0].missingColumns,
              QStringList({"File Number (column ClientCustom1)"}));
}

} // namespace
