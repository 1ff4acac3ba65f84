#include "ui/frmMain.h"

#include "app/MenuDefinition.h"
#include "app/modMenuStatus.h"
#include "context/AppContext.h"
#include "files/clsINI.h"
#include "support/TestEnvironment.h"
#include "ui/CommandActions.h"
#include "ui/PageView.h"
#include "ui/Ruler.h"
#include "ui/frmDocument.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QScrollBar>
#include <QStatusBar>
#include <QTabBar>
#include <QTest>
#include <QTextCursor>
#include <QTextDocument>
#include <QToolBar>
#include <QToolButton>
#include <gtest/gtest.h>

namespace {

// What a menu shows, walked from the widgets: "name|caption|parent" lines in
// the order a user meets them.
void walk(const QMenu* menu, QStringList& out) {
    for (const QAction* a : menu->actions()) {
        if (a->isSeparator()) {
            continue;
        }
        if (const QMenu* sub = a->menu()) {
            out << sub->objectName() + QLatin1Char('|') + sub->title() + QLatin1Char('|') +
                       menu->objectName();
            walk(sub, out);
        } else {
            out << a->objectName() + QLatin1Char('|') + a->text() + QLatin1Char('|') +
                       menu->objectName();
        }
    }
}

class MainWindowTest : public ::testing::Test {
protected:
    ScopedAppContext context;
    frmMain window;

    void SetUp() override {
        QGuiApplication::clipboard()->clear();
        window.LoadFonts();
        window.GetSettings();
        window.show();
    }

    frmDocument* editor() const {
        QMdiSubWindow* sub = window.activeDocumentWindow();
        return sub ? qobject_cast<frmDocument*>(sub->widget()) : nullptr;
    }
    QTextDocument* text() const { return editor()->rtfText().document(); }
    void selectAll() {
        QTextCursor all = editor()->rtfText().textCursor();
        all.select(QTextCursor::Document);
        editor()->rtfText().setTextCursor(all);
    }
    bool enabled(const char* command) const {
        return window.commands()->action(QLatin1String(command))->isEnabled();
    }
    bool allowed(const char* command) const {
        return window.menuStatus().isEnabled(QLatin1String(command));
    }
    void type(const QString& text) {
        for (const QChar ch : text) {
            QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(ch));
            QApplication::sendEvent(editor()->pageView(), &press);
        }
    }
};

TEST_F(MainWindowTest, MenuBarShowsTheCommandTableInOrder) {
    QStringList shown;
    for (const QAction* top : window.menuBar()->actions()) {
        const QMenu* menu = top->menu();
        ASSERT_NE(menu, nullptr);
        shown << menu->objectName() + QLatin1Char('|') + menu->title() + QLatin1Char('|');
        walk(menu, shown);
    }
    const QMenu* popup = window.commands()->popupMenu();
    ASSERT_NE(popup, nullptr);
    shown << popup->objectName() + QLatin1Char('|') + popup->title() + QLatin1Char('|');
    walk(popup, shown);

    QStringList expected;
    for (const MenuEntry& e : menuTree()) {
        if (e.kind != MenuEntry::Kind::SideBar) {
            expected << e.name + QLatin1Char('|') + e.caption + QLatin1Char('|') + e.parent;
        }
    }
    EXPECT_EQ(shown, expected);
}

TEST_F(MainWindowTest, AccessKeysAndShortcutsReachTheActions) {
    for (const MenuEntry& e : menuTree()) {
        if (e.kind != MenuEntry::Kind::Item) {
            continue;
        }
        SCOPED_TRACE(e.name.toStdString());
        const QAction* a = window.commands()->action(e.name);
        ASSERT_NE(a, nullptr);
        EXPECT_EQ(QKeySequence::mnemonic(a->text()), QKeySequence::mnemonic(e.caption));
        EXPECT_EQ(a->shortcut(), QKeySequence(e.shortcut));
    }
    EXPECT_EQ(QKeySequence::mnemonic(window.commands()->menu(QStringLiteral("mnuFormat"))->title()),
              QKeySequence(Qt::ALT | Qt::Key_O));
}

