#include "ui/frmSpellCheck.h"

#include "ModalDriver.h"
#include "context/AppContext.h"
#include "files/clsWorkingFolderLocation.h"
#include "platform/MsgboxClass.h"
#include "platform/ProgressReporter.h"
#include "support/TestEnvironment.h"
#include "ui/CommandActions.h"
#include "ui/frmDocument.h"
#include "ui/frmMain.h"

#include <QAction>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace {

// A letter with known slips among placeholders, amounts and dates.
const QString kLetter =
    QStringLiteral("Dear \u00ABContact First Name\u00BB,\r\n"
                   "We have recieved your paymnet for \u00ABCompany Name\u00BB on "
                   "\u00AB(Year End Date, mmmm d yyyy)\u00BB.\r\n"
                   "The acount is now setled. Quillmere thanks you.");

class SpellCheckWindowTest : public ::testing::Test {
protected:
    SpellCheckWindowTest() {
        m_context->msgbox = &m_messages;
        m_context->progress = &m_progress;
        m_templates = clsWorkingFolderLocation().getDefaultTemplatesFolder();
        QDir().mkpath(m_templates);
        m_window.show();
        m_window.runCommand(QStringLiteral("mnuFileNewStandard"));
    }

    frmDocument* document() const {
        QMdiSubWindow* sub = m_window.activeDocumentWindow();
        return sub ? qobject_cast<frmDocument*>(sub->widget()) : nullptr;
    }

    TestEnvironment m_env;
    ScopedAppContext m_context;
    ScriptedMsgbox m_messages;
    RecordingProgress m_progress;
    QString m_templates;
    frmMain m_window;
};

template <typename T> T* child(QWidget* dialog, const char* name) {
    T* found = dialog->findChild<T*>(QLatin1String(name));
    EXPECT_NE(found, nullptr) << name;
    return found;
}

} // namespace

