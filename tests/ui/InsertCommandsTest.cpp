#include "ui/InsertCommands.h"

#include "ModalDriver.h"
#include "context/AppContext.h"
#include "platform/FileDialogs.h"
#include "platform/MsgboxClass.h"
#include "support/TestEnvironment.h"
#include "ui/CommandActions.h"
#include "ui/frmDocument.h"
#include "ui/frmMain.h"

#include <QAction>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QTest>
#include <QTextDocument>
#include <gtest/gtest.h>

namespace {

class InsertCommandsTest : public ::testing::Test {
protected:
    InsertCommandsTest() {
        m_context->msgbox = &m_messages;
        m_context->fileDialogs = &m_dialogs;
        m_context->clock.setFixed(QDateTime(QDate(2026, 3, 5), QTime(14, 7, 9)));
        m_window.show();
        m_window.runCommand(QStringLiteral("mnuFileNewStandard"));
    }

    frmDocument* document() const {
        QMdiSubWindow* sub = m_window.activeDocumentWindow();
        return sub ? qobject_cast<frmDocument*>(sub->widget()) : nullptr;
    }
    RichTextBox& box() const { return document()->rtfText(); }

    TestEnvironment m_env;
    ScopedAppContext m_context;
    ScriptedMsgbox m_messages;
    ScriptedFileDialogs m_dialogs;
    frmMain m_window;
};

template <typename T> T* child(QWidget* dialog, const char* name) {
    T* found = dialog->findChild<T*>(QLatin1String(name));
    EXPECT_NE(found, nullptr) << name;
    return found;
}

} // namespace

TEST_F(InsertCommandsTest, EveryInsertCommandIsClickableWithADocument) {
    for (const char* command :
         {"mnuInsertTimeDate", "mnuInsertLetterhead", "mnuInsertHorizontalLine", "mnuInsertPicture",
          "mnuInsertTextFile", "mnuInsertPathandFile", "mnuInsertSymbols"}) {
        EXPECT_TRUE(m_window.commands()->action(QLatin1String(command))->isEnabled()) << command;
    }
}

TEST_F(InsertCommandsTest, TimeAndDateInsertsTheChosenEntryOrTheCustomSample) {
    box().setText(QStringLiteral("On ."));
    box().setSelStart(3);
    ModalDriver pick(QStringLiteral("frmTimeDate"), [](QWidget* dialog) {
        EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Time and Date"));
        auto* dates = child<QListWidget>(dialog, "lstDates");
        ASSERT_NE(dates, nullptr);
        ASSERT_EQ(dates->count(), 13);
        EXPECT_EQ(dates->item(1)->text(), QStringLiteral("05 March 2026"));
        dates->setCurrentRow(3);
        QTest::mouseClick(child<QPushButton>(dialog, "cmdInsert"), Qt::LeftButton);
    });
    m_window.runCommand(QStringLiteral("mnuInsertTimeDate"));
    ASSERT_TRUE(pick.ran());
    EXPECT_EQ(box().Text(), QStringLiteral("On March 05, 2026."));

    box().setText(QString());
    QString sampleAfterTyping;
    ModalDriver custom(QStringLiteral("frmTimeDate"), [&](QWidget* dialog) {
        auto* format = child<QLineEdit>(dialog, "txtCustom");
        auto* sample = child<QLabel>(dialog, "lblSample");
        ASSERT_TRUE(format && sample);
        // The sample is taken before each key lands: it lags one behind.
        QTest::keyClicks(format, QStringLiteral("dd/mm"));
        sampleAfterTyping = sample->text();
        QTest::mouseClick(format, Qt::LeftButton);
        EXPECT_EQ(sample->text(), QStringLiteral("05/03"));
        QTest::mouseClick(child<QPushButton>(dialog, "cmdInsCusFor"), Qt::LeftButton);
    });
    m_window.runCommand(QStringLiteral("mnuInsertTimeDate"));
    ASSERT_TRUE(custom.ran());
    EXPECT_EQ(sampleAfterTyping, QStringLiteral("05/3"));
    EXPECT_EQ(box().Text(), QStringLiteral("05/03"));
}