TEST_F(MainWindowTest, ToolBarsCarryTheirKeysAndShareTheMenuActions) {
    for (const ToolBarDefinition& def : toolBars()) {
        SCOPED_TRACE(def.name.toStdString());
        const QToolBar* bar = window.findChild<QToolBar*>(def.name);
        ASSERT_NE(bar, nullptr);
        const QList<QAction*> actions = bar->actions();
        ASSERT_EQ(actions.size(), qsizetype(def.buttons.size()));
        for (std::size_t i = 0; i < def.buttons.size(); ++i) {
            EXPECT_EQ(bar->widgetForAction(actions[qsizetype(i)])->objectName(),
                      def.buttons[i].key);
            EXPECT_EQ(actions[qsizetype(i)], window.commands()->action(def.buttons[i].command));
        }
    }
    const auto* newButton =
        qobject_cast<QToolButton*>(window.findChild<QToolBar*>(QStringLiteral("tbrFile"))
                                       ->findChild<QToolButton*>(QStringLiteral("New")));
    ASSERT_NE(newButton, nullptr);
    ASSERT_NE(newButton->menu(), nullptr);
    QStringList keys;
    for (const QAction* a : newButton->menu()->actions()) {
        keys << a->objectName();
    }
    EXPECT_EQ(
        keys.join(QLatin1Char(' ')),
        QStringLiteral("Standard Companies CompanyContacts Contacts Remittances Appointments"));
}

TEST_F(MainWindowTest, FontBarListsScreenFontsAndSizesFiveToSeventyTwo) {
    const QComboBox* sizes = window.findChild<QComboBox*>(QStringLiteral("cboFontSize"));
    ASSERT_NE(sizes, nullptr);
    ASSERT_EQ(sizes->count(), 68);
    EXPECT_EQ(sizes->itemText(0), QStringLiteral("5"));
    EXPECT_EQ(sizes->itemText(67), QStringLiteral("72"));
    const QComboBox* names = window.findChild<QComboBox*>(QStringLiteral("cboFontName"));
    ASSERT_NE(names, nullptr);
    EXPECT_GT(names->count(), 0);
    for (int i = 0; i < names->count(); ++i) {
        EXPECT_FALSE(names->itemText(i).startsWith(QLatin1Char('@')));
    }
    EXPECT_NE(window.findChild<QStatusBar*>(QStringLiteral("SB")), nullptr);
    EXPECT_NE(window.findChild<QTabBar*>(QStringLiteral("MDITabsCtrl")), nullptr);
    EXPECT_NE(window.findChild<QToolBar*>(QStringLiteral("picFont")), nullptr);
}

TEST_F(MainWindowTest, ACommandNotBuiltIsDisabledWithANoteEvenWithADocument) {
    window.runCommand(QStringLiteral("mnuFileNewStandard"));
    ASSERT_NE(editor(), nullptr);
    selectAll();
    for (const char* unbuilt : {"mnuToolsDictonary"}) {
        SCOPED_TRACE(unbuilt);
        const QAction* a = window.commands()->action(QLatin1String(unbuilt));
        EXPECT_FALSE(a->isEnabled());
        EXPECT_EQ(a->toolTip(), notAvailableYetTip());
    }
    for (const char* built :
         {"mnuFileNewStandard", "mnuFileSave", "mnuFileOpenNormal", "mnuFileExit",
          "mnuWindowCascade", "mnuViewToolbarStandard", "mnuViewStatusBar"}) {
        EXPECT_TRUE(enabled(built)) << built;
    }
}

