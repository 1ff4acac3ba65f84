#include "merge/MergeResultNavigator.h"

#include "context/AppContext.h"
#include "merge/MergeDocumentFlow.h"
#include "merge/MergeTestDatabase.h"
#include "merge/clsInsertFieldsInRTB.h"
#include "platform/MsgboxClass.h"
#include "platform/ProgressReporter.h"
#include "platform/fileControl.h"
#include "platform/richtext/RichTextBox.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QDirIterator>
#include <gtest/gtest.h>

namespace {

const QString kTemplate =
    QStringLiteral("{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0 Arial;}}\\pard\\f0\\fs20 "
                   "Dear \\'abCompany Name\\'bb\\par\r\n}");

class MergeResultNavigatorTest : public ::testing::Test {
protected:
    void SetUp() override {
        context->clock.setFixed(QDateTime(QDate(2024, 3, 5), QTime(9, 0)));
        context->fieldInserter = &fields;
        context->msgbox = &msgbox;
        db = std::make_unique<MergeTestDatabase>(env.path("client.qmd"));
        db->fillStandardPractice();
        fields.setLineBreaksAsParagraphs(false);
    }
    void TearDown() override {
        navigator.reset();
        db.reset();
    }

    void merge(const QList<QStringList>& ids, const QString& rtf = kTemplate) {
        MergeTemplateSource source;
        source.model.documentType = 2;
        source.model.InformationType = InformationKind::Companies;
        source.caption = "Merge Template - Year End";
        source.rtf = rtf;
        for (const QStringList& row : ids) {
            source.IDList.addRow(source.IDList.rowCount() + 1, row);
        }
        auto request = MergeDocumentFlow::chooseRecipients(source, {});
        ASSERT_TRUE(request.has_value());
        request->vaultRoot = vault();
        auto run = MergeDocumentFlow::createMergeDoc(std::move(*request), progress);
        ASSERT_NE(run, nullptr);
        navigator = std::make_unique<MergeResultNavigator>(std::move(run), box);
        navigator->moveFirstRecord();
    }
    // Types into the shown record as a user would.
    void edit(const QString& text) {
        box.setSelStart(0);
        box.setSelText(text);
        navigator->markChanged();
    }
    QString vault() const { return env.root() + "/vault"; }
    QStringList filesInVault() const {
        QStringList out;
        QDirIterator it(vault(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            out << it.next().mid(vault().size() + 1);
        }
        out.sort();
        return out;
    }

    TestEnvironment env;
    ScopedAppContext context;
    ScriptedMsgbox msgbox;
    clsInsertFieldsInRTB fields;
    std::unique_ptr<MergeTestDatabase> db;
    RichTextBox box;
    RecordingProgress progress;
    std::unique_ptr<MergeResultNavigator> navigator;
};

TEST_F(MergeResultNavigatorTest, MovesShowEachRecordAndRefuseToGoPastTheEnds) {
    merge({{"30", ""}, {"10", ""}, {"20", ""}});
    EXPECT_EQ(navigator->currentName(), "Acme Widgets");
    EXPECT_EQ(box.Text(), "Dear Acme Widgets");
    navigator->movePreviousRecord();
    EXPECT_EQ(msgbox.texts(), QStringList({"You have already reached the first record."}));
    EXPECT_EQ(navigator->currentRecord(), 0);
    navigator->moveLastRecord();
    EXPECT_EQ(navigator->currentName(), "Gamma Ltd");
    navigator->moveNextRecord();
    EXPECT_EQ(msgbox.texts().last(), "You have already reached the last record.");
    EXPECT_EQ(navigator->currentRecord(), 2);
    navigator->movePreviousRecord();
    EXPECT_EQ(navigator->currentName(), "Beta {Braces} \\Back");
}

TEST_F(MergeResultNavigatorTest, OneRecipientStaysOnItsOnlyRecord) {
    merge({{"10", ""}});
    navigator->moveNextRecord();
    EXPECT_EQ(navigator->currentRecord(), 0);
    EXPECT_EQ(msgbox.texts(), QStringList({"You have already reached the last record."}));
}

TEST_F(MergeResultNavigatorTest, AnEditStaysWithItsRecordAcrossMoves) {
    merge({{"10", ""}, {"20", ""}, {"30", ""}});
    navigator->moveNextRecord();
    edit("Edited ");
    navigator->moveLastRecord();
    EXPECT_EQ(box.Text(), "Dear Gamma Ltd");
    navigator->moveFirstRecord();
    EXPECT_EQ(box.Text(), "Dear Acme Widgets");
    navigator->moveNextRecord();
    EXPECT_TRUE(box.Text().startsWith("Edited Dear Beta")) << box.Text().toStdString();
    EXPECT_FALSE(navigator->currentRecordChanged());
}

TEST_F(MergeResultNavigatorTest, TheProgramsOwnTextSwapsAreNoEdits) {
    merge({{"10", ""}, {"20", ""}});
    context->isCreatingDocument = true;
    box.setSelText("Swapped ");
    navigator->markChanged();
    context->isCreatingDocument = false;
    EXPECT_FALSE(navigator->currentRecordChanged());
    navigator->moveNextRecord();
    navigator->moveFirstRecord();
    EXPECT_EQ(box.Text(), "Dear Acme Widgets");
}

TEST_F(MergeResultNavigatorTest, SavingFilesEachLetterOnceWithTheShownEdit) {
    merge({{"10", ""}, {"30", ""}});
    navigator->moveLastRecord();
    edit("Edited ");
    RecordingProgress saving;
    EXPECT_EQ(navigator->saveMergeDocument(saving), 0);
    EXPECT_EQ(saving.caption(), "Saving documents");
    EXPECT_TRUE(navigator->allSaved());
    const QStringList files = {"Acme Widgets/Mar 5 2024 - Year End.qmw",
                               "Gamma Ltd/Mar 5 2024 - Year End.qmw"};
    EXPECT_EQ(filesInVault(), files);
    EXPECT_TRUE(
        fileControl::readWholeFile(vault() + "/" + files[1])->contains("Edited Dear Gamma"));

    // Saved again after a further edit: the same files, nothing set aside.
    edit("Again ");
    EXPECT_EQ(navigator->saveMergeDocument(saving), 0);
    EXPECT_EQ(filesInVault(), files);
    EXPECT_TRUE(fileControl::readWholeFile(vault() + "/" + files[1])->contains("Again Edited"));
}

TEST_F(MergeResultNavigatorTest, RecordsLeftOutAreNotFiledAndKeepTheirPlace) {
    merge({{"10", ""}, {"20", ""}, {"30", ""}});
    navigator->setExcluded(1, true);
    EXPECT_EQ(navigator->saveMergeDocument(progress), 0);
    EXPECT_EQ(filesInVault(), QStringList({"Acme Widgets/Mar 5 2024 - Year End.qmw",
                                           "Gamma Ltd/Mar 5 2024 - Year End.qmw"}));
    ASSERT_EQ(navigator->recordCount(), 3);
    EXPECT_EQ(navigator->records()[1].name, "Beta {Braces} \\Back");
    EXPECT_TRUE(navigator->records()[1].savedPath.isEmpty());
    EXPECT_FALSE(navigator->records()[2].savedPath.isEmpty());
    EXPECT_TRUE(navigator->allSaved());
    navigator->setExcluded(1, false);
    EXPECT_FALSE(navigator->allSaved());
}

TEST_F(MergeResultNavigatorTest, AFolderThatCannotBeMadeFailsThatLetterOnly) {
    merge({{"10", ""}, {"30", ""}});
    // A file where Acme's folder would go.
    ASSERT_TRUE(QDir().mkpath(vault()));
    ASSERT_TRUE(fileControl::writeFileAtomically(vault() + "/Acme Widgets", "x"));
    EXPECT_EQ(navigator->saveMergeDocument(progress), 1);
    EXPECT_FALSE(navigator->records()[0].failure.isEmpty());
    EXPECT_TRUE(fileControl::FileExists(navigator->records()[1].savedPath));
    EXPECT_FALSE(navigator->allSaved());
}

// ---------------------------------------------------------------------------

class MergeDocumentFlowTest : public MergeResultNavigatorTest {
protected:
    MergeTemplateSource source(InformationKind kind, const QString& rtf = kTemplate) {
        MergeTemplateSource s;
        s.model.documentType = 2;
        s.model.InformationType = kind;
        s.caption = "Merge Template - Year End";
        s.rtf = rtf;
        return s;
    }
};

TEST_F(MergeDocumentFlowTest, WithoutADatabaseNothingRuns) {
    context->database = nullptr;
    const MergeTemplateSource s = source(InformationKind::Companies);
    MergeDocumentFlow::testMergeButton(s);
    EXPECT_FALSE(MergeDocumentFlow::approveMerge(s));
    EXPECT_FALSE(MergeDocumentFlow::chooseRecipients(s, {}).has_value());
    EXPECT_FALSE(MergeDocumentFlow::testMergeDocument(s));
    const QString tail = " at this time.  You need to open the Quillmere Pad from within "
                         "Quillmere to link to the client's data properly.";
    EXPECT_EQ(msgbox.texts(), QStringList({"You cannot create or test merge documents" + tail,
                                           "You cannot create or test merge documents" + tail,
                                           "You cannot use the merge feature" + tail,
                                           "You cannot use the merge test feature" + tail}));
}

TEST_F(MergeDocumentFlowTest, ACleanTemplateSaysSoAndMergesWithoutAsking) {
    MergeDocumentFlow::testMergeButton(source(InformationKind::Companies));
    EXPECT_EQ(msgbox.texts(), QStringList({"There are no merge errors in this document."}));
    EXPECT_TRUE(MergeDocumentFlow::approveMerge(source(InformationKind::Companies)));
    EXPECT_EQ(msgbox.texts().size(), 1);
}

TEST_F(MergeDocumentFlowTest, AFaultyTemplateAsksBeforeMergingAnyway) {
    const QString broken = QStringLiteral("{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}}\\pard Dear "
                                          "\\'abNo Such Field\\'bb\\par\r\n}");
    const QString question = "There are some merge syntax errors in this document.  Would you "
                             "like to merge the client's information into the document anyway?";
    msgbox.queueAnswer(MsgboxClass::No);
    EXPECT_FALSE(MergeDocumentFlow::approveMerge(source(InformationKind::Companies, broken)));
    ASSERT_EQ(msgbox.texts().size(), 2);
    EXPECT_FALSE(msgbox.texts()[0].isEmpty()); // the fault itself
    EXPECT_EQ(msgbox.texts()[1], question);
    msgbox.queueAnswer(MsgboxClass::Yes);
    EXPECT_TRUE(MergeDocumentFlow::approveMerge(source(InformationKind::Companies, broken)));
}

TEST_F(MergeDocumentFlowTest, NoRecipientsIsToldByKind) {
    const std::pair<InformationKind, const char*> cases[] = {
        {InformationKind::Companies, "companies"},
        {InformationKind::CompaniesAndContacts, "contacts"},
        {InformationKind::Contacts, "contacts"},
        {InformationKind::Tasks, "tasks"},
        {InformationKind::Appointments, "appointments"},
    };
    int asked = 0;
    const MergeDocumentFlow::RecipientChooser nobody = [&asked](InformationKind, FieldTable&,
                                                                QString&) {
        ++asked;
        return false;
    };
    for (const auto& [kind, what] : cases) {
        msgbox.clear();
        EXPECT_FALSE(MergeDocumentFlow::chooseRecipients(source(kind), nobody).has_value());
        EXPECT_EQ(msgbox.texts(), QStringList({QString("You must choose some ") + what +
                                               " to merge to create a merge document"}));
    }
    EXPECT_EQ(asked, 5);
    // Without a chooser an empty list is the same.
    msgbox.clear();
    EXPECT_FALSE(MergeDocumentFlow::chooseRecipients(source(InformationKind::Companies), {}));
    EXPECT_EQ(msgbox.texts().size(), 1);
}

TEST_F(MergeDocumentFlowTest, RecipientsComeFromTheListTheChooserOrTheFilter) {
    MergeTemplateSource companies = source(InformationKind::Companies);
    const auto picked = MergeDocumentFlow::chooseRecipients(
        companies, [](InformationKind kind, FieldTable& ids, QString&) {
            EXPECT_EQ(kind, InformationKind::Companies);
            ids.addRow(1, {"20", ""});
            return true;
        });
    ASSERT_TRUE(picked.has_value());
    EXPECT_EQ(picked->recipients, MergeRequest::Recipients::Listed);
    EXPECT_EQ(picked->IDList.value(1, 1), "20");
    EXPECT_EQ(picked->templateCaption, "Merge Template - Year End");

    // A task template with a search's filter does not ask again.
    MergeTemplateSource tasks = source(InformationKind::Tasks);
    tasks.SQLFilter = "ClientNum = 1010";
    const auto filtered = MergeDocumentFlow::chooseRecipients(
        tasks, [](InformationKind, FieldTable&, QString&) -> bool {
            ADD_FAILURE() << "asked again";
            return false;
        });
    ASSERT_TRUE(filtered.has_value());
    EXPECT_EQ(filtered->recipients, MergeRequest::Recipients::Filtered);
    EXPECT_EQ(filtered->SQLFilter, "ClientNum = 1010");
    EXPECT_TRUE(msgbox.texts().isEmpty());
}

TEST_F(MergeDocumentFlowTest, ResultCaptionsReplaceTheTemplatePrefix) {
    EXPECT_EQ(MergeDocumentFlow::resultCaption("Merge Template - Year End"),
              "Merge Results - Year End");
    EXPECT_EQ(MergeDocumentFlow::resultCaption("Letter"), "Merge Results - Letter");
    EXPECT_EQ(MergeDocumentFlow::captionOfType("Merge Results - Letter", 2),
              "Merge Template - Letter");
}

// A template given another kind of merge data: a standard document becomes
// a template, a template changes kind; a merge result is no template.
TEST(MergeTemplateTest, ChangingTheTemplatesInformationMakesItATemplateOfThatKind) {
    DocumentModel model;
    QString caption = QStringLiteral("Year End");
    ASSERT_TRUE(
        MergeDocumentFlow::changeTemplateInformation(model, caption, InformationKind::Contacts));
    EXPECT_EQ(model.documentType, DocumentModel::Template);
    EXPECT_EQ(model.InformationType, InformationKind::Contacts);
    EXPECT_EQ(caption, "Merge Template - Year End");

    ASSERT_TRUE(MergeDocumentFlow::changeTemplateInformation(model, caption,
                                                             InformationKind::Appointments));
    EXPECT_EQ(model.InformationType, InformationKind::Appointments);
    EXPECT_EQ(caption, "Merge Template - Year End") << "one prefix only";

    for (const int type :
         {int(DocumentModel::MergeResults), int(DocumentModel::SavedMergeResult)}) {
        DocumentModel result;
        result.documentType = type;
        result.InformationType = InformationKind::Companies;
        QString resultCaption = QStringLiteral("Merge Results - Year End");
        EXPECT_FALSE(MergeDocumentFlow::changeTemplateInformation(result, resultCaption,
                                                                  InformationKind::Tasks));
        EXPECT_EQ(result.documentType, type);
        EXPECT_EQ(result.InformationType, InformationKind::Companies);
        EXPECT_EQ(resultCaption, "Merge Results - Year End");
    }
}

} // namespace
