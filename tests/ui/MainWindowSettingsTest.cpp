#include "app/CommandLine.h"
#include "app/modMain.h"
#include "context/AppContext.h"
#include "files/clsINI.h"
#include "files/clsWorkingFolderLocation.h"
#include "platform/FileDialogs.h"
#include "platform/MsgboxClass.h"
#include "spell/QtPrinters.h"
#include "support/TestEnvironment.h"
#include "ui/CommandActions.h"
#include "ui/LiveSpellChecker.h"
#include "ui/MainWindowPosition.h"
#include "ui/OptionsCommands.h"
#include "ui/QuickPicksBar.h"
#include "ui/RecentFilesMenu.h"
#include "ui/frmDocument.h"
#include "ui/frmMain.h"
#include "ui/frmOptions.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QTest>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QScreen>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTextDocument>
#include <QTextStream>
#include <QTimer>
#include <QToolBar>
#include <gtest/gtest.h>

namespace {

class MainWindowSettingsTest : public ::testing::Test {
protected:
    TestEnvironment env;
    ScopedAppContext context;
    clsINI ini;
    ScriptedMsgbox messages;
    ScriptedFileDialogs dialogs;
    std::unique_ptr<frmMain> window;

    void SetUp() override {
        ini.setINIFile(env.path(QStringLiteral("work/Qminiqmd.dni")));
        context->iniSettings = &ini;
        context->msgbox = &messages;
        context->fileDialogs = &dialogs;
        window = startWindow();
    }

    // What start-up does with the window, on the settings file as it is.
    std::unique_ptr<frmMain> startWindow() {
        auto w = std::make_unique<frmMain>();
        w->LoadFonts();
        w->recentFiles()->GetMRUList();
        w->GetSettings();
        w->show();
        return w;
    }