TEST_F(MainWindowTest, OnlyTheCommandsLeftOpenLackARoutine) {
    // Every other command of the menus and bars does something when clicked.
    window.runCommand(QStringLiteral("mnuFileNewStandard"));
    ASSERT_NE(editor(), nullptr);
    QStringList unrouted;
    for (const MenuEntry& e : menuTree()) {
        if (e.kind == MenuEntry::Kind::Item && !window.hasRoute(e.name) &&
            !e.name.startsWith(QLatin1String("mnuPopup"))) {
            unrouted << e.name;
        }
    }
    for (const ToolBarDefinition& bar : toolBars()) {
        for (const ToolBarButton& b : bar.buttons) {
            if (!window.hasRoute(b.command) && !unrouted.contains(b.command)) {
                unrouted << b.command;
            }
        }
    }
    // The recent-files header is a caption; the dictionary and the two
    // wizards are left open.
    EXPECT_EQ(unrouted.join(QLatin1Char(' ')).toStdString(),
              "mnuFileMRUTemp mnuToolsDictonary mnuLabelWizard mnuBackground");
    for (const QString& command : unrouted) {
        const QAction* a = window.commands()->action(command);
        EXPECT_FALSE(a->isEnabled()) << command.toStdString();
    }
}

TEST_F(MainWindowTest, AvailabilityFollowsAScriptedSession) {
    // No document: the group is off, New works.
    EXPECT_FALSE(allowed("mnuFileClose"));
    EXPECT_FALSE(allowed("mnuEditPaste"));
    EXPECT_TRUE(enabled("mnuFileNewStandard"));

    window.runCommand(QStringLiteral("mnuFileNewStandard"));
    ASSERT_NE(editor(), nullptr);
    EXPECT_EQ(window.activeDocumentWindow()->windowTitle(), QStringLiteral("Document 1"));
    EXPECT_TRUE(allowed("mnuFileClose"));
    EXPECT_TRUE(allowed("mnuFileSave"));
    EXPECT_FALSE(allowed("mnuFileRevert"));
    EXPECT_FALSE(allowed("mnuEditUndo"));
    EXPECT_FALSE(allowed("mnuEditCut"));

    type(QStringLiteral("Dear client"));
    EXPECT_EQ(text()->toPlainText(), QStringLiteral("Dear client"));
    EXPECT_TRUE(allowed("mnuFileRevert"));
    EXPECT_TRUE(allowed("mnuEditUndo"));
    EXPECT_TRUE(allowed("tbrEdit.Undo"));
    EXPECT_FALSE(allowed("mnuEditCopy"));

    selectAll();
    EXPECT_TRUE(allowed("mnuEditCut"));
    EXPECT_TRUE(allowed("tbrStandard.Copy"));
    EXPECT_TRUE(allowed("mnuFileSaveSelectionAs"));

    QGuiApplication::clipboard()->setText(QStringLiteral("pasted"));
    EXPECT_TRUE(allowed("mnuEditPaste"));
    auto* picture = new QMimeData;
    picture->setImageData(QImage(4, 4, QImage::Format_RGB32));
    QGuiApplication::clipboard()->setMimeData(picture);
    EXPECT_FALSE(allowed("mnuEditPaste"));

    // What a save leaves behind: a clean document.
    text()->setModified(false);
    window.refreshMenuStatus();
    EXPECT_FALSE(allowed("mnuFileRevert"));

    window.activeDocumentWindow()->close();
    QApplication::processEvents();
    EXPECT_EQ(window.activeDocumentWindow(), nullptr);
    EXPECT_FALSE(allowed("mnuFileClose"));
    EXPECT_FALSE(allowed("mnuEditUndo"));
}

TEST_F(MainWindowTest, FormatBarShowsTheSelection) {
    window.runCommand(QStringLiteral("mnuFileNewStandard"));
    type(QStringLiteral("Title"));
    selectAll();
    editor()->rtfText().setSelBold(true);
    editor()->rtfText().setSelAlignment(RichTextBox::rtfCenter);
    window.refreshMenuStatus();
    const auto down = [this](const char* key) {
        return window.commands()
            ->action(buttonCommandId(QStringLiteral("tbrFormat"), QLatin1String(key)))
            ->isChecked();
    };
    EXPECT_TRUE(down("Bold"));
    EXPECT_FALSE(down("Italic"));
    EXPECT_TRUE(down("Center"));
    EXPECT_FALSE(down("Left"));
}

