#include "ui/LiveSpellChecker.h"

#include "ModalDriver.h"
#include "context/AppContext.h"
#include "files/clsWorkingFolderLocation.h"
#include "platform/MsgboxClass.h"
#include "spell/clsSpellCheck.h"
#include "support/TestEnvironment.h"
#include "ui/PageView.h"
#include "ui/frmDocument.h"
#include "ui/frmMain.h"

#include <QAction>
#include <QDir>
#include <QMdiSubWindow>
#include <QMenu>
#include <QTest>
#include <gtest/gtest.h>

namespace {

class LiveSpellCheckerTest : public ::testing::Test {
protected:
    LiveSpellCheckerTest() {
        m_context->msgbox = &m_messages;
        m_templates = clsWorkingFolderLocation().getDefaultTemplatesFolder();
        QDir().mkpath(m_templates);
        m_window.show();
        m_window.runCommand(QStringLiteral("mnuFileNewStandard"));
    }

    frmDocument* document() const {
        QMdiSubWindow* sub = m_window.activeDocumentWindow();
        return sub ? qobject_cast<frmDocument*>(sub->widget()) : nullptr;
    }
    LiveSpellChecker* checker() const { return document()->findChild<LiveSpellChecker*>(); }

    // The underlined words, as text.
    QStringList underlined() const {
        QStringList words;
        const QString text = document()->rtfText().document()->toPlainText();
        for (const auto& h : checker()->underlines()) {
            words << text.mid(h.start, h.end - h.start);
        }
        return words;
    }

    TestEnvironment m_env;
    ScopedAppContext m_context;
    ScriptedMsgbox m_messages;
    QString m_templates;
    frmMain m_window;
};

} // namespace

TEST_F(LiveSpellCheckerTest, UnderlinesSlipsButNotFiguresOrPlaceholdersAndCanBeSwitchedOff) {
    ASSERT_NE(document(), nullptr);
    ASSERT_NE(checker(), nullptr);
    document()->rtfText().setText(
        QStringLiteral("Dear clinet,\r\nYour fees of $1,250.00 are due 31/03/2026 for "
                       "\u00ABContact Frist Name\u00BB."));
    // The check follows typing by itself once typing pauses.
    QTRY_COMPARE_WITH_TIMEOUT(underlined(), QStringList{"clinet"}, 3000);

    LiveSpellChecker::setEnabled(false);
    EXPECT_TRUE(checker()->underlines().empty());
    LiveSpellChecker::setEnabled(true);
    EXPECT_EQ(underlined(), QStringList{"clinet"});
}

TEST_F(LiveSpellCheckerTest, RightClickOffersSuggestionsAndAdd) {
    RichTextBox& box = document()->rtfText();
    box.setText(QStringLiteral("Dear acount from Quillmere"));
    checker()->refresh();
    ASSERT_EQ(underlined(), QStringList({"acount", "Quillmere"}));

    QStringList offered;
    ModalDriver pick(QStringLiteral("mnuSpellPopup"), [&](QWidget* menu) {
        for (QAction* a : menu->actions()) {
            offered << a->text();
        }
        ASSERT_FALSE(menu->actions().isEmpty());
        menu->actions().first()->trigger();
        menu->close();
    });
    EXPECT_TRUE(checker()->showSuggestions(7, QPoint(10, 10)));
    ASSERT_TRUE(pick.ran());
    ASSERT_GE(offered.size(), 3);
    EXPECT_EQ(offered.first(), checker()->suggestionsFor(QStringLiteral("acount")).value(0));
    EXPECT_EQ(offered.last(), QStringLiteral("Add to Dictionary"));
    EXPECT_LE(offered.size(), LiveSpellChecker::kMenuSuggestions + 2);
    EXPECT_EQ(box.Text(),
              QStringLiteral("Dear ") + offered.first() + QStringLiteral(" from Quillmere"));
    EXPECT_EQ(underlined(), QStringList{"Quillmere"});
    // Nothing underlined there: the window's own menu is left to show.
    EXPECT_FALSE(checker()->showSuggestions(1, QPoint(10, 10)));

    checker()->addWord(QStringLiteral("Quillmere"));
    EXPECT_TRUE(underlined().isEmpty());
    EXPECT_TRUE(
        readTestFile(m_templates + QStringLiteral("/list.db")).contains("\r\nquillmere\r\n"));
    EXPECT_TRUE(m_messages.texts().isEmpty());
}

TEST_F(LiveSpellCheckerTest, AWordAddedByTheSpellCheckDialogLosesItsUnderline) {
    RichTextBox& box = document()->rtfText();
    box.setText(QStringLiteral("Dear Zorblax"));
    checker()->refresh();
    ASSERT_EQ(underlined(), QStringList{"Zorblax"});

    // The dialog's Add writes the list file through a word list of its own.
    clsSpellCheck dialogList;
    dialogList.setAppFolder(m_templates);
    ASSERT_TRUE(dialogList.openSpellCheckDatabase());
    // A file time that differs from the one the checker loaded, on any file system.
    QTest::qWait(20);
    dialogList.wordDatabase().Database_Add(QStringLiteral("zorblax"));

    checker()->refresh();
    EXPECT_TRUE(underlined().isEmpty());
}