    template <typename T> T* control(QWidget& in, const char* name) {
        T* found = in.findChild<T*>(QLatin1String(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }
    QAction* action(const QString& command) { return window->commands()->action(command); }
    bool barShown(frmMain& w, const char* name) {
        return !w.findChild<QToolBar*>(QLatin1String(name))->isHidden();
    }
    QString setting(const char* section, const char* key) {
        return ini.getKeyString(QLatin1String(section), QLatin1String(key), QStringLiteral("-"));
    }
};

// The caption a user sees for a control: its own text, or its label's.
QString captionOf(const QWidget* widget) {
    if (const auto* button = qobject_cast<const QAbstractButton*>(widget)) {
        return button->text();
    }
    for (const QLabel* label : widget->window()->findChildren<QLabel*>()) {
        if (label->buddy() == widget) {
            return label->text();
        }
    }
    return {};
}

QStringList itemsOf(const QComboBox* box) {
    QStringList items;
    for (int i = 0; i < box->count(); ++i) {
        items << box->itemText(i);
    }
    return items;
}

} // namespace

TEST_F(MainWindowSettingsTest, OptionsShowsEveryControlAndMirrorsTheViewItems) {
    const std::unique_ptr<frmOptions> dialog = window->options()->createDialog();
    dialog->show();
    const struct {
        const char* name;
        const char* caption;
    } controls[] = {
        {"cmbOFontName", "Default Font:"},
        {"cmbOFontSize", "Default Font Size:"},
        {"chkStandard", "Standard"},
        {"chkFont", "Font"},
        {"chkFormat", "Format"},
        {"chkFile", "File"},
        {"chkEdit", "Edit"},
        {"chkWindow", "Window"},
        {"chkMerge", "Merge Tutorial"},
        {"chkStatusBar", "Show Status Bar"},
        {"chkRuler", "Show Ruler"},
        {"chkFileTree", "Show File Tree"},
        {"cmbDocState", "Select document startup position:"},
        {"chkStayOnTop", "Stay on Top"},
        {"cboStyle", "Document Tabs Style:"},
        {"chkDrawFocusRect", "Draw Focus Rect"},
        {"chkDrawIcons", "Draw Icons"},
        {"txtLocation", "Specify the templates folder location:"},
        {"cmdBrowse", "Change Templates Folder Location"},
        {"cmdOK", "OK"},
        {"cmdApply", "Apply"},
        {"cmdCancel", "Cancel"},
    };
    for (const auto& c : controls) {
        const QWidget* widget = control<QWidget>(*dialog, c.name);
        ASSERT_NE(widget, nullptr);
        EXPECT_EQ(captionOf(widget), QLatin1String(c.caption)) << c.name;
    }
    EXPECT_EQ(itemsOf(control<QComboBox>(*dialog, "cmbDocState")),
              (QStringList{"Normal", "Minimized", "Maximized"}));
    EXPECT_EQ(itemsOf(control<QComboBox>(*dialog, "cboStyle")),
              (QStringList{"Office XP Style", "Office 2000 Style", "Office 2003 Style"}));
    EXPECT_EQ(itemsOf(control<QComboBox>(*dialog, "cmbOFontSize")), itemsOf(window->fontSizeBox()));
    EXPECT_EQ(control<QComboBox>(*dialog, "cmbOFontSize")->currentText(), QStringLiteral("10"));

    // A new settings file: Standard, Font and Format on; File, Edit and
    // Window off; ruler off; status bar and file tree on.
    // A box whose bar this build lacks shows the stored key and stays put.
    for (const OptionCheck& check : optionChecks()) {
        SCOPED_TRACE(check.control.toStdString());
        const QCheckBox* box = control<QCheckBox>(*dialog, qPrintable(check.control));
        const bool built = window->hasRoute(check.viewCommand);
        EXPECT_EQ(box->isEnabled(), built);
        EXPECT_EQ(box->isChecked(),
                  built ? action(check.viewCommand)->isChecked()
                        : clsINI::isTrueValue(ini.getKeyString(check.section, check.key)));
    }
    EXPECT_TRUE(control<QCheckBox>(*dialog, "chkStandard")->isChecked());
    EXPECT_FALSE(control<QCheckBox>(*dialog, "chkFile")->isChecked());
}

TEST_F(MainWindowSettingsTest, ApplyShowsTheBarsAtOnceAndTheyComeBackAfterARestart) {
    std::unique_ptr<frmOptions> dialog = window->options()->createDialog();
    dialog->show();
    control<QCheckBox>(*dialog, "chkWindow")->setChecked(true);
    control<QCheckBox>(*dialog, "chkStandard")->setChecked(false);
    control<QCheckBox>(*dialog, "chkStatusBar")->setChecked(false);
    control<QComboBox>(*dialog, "cmbDocState")->setCurrentIndex(0);
    control<QAbstractButton>(*dialog, "cmdApply")->click();

    EXPECT_TRUE(dialog->isVisible()) << "Apply keeps the dialog open";
    EXPECT_TRUE(barShown(*window, "tbrWindow"));
    EXPECT_FALSE(barShown(*window, "tbrStandard"));
    EXPECT_TRUE(window->statusBar()->isHidden());
    EXPECT_TRUE(action(QStringLiteral("mnuViewToolbarWindow"))->isChecked());
    EXPECT_FALSE(action(QStringLiteral("mnuViewToolbarStandard"))->isChecked());
    EXPECT_EQ(setting("QuillmerePadToolbars", "WindowToolbar"), QStringLiteral("True"));
    EXPECT_EQ(setting("QuillmerePadToolbars", "StandardToolbar"), QStringLiteral("False"));
    EXPECT_EQ(setting("Document", "WindowState"), QStringLiteral("0"));

    control<QAbstractButton>(*dialog, "cmdCancel")->click();
    EXPECT_FALSE(dialog->isVisible());

    dialog.reset();
    window.reset();
    const std::unique_ptr<frmMain> restarted = startWindow();
    EXPECT_TRUE(barShown(*restarted, "tbrWindow"));
    EXPECT_FALSE(barShown(*restarted, "tbrStandard"));
    EXPECT_TRUE(restarted->statusBar()->isHidden());
}

TEST_F(MainWindowSettingsTest, LiveSpellingIsSwitchedInOptionsAndStaysSwitchedAfterARestart) {
    ASSERT_TRUE(LiveSpellChecker::isEnabled()) << "on in a new settings file";
    std::unique_ptr<frmOptions> dialog = window->options()->createDialog();
    dialog->show();
    QCheckBox* live = control<QCheckBox>(*dialog, "chkLiveSpelling");
    EXPECT_TRUE(live->isChecked());
    live->setChecked(false);
    control<QAbstractButton>(*dialog, "cmdOK")->click();
    EXPECT_FALSE(LiveSpellChecker::isEnabled());
    EXPECT_EQ(setting("QuillmerePadSettings", "LiveSpelling"), QStringLiteral("False"));

    dialog.reset();
    window.reset();
    LiveSpellChecker::setEnabled(true);
    const std::unique_ptr<frmMain> restarted = startWindow();
    EXPECT_FALSE(LiveSpellChecker::isEnabled());
    LiveSpellChecker::setEnabled(true);
}

TEST_F(MainWindowSettingsTest, CancelChangesNothing) {
    const QByteArray before = readTestFile(ini.INIFile());
    const std::unique_ptr<frmOptions> dialog = window->options()->createDialog();
    dialog->show();
    control<QCheckBox>(*dialog, "chkFont")->setChecked(false);
    control<QComboBox>(*dialog, "cmbOFontSize")->setCurrentText(QStringLiteral("20"));
    control<QComboBox>(*dialog, "cboStyle")->setCurrentIndex(1);
    control<QAbstractButton>(*dialog, "cmdCancel")->click();
    EXPECT_EQ(readTestFile(ini.INIFile()), before);
    EXPECT_TRUE(barShown(*window, "picFont"));
    EXPECT_EQ(window->MDIArea()->tabShape(), QTabWidget::Rounded);
}

TEST_F(MainWindowSettingsTest, OkFromTheMenuMovesTheTemplatesFolderAndRestylesTheTabs) {
    clsWorkingFolderLocation folders;
    context->workingFolders = &folders;
    folders.putTemplatesFolder(env.path(QStringLiteral("templates-a")));
    const QString other = env.path(QStringLiteral("templates-b"));
    QDir().mkpath(other);
    dialogs.queueAnswer(other);
    QSignalSpy moved(window->options(), &OptionsCommands::templatesFolderChanged);

    // Tools > Options is usable with no document open.
    ASSERT_TRUE(action(QStringLiteral("mnuToolsOptions"))->isEnabled());
    bool answered = false;
    QTimer::singleShot(0, [&] {
        auto* dialog = qobject_cast<frmOptions*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        control<QAbstractButton>(*dialog, "cmdBrowse")->click();
        control<QComboBox>(*dialog, "cboStyle")->setCurrentIndex(1);
        control<QCheckBox>(*dialog, "chkDrawIcons")->setChecked(true);
        control<QAbstractButton>(*dialog, "cmdOK")->click();
        answered = true;
    });
    action(QStringLiteral("mnuToolsOptions"))->trigger();
    ASSERT_TRUE(answered);

    ASSERT_EQ(dialogs.requests().size(), 1u);
    EXPECT_EQ(dialogs.requests()[0].caption, QStringLiteral("Change Templates Folder Location"));
    EXPECT_EQ(QDir(folders.getTemplatesFolder()), QDir(other));
    ASSERT_EQ(moved.size(), 1);
    EXPECT_EQ(moved.front().front().toString(), folders.getTemplatesFolder());
    // Quick Picks lists the new folder at once.
    const auto* quickPicks = window->findChild<QuickPicksBar*>(QStringLiteral("picFileBar"));
    ASSERT_NE(quickPicks, nullptr);
    EXPECT_EQ(QDir(quickPicks->folder()), QDir(other));
    EXPECT_EQ(setting("DocumentTabs", "Style"), QStringLiteral("1"));
    EXPECT_EQ(setting("DocumentTabs", "ViewIcon"), QStringLiteral("True"));
    // The tab strip is refreshed when the dialog closes.
    EXPECT_EQ(window->MDIArea()->tabShape(), QTabWidget::Triangular);
    EXPECT_FALSE(window->MDIArea()->documentMode());
    context->workingFolders = nullptr;
}

TEST_F(MainWindowSettingsTest, RecentFilesOpenOrSayTheFileIsGone) {
    const QString letter = env.path(QStringLiteral("docs/Year end letter.rtf"));
    writeTestFile(letter,
                  readTestFile(testDataPath(QStringLiteral("documents/three-page-letter.rtf"))));
    const QString gone = env.path(QStringLiteral("docs/gone.qmw"));
    const QString folder = env.path(QStringLiteral("docs"));
    const QString section = QStringLiteral("QuillmerePadMRU");
    ini.setKeyValue(section, QStringLiteral("Name1"), gone);
    ini.setKeyValue(section, QStringLiteral("Name2"), folder);
    ini.setKeyValue(section, QStringLiteral("Name3"), letter);
    window->recentFiles()->GetMRUList();

    QStringList shown;
    for (const QAction* a : window->commands()->menu(QStringLiteral("mnuFileRecent"))->actions()) {
        if (a->isVisible()) {
            shown << a->objectName() + QLatin1Char('|') + a->text() +
                         (a->isEnabled() ? QString() : QStringLiteral("|off"));
        }
    }
    EXPECT_EQ(shown,
              (QStringList{"mnuFileMRUTemp|--Recent Files--|off", "mnuFileMRUItem1|1. gone",
                           "mnuFileMRUItem2|2. docs", "mnuFileMRUItem3|3. Year end letter"}));

    const QString message = QStringLiteral("The file you have selected doesn't exist.");
    action(QStringLiteral("mnuFileMRUItem1"))->trigger();
    action(QStringLiteral("mnuFileMRUItem2"))->trigger();
    EXPECT_EQ(messages.texts(), (QStringList{message, message}));
    EXPECT_TRUE(window->MDIArea()->subWindowList().isEmpty());
    EXPECT_EQ(action(QStringLiteral("mnuFileMRUItem1"))->data().toString(), gone)
        << "a stale entry stays";

    action(QStringLiteral("mnuFileMRUItem3"))->trigger();
    QApplication::processEvents();
    ASSERT_EQ(window->MDIArea()->subWindowList().size(), 1);
    EXPECT_EQ(window->recentFiles()->list().entries(), (QStringList{letter, gone, folder}));
    EXPECT_EQ(action(QStringLiteral("mnuFileMRUItem1"))->text(),
              QStringLiteral("1. Year end letter"));
    EXPECT_EQ(setting("QuillmerePadMRU", "Name1"), letter);
    EXPECT_EQ(messages.texts().size(), 2);
}

TEST_F(MainWindowSettingsTest, AbsurdStoredPositionsGiveAWindowOnTheScreen) {
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    const QString section = QStringLiteral("QuillmerePadWindowSettings");
    const struct {
        const char* what;
        const char* left;
        const char* top;
        const char* width;
        const char* height;
        QRect expected; // null: anywhere on the screen
    } cases[] = {
        {"as stored", "300", "150", "11640", "8340", QRect(20, 10, 776, 556)},
        {"junk", "left", "0x20", "wide", "", {}},
        {"off every screen", "9999999", "9999999", "11640", "8340",
         QRect(screen.right() - 775, screen.bottom() - 555, 776, 556)},
        {"huge", "0", "0", "2000000000", "2000000000", screen},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        ini.setKeyValue(section, QStringLiteral("WindowState"), QStringLiteral("0"));
        ini.setKeyValue(section, QStringLiteral("WindowLeft"), QLatin1String(c.left));
        ini.setKeyValue(section, QStringLiteral("WindowTop"), QLatin1String(c.top));
        ini.setKeyValue(section, QStringLiteral("WindowWidth"), QLatin1String(c.width));
        ini.setKeyValue(section, QStringLiteral("WindowHeight"), QLatin1String(c.height));
        frmMain fresh;
        positionMDI(fresh);
        const QRect got = fresh.geometry();
        EXPECT_TRUE(screen.contains(got))
            << got.x() << ',' << got.y() << ' ' << got.width() << 'x' << got.height();
        EXPECT_GE(got.width(), std::min(screen.width(), 11640 / 15));
        EXPECT_GE(got.height(), std::min(screen.height(), 8340 / 15));
        if (!c.expected.isNull()) {
            EXPECT_EQ(got, c.expected);
        }
    }
}

namespace {

// The program's own start-up on a practice as install-sample leaves it: the
// first document is made as File > New makes one, with the default font of
// the settings file, and Quick Picks lists the templates folder.
TEST(MainWindowStartTest, TheFirstDocumentTakesTheDefaultFontAndQuickPicksTheTemplates) {
    TestEnvironment env;
    ScopedAppContext context;
    {
        QString out;
        QString err;
        QTextStream o(&out);
        QTextStream e(&err);
        CommandIO io{o, e};
        ASSERT_EQ(runHeadlessCommand({QStringLiteral("install-sample")}, io), 0)
            << err.toStdString();
    }
    const QString settingsFile = env.configHome() + QStringLiteral("/Quillmere/Qminiqmd.dni");
    ASSERT_TRUE(QFileInfo::exists(settingsFile));
    {
        clsINI settings;
        settings.setINIFile(settingsFile);
        settings.setKeyValue(QStringLiteral("Document"), QStringLiteral("DefaultFont"),
                             QStringLiteral("Liberation Mono"));
        settings.setKeyValue(QStringLiteral("Document"), QStringLiteral("DefaultFontSize"),
                             QStringLiteral("14"));
    }
    auto host = std::make_unique<QtMainWindowHost>();
    QtMainWindowHost* shown = host.get();
    Application program(std::move(host));
    // A message box here would be a fault of start-up; it must not hang the test.
    QTimer::singleShot(10000, [] {
        if (QWidget* modal = QApplication::activeModalWidget()) {
            ADD_FAILURE() << "a message came up during start-up";
            modal->close();
        }
    });
    program.Main({});
    frmMain* window = shown->window();
    ASSERT_NE(window, nullptr);
    ASSERT_NE(window->activeDocumentWindow(), nullptr);
    auto* document = qobject_cast<frmDocument*>(window->activeDocumentWindow()->widget());
    ASSERT_NE(document, nullptr);
    const QFont font = document->rtfText().document()->defaultFont();
    EXPECT_EQ(font.family(), QStringLiteral("Liberation Mono"));
    EXPECT_EQ(font.pointSizeF(), 14.0);
    EXPECT_EQ(window->activeDocumentWindow()->windowTitle(), QStringLiteral("Document 1"));
    QApplication::processEvents();
    const auto* quickPicks = window->findChild<QuickPicksBar*>(QStringLiteral("picFileBar"));
    ASSERT_NE(quickPicks, nullptr);
    EXPECT_EQ(quickPicks->fileList()->count(), 3) << "the three sample templates";
    // The status bar counts the first document without waiting for a key.
    const auto* pages = window->findChild<QLabel*>(QStringLiteral("SBPanel1"));
    ASSERT_NE(pages, nullptr);
    QTest::qWait(300);
    EXPECT_EQ(pages->text(), QStringLiteral("Page 1 of 1"));
    program.exitCurrentProgram();
    EXPECT_TRUE(program.hasExited());
}

} // namespace