TEST_F(InsertCommandsTest, SymbolsStaysOpenForTheNextSymbol) {
    QFont font = box().document()->defaultFont();
    font.setFamily(QStringLiteral("Liberation Serif"));
    box().document()->setDefaultFont(font);
    ModalDriver driver(QStringLiteral("frmSymbols"), [](QWidget* dialog) {
        auto* symbols = child<QListWidget>(dialog, "lstSymbols");
        ASSERT_NE(symbols, nullptr);
        EXPECT_EQ(symbols->count(), 255);
        EXPECT_EQ(symbols->font().family(), QStringLiteral("Liberation Serif"));
        auto* insert = child<QPushButton>(dialog, "cmdInsert");
        symbols->setCurrentRow(168);
        QTest::mouseClick(insert, Qt::LeftButton);
        EXPECT_TRUE(dialog->isVisible());
        symbols->setCurrentRow(127);
        QTest::mouseClick(insert, Qt::LeftButton);
        QTest::mouseClick(child<QPushButton>(dialog, "cmdClose"), Qt::LeftButton);
    });
    m_window.runCommand(QStringLiteral("mnuInsertSymbols"));
    ASSERT_TRUE(driver.ran());
    EXPECT_EQ(box().Text(), QStringLiteral("\u00A9\u20AC"));
}

TEST_F(InsertCommandsTest, PictureSwitchesToContinuousDisplayAndTheLineDoesNot) {
    ASSERT_EQ(document()->currentPageDisplayType, 1);
    m_window.runCommand(QStringLiteral("mnuInsertHorizontalLine"));
    EXPECT_EQ(document()->currentPageDisplayType, 1);
    EXPECT_TRUE(box().TextRTF().contains(QLatin1String("\\pict")));

    // A cancelled choice changes nothing.
    m_window.runCommand(QStringLiteral("mnuInsertPicture"));
    EXPECT_EQ(document()->currentPageDisplayType, 1);

    QImage picture(30, 20, QImage::Format_RGB32);
    picture.fill(Qt::red);
    const QString path = m_env.path(QStringLiteral("pictures/logo.png"));
    ASSERT_TRUE(picture.save(path));
    m_dialogs.queueAnswer(path);
    m_window.runCommand(QStringLiteral("mnuInsertPicture"));
    EXPECT_EQ(document()->currentPageDisplayType, 2);
    EXPECT_EQ(box().TextRTF().count(QLatin1String("\\pict")), 2);
    EXPECT_TRUE(m_messages.texts().isEmpty());
}

TEST_F(InsertCommandsTest, LetterheadAndPathGoToTheActiveDocument) {
    box().setText(QStringLiteral("Body"));
    m_context->currentCountry = 2;
    m_window.runCommand(QStringLiteral("mnuInsertLetterhead"));
    EXPECT_TRUE(box().Text().startsWith(QStringLiteral("\u00ABYour Company Name\u00BB\r\n")));
    EXPECT_TRUE(box().Text().contains(QStringLiteral("\u00ABYour Zip Code\u00BB\r\n\r\nBody")));

    // A new document already carries the path it would be saved under; one
    // without any path gets the message.
    document()->DocumentFileName.clear();
    m_window.runCommand(QStringLiteral("mnuInsertPathandFile"));
    ASSERT_EQ(m_messages.texts().size(), 1);
    EXPECT_TRUE(m_messages.texts().first().startsWith(QStringLiteral("This file has not yet")));

    document()->DocumentFileName = QStringLiteral("/letters/Smith.qmw");
    box().setSelStart(box().TextLength());
    m_window.runCommand(QStringLiteral("mnuInsertPathandFile"));
    EXPECT_TRUE(box().Text().endsWith(QStringLiteral("Body/letters/Smith.qmw")));
}