TEST_F(MainWindowTest, ShowAndHideFlipTheCheckMarkAndTheBar) {
    auto* bar = window.findChild<QToolBar*>(QStringLiteral("tbrWindow"));
    QAction* item = window.commands()->action(QStringLiteral("mnuViewToolbarWindow"));
    // Hidden by default.
    EXPECT_FALSE(bar->isVisible());
    EXPECT_FALSE(item->isChecked());
    item->trigger();
    EXPECT_TRUE(bar->isVisible());
    EXPECT_TRUE(item->isChecked());
    QAction* status = window.commands()->action(QStringLiteral("mnuViewStatusBar"));
    EXPECT_TRUE(status->isChecked());
    status->trigger();
    EXPECT_FALSE(window.findChild<QStatusBar*>(QStringLiteral("SB"))->isVisible());
}

TEST_F(MainWindowTest, BarsComeUpAsTheSettingsSayAndTogglesAreWrittenBack) {
    TestEnvironment env;
    clsINI ini;
    ini.setINIFile(env.path("QuillmerePad.ini"));
    ini.setKeyValue(QStringLiteral("QuillmerePadToolbars"), QStringLiteral("FontToolbar"),
                    QStringLiteral("False"));
    ini.setKeyValue(QStringLiteral("QuillmerePadToolbars"), QStringLiteral("WindowToolbar"),
                    QStringLiteral("1"));
    app().iniSettings = &ini;
    window.GetSettings();
    EXPECT_FALSE(window.findChild<QToolBar*>(QStringLiteral("picFont"))->isVisible());
    EXPECT_TRUE(window.findChild<QToolBar*>(QStringLiteral("tbrWindow"))->isVisible());
    QAction* font = window.commands()->action(QStringLiteral("mnuViewToolbarFont"));
    EXPECT_FALSE(font->isChecked());

    font->trigger();
    EXPECT_TRUE(window.findChild<QToolBar*>(QStringLiteral("picFont"))->isVisible());
    EXPECT_EQ(
        ini.getKeyString(QStringLiteral("QuillmerePadToolbars"), QStringLiteral("FontToolbar")),
        QStringLiteral("True"));
    window.commands()->action(QStringLiteral("mnuViewStatusBar"))->trigger();
    EXPECT_EQ(
        ini.getKeyString(QStringLiteral("QuillmerePadSettings"), QStringLiteral("ShowStatusBar")),
        QStringLiteral("False"));
    app().iniSettings = nullptr;
}

TEST_F(MainWindowTest, TileVerticalPutsDocumentsSideBySideAndMaximisingBringsTabsBack) {
    window.resize(1000, 700);
    window.runCommand(QStringLiteral("mnuFileNewStandard"));
    window.runCommand(QStringLiteral("mnuFileNewStandard"));
    window.commands()->action(QStringLiteral("mnuWindowTileVertical"))->trigger();
    QMdiArea* area = window.MDIArea();
    EXPECT_EQ(area->viewMode(), QMdiArea::SubWindowView);
    const auto subs = area->subWindowList();
    ASSERT_EQ(subs.size(), 2);
    EXPECT_EQ(subs[0]->geometry().top(), subs[1]->geometry().top());
    EXPECT_NE(subs[0]->geometry().left(), subs[1]->geometry().left());
    EXPECT_EQ(subs[0]->width(), subs[1]->width());
    subs[0]->showMaximized();
    EXPECT_EQ(area->viewMode(), QMdiArea::TabbedView);
}

