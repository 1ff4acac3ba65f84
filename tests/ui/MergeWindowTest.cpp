#include "context/AppContext.h"
#include "documents/DocumentFile.h"
#include "files/clsWorkingFolderLocation.h"
#include "merge/MergeTestDatabase.h"
#include "merge/clsInsertFieldsInRTB.h"
#include "platform/FileDialogs.h"
#include "platform/MsgboxClass.h"
#include "platform/fileControl.h"
#include "platform/richtext/RichTextBox.h"
#include "support/TestEnvironment.h"
#include "ui/CommandActions.h"
#include "ui/MergeWindowCommands.h"
#include "ui/PageView.h"
#include "ui/cbrMergeTools.h"
#include "ui/frmDocument.h"
#include "ui/frmMain.h"
#include "ui/frmSearchTasks.h"
#include "ui/frmSelectCompanies.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDirIterator>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <functional>
#include <gtest/gtest.h>
#include <memory>

namespace {

const char kTemplateRtf[] = "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0 Arial;}}"
                            "\\pard\\f0\\fs20 Dear ,\\par\r\n}";

class MergeWindowTest : public ::testing::Test {
protected:
    void SetUp() override {
        context->clock.setFixed(QDateTime(QDate(2024, 3, 5), QTime(9, 0)));
        context->msgbox = &msgbox;
        context->fieldInserter = &fields;
        context->workingFolders = &folders;
        context->fileDialogs = &dialogs;
        db = std::make_unique<MergeTestDatabase>(env.path("client.qmd"));
        db->fillStandardPractice();
        // The companies under the business clients' category of the tree.
        db->exec("UPDATE Companies SET CategoryNum = 3");
        fields.setLineBreaksAsParagraphs(false);
        window = std::make_unique<frmMain>();
        window->show();
        merge = window->findChild<MergeWindowCommands*>();
        ASSERT_NE(merge, nullptr);
        panel = merge->panel();
    }
    void TearDown() override {
        window.reset();
        db.reset();
    }

    template <typename T> T* control(const QString& name) const {
        T* found = window->findChild<T*>(name);
        EXPECT_NE(found, nullptr) << name.toStdString();
        return found;
    }
    frmDocument* active() const {
        QMdiSubWindow* sub = window->activeDocumentWindow();
        return sub ? qobject_cast<frmDocument*>(sub->widget()) : nullptr;
    }
    void settle() { QApplication::processEvents(); }
    // Opens a company template saved as a file.
    frmDocument* openTemplate() {
        DocumentModel model;
        model.documentType = DocumentModel::Template;
        model.InformationType = InformationKind::Companies;
        model.putLeftMargin(1000, false);
        const QString path = env.path("templates/Year End.qmt");
        DocumentFile::saveBytes(path, kTemplateRtf, model);
        EXPECT_TRUE(window->openDocumentFile(path));
        settle();
        return active();
    }
    void choose(int list, const QString& text) {
        QComboBox* box = control<QComboBox>(QStringLiteral("cboWordMergeCategory%1").arg(list));
        const int entry = box->findText(text);
        ASSERT_GE(entry, 0) << text.toStdString();
        Q_EMIT box->activated(entry);
        settle();
    }
    void click(const QString& key) {
        QAction* action = panel->navigationAction(key);
        ASSERT_NE(action, nullptr);
        ASSERT_TRUE(action->isEnabled()) << key.toStdString();
        action->trigger();
        settle();
    }
    void type(QWidget* target, const QString& text) {
        for (const QChar ch : text) {
            QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(ch));
            QApplication::sendEvent(target, &press);
        }
    }
    // Answers the recipient dialog the next merge opens: ticks these nodes
    // (keys of the client tree) and clicks OK, or Cancel when `ok` is false.
    void answerRecipients(QStringList keys, bool ok = true) {
        dialogAnswered = false;
        dialogTicks.clear();
        auto answer = std::make_shared<std::function<void()>>();
        *answer = [this, keys, ok, answer] {
            auto* dialog = qobject_cast<frmSelectCompanies*>(QApplication::activeModalWidget());
            if (!dialog || !dialog->isBuilt()) {
                QTimer::singleShot(10, *answer);
                return;
            }
            for (const QString& key : keys) {
                ClientTreeNode* node = dialog->treeModel().find(key);
                EXPECT_NE(node, nullptr) << key.toStdString();
                if (node) {
                    node->setChecked(true);
                }
            }
            // What the dialog shows ticked before OK, the template's list included.
            for (const QString& key : {QStringLiteral("Company:10"), QStringLiteral("Company:20"),
                                       QStringLiteral("Company:30")}) {
                if (ClientTreeNode* node = dialog->treeModel().find(key); node && node->checked()) {
                    dialogTicks << key;
                }
            }
            QTest::mouseClick(dialog->findChild<QPushButton*>(ok ? QStringLiteral("cmdOK")
                                                                 : QStringLiteral("cmdCancel")),
                              Qt::LeftButton);
            dialogAnswered = true;
        };
        QTimer::singleShot(0, *answer);
    }
    QString recipient() const {
        return window->findChild<QLineEdit*>(QStringLiteral("txtMergeCompany"))->text();
    }
    QString tutorial() const {
        return window->findChild<QLabel*>(QStringLiteral("lblTutorial"))->text();
    }
    bool categoryShown(int index) const { return panel->categoryShown(index); }
    QString vault() const {
        QString root = folders.getDocumentVaultRoot();
        root.chop(1);
        return root;
    }

