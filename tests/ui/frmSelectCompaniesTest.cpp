#include "ui/frmSelectCompanies.h"

#include "data/ClientDbFixture.h"
#include "platform/FieldTable.h"
#include "platform/MsgboxClass.h"
#include "ui/CommandActions.h"
#include "ui/frmDocument.h"
#include "ui/frmMain.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <functional>

namespace {

class SelectCompaniesTest : public ClientDbFixture {
protected:
    void SetUp() override {
        ClientDbFixture::SetUp();
        loadFixture(QStringLiteral("../tree/ledger"));
        m_context->contactNameDisplayType = 2;
        m_context->clock.setFixed(QDateTime(QDate(2024, 3, 1), QTime(9, 0)));
        m_context->msgbox = &m_msgbox;
    }

    // Shows the dialog as the user meets it and waits for its tree.
    static void open(frmSelectCompanies& dialog) {
        dialog.show();
        ASSERT_TRUE(QTest::qWaitFor([&] { return dialog.isBuilt(); }, 5000));
    }

    // A click on a node's check box, as the view reports it.
    static void tick(frmSelectCompanies& dialog, const char* key, bool value = true) {
        ClientTreeNode* node = dialog.treeModel().find(QLatin1String(key));
        ASSERT_NE(node, nullptr) << key;
        node->setChecked(value);
    }

    static void click(QDialog& dialog, const char* button) {
        auto* b = dialog.findChild<QPushButton*>(QLatin1String(button));
        ASSERT_NE(b, nullptr) << button;
        QTest::mouseClick(b, Qt::LeftButton);
    }

    static QStringList rows(const FieldTable& ids) {
        QStringList out;
        for (int row = 1; row <= ids.rowCount(); ++row)
            out << ids.value(row, 1) + QLatin1Char('/') + ids.value(row, 2);
        out.sort();
        return out;
    }

    ScriptedMsgbox m_msgbox;
};

TEST_F(SelectCompaniesTest, TickingThreeClientsWritesThemOnOK) {
    FieldTable ids(2);
    frmSelectCompanies dialog(ids);
    ASSERT_TRUE(dialog.Initialize(1));
    open(dialog);
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Select Companies"));
    EXPECT_EQ(dialog.findChild<QPushButton*>(QStringLiteral("cmdOK"))->text(),
              QStringLiteral("OK"));
    auto* tree = dialog.findChild<QTreeView*>(QStringLiteral("tvwContacts"));
    ASSERT_NE(tree, nullptr);
    EXPECT_EQ(tree->model()->rowCount(), 1); // the business category

    tick(dialog, "Company:21");
    tick(dialog, "Company:20"); // brings its associate company along
    click(dialog, "cmdOK");

    EXPECT_EQ(rows(ids), (QStringList{"20/", "21/", "22/"}));
    EXPECT_TRUE(dialog.hasSelection());
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
}

TEST_F(SelectCompaniesTest, CancelAfterChangingTicksLeavesTheListAsItWas) {
    FieldTable ids(2);
    ids.addRow(1, {QStringLiteral("20"), QStringLiteral("201")});
    frmSelectCompanies dialog(ids);
    ASSERT_TRUE(dialog.Initialize(3));
    open(dialog);
    // The list's ticks are shown again.
    EXPECT_TRUE(dialog.treeModel().find(QStringLiteral("Company:20Contact:201"))->checked());
    EXPECT_FALSE(dialog.treeModel().find(QStringLiteral("Company:20Contact:200"))->checked());

    tick(dialog, "Company:20Contact:201", false);
    tick(dialog, "Company:21");
    click(dialog, "cmdCancel");

    EXPECT_EQ(rows(ids), QStringList{"20/201"});
    EXPECT_FALSE(dialog.hasSelection());
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
}

TEST_F(SelectCompaniesTest, AContactMergeSaysSoAndTicksPeople) {
    FieldTable ids(2);
    frmSelectCompanies dialog(ids);
    ASSERT_TRUE(dialog.Initialize(2));
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Select Contacts"));
    EXPECT_EQ(dialog.findChild<QLabel*>(QStringLiteral("Label1"))->text(),
              QStringLiteral("Select the contacts you would like to merge"));
    open(dialog);
    tick(dialog, "TaxCategory:7"); // the Seniors of 2023
    click(dialog, "cmdOK");
    EXPECT_EQ(rows(ids), QStringList{"-1/206"});
}

TEST_F(SelectCompaniesTest, WithoutADatabaseTheDialogDoesNotOpen) {
    m_context->database = nullptr;
    FieldTable ids(2);
    frmSelectCompanies dialog(ids);
    EXPECT_FALSE(dialog.Initialize(1));
    EXPECT_EQ(m_msgbox.texts(),
              QStringList{"You cannot select companies at this time.  You need to open the "
                          "Quillmere Pad from within Quillmere to link to the client's data "
                          "properly."});
}

TEST_F(SelectCompaniesTest, CancelDuringTheBuildClosesTheDialog) {
    FieldTable ids(2);
    ids.addRow(1, {QStringLiteral("21"), QString()});
    frmSelectCompanies dialog(ids);
    ASSERT_TRUE(dialog.Initialize(2));
    // The user gives up as soon as the first nodes arrive.
    dialog.treeRules().setIncProgressBar([&dialog](int&) { dialog.reject(); });
    dialog.show();
    dialog.startUp();
    EXPECT_FALSE(dialog.isBuilt());
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(rows(ids), QStringList{"21/"});
}

TEST_F(SelectCompaniesTest, ANewCompanyTemplateAsksForItsRecipients) {
    frmMain window;
    window.show();
    // The dialog is modal: it is answered from the event loop it runs.
    bool answered = false;
    std::function<void()> answer = [&] {
        auto* dialog = qobject_cast<frmSelectCompanies*>(QApplication::activeModalWidget());
        if (!dialog || !dialog->isBuilt()) {
            QTimer::singleShot(10, answer);
            return;
        }
        dialog->treeModel().find(QStringLiteral("Company:21"))->setChecked(true);
        QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("cmdOK")), Qt::LeftButton);
        answered = true;
    };
    QTimer::singleShot(0, answer);
    ASSERT_TRUE(window.commands()->action(QStringLiteral("mnuFileNewCompany"))->isEnabled());
    window.runCommand(QStringLiteral("mnuFileNewCompany"));
    ASSERT_TRUE(answered);
    auto* document = qobject_cast<frmDocument*>(window.activeDocumentWindow()->widget());
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(document->documentType(), 2);
    EXPECT_EQ(document->InformationType(), InformationKind::Companies);
    EXPECT_EQ(rows(document->IDList), QStringList{"21/"});
}

} // namespace