TEST_F(SpellCheckWindowTest, DialogWalksTheLetterAndTheCorrectionsReachTheRtf) {
    ASSERT_NE(document(), nullptr);
    RichTextBox& box = document()->rtfText();
    box.setText(kLetter);
    box.setSelStart(5);
    ASSERT_TRUE(m_window.commands()->action(QStringLiteral("mnuToolsSpellCheck"))->isEnabled());

    QStringList walked;
    QStringList selected;
    ModalDriver driver(QStringLiteral("frmSpellCheck"), [&](QWidget* dialog) {
        EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Spell Check"));
        auto* target = child<QLineEdit>(dialog, "txtTargetWord");
        auto* changeTo = child<QLineEdit>(dialog, "txtChangeTo");
        auto* suggestions = child<QListWidget>(dialog, "lstSuggestions");
        auto* replace = child<QPushButton>(dialog, "cmdControls_0");
        auto* add = child<QPushButton>(dialog, "cmdControls_3");
        auto* ignoreAll = child<QPushButton>(dialog, "cmdControls_4");
        ASSERT_TRUE(target && changeTo && suggestions && replace && add && ignoreAll);
        EXPECT_EQ(add->text(), QStringLiteral("Add "));
        EXPECT_EQ(child<QPushButton>(dialog, "cmdCancel")->text(),
                  QStringLiteral("Cancel Spell Check"));
        EXPECT_FALSE(child<QListWidget>(dialog, "lstMisspellings")->isVisible());

        const auto step = [&](QPushButton* button) {
            walked << target->text();
            selected << box.SelText();
            QTest::mouseClick(button, Qt::LeftButton);
        };
        // recieved: the first suggestion is the one meant.
        ASSERT_GT(suggestions->count(), 0);
        EXPECT_EQ(changeTo->text(), suggestions->item(0)->text());
        step(replace);
        // paymnet: picked from the list with a click.
        const auto payment = suggestions->findItems(QStringLiteral("payment"), Qt::MatchExactly);
        ASSERT_EQ(payment.size(), 1);
        QTest::mouseClick(suggestions->viewport(), Qt::LeftButton, {},
                          suggestions->visualItemRect(payment.first()).center());
        EXPECT_EQ(changeTo->text(), QStringLiteral("payment"));
        step(replace);
        // acount: the first suggestion again.
        step(replace);
        // setled: typed in by hand.
        changeTo->clear();
        QTest::keyClicks(changeTo, QStringLiteral("settled"));
        step(replace);
        // Quillmere: added to the practice's list.
        step(add);
        EXPECT_FALSE(dialog->isVisible());
    });
    m_window.runCommand(QStringLiteral("mnuToolsSpellCheck"));
    ASSERT_TRUE(driver.ran());

    EXPECT_EQ(walked, QStringList({"recieved", "paymnet", "acount", "setled", "Quillmere"}));
    // Each word is selected in the document while it is shown.
    EXPECT_EQ(selected, walked);
    EXPECT_EQ(m_messages.texts(),
              QStringList({"Quillmere has been added to the dictionary.", "Spell check complete"}));
    EXPECT_EQ(m_progress.caption(),
              QStringLiteral("Checking document for spelling errors, please wait ..."));

    const QString corrected = QString(kLetter)
                                  .replace(QStringLiteral("recieved"), QStringLiteral("received"))
                                  .replace(QStringLiteral("paymnet"), QStringLiteral("payment"))
                                  .replace(QStringLiteral("acount"), QStringLiteral("amount"))
                                  .replace(QStringLiteral("setled"), QStringLiteral("settled"));
    EXPECT_EQ(box.Text(), corrected);
    // Saved and read back, the corrections stand, in the correction colour,
    // with the placeholders as the merge reads them.
    RichTextBox reopened;
    reopened.setTextRTF(box.TextRTF());
    EXPECT_EQ(reopened.Text(), corrected);
    reopened.setSelStart(int(corrected.indexOf(QStringLiteral("payment"))));
    reopened.setSelLength(7);
    EXPECT_EQ(reopened.SelColor(), QColor(0, 0, 255));
    EXPECT_TRUE(box.TextRTF().contains(QStringLiteral("\\'abCompany Name\\'bb")));
    // The caret is back where it was.
    EXPECT_EQ(box.SelStart(), 5);
    EXPECT_EQ(box.SelLength(), 0);
    const QByteArray list = readTestFile(m_templates + QStringLiteral("/list.db"));
    EXPECT_TRUE(list.contains("\r\nquillmere\r\n"));
}

TEST_F(SpellCheckWindowTest, CancelLeavesTheRestAsItIs) {
    RichTextBox& box = document()->rtfText();
    box.setText(QStringLiteral("Teh acount."));
    ModalDriver driver(QStringLiteral("frmSpellCheck"), [&](QWidget* dialog) {
        EXPECT_EQ(child<QLineEdit>(dialog, "txtTargetWord")->text(), QStringLiteral("Teh"));
        QTest::mouseClick(child<QPushButton>(dialog, "cmdControls_5"), Qt::LeftButton);
        EXPECT_EQ(child<QLineEdit>(dialog, "txtTargetWord")->text(), QStringLiteral("acount"));
        QTest::mouseClick(child<QPushButton>(dialog, "cmdCancel"), Qt::LeftButton);
        EXPECT_FALSE(dialog->isVisible());
    });
    m_window.runCommand(QStringLiteral("mnuToolsSpellCheck"));
    ASSERT_TRUE(driver.ran());
    EXPECT_EQ(box.Text(), QStringLiteral("Teh acount."));
    EXPECT_TRUE(m_messages.texts().isEmpty());
}

TEST_F(SpellCheckWindowTest, CleanLetterShowsNoDialog) {
    document()->rtfText().setText(
        QStringLiteral("Dear \u00ABContact Frist Name\u00BB, the invoice is attached."));
    ModalDriver driver(
        QStringLiteral("frmSpellCheck"), [](QWidget* dialog) { dialog->close(); }, 200);
    m_window.runCommand(QStringLiteral("mnuToolsSpellCheck"));
    EXPECT_FALSE(driver.ran());
    EXPECT_EQ(m_messages.texts(), QStringList{"There are no spelling errors"});
}