    TestEnvironment env;
    ScopedAppContext context;
    ScriptedMsgbox msgbox;
    ScriptedFileDialogs dialogs;
    clsInsertFieldsInRTB fields;
    clsWorkingFolderLocation folders;
    std::unique_ptr<MergeTestDatabase> db;
    std::unique_ptr<frmMain> window;
    MergeWindowCommands* merge = nullptr;
    cbrMergeTools* panel = nullptr;
    bool dialogAnswered = false;
    QStringList dialogTicks;
};

TEST_F(MergeWindowTest, ThePanelFollowsTheActiveDocument) {
    window->newDocument(1);
    settle();
    EXPECT_TRUE(tutorial().startsWith(" Standard Document - ")) << tutorial().toStdString();
    EXPECT_TRUE(categoryShown(0));
    EXPECT_FALSE(categoryShown(2));
    // The kind list makes it a contact template.
    choose(0, "New Contact Merge Document");
    ASSERT_NE(active(), nullptr);
    EXPECT_EQ(active()->documentType(), 2);
    EXPECT_EQ(active()->InformationType(), InformationKind::Contacts);
    EXPECT_EQ(active()->DocumentCaption, "Merge Template - Document 1");
    EXPECT_TRUE(tutorial().startsWith(" Contact Template Document - "));
    EXPECT_TRUE(categoryShown(2));
    EXPECT_TRUE(categoryShown(6));
    EXPECT_FALSE(panel->navigationShown());
    // The menu does the same.
    window->runCommand("mnuMergeMergeRemitt");
    EXPECT_EQ(active()->InformationType(), InformationKind::Tasks);
    EXPECT_TRUE(tutorial().startsWith(" Tasks Template Document - "));
    // Closing the last document leaves the no-document line.
    window->MDIArea()->closeAllSubWindows();
    settle();
    settle();
    EXPECT_TRUE(tutorial().startsWith(" No document selected - "));
}

TEST_F(MergeWindowTest, TheTestButtonReportsAFaultOrAClearTemplate) {
    frmDocument* templ = openTemplate();
    ASSERT_NE(templ, nullptr);
    control<QToolButton>("cmdWordMergeCategory5")->click();
    EXPECT_EQ(msgbox.texts(), QStringList({"There are no merge errors in this document."}));
    templ->rtfText().setSelStart(0);
    templ->rtfText().setSelText(QString(QChar(0xAB)) + "Nonsense Field" + QChar(0xBB));
    msgbox.clear();
    msgbox.queueAnswer(MsgboxClass::No);
    const int windows = int(window->MDIArea()->subWindowList().size());
    control<QToolButton>("cmdWordMergeCategory6")->click();
    ASSERT_EQ(msgbox.texts().size(), 2);
    EXPECT_TRUE(msgbox.texts()[1].startsWith("There are some merge syntax errors"));
    EXPECT_EQ(window->MDIArea()->subWindowList().size(), windows);
}