// The Options dialog's "document startup position" decides how the next
// document window comes up; it was stored and then not used.
TEST_F(MainWindowTest, NewDocumentsOpenAtTheStartupPositionOfTheOptions) {
    TestEnvironment env;
    clsINI ini;
    ini.setINIFile(env.path("QuillmerePad.ini"));
    app().iniSettings = &ini;
    QMdiArea* area = window.MDIArea();
    const auto opened = [&](const char* state) {
        ini.setKeyValue(QStringLiteral("Document"), QStringLiteral("WindowState"),
                        QLatin1String(state));
        window.runCommand(QStringLiteral("mnuFileNewStandard"));
        return area->subWindowList().back();
    };
    for (QMdiSubWindow* sub : area->subWindowList()) {
        delete sub;
    }
    QMdiSubWindow* normal = opened("0");
    EXPECT_FALSE(normal->isMaximized());
    EXPECT_FALSE(normal->isMinimized());
    EXPECT_EQ(area->viewMode(), QMdiArea::SubWindowView);
    EXPECT_TRUE(opened("1")->isMinimized());
    EXPECT_FALSE(normal->isMaximized());
    QMdiSubWindow* maximised = opened("2");
    EXPECT_TRUE(maximised->isMaximized());
    EXPECT_EQ(area->viewMode(), QMdiArea::TabbedView);
    // Beside maximised documents too, the tabs give way to windows.
    EXPECT_FALSE(opened("0")->isMaximized());
    EXPECT_EQ(area->viewMode(), QMdiArea::SubWindowView);
    EXPECT_TRUE(opened("junk")->isMaximized());
    app().iniSettings = nullptr;
}

TEST_F(MainWindowTest, CommandsWaitWhileADocumentIsBeingCreated) {
    app().isCreatingDocument = true;
    window.runCommand(QStringLiteral("mnuFileNewStandard"));
    EXPECT_TRUE(window.MDIArea()->subWindowList().isEmpty());
    app().isCreatingDocument = false;
    window.runCommand(QStringLiteral("mnuFileNewStandard"));
    EXPECT_EQ(window.MDIArea()->subWindowList().size(), 1);
}

} // namespace

namespace {

TEST_F(MainWindowTest, AFileOpensInAWindowOfItsOwnAndAnUnreadableOneLeavesNone) {
    ScriptedMsgbox messages;
    context->msgbox = &messages;
    const QString letter = testDataPath(QStringLiteral("documents/three-page-letter.rtf"));
    // The untouched blank document gives way to the file.
    window.newDocument(1);
    ASSERT_TRUE(window.openDocumentFile(letter));
    QApplication::processEvents();
    EXPECT_EQ(window.MDIArea()->subWindowList().size(), 1);
    frmDocument* document = editor();
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(document->DocumentFileName, letter);
    EXPECT_EQ(document->totalPages(), 3);
    EXPECT_FALSE(document->HasDocumentChanged());
    EXPECT_FALSE(allowed("mnuEditUndo"));
    EXPECT_TRUE(messages.shown().empty());

    // A blank document someone wrote in stays.
    window.MDIArea()->subWindowList().front()->close();
    QApplication::processEvents();
    window.newDocument(2);
    ASSERT_EQ(window.MDIArea()->subWindowList().size(), 1);
    auto* notes = qobject_cast<frmDocument*>(window.MDIArea()->subWindowList().front()->widget());
    ASSERT_NE(notes, nullptr);
    notes->rtfText().setText(QStringLiteral("Notes"));
    ASSERT_TRUE(window.openDocumentFile(letter));
    QApplication::processEvents();
    EXPECT_EQ(window.MDIArea()->subWindowList().size(), 2);

    const int windows = int(window.MDIArea()->subWindowList().size());
    EXPECT_FALSE(window.openDocumentFile(letter + QStringLiteral(".missing")));
    EXPECT_EQ(int(window.MDIArea()->subWindowList().size()), windows);
    ASSERT_EQ(messages.shown().size(), 1u);

    // A folder and a binary file (a recent-files entry or a drop) are
    // refused by name, and no window opens.
    TestEnvironment env;
    const QString folder = env.path(QStringLiteral("Letters.qmb"));
    QDir().mkpath(folder);
    const QString binary = env.path(QStringLiteral("logo.qmb"));
    writeTestFile(binary, QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16));
    EXPECT_FALSE(window.openDocumentFile(folder));
    EXPECT_FALSE(window.openDocumentFile(binary));
    EXPECT_EQ(int(window.MDIArea()->subWindowList().size()), windows);
    ASSERT_EQ(messages.texts().size(), 3);
    EXPECT_TRUE(messages.texts()[1].contains(QLatin1String("is a folder")));
    EXPECT_TRUE(messages.texts()[2].contains(QLatin1String("binary data")));
}

} // namespace

