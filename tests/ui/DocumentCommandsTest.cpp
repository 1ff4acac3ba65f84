#include "ui/DocumentCommands.h"

#include "context/AppContext.h"
#include "files/clsWorkingFolderLocation.h"
#include "platform/FileDialogs.h"
#include "platform/MsgboxClass.h"
#include "support/TestEnvironment.h"
#include "ui/CommandActions.h"
#include "ui/frmDocument.h"
#include "ui/frmMain.h"

#include <QAbstractScrollArea>
#include <QAction>
#include <QCoreApplication>
#include <QFileInfo>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTabBar>
#include <QTest>
#include <gtest/gtest.h>

namespace {

class DocumentCommandsTest : public ::testing::Test {
protected:
    TestEnvironment env;
    ScopedAppContext context;
    ScriptedMsgbox msgbox;
    ScriptedFileDialogs dialogs;
    clsWorkingFolderLocation folders;
    frmMain window;

    void SetUp() override {
        folders.putTemplatesFolder(env.path(QStringLiteral("Templates/")));
        context->msgbox = &msgbox;
        context->fileDialogs = &dialogs;
        context->workingFolders = &folders;
        window.show();
    }
    frmDocument* active() const {
        QMdiSubWindow* sub = window.activeDocumentWindow();
        return sub ? qobject_cast<frmDocument*>(sub->widget()) : nullptr;
    }
    int openWindows() const {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return int(window.MDIArea()->subWindowList().size());
    }
    void type(const QString& text) {
        auto* view = active()->findChild<QAbstractScrollArea*>(QStringLiteral("rtfText"));
        ASSERT_NE(view, nullptr);
        const QStringList lines = text.split(QLatin1Char('\n'));
        for (qsizetype i = 0; i < lines.size(); ++i) {
            if (i > 0) {
                QTest::keyClick(view, Qt::Key_Return);
            }
            QTest::keyClicks(view, lines[i]);
        }
    }
    QString panel(int n) const {
        QCoreApplication::processEvents();
        return window.findChild<QLabel*>(QStringLiteral("SBPanel%1").arg(n))->text();
    }
    void clickTabClose() {
        auto* tabs = window.findChild<QTabBar*>(QStringLiteral("MDITabsCtrl"));
        ASSERT_NE(tabs, nullptr);
        QWidget* button = tabs->tabButton(tabs->currentIndex(), QTabBar::RightSide);
        ASSERT_NE(button, nullptr);
        QTest::mouseClick(button, Qt::LeftButton);
    }
};

} // namespace

TEST_F(DocumentCommandsTest, NewTypeSaveAsCloseReopenGivesTheSameText) {
    window.runCommand(QStringLiteral("mnuFileNewStandard"));
    ASSERT_NE(active(), nullptr);
    EXPECT_EQ(active()->DocumentCaption, QStringLiteral("Document 1"));
    type(QStringLiteral("Dear Mr Smith\nYour return is ready.\nRegards"));
    EXPECT_EQ(panel(3), QStringLiteral("3"));
    EXPECT_EQ(panel(5), QStringLiteral("3"));
    EXPECT_EQ(panel(1), QStringLiteral("Page 1 of 1"));
    const QString text = active()->rtfText().Text();

    const QString path = env.path(QStringLiteral("letters/smith.rtf"));
    dialogs.queueAnswer(path);
    window.runCommand(QStringLiteral("mnuFileSaveAs"));
    ASSERT_TRUE(QFileInfo::exists(path));
    EXPECT_EQ(window.activeDocumentWindow()->windowTitle(), QStringLiteral("smith"));
    EXPECT_EQ(dialogs.requests().back().caption, QStringLiteral("Save file as"));

    clickTabClose();
    EXPECT_EQ(openWindows(), 0);
    EXPECT_TRUE(msgbox.shown().empty()) << "a saved document closes without a question";

    dialogs.queueAnswer(path);
    // Not copied into the templates folder.
    msgbox.setFallbackAnswer(MsgboxClass::No);
    window.runCommand(QStringLiteral("mnuFileOpenNormal"));
    EXPECT_EQ(dialogs.requests().back().caption, QStringLiteral("Select file to open"));
    // An RTF file comes back as the program's own template beside it.
    const QString converted = env.path(QStringLiteral("letters/smith.qmb"));
    ASSERT_NE(active(), nullptr);
    EXPECT_EQ(active()->DocumentFileName, converted);
    EXPECT_EQ(active()->rtfText().Text(), text);
    EXPECT_FALSE(QFileInfo::exists(path));
}

