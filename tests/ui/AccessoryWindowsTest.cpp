#include "app/modMenuStatus.h"
#include "context/AppContext.h"
#include "files/clsINI.h"
#include "files/clsWorkingFolderLocation.h"
#include "platform/FileDialogs.h"
#include "platform/MsgboxClass.h"
#include "support/TestEnvironment.h"
#include "ui/AccessoryCommands.h"
#include "ui/CommandActions.h"
#include "ui/PageView.h"
#include "ui/QuickPicksBar.h"
#include "ui/frmDocInfo.h"
#include "ui/frmDocument.h"
#include "ui/frmFScreen.h"
#include "ui/frmHelp.h"
#include "ui/frmMain.h"
#include "ui/frmTemplateFolderWizard.h"
#include "ui/frmTip.h"
#include "ui/frmWizard.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QTest>
#include <QTextDocument>
#include <QTimer>
#include <gtest/gtest.h>

namespace {

QString placeholder(const char* name) {
    return QChar(0x00AB) + QLatin1String(name) + QChar(0x00BB);
}

// Lets the event loop run until `done` holds, for at most five seconds.
bool waitFor(const std::function<bool()>& done) {
    QElapsedTimer clock;
    clock.start();
    while (!done()) {
        if (clock.elapsed() > 5000) {
            return false;
        }
        QTest::qWait(20);
    }
    return true;
}

struct Session {
    TestEnvironment env;
    ScopedAppContext context;
    ScriptedMsgbox messages;
    ScriptedFileDialogs dialogs;
    frmMain window;
    AccessoryCommands* accessories = window.findChild<AccessoryCommands*>();

    Session() {
        context->msgbox = &messages;
        context->fileDialogs = &dialogs;
        window.show();
    }
    QListWidget* file1() const { return window.findChild<QListWidget*>(QStringLiteral("File1")); }
    QStringList listed() const {
        QStringList names;
        for (int i = 0; i < file1()->count(); ++i) {
            names << file1()->item(i)->text();
        }
        return names;
    }
    frmDocument* active() const {
        QMdiSubWindow* sub = window.activeDocumentWindow();
        return sub ? qobject_cast<frmDocument*>(sub->widget()) : nullptr;
    }
    int documents() const { return int(window.MDIArea()->subWindowList().size()); }
    void flushDeletes() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }
};

TEST(AccessoryWindowsTest, QuickPicksOpensATemplateOnceAndThenBringsItBack) {
    Session s;
    ASSERT_NE(s.accessories, nullptr);
    const QString folder = s.env.path(QStringLiteral("Template Documents/"));
    const QString letter = folder + QStringLiteral("Engagement Letter.qmb");
    writeTestFile(letter, "{\\rtf1\\ansi Dear \\'abContact First Name\\'bb,\\par}");
    writeTestFile(folder + QStringLiteral("Year End.qmt"), "{\\rtf1\\ansi Year end\\par}");
    writeTestFile(folder + QStringLiteral("list.db"), "words");
    s.accessories->quickPicks()->refreshFileList(folder);
    ASSERT_EQ(s.listed(), QStringList({"Engagement Letter.qmb", "Year End.qmt"}));

    QListWidget* list = s.file1();
    QCoreApplication::processEvents();
    const QRect first = list->visualItemRect(list->item(0));
    ASSERT_TRUE(first.isValid());
    // A double click is a click and a second press that counts double.
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, first.center());
    QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, first.center());
    ASSERT_EQ(s.documents(), 1) << s.messages.texts().join(QLatin1Char('|')).toStdString();
    ASSERT_NE(s.active(), nullptr);
    EXPECT_EQ(s.active()->DocumentFileName, letter);
    EXPECT_TRUE(s.active()->rtfText().document()->toPlainText().contains(
        placeholder("Contact First Name")));

    // A print dialog answered with Cancel leaves the program's commands
    // waiting; opening a pick is the way out and brings them back.
    app().isCreatingDocument = true;
    list->setFocus();
    list->setCurrentRow(1);
    QTest::keyClick(list, Qt::Key_Return);
    ASSERT_EQ(s.documents(), 2);
    EXPECT_FALSE(app().isCreatingDocument);

    s.window.newDocument(7);
    ASSERT_EQ(s.documents(), 3);
    ASSERT_NE(s.active()->DocumentFileName, letter);
    list->setFocus();
    list->setCurrentRow(0);
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_EQ(s.documents(), 3) << "an open template is brought to the front, not opened twice";
    ASSERT_NE(s.active(), nullptr);
    EXPECT_EQ(s.active()->DocumentFileName, letter);

    // The list follows the folder by itself: a template saved there appears,
    // and a folder that goes away empties the list quietly.
    writeTestFile(folder + QStringLiteral("Annual Reminder.qma"), "{\\rtf1 x}");
    EXPECT_TRUE(
        waitFor([&] { return s.listed().contains(QStringLiteral("Annual Reminder.qma")); }));
    ASSERT_TRUE(QDir(folder).removeRecursively());
    EXPECT_TRUE(waitFor([&] { return s.listed().isEmpty(); }));
    EXPECT_TRUE(s.messages.shown().empty());
}