TEST_F(MergeWindowTest, AFieldFromTheListThenAMergeStepsEditsAndFilesEveryLetter) {
    frmDocument* templ = openTemplate();
    ASSERT_NE(templ, nullptr);
    EXPECT_TRUE(tutorial().startsWith(" Company Template Document - "));
    // The caret after "Dear ".
    templ->rtfText().setSelStart(5);
    choose(2, "Company Name");
    EXPECT_EQ(templ->rtfText().Text(),
              QString("Dear ") + QChar(0xAB) + "Company Name" + QChar(0xBB) + ",");

    // Three clients ticked in the tree.
    answerRecipients({"Company:30", "Company:10", "Company:20"});
    control<QToolButton>("cmdWordMergeCategory6")->click();
    settle();
    EXPECT_TRUE(dialogAnswered);
    EXPECT_TRUE(msgbox.texts().isEmpty()) << msgbox.texts().join("|").toStdString();
    EXPECT_EQ(templ->IDList.rowCount(), 3) << "the ticks stay with the template";
    frmDocument* result = active();
    ASSERT_NE(result, nullptr);
    ASSERT_NE(result, templ);
    EXPECT_EQ(result->documentType(), 3);
    EXPECT_EQ(result->DocumentCaption, "Merge Results - Year End");
    EXPECT_EQ(window->activeDocumentWindow()->windowTitle(), "Merge Results - Year End");
    EXPECT_EQ(result->getLeftMargin(), 1000);
    EXPECT_TRUE(result->rtfText().Text().startsWith("Dear Acme Widgets,"));
    EXPECT_EQ(recipient(), "Acme Widgets");
    EXPECT_TRUE(tutorial().startsWith(" Merge Document - "));
    EXPECT_TRUE(panel->navigationShown());
    EXPECT_FALSE(categoryShown(2));
    auto* list = result->findChild<QListWidget*>("lstMergeRecipients");
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->count(), 3);

    click("Last");
    EXPECT_EQ(recipient(), "Gamma Ltd");
    click("Previous");
    EXPECT_EQ(recipient(), "Beta {Braces} \\Back");
    result->rtfText().setSelStart(0);
    type(result->pageView(), "PS ");
    EXPECT_TRUE(result->HasDocumentChanged());
    click("Next");
    EXPECT_TRUE(result->rtfText().Text().startsWith("Dear Gamma Ltd"));
    click("Previous");
    EXPECT_TRUE(result->rtfText().Text().startsWith("PS Dear Beta"))
        << result->rtfText().Text().toStdString();
    // A click in the side list shows that letter.
    list->setCurrentRow(0);
    EXPECT_EQ(recipient(), "Acme Widgets");

    click("Save");
    EXPECT_TRUE(msgbox.texts().isEmpty()) << msgbox.texts().join("|").toStdString();
    QStringList files;
    QDirIterator it(vault(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        files << it.next().mid(vault().size() + 1);
    }
    files.sort();
    EXPECT_EQ(files, QStringList({"Acme Widgets/Mar 5 2024 - Year End.qmw",
                                  "Beta {Braces} _Back/Mar 5 2024 - Year End.qmw",
                                  "Gamma Ltd/Mar 5 2024 - Year End.qmw"}))
        << files.join("|").toStdString();
    EXPECT_TRUE(result->IsDocumentSaved());
    EXPECT_FALSE(result->HasDocumentChanged());

    // A filed letter opens locked, without the record bar.
    ASSERT_TRUE(window->openDocumentFile(vault() + "/Gamma Ltd/Mar 5 2024 - Year End.qmw"));
    settle();
    frmDocument* filed = active();
    ASSERT_NE(filed, nullptr);
    EXPECT_EQ(filed->documentType(), 4);
    EXPECT_TRUE(filed->rtfText().Locked());
    EXPECT_TRUE(filed->rtfText().Text().startsWith("Dear Gamma Ltd"));
    EXPECT_TRUE(tutorial().startsWith(" Client Merge Results Document - "));
    EXPECT_FALSE(panel->navigationAction("Next")->isEnabled());
}