TEST_F(DocumentCommandsTest, ClosingUnsavedWorkAsksAndCancelKeepsTheWindow) {
    window.runCommand(QStringLiteral("mnuFileNewStandard"));
    type(QStringLiteral("Unsaved words"));
    msgbox.queueAnswer(MsgboxClass::Cancel);
    clickTabClose();
    ASSERT_EQ(openWindows(), 1);
    ASSERT_EQ(msgbox.shown().size(), 1u);
    EXPECT_TRUE(msgbox.shown().front().text.startsWith(QStringLiteral("The document ")));
    EXPECT_EQ(active()->rtfText().Text(), QStringLiteral("Unsaved words"));

    msgbox.queueAnswer(MsgboxClass::No);
    window.runCommand(QStringLiteral("mnuFileClose"));
    EXPECT_EQ(openWindows(), 0);
}

TEST_F(DocumentCommandsTest, ExitAsksForEveryUnsavedDocumentAndCancelStopsIt) {
    window.runCommand(QStringLiteral("mnuFileNewStandard"));
    type(QStringLiteral("first"));
    window.runCommand(QStringLiteral("mnuFileNewStandard"));
    type(QStringLiteral("second"));
    window.runCommand(QStringLiteral("mnuFileNewStandard"));
    DocumentCommands* commands = documentCommands(window);
    ASSERT_NE(commands, nullptr);

    msgbox.queueAnswer(MsgboxClass::No);
    msgbox.queueAnswer(MsgboxClass::Cancel);
    EXPECT_FALSE(commands->unloadAllDocuments());
    // The untouched document went without a question, one changed one was
    // let go, the other kept.
    EXPECT_EQ(msgbox.shown().size(), 2u);
    ASSERT_EQ(openWindows(), 1);

    msgbox.queueAnswer(MsgboxClass::No);
    EXPECT_TRUE(commands->unloadAllDocuments());
    EXPECT_EQ(openWindows(), 0);
}

TEST_F(DocumentCommandsTest, TheWordWrapButtonTogglesNoWrapAndWrapAtTheWindow) {
    window.runCommand(QStringLiteral("mnuFileNewStandard"));
    type(QString(40, QLatin1Char('w'))
             .replace(QLatin1String("ww"), QLatin1String("w "))
             .repeated(8));
    frmDocument* document = active();
    const int printed = document->rtfText().lineCount();
    ASSERT_GT(printed, 1);
    QAction* wrap = window.commands()->action(QStringLiteral("tbrStandard.WordWrap"));
    ASSERT_NE(wrap, nullptr);
    ASSERT_TRUE(wrap->isEnabled());
    EXPECT_EQ(wrap->toolTip(), QStringLiteral("Toggle Word Wrap"));
    EXPECT_FALSE(wrap->isChecked()) << "a new document is laid out as printed";

    wrap->trigger();
    EXPECT_TRUE(wrap->isChecked());
    EXPECT_EQ(document->pageLayout().viewMode(), PageLayout::WrapAtWindow);
    wrap->trigger();
    EXPECT_FALSE(wrap->isChecked());
    EXPECT_EQ(document->pageLayout().viewMode(), PageLayout::NoWrap);
    EXPECT_EQ(document->rtfText().lineCount(), 1) << "no wrap: one line a paragraph";

    // Laying the page out again binds the lines to the page once more.
    document->setupDocument(false, true);
    EXPECT_EQ(document->pageLayout().viewMode(), PageLayout::PrinterWrap);
    EXPECT_EQ(document->rtfText().lineCount(), printed);
    EXPECT_TRUE(msgbox.shown().empty());
}