TEST(AccessoryWindowsTest, DocumentPropertiesCountPagesWordsAndPlaceholders) {
    ScopedAppContext context;
    frmDocument document;
    document.setDocumentType(2);
    document.setInformationType(InformationKind::Contacts);
    QString text = QStringLiteral("Dear ") + placeholder("Contact First Name") +
                   QStringLiteral(",\nYour return for ") +
                   placeholder("(Year End Date, mmmm d yyyy)") + QStringLiteral(" is ready.\n");
    for (int i = 0; i < 80; ++i) {
        text += QStringLiteral("Line %1 of the letter.\n").arg(i);
    }
    document.rtfText().setText(text);
    document.resize(800, 600);
    ASSERT_GT(document.totalPages(), 1);

    frmDocInfo info(document);
    const auto value = [&](const char* name) {
        const auto* label = info.findChild<QLabel*>(QLatin1String(name));
        return label ? label->text() : QStringLiteral("<no %1>").arg(QLatin1String(name));
    };
    EXPECT_EQ(value("lblPlaceholders"), QStringLiteral("2"));
    // Dear, three names, "Your return for", six in the dated one, "is
    // ready."; then five on each line.
    EXPECT_EQ(value("lblWords"), QString::number(1 + 3 + 3 + 6 + 2 + 80 * 5));
    EXPECT_EQ(value("lblPages"), QString::number(document.totalPages()));
    EXPECT_EQ(value("lblDocumentType"), QStringLiteral("Merge Template"));
    EXPECT_EQ(value("lblInformationType"), QStringLiteral("Contact"));
}

TEST(AccessoryWindowsTest, FullScreenComesAndGoesWithItsKeysAndItsDocument) {
    Session s;
    QAction* full = s.window.commands()->action(QStringLiteral("tbrStandard.FullScreen"));
    ASSERT_NE(full, nullptr);
    EXPECT_EQ(full->shortcut(), QKeySequence(Qt::Key_F11));
    EXPECT_FALSE(full->isEnabled()) << "no document to show";

    s.window.newDocument(1);
    ASSERT_TRUE(full->isEnabled());
    full->trigger();
    QPointer<frmFScreen> shown = s.accessories->fullScreen();
    ASSERT_FALSE(shown.isNull());
    EXPECT_TRUE(shown->isFullScreen());
    // Typing there types into the document.
    QTest::keyClicks(shown->view(), QStringLiteral("abc"));
    EXPECT_EQ(s.active()->rtfText().document()->toPlainText(), QStringLiteral("abc"));
    QTest::keyClick(shown->view(), Qt::Key_Escape);
    s.flushDeletes();
    EXPECT_TRUE(shown.isNull());

    full->trigger();
    shown = s.accessories->fullScreen();
    ASSERT_FALSE(shown.isNull());
    // The document closes underneath (a host may close it): no view is left
    // painting a layout that is gone.
    s.active()->setHasDocumentChanged(false);
    delete s.window.activeDocumentWindow();
    s.flushDeletes();
    EXPECT_TRUE(shown.isNull());
}

