#include "ui/PrintCommands.h"

#include "context/AppContext.h"
#include "platform/FileDialogs.h"
#include "platform/MsgboxClass.h"
#include "print/PaperTable.h"
#include "print/PdfText.h"
#include "print/PrinterSystem.h"
#include "support/TestEnvironment.h"
#include "ui/CommandActions.h"
#include "ui/frmDocument.h"
#include "ui/frmMain.h"
#include "ui/frmPaperSize.h"
#include "ui/frmPrintPreview.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QPrinterInfo>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

namespace {

template <typename T> T* child(QWidget* parent, const QString& name) {
    T* found = parent->findChild<T*>(name);
    EXPECT_NE(found, nullptr) << name.toStdString();
    return found;
}

class PrintCommandsTest : public ::testing::Test {
protected:
    TestEnvironment env;
    ScopedAppContext context;
    ScriptedMsgbox messages;
    ScriptedFileDialogs dialogs;
    frmMain window;

    void SetUp() override {
        app().msgbox = &messages;
        app().fileDialogs = &dialogs;
        window.show();
        window.newDocument(1);
    }
    frmDocument* document() const {
        return qobject_cast<frmDocument*>(window.activeDocumentWindow()->widget());
    }
    // Three sheets of numbered paragraphs.
    void fillThreeSheets() {
        QString text;
        for (int i = 1; i <= 130; ++i) {
            text += QStringLiteral("Paragraph %1 of the letter to the client.\n").arg(i);
        }
        document()->loadText(text);
    }
    // Runs `act` on the modal dialog a command opens, once it is up.
    void onModal(std::function<void(QWidget*)> act) {
        QTimer::singleShot(0, [act] {
            QWidget* modal = QApplication::activeModalWidget();
            ASSERT_NE(modal, nullptr);
            act(modal);
        });
    }
};

TEST_F(PrintCommandsTest, TheFileMenuOffersPreviewAndPdfWithADocumentOpen) {
    for (const char* command :
         {"mnuFilePrint", "mnuFilePrintPreview", "mnuFilePageSetup", "mnuFileExportPDF"}) {
        EXPECT_TRUE(window.hasRoute(QLatin1String(command))) << command;
        EXPECT_TRUE(window.commands()->action(QLatin1String(command))->isEnabled()) << command;
    }
}

TEST_F(PrintCommandsTest, PaperSetupShowsTheTableAndFollowsTheUser) {
    PaperSetup setup;
    frmPaperSize dialog(setup);
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Paper Setup"));
    auto* list = child<QComboBox>(&dialog, QStringLiteral("cboPaperSize"));
    auto* width = child<QLineEdit>(&dialog, QStringLiteral("txtPageSize(0)"));
    auto* height = child<QLineEdit>(&dialog, QStringLiteral("txtPageSize(1)"));
    auto* landscape = child<QRadioButton>(&dialog, QStringLiteral("optOrientation(2)"));
    ASSERT_TRUE(list && width && height && landscape);
    EXPECT_EQ(list->count(), int(paperTable().size()));
    EXPECT_EQ(list->currentText(), QStringLiteral("Letter (8.5 x 11 in.)"));
    EXPECT_EQ(width->text(), QStringLiteral("8.5"));

    const QRect before = setup.shpPage;
    list->setCurrentIndex(paperIndexOfCode(9));
    Q_EMIT list->activated(paperIndexOfCode(9));
    EXPECT_EQ(width->text(), QStringLiteral("8.27"));
    EXPECT_NE(setup.shpPage, before) << "the drawing follows the paper";

    landscape->click();
    EXPECT_EQ(width->text(), QStringLiteral("11.69"));
    EXPECT_EQ(setup.paperWidth, 16834);

    width->setFocus();
    width->selectAll();
    QTest::keyClicks(width, QStringLiteral("x9"));
    EXPECT_EQ(width->text(), QStringLiteral("9")) << "only numbers get into the box";
    EXPECT_EQ(list->currentText(), QStringLiteral("User Defined"));
}

TEST_F(PrintCommandsTest, AMarginBeyondThePaperIsRefusedWithItsMessage) {
    PaperSetup setup;
    frmPaperSize dialog(setup);
    auto* top = child<QLineEdit>(&dialog, QStringLiteral("txtMargins(2)"));
    top->selectAll();
    QTest::keyClicks(top, QStringLiteral("20"));
    child<QPushButton>(&dialog, QStringLiteral("cmdOk"))->click();
    EXPECT_FALSE(setup.ClickedOK);
    EXPECT_EQ(messages.texts(),
              QStringList{QStringLiteral("You must enter a top margin value between 0 and 10.")});
}

TEST_F(PrintCommandsTest, PageSetupLaysTheDocumentOutAgainAndMarksItChanged) {
    fillThreeSheets();
    const int letterPages = document()->totalPages();
    onModal([](QWidget* dialog) {
        auto* list = dialog->findChild<QComboBox*>(QStringLiteral("cboPaperSize"));
        list->setCurrentIndex(paperIndexOfCode(5)); // Legal: longer sheets
        Q_EMIT list->activated(paperIndexOfCode(5));
        dialog->findChild<QPushButton*>(QStringLiteral("cmdOk"))->click();
    });
    window.runCommand(QStringLiteral("mnuFilePageSetup"));
    EXPECT_EQ(document()->model().PaperSize, 5);
    EXPECT_EQ(document()->getPageHeight(), 20160);
    EXPECT_TRUE(document()->HasDocumentChanged());
    EXPECT_LT(document()->totalPages(), letterPages);
}

TEST_F(PrintCommandsTest, CloseLeavesThePageSetupAlone) {
    onModal([](QWidget* dialog) {
        auto* list = dialog->findChild<QComboBox*>(QStringLiteral("cboPaperSize"));
        Q_EMIT list->activated(paperIndexOfCode(9));
        dialog->findChild<QPushButton*>(QStringLiteral("cmdClose"))->click();
    });
    window.runCommand(QStringLiteral("mnuFilePageSetup"));
    EXPECT_EQ(document()->getPageWidth(), 12240);
    EXPECT_FALSE(document()->HasDocumentChanged());
}

TEST_F(PrintCommandsTest, ExportAsPdfWritesTheDocumentsSheets) {
    if (!PdfText::available()) {
        GTEST_SKIP() << "poppler-utils are not installed";
    }
    fillThreeSheets();
    const QString path = env.path(QStringLiteral("out/letter"));
    dialogs.queueAnswer(path);
    window.runCommand(QStringLiteral("mnuFileExportPDF"));
    ASSERT_EQ(dialogs.requests().size(), 1u);
    EXPECT_EQ(dialogs.requests()[0].filter, QStringLiteral("PDF Files (*.pdf)"));
    const QString pdf = path + QStringLiteral(".pdf");
    EXPECT_EQ(PdfText::info(pdf, QStringLiteral("Pages")),
              QString::number(document()->totalPages()));
    EXPECT_TRUE(messages.texts().isEmpty())
        << messages.texts().join(QLatin1Char('\n')).toStdString();
    EXPECT_FALSE(app().isCreatingDocument);
}

TEST_F(PrintCommandsTest, PreviewWalksTheSheets) {
    fillThreeSheets();
    window.runCommand(QStringLiteral("mnuFilePrintPreview"));
    auto* preview = window.findChild<frmPrintPreview*>(QStringLiteral("frmPrintPreview"));
    ASSERT_NE(preview, nullptr);
    // The count of the whole document follows the first sheet.
    QCoreApplication::processEvents();
    const int pages = document()->totalPages();
    ASSERT_GE(pages, 3);
    EXPECT_EQ(child<QLabel>(preview, QStringLiteral("lblPages"))->text(),
              QStringLiteral("of %1").arg(pages));
    auto* previous = child<QPushButton>(preview, QStringLiteral("cmdPrevious"));
    EXPECT_FALSE(previous->isEnabled());
    child<QPushButton>(preview, QStringLiteral("cmdNext"))->click();
    EXPECT_EQ(child<QSpinBox>(preview, QStringLiteral("txtPage"))->value(), 2);
    EXPECT_TRUE(previous->isEnabled());
    child<QPushButton>(preview, QStringLiteral("cmdLast"))->click();
    EXPECT_EQ(preview->navigator().current(), pages);
    EXPECT_FALSE(child<QPushButton>(preview, QStringLiteral("cmdNext"))->isEnabled());
    auto* zoom = child<QComboBox>(preview, QStringLiteral("cboZoom"));
    zoom->setCurrentText(QStringLiteral("100%"));
    const double full = preview->currentScale();
    zoom->setCurrentText(QStringLiteral("200%"));
    EXPECT_DOUBLE_EQ(preview->currentScale(), 2 * full);
    // The sheet drawn is the last one: it paints without a fault.
    EXPECT_FALSE(preview->grab().isNull());
    preview->close();
}

TEST_F(PrintCommandsTest, PrintingWithoutAPrintServiceSaysSo) {
    if (!QPrinterInfo::availablePrinterNames().isEmpty()) {
        GTEST_SKIP() << "this machine has printers";
    }
    window.runCommand(QStringLiteral("mnuFilePrint"));
    EXPECT_EQ(messages.texts(), QStringList{noPrinterMessage()});
    EXPECT_FALSE(app().isCreatingDocument);
}

} // namespace