TEST_F(MainWindowTest, RulerLinesUpWithTheSheetAndFollowsScrollAndZoom) {
    auto* rulerBar = window.findChild<QToolBar*>(QStringLiteral("cbrRuler"));
    auto* ruler = window.findChild<Ruler*>(QStringLiteral("picRuler"));
    auto* zoom = window.findChild<QComboBox*>(QStringLiteral("cboZoom"));
    ASSERT_TRUE(rulerBar && ruler && zoom);
    // Off in a new settings file; the View item brings it up.
    EXPECT_FALSE(rulerBar->isVisible());
    EXPECT_FALSE(zoom->isEnabled());
    window.commands()->action(QStringLiteral("mnuViewRuler"))->trigger();
    EXPECT_TRUE(rulerBar->isVisible());
    EXPECT_FALSE(ruler->sheetOrigin().has_value());

    window.newDocument(1);
    QApplication::processEvents();
    PageView* view = editor()->pageView();
    ASSERT_EQ(ruler->followed(), view);
    EXPECT_TRUE(zoom->isEnabled());
    EXPECT_EQ(zoom->currentText(), QStringLiteral("100%"));

    // The sheet's left edge on the ruler is where the view paints it.
    auto sheetOnScreen = [&] {
        const int sheetLeft = editor()->pageView()->layout().sheetRect(1).left();
        const int x = view->centringInset() - view->horizontalScrollBar()->value() +
                      int(sheetLeft * view->pixelsPerTwip());
        return view->viewport()->mapToGlobal(QPoint(x, 0)).x();
    };
    auto sheetOnRuler = [&] {
        return ruler->mapToGlobal(QPoint(int(ruler->sheetOrigin()->first), 0)).x();
    };
    EXPECT_NEAR(sheetOnRuler(), sheetOnScreen(), 1);

    // Zoom from the box: the view follows, and so does the ruler.
    zoom->setCurrentText(QStringLiteral("200%"));
    Q_EMIT zoom->lineEdit()->editingFinished();
    EXPECT_EQ(view->zoom(), 200);
    EXPECT_DOUBLE_EQ(ruler->sheetOrigin()->second, view->pixelsPerTwip());
    view->horizontalScrollBar()->setValue(view->horizontalScrollBar()->maximum());
    EXPECT_NEAR(sheetOnRuler(), sheetOnScreen(), 1);

    // Ctrl+wheel zooms the view; the box shows it. A slip of the keyboard
    // leaves the zoom as it stands.
    view->setZoom(75);
    EXPECT_EQ(zoom->currentText(), QStringLiteral("75%"));
    zoom->setCurrentText(QStringLiteral("lots"));
    Q_EMIT zoom->lineEdit()->editingFinished();
    EXPECT_EQ(view->zoom(), 75);
    EXPECT_EQ(zoom->currentText(), QStringLiteral("75%"));
    zoom->setCurrentText(QStringLiteral("130"));
    Q_EMIT zoom->lineEdit()->editingFinished();
    EXPECT_EQ(view->zoom(), 130);

    // The zoom belongs to the window: a second document starts at 100 %.
    window.newDocument(2);
    QApplication::processEvents();
    EXPECT_EQ(zoom->currentText(), QStringLiteral("100%"));
    EXPECT_EQ(ruler->followed(), editor()->pageView());
}

TEST_F(MainWindowTest, CtrlWClosedNothingBecauseTheDocumentFrameHeldTheSameKey) {
    window.newDocument(1);
    QApplication::processEvents();
    ASSERT_EQ(window.MDIArea()->subWindowList().size(), 1);
    QApplication::setActiveWindow(&window);
    editor()->pageView()->setFocus();
    QTest::keyClick(editor()->pageView(), Qt::Key_W, Qt::ControlModifier);
    QApplication::processEvents();
    EXPECT_TRUE(window.MDIArea()->subWindowList().isEmpty());
}