TEST_F(MergeWindowTest, LettersLeftOutOfTheListAreNotFiled) {
    frmDocument* templ = openTemplate();
    ASSERT_NE(templ, nullptr);
    templ->IDList.addRow(1, {"10", ""});
    templ->IDList.addRow(2, {"30", ""});
    // The dialog opens on the template's list, ticked.
    answerRecipients({});
    window->runCommand("mnuMergeMergeNewDoc");
    settle();
    EXPECT_EQ(dialogTicks, QStringList({"Company:10", "Company:30"}));
    frmDocument* result = active();
    auto* list = result->findChild<QListWidget*>("lstMergeRecipients");
    ASSERT_NE(list, nullptr);
    ASSERT_EQ(list->count(), 2);
    EXPECT_TRUE(panel->navigationAction("Print")->isEnabled());
    int printed = -1;
    merge->setResultPrinter([&printed](frmDocument& document, MergeResultNavigator& letters) {
        EXPECT_EQ(document.documentType(), 3);
        printed = letters.recordCount();
    });
    click("Print");
    EXPECT_EQ(printed, 2);
    list->item(0)->setCheckState(Qt::Unchecked);
    click("Save");
    EXPECT_FALSE(QFileInfo::exists(vault() + "/Acme Widgets"));
    EXPECT_TRUE(QFileInfo::exists(vault() + "/Gamma Ltd/Mar 5 2024 - Year End.qmw"));
}

TEST_F(MergeWindowTest, LettersWithEmptyPlaceholdersAreMarkedInTheList) {
    frmDocument* templ = openTemplate();
    ASSERT_NE(templ, nullptr);
    templ->rtfText().setSelStart(5);
    choose(2, "Contact First Name");
    // Beta has no contact: its letter has nobody to greet.
    templ->IDList.addRow(1, {"10", ""});
    templ->IDList.addRow(2, {"20", ""});
    answerRecipients({});
    window->runCommand("mnuMergeMergeNewDoc");
    settle();
    auto* list = active()->findChild<QListWidget*>("lstMergeRecipients");
    ASSERT_NE(list, nullptr);
    ASSERT_EQ(list->count(), 2);
    EXPECT_EQ(list->item(0)->text(), "Acme Widgets");
    EXPECT_EQ(list->item(1)->text(), "! Beta {Braces} \\Back");
    EXPECT_TRUE(list->item(1)->toolTip().contains("empty: Contact First Name"))
        << list->item(1)->toolTip().toStdString();
}

TEST_F(MergeWindowTest, CancelInTheRecipientDialogMergesNothing) {
    frmDocument* templ = openTemplate();
    ASSERT_NE(templ, nullptr);
    templ->IDList.addRow(1, {"10", ""});
    const auto windows = window->MDIArea()->subWindowList().size();
    answerRecipients({"Company:20"}, false);
    control<QToolButton>("cmdWordMergeCategory6")->click();
    settle();
    EXPECT_TRUE(dialogAnswered);
    EXPECT_EQ(msgbox.texts(),
              QStringList({"You must choose some companies to merge to create a merge document"}));
    EXPECT_EQ(window->MDIArea()->subWindowList().size(), windows);
    ASSERT_EQ(templ->IDList.rowCount(), 1) << "Cancel keeps the template's list";
    EXPECT_EQ(templ->IDList.value(1, 1), "10");
    // The panel's recipient button opens the same dialog on its own.
    ASSERT_TRUE(control<QToolButton>("cmdWordMergeCategory1")->isEnabled());
    answerRecipients({"Company:30"});
    control<QToolButton>("cmdWordMergeCategory1")->click();
    settle();
    EXPECT_TRUE(dialogAnswered);
    EXPECT_EQ(templ->IDList.rowCount(), 2);
}

