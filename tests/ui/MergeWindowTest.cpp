#include "context/AppContext.h"
#include "documents/DocumentFile.h"
#include "files/clsWorkingFolderLocation.h"
#include "merge/MergeTestDatabase.h"
#include "merge/clsInsertFieldsInRTB.h"
#include "platform/MsgboxClass.h"
#include "platform/fileControl.h"
#include "platform/richtext/RichTextBox.h"
#include "support/TestEnvironment.h"
#include "ui/MergeWindowCommands.h"
#include "ui/PageView.h"
#include "ui/cbrMergeTools.h"
#include "ui/frmDocument.h"
#include "ui/frmMain.h"

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
#include <QStandardItemModel>
#include <QToolBar>
#include <QToolButton>
#include <gtest/gtest.h>

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
        db = std::make_unique<MergeTestDatabase>(env.path("client.qmd"));
        db->fillStandardPractice();
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
    clsInsertFieldsInRTB fields;
    clsWorkingFolderLocation folders;
    std::unique_ptr<MergeTestDatabase> db;
    std::unique_ptr<frmMain> window;
    MergeWindowCommands* merge = nullptr;
    cbrMergeTools* panel = nullptr;
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

    // Three clients, as the recipient dialog leaves them.
    for (const char* id : {"30", "10", "20"}) {
        templ->IDList.addRow(templ->IDList.rowCount() + 1, {id, ""});
    }
    control<QToolButton>("cmdWordMergeCategory6")->click();
    settle();
    EXPECT_TRUE(msgbox.texts().isEmpty()) << msgbox.texts().join("|").toStdString();
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
    window->runCommand("mnuMergeMergeNewDoc");
    settle();
    frmDocument* result = active();
    auto* list = result->findChild<QListWidget*>("lstMergeRecipients");
    ASSERT_NE(list, nullptr);
    ASSERT_EQ(list->count(), 2);
    // Printing is off until a printer is given; then Print hands it the letters.
    EXPECT_FALSE(panel->navigationAction("Print")->isEnabled());
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

} // namespace
