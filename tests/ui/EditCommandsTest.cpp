#include "ui/EditCommands.h"

#include "app/MenuDefinition.h"
#include "context/AppContext.h"
#include "documents/NumberedLines.h"
#include "platform/MsgboxClass.h"
#include "ui/AccessoryCommands.h"
#include "ui/CommandActions.h"
#include "ui/PageView.h"
#include "ui/frmDocument.h"
#include "ui/frmFind.h"
#include "ui/frmGoTo.h"
#include "ui/frmHelp.h"
#include "ui/frmMain.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTextBrowser>
#include <QTextDocument>
#include <QToolBar>
#include <QToolButton>
#include <gtest/gtest.h>

namespace {

class EditCommandsTest : public ::testing::Test {
protected:
    ScopedAppContext context;
    ScriptedMsgbox messages;
    frmMain window;

    void SetUp() override {
        context->msgbox = &messages;
        QGuiApplication::clipboard()->clear();
        window.LoadFonts();
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        window.runCommand(QStringLiteral("mnuFileNewStandard"));
    }
    frmDocument& document() const {
        return *qobject_cast<frmDocument*>(window.activeDocumentWindow()->widget());
    }
    RichTextBox& box() const { return document().rtfText(); }
    void select(int start, int length) {
        box().setSelStart(start);
        box().setSelLength(length);
    }
    QAction* action(const QString& command) const { return window.commands()->action(command); }
    QAction* formatButton(const char* key) const {
        return action(buttonCommandId(QStringLiteral("tbrFormat"), QLatin1String(key)));
    }
    EditCommands* commands() const { return window.findChild<EditCommands*>(); }
};

TEST_F(EditCommandsTest, FormatButtonsApplyAndShowTheSelection) {
    box().setText(QStringLiteral("Dear Client"));
    select(0, 4);
    formatButton("Bold")->trigger();
    EXPECT_EQ(box().SelBold(), std::optional<bool>(true));
    EXPECT_TRUE(formatButton("Bold")->isChecked());
    select(0, 11); // half bold: the button stands up
    EXPECT_FALSE(formatButton("Bold")->isChecked());
    formatButton("Bold")->trigger();
    EXPECT_EQ(box().SelBold(), std::optional<bool>(true)) << "the first press sets a mixed one";
    EXPECT_TRUE(formatButton("Bold")->isChecked());

    formatButton("Right")->trigger();
    EXPECT_TRUE(formatButton("Right")->isChecked());
    EXPECT_FALSE(formatButton("Left")->isChecked());
    formatButton("Bullet")->trigger();
    EXPECT_TRUE(formatButton("Bullet")->isChecked());
    EXPECT_TRUE(document().pageView()->hasFocus()) << "the focus goes back to the text";
}

TEST_F(EditCommandsTest, PopupAndMenuItemsReachTheSameRoutines) {
    box().setText(QStringLiteral("income tax"));
    select(0, 6);
    action(QStringLiteral("mnuPopupCaseUpper"))->trigger();
    EXPECT_EQ(box().Text(), QStringLiteral("INCOME tax"));
    action(QStringLiteral("mnuPopupIncreaseLeftIndent"))->trigger();
    auto* indent = window.findChild<QToolBar*>(QStringLiteral("tbrStandard"))
                       ->findChild<QToolButton*>(QStringLiteral("Indent"));
    ASSERT_NE(indent, nullptr);
    QTest::mouseClick(indent, Qt::LeftButton);
    EXPECT_EQ(box().SelIndent(), std::optional<int>(1440)) << "Indent runs the same command";
    action(QStringLiteral("mnuFormatScriptSuperScript"))->trigger();
    EXPECT_EQ(box().SelCharOffset(), std::optional<int>(55));

    action(QStringLiteral("mnuPopupSelectAll"))->trigger();
    EXPECT_EQ(box().SelLength(), box().TextLength());
    action(QStringLiteral("mnuEditCut"))->trigger();
    EXPECT_TRUE(box().Text().isEmpty());
    action(QStringLiteral("mnuPopupUndo"))->trigger();
    EXPECT_EQ(box().Text(), QStringLiteral("INCOME tax"));

    EXPECT_TRUE(window.menuStatus().isEnabled(QStringLiteral("mnuFileRevert")));
    action(QStringLiteral("mnuEditMarkClean"))->trigger();
    EXPECT_FALSE(document().HasDocumentChanged());
    EXPECT_FALSE(window.menuStatus().isEnabled(QStringLiteral("mnuFileRevert")));
}

TEST_F(EditCommandsTest, AShortcutTheTextActedOnIsNotDoneASecondTime) {
    QGuiApplication::clipboard()->setText(QStringLiteral("x"));
    PageView* view = document().pageView();
    view->setFocus();
    ASSERT_TRUE(window.commands()->action(QStringLiteral("mnuEditPaste"))->isEnabled());
    // Control down, V, Control up: the text pastes; the menu's shortcut for
    // Paste must neither paste again nor swallow it.
    QTest::keyClick(view, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(box().Text(), QStringLiteral("x"));
    // While Control is down in the text, the menu's command leaves it alone.
    QTest::keyPress(view, Qt::Key_Control);
    document().performEdit(RichTextBox::WM_PASTE);
    EXPECT_EQ(box().Text(), QStringLiteral("x"));
    QTest::keyRelease(view, Qt::Key_Control);
    action(QStringLiteral("mnuEditPaste"))->trigger();
    EXPECT_EQ(box().Text(), QStringLiteral("xx"));
}

TEST_F(EditCommandsTest, FontBarAndFontDialogApplyToTheSelection) {
    box().setText(QStringLiteral("Balance due"));
    select(0, 7);
    QComboBox* size = window.fontSizeBox();
    ASSERT_TRUE(size->isEnabled());
    Q_EMIT size->textActivated(QStringLiteral("18"));
    EXPECT_EQ(box().SelFontSize(), std::optional<double>(18));
    EXPECT_EQ(size->currentText(), QStringLiteral("18"));
    QComboBox* names = window.fontNameBox();
    ASSERT_GT(names->count(), 0);
    const QString family = names->itemText(names->count() - 1);
    Q_EMIT names->textActivated(family);
    EXPECT_EQ(box().SelFontName(), std::optional<QString>(family));
    select(0, 11); // 18 points and the default size: the size box goes blank
    EXPECT_TRUE(size->currentText().isEmpty());
    EXPECT_TRUE(names->currentText().isEmpty());
    select(0, 7);
    EXPECT_EQ(names->currentText(), family);

    FormatCommands::FontChoice seen;
    commands()->setFontChooser([&seen](const FormatCommands::FontChoice& seed) {
        seen = seed;
        FormatCommands::FontChoice chosen = seed;
        chosen.italic = true;
        chosen.colour = QColor(Qt::blue);
        return std::optional<FormatCommands::FontChoice>(chosen);
    });
    action(QStringLiteral("mnuPopupFont"))->trigger();
    EXPECT_EQ(seen.size, std::optional<double>(18)) << "seeded from the selection";
    EXPECT_EQ(box().SelItalic(), std::optional<bool>(true));
    EXPECT_EQ(box().SelColor(), std::optional<QColor>(QColor(Qt::blue)));
    EXPECT_EQ(box().SelFontSize(), std::optional<double>(18));
}

TEST_F(EditCommandsTest, FontBarShowedNothingForAFontThisMachineLacks) {
    box().setTextRTF(QStringLiteral(
        "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Quillmere Office Serif;}}\\f0\\fs24 Dear Client}"));
    ASSERT_EQ(window.fontNameBox()->findText(QStringLiteral("Quillmere Office Serif")), -1);
    select(1, 2);
    EXPECT_EQ(window.fontNameBox()->currentText(), QStringLiteral("Quillmere Office Serif"));
    EXPECT_EQ(window.fontSizeBox()->currentText(), QStringLiteral("12"));
}

TEST_F(EditCommandsTest, FindDialogFindsReplacesAndSaysWhenItIsDone) {
    box().setText(QStringLiteral("Fee due\r\nThe fee\r\nfees"));
    select(0, 3);
    action(QStringLiteral("mnuSearchFind"))->trigger();
    frmFind* find = commands()->findDialog();
    ASSERT_TRUE(find->isVisible());
    auto* what = find->findChild<QComboBox*>(QStringLiteral("cboFind"));
    auto* findButton = find->findChild<QPushButton*>(QStringLiteral("cmdFind"));
    auto* replaceButton = find->findChild<QPushButton*>(QStringLiteral("cmdReplace"));
    auto* with = find->findChild<QComboBox*>(QStringLiteral("cboReplace"));
    EXPECT_EQ(what->currentText(), QStringLiteral("Fee")) << "seeded from the selection";
    EXPECT_FALSE(with->isVisible());
    EXPECT_EQ(replaceButton->text(), QStringLiteral("&Replace..."));

    find->findChild<QCheckBox*>(QStringLiteral("chkWholeWord"))->setChecked(true);
    QTest::mouseClick(findButton, Qt::LeftButton);
    EXPECT_EQ(box().SelStart(), 0);
    EXPECT_EQ(findButton->text(), QStringLiteral("&Find Next"));
    QTest::mouseClick(findButton, Qt::LeftButton);
    EXPECT_EQ(box().SelStart(), 13);
    action(QStringLiteral("mnuSearchFindNext"))->trigger();
    EXPECT_EQ(messages.texts(), QStringList{QStringLiteral("The search text was not found")})
        << "whole words only: \"fees\" is no hit, and the search does not go round";
    EXPECT_EQ(findButton->text(), QStringLiteral("&Find"));

    QTest::mouseClick(replaceButton, Qt::LeftButton);
    EXPECT_TRUE(with->isVisible());
    EXPECT_EQ(replaceButton->text(), QStringLiteral("&Replace"));
    EXPECT_EQ(box().Text(), QStringLiteral("Fee due\r\nThe fee\r\nfees")) << "growing only";
    with->setEditText(QStringLiteral("charge"));
    QTest::mouseClick(find->findChild<QPushButton*>(QStringLiteral("cmdReplaceAll")),
                      Qt::LeftButton);
    EXPECT_EQ(box().Text(), QStringLiteral("charge due\r\nThe charge\r\nfees"));
    EXPECT_EQ(messages.texts().back(), QStringLiteral("2 replacements have been made."));

    // Help opens the guide at its part on finding and replacing.
    auto* help = find->findChild<QPushButton*>(QStringLiteral("cmdHelp"));
    ASSERT_TRUE(help->isEnabled());
    QTest::mouseClick(help, Qt::LeftButton);
    frmHelp* guide = window.findChild<AccessoryCommands*>()->help();
    ASSERT_NE(guide, nullptr);
    EXPECT_TRUE(guide->isVisible());
    EXPECT_EQ(guide->browser()->source().fragment(), QStringLiteral("editing"));
    guide->close();
}

TEST_F(EditCommandsTest, AHitOnALaterSheetIsSelectedAndScrolledIntoView) {
    document().loadText(numberedLines(120)); // three sheets
    ASSERT_EQ(document().totalPages(), 3);
    action(QStringLiteral("mnuSearchFind"))->trigger();
    frmFind* find = commands()->findDialog();
    find->findChild<QComboBox*>(QStringLiteral("cboFind"))->setEditText(QStringLiteral("Line 119"));
    QTest::mouseClick(find->findChild<QPushButton*>(QStringLiteral("cmdFind")), Qt::LeftButton);
    EXPECT_EQ(box().SelText(), QStringLiteral("Line 119"));
    EXPECT_EQ(document().currentPage(), 3) << "the last line stands on the last sheet";
    PageView* view = document().pageView();
    EXPECT_TRUE(
        view->viewport()->rect().contains(view->viewportRectOf(box().textCursor().position())));
}

TEST_F(EditCommandsTest, GoToTakesDigitsOnlyAndRefusesPagesThatDoNotExist) {
    box().setText(QStringLiteral("one\r\ntwo\r\nthree"));
    action(QStringLiteral("mnuSearchGoTo"))->trigger();
    frmGoTo* go = commands()->goToDialog();
    ASSERT_TRUE(go->isVisible());
    auto* number = go->findChild<QLineEdit*>(QStringLiteral("txtGo"));
    auto* goButton = go->findChild<QPushButton*>(QStringLiteral("cmdGo"));
    EXPECT_FALSE(goButton->isEnabled());
    QTest::keyClicks(number, QStringLiteral("-3"));
    EXPECT_EQ(number->text(), QStringLiteral("3")) << "no sign can be typed";
    EXPECT_TRUE(goButton->isEnabled());
    QTest::mouseClick(goButton, Qt::LeftButton);
    EXPECT_EQ(box().SelStart(), 10);

    go->findChild<QRadioButton*>(QStringLiteral("GotoPage"))->setChecked(true);
    number->setText(QStringLiteral("99999"));
    QTest::mouseClick(goButton, Qt::LeftButton);
    EXPECT_EQ(messages.texts(), QStringList{QStringLiteral("Invalid page number!")});
    EXPECT_EQ(box().SelStart(), 10);
}

} // namespace