TEST_F(MergeWindowTest, ATaskTemplateMergesTheTasksItsSearchFinds) {
    frmDocument* templ = openTemplate();
    ASSERT_NE(templ, nullptr);
    window->runCommand("mnuMergeMergeRemitt");
    templ->rtfText().setSelStart(5);
    choose(2, "Company Name");
    bool searched = false;
    auto poll = std::make_shared<std::function<void()>>();
    *poll = [&searched, poll] {
        auto* dialog = qobject_cast<frmSearchTasks*>(QApplication::activeModalWidget());
        if (!dialog) {
            QTimer::singleShot(10, *poll);
            return;
        }
        // No box on: every task that is not hidden.
        QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("cmdSearch")),
                          Qt::LeftButton);
        searched = true;
    };
    QTimer::singleShot(0, *poll);
    control<QToolButton>("cmdWordMergeCategory6")->click();
    settle();
    ASSERT_TRUE(searched);
    EXPECT_EQ(msgbox.texts(), QStringList({"The tasks have been selected."}));
    EXPECT_FALSE(templ->SQLFilter.isEmpty());
    frmDocument* result = active();
    ASSERT_NE(result, templ);
    EXPECT_EQ(result->documentType(), 3);
    EXPECT_EQ(result->InformationType(), InformationKind::Tasks);
    auto* list = result->findChild<QListWidget*>("lstMergeRecipients");
    ASSERT_NE(list, nullptr);
    ASSERT_EQ(list->count(), 1);
    EXPECT_TRUE(result->rtfText().Text().startsWith("Dear Acme Widgets,"))
        << result->rtfText().Text().toStdString();
}

TEST_F(MergeWindowTest, FileSaveAndThePdfMenuFileTheLetters) {
    frmDocument* templ = openTemplate();
    ASSERT_NE(templ, nullptr);
    templ->rtfText().setSelStart(5);
    choose(2, "Company Name");
    templ->IDList.addRow(1, {"10", ""});
    templ->IDList.addRow(2, {"30", ""});
    answerRecipients({});
    window->runCommand("mnuMergeMergeNewDoc");
    settle();
    frmDocument* result = active();
    ASSERT_EQ(result->documentType(), 3);

    // The letter on show, where the user says.
    const QString chosen = env.path("out/acme letter");
    dialogs.queueAnswer(chosen);
    ASSERT_NE(panel->navigationAction("Save as PDF"), nullptr);
    auto* letterPdf = window->findChild<QAction*>("SaveLetterPdf");
    ASSERT_NE(letterPdf, nullptr);
    letterPdf->trigger();
    settle();
    EXPECT_TRUE(msgbox.texts().isEmpty()) << msgbox.texts().join("|").toStdString();
    EXPECT_GT(QFileInfo(chosen + ".pdf").size(), 0);

    // All: the letters are filed first, then a PDF beside each.
    window->findChild<QAction*>("SaveAllPdf")->trigger();
    settle();
    EXPECT_TRUE(msgbox.texts().isEmpty()) << msgbox.texts().join("|").toStdString();
    for (const char* client : {"Acme Widgets", "Gamma Ltd"}) {
        const QString letter = vault() + "/" + client + "/Mar 5 2024 - Year End";
        EXPECT_TRUE(QFileInfo::exists(letter + ".qmw")) << client;
        EXPECT_GT(QFileInfo(letter + ".pdf").size(), 0) << client;
    }
    EXPECT_TRUE(result->IsDocumentSaved());

    // File > Save on a result files its letters again, edits included.
    result->rtfText().setSelStart(0);
    type(result->pageView(), "PS ");
    settle();
    window->runCommand("mnuFileSave");
    settle();
    EXPECT_TRUE(msgbox.texts().isEmpty()) << msgbox.texts().join("|").toStdString();
    RichTextBox filed;
    filed.LoadFile(vault() + "/Acme Widgets/Mar 5 2024 - Year End.qmw", RichTextBox::rtfRTF);
    EXPECT_TRUE(filed.Text().startsWith("PS Dear Acme")) << filed.Text().toStdString();
}

} // namespace