TEST(AccessoryWindowsTest, TheWizardStoresTheNewFolderAndCopiesWithoutOverwriting) {
    TestEnvironment env;
    ScopedAppContext context;
    ScriptedMsgbox messages;
    ScriptedFileDialogs dialogs;
    clsWorkingFolderLocation folders;
    context->msgbox = &messages;
    context->fileDialogs = &dialogs;
    context->workingFolders = &folders;
    const QString oldFolder = env.path(QStringLiteral("Old/"));
    const QString newFolder = env.path(QStringLiteral("Shared/"));
    writeTestFile(oldFolder + QStringLiteral("Letter.qmb"), "old");
    writeTestFile(oldFolder + QStringLiteral("Reminder.qma"), "reminder");
    writeTestFile(newFolder + QStringLiteral("Letter.qmb"), "already shared");
    folders.putTemplatesFolder(oldFolder);

    frmTemplateFolderWizard wizard;
    EXPECT_EQ(wizard.currentPanel()->objectName(), QStringLiteral("picNormal"));
    dialogs.queueAnswer(newFolder);
    messages.queueAnswer(MsgboxClass::Yes);
    wizard.cmdSpecifyFolder_Click();

    ASSERT_EQ(dialogs.requests().size(), 1u);
    EXPECT_EQ(dialogs.requests()[0].caption, QStringLiteral("Select Templates Folder"));
    EXPECT_EQ(dialogs.requests()[0].folder, oldFolder) << "no stored or default folder yet";
    EXPECT_EQ(folders.getTemplatesFolder(), newFolder);
    EXPECT_EQ(wizard.findChild<QLineEdit*>(QStringLiteral("FileLocation"))->text(), newFolder);
    ASSERT_EQ(messages.shown().size(), 1u);
    EXPECT_EQ(wizard.currentPanel()->objectName(), QStringLiteral("picCopyReport"));
    EXPECT_TRUE(wizard.reportText().contains(QStringLiteral("Copied: Reminder.qma")));
    EXPECT_TRUE(
        wizard.reportText().contains(QStringLiteral("Skipped (already there): Letter.qmb")));
    EXPECT_EQ(readTestFile(newFolder + QStringLiteral("Letter.qmb")), "already shared");
    EXPECT_EQ(wizard.findChild<QLabel*>(QStringLiteral("lblPcent"))->text(),
              QStringLiteral("100%"));
}

TEST(AccessoryWindowsTest, ClosingTheWizardDuringACopyStopsTheCopyAndKeepsTheReport) {
    TestEnvironment env;
    ScopedAppContext context;
    const QString from = env.path(QStringLiteral("Old/"));
    const QString to = env.root() + QStringLiteral("/New/");
    for (const char* name : {"a.qmb", "b.qmb", "c.qmb"}) {
        writeTestFile(from + QLatin1String(name), "x");
    }
    frmTemplateFolderWizard wizard;
    wizard.show();
    // Escape or the window's close button, pressed while the first file copies.
    QTimer::singleShot(0, &wizard, &frmTemplateFolderWizard::reject);
    EXPECT_FALSE(wizard.copyTemplates(from, to));
    EXPECT_TRUE(wizard.isVisible());
    EXPECT_EQ(wizard.currentPanel()->objectName(), QStringLiteral("picCopyReport"));
    EXPECT_TRUE(wizard.reportText().contains(QStringLiteral("Stopped by the user.")));
    EXPECT_FALSE(QFileInfo::exists(to + QStringLiteral("c.qmb")));
    wizard.reject();
    EXPECT_FALSE(wizard.isVisible()) << "with the copy over, closing closes";
}

TEST(AccessoryWindowsTest, TheOpenWizardTurnsAwayAWordProcessorsOwnFormat) {
    TestEnvironment env;
    ScopedAppContext context;
    ScriptedMsgbox messages;
    ScriptedFileDialogs dialogs;
    context->msgbox = &messages;
    context->fileDialogs = &dialogs;
    const QString docx = env.path(QStringLiteral("Letter.docx"));
    writeTestFile(docx, QByteArray("PK\x03\x04zipped", 10));
    const QString rtf = env.path(QStringLiteral("Letter.rtf"));
    writeTestFile(rtf, "{\\rtf1\\ansi Dear client\\par}");

    frmWizard wizard;
    wizard.show();
    const auto button = [&](int n) {
        return wizard.findChild<QPushButton*>(QStringLiteral("cmdNav%1").arg(n));
    };
    EXPECT_FALSE(button(0)->isEnabled());
    EXPECT_FALSE(button(2)->isEnabled());
    while (button(1)->isEnabled()) {
        button(1)->click();
    }
    ASSERT_TRUE(button(2)->isEnabled());

    dialogs.queueAnswer(docx);
    wizard.SetStep(2);
    wizard.findChild<QPushButton*>(QStringLiteral("cmdBrowse"))->click();
    wizard.SetStep(3);
    button(2)->click();
    ASSERT_EQ(messages.shown().size(), 1u);
    EXPECT_TRUE(messages.shown()[0].text.contains(QStringLiteral("Rich Text Format")));
    EXPECT_NE(wizard.result(), QDialog::Accepted);
    EXPECT_EQ(wizard.currentStep(), 2) << "back to the step that chooses the file";

    dialogs.queueAnswer(rtf);
    wizard.findChild<QPushButton*>(QStringLiteral("cmdBrowse"))->click();
    wizard.SetStep(3);
    button(2)->click();
    EXPECT_EQ(wizard.result(), QDialog::Accepted);
    EXPECT_EQ(wizard.chosenFile(), rtf);
}

TEST(AccessoryWindowsTest, EachTipOfTheDayOpeningMovesOn) {
    TestEnvironment env;
    ScopedAppContext context;
    clsINI settings;
    settings.setINIFile(env.path(QStringLiteral("Qminiqmd.dni")));
    context->iniSettings = &settings;
    ASSERT_GE(frmTip::shippedTips().size(), 3);
    int shown = 0;
    {
        frmTip tip;
        EXPECT_EQ(tip.currentIndex(), 0);
        EXPECT_EQ(tip.currentTip(), frmTip::shippedTips().front());
        tip.findChild<QPushButton*>(QStringLiteral("cmdNextTip"))->click();
        shown = tip.currentIndex();
        EXPECT_EQ(shown, 1);
    }
    frmTip again;
    EXPECT_EQ(again.currentIndex(), shown + 1);
}

TEST(AccessoryWindowsTest, TipsAtStartupAreSwitchedInTheTipWindowAndOpenWithTheProgram) {
    TestEnvironment env;
    ScopedAppContext context;
    clsINI settings;
    settings.setINIFile(env.path(QStringLiteral("Qminiqmd.dni")));
    context->iniSettings = &settings;
    {
        frmMain quiet;
        quiet.show();
        QApplication::processEvents();
        EXPECT_EQ(quiet.findChild<AccessoryCommands*>()->startupTip(), nullptr)
            << "off in a new settings file";
    }
    {
        frmTip tip;
        auto* box = tip.findChild<QCheckBox*>(QStringLiteral("chkLoadTipsAtStartup"));
        ASSERT_NE(box, nullptr);
        EXPECT_FALSE(box->isChecked());
        box->setChecked(true);
    }
    EXPECT_EQ(settings.getKeyString(QStringLiteral("QuillmerePadSettings"),
                                    QStringLiteral("ShowTipsAtStartup")),
              QStringLiteral("True"));
    frmMain window;
    window.show();
    QApplication::processEvents();
    frmTip* shown = window.findChild<AccessoryCommands*>()->startupTip();
    ASSERT_NE(shown, nullptr);
    EXPECT_TRUE(shown->isVisible());
    EXPECT_TRUE(shown->findChild<QCheckBox*>(QStringLiteral("chkLoadTipsAtStartup"))->isChecked());
    shown->close();

    // A host drives the program: no tip comes up in its way.
    context->isStandAlone = false;
    frmMain hosted;
    hosted.show();
    QApplication::processEvents();
    EXPECT_EQ(hosted.findChild<AccessoryCommands*>()->startupTip(), nullptr);
}

TEST(AccessoryWindowsTest, AccessoryCommandsAreRoutedAndTheUnbuiltWizardsStayOff) {
    Session s;
    for (const char* command :
         {"mnuHelpAbout", "mnuHelpTipoftheDay", "mnuHelpContents", "mnuHelpIndex", "mnuHelpSearch",
          "mnuFileOpenWord", "mnuFileOpenOther", "mnuViewFileTree"}) {
        EXPECT_TRUE(s.window.hasRoute(QLatin1String(command))) << command;
        EXPECT_TRUE(s.window.commands()->action(QLatin1String(command))->isEnabled()) << command;
    }
    for (const char* command : {"mnuLabelWizard", "mnuBackground"}) {
        const QAction* a = s.window.commands()->action(QLatin1String(command));
        EXPECT_FALSE(a->isEnabled()) << command;
        EXPECT_EQ(a->toolTip(), notAvailableYetTip());
    }
    // The side panel follows its View command.
    QAction* fileTree = s.window.commands()->action(QStringLiteral("mnuViewFileTree"));
    ASSERT_TRUE(fileTree->isChecked());
    fileTree->trigger();
    EXPECT_FALSE(s.accessories->quickPicks()->isVisible());
    fileTree->trigger();
    EXPECT_TRUE(s.accessories->quickPicks()->isVisible());

    s.window.runCommand(QStringLiteral("mnuHelpIndex"));
    ASSERT_NE(s.accessories->help(), nullptr);
    EXPECT_TRUE(s.accessories->help()->isVisible());
}

} // namespace
