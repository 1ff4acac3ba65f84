#include "ui/frmDocument.h"

#include "context/AppContext.h"
#include "documents/NumberedLines.h"
#include "platform/MsgboxClass.h"
#include "ui/PageView.h"

#include <QAbstractScrollArea>
#include <QAccessible>
#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScrollBar>
#include <QTest>
#include <QTextDocument>
#include <gtest/gtest.h>

namespace {

// A shown document window with its page view found as the user's tools find it.
struct Shown {
    Shown() {
        window.resize(900, 700);
        window.show();
        view = window.findChild<QAbstractScrollArea*>(QStringLiteral("rtfText"));
        if (view != nullptr) {
            view->setFocus();
        }
    }
    int page() const { return window.currentPage(); }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(view, key, modifiers);
    }
    bool caretInView() const {
        const int caret = const_cast<frmDocument&>(window).rtfText().textCursor().position();
        return view->viewport()->rect().contains(
            static_cast<PageView*>(view)->viewportRectOf(caret));
    }
    void caretTo(int position) {
        QTextCursor cursor = window.rtfText().textCursor();
        cursor.setPosition(position);
        window.rtfText().setTextCursor(cursor);
    }

    frmDocument window;
    QAbstractScrollArea* view = nullptr;
};

TEST(frmDocumentTest, TypingFlowsOntoNewSheetsAndDeletingTakesThemAway) {
    Shown s;
    ASSERT_NE(s.view, nullptr);
    std::vector<int> reported;
    QObject::connect(&s.window, &frmDocument::pageStatusChanged,
                     [&](int, int total) { reported.push_back(total); });
    EXPECT_EQ(s.window.totalPages(), 1);
    int lines = 0;
    while (s.window.totalPages() < 3 && lines < 400) {
        QTest::keyClicks(s.view, QStringLiteral("Typed line %1").arg(lines++));
        s.key(Qt::Key_Return);
    }
    ASSERT_EQ(s.window.totalPages(), 3) << lines << " lines typed";
    EXPECT_EQ(s.page(), 3) << "the caret stays at the end of what was typed";
    EXPECT_TRUE(s.window.HasDocumentChanged());
    EXPECT_EQ(reported.back(), 3);
    EXPECT_GT(s.view->verticalScrollBar()->value(), 0) << "the view followed the caret";
    EXPECT_TRUE(s.caretInView());

    // Select upwards from the end and delete: the sheets go one by one.
    int previous = 3;
    while (s.window.totalPages() > 1) {
        for (int i = 0; i < 20; ++i) {
            s.key(Qt::Key_Up, Qt::ShiftModifier);
        }
        s.key(Qt::Key_Delete);
        const int now = s.window.totalPages();
        EXPECT_LE(now, previous);
        EXPECT_GE(now, previous - 1) << "one sheet at most per 20 lines";
        previous = now;
    }
    EXPECT_EQ(s.page(), 1);
    EXPECT_EQ(reported.back(), 1);
}

TEST(frmDocumentTest, CaretKeysCrossSheetBorders) {
    Shown s;
    s.window.loadText(numberedLines(120));
    ASSERT_EQ(s.window.totalPages(), 3);
    const int second = s.window.pageLayout().firstPositionOfSheet(2);

    struct Case {
        const char* name;
        Qt::Key key;
        int start;
        int page;
    };
    const Case cases[] = {
        {"Up from the first line of sheet 2", Qt::Key_Up, second, 1},
        {"Left from the head of sheet 2", Qt::Key_Left, second, 1},
        {"Down from the last line of sheet 1", Qt::Key_Down, second - 2, 2},
        {"Right from the end of sheet 1", Qt::Key_Right, second - 1, 2},
        {"PageDown from the top of sheet 1", Qt::Key_PageDown, 0, 1},
    };
    for (const Case& c : cases) {
        s.caretTo(c.start);
        s.key(c.key);
        EXPECT_EQ(s.page(), c.page) << c.name;
    }
    s.key(Qt::Key_End, Qt::ControlModifier);
    EXPECT_EQ(s.page(), 3);
    EXPECT_TRUE(s.caretInView());
    s.key(Qt::Key_Home, Qt::ControlModifier);
    EXPECT_EQ(s.page(), 1);
    EXPECT_TRUE(s.caretInView());
}

TEST(frmDocumentTest, AccessibleTextReadsAndEditsWhatWasTyped) {
    Shown s;
    QTest::keyClicks(s.view, QStringLiteral("Dear client"));
    s.key(Qt::Key_Return);
    QTest::keyClicks(s.view, QStringLiteral("Yours"));

    QAccessibleInterface* node = QAccessible::queryAccessibleInterface(s.view);
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->role(), QAccessible::EditableText);
    QAccessibleTextInterface* text = node->textInterface();
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->characterCount(), 17);
    EXPECT_EQ(text->text(0, text->characterCount()), QStringLiteral("Dear client\nYours"));
    EXPECT_EQ(text->cursorPosition(), 17);

    text->setSelection(0, 5, 11);
    EXPECT_EQ(text->selectionCount(), 1);
    EXPECT_EQ(s.window.rtfText().SelText(), QStringLiteral("client"));

    QAccessibleEditableTextInterface* edit = node->editableTextInterface();
    ASSERT_NE(edit, nullptr);
    edit->replaceText(5, 11, QStringLiteral("customer"));
    EXPECT_EQ(s.window.rtfText().document()->toPlainText(), QStringLiteral("Dear customer\nYours"));
    EXPECT_TRUE(s.view->viewport()->rect().contains(
        s.view->viewport()->mapFromGlobal(text->characterRect(0).center())));
}

TEST(frmDocumentTest, LockedResultKeepsItsTextAndAnswersAKeyWithTheMessage) {
    ScriptedMsgbox messages;
    MsgboxClass* saved = app().msgbox;
    app().msgbox = &messages;
    {
        Shown s;
        s.window.loadText(QStringLiteral("Archived letter"));
        s.window.setDocumentType(4);
        QTest::keyClicks(s.view, QStringLiteral("x"));
        s.key(Qt::Key_Backspace);
        EXPECT_EQ(s.window.rtfText().Text(), QStringLiteral("Archived letter"));
        ASSERT_EQ(messages.texts().size(), 2);
        EXPECT_EQ(messages.texts().front(),
                  QStringLiteral("You cannot change or modify this locked merge results document.  "
                                 "It is locked for archival purposes and can only be viewed."));

        // An unlocked document says nothing.
        messages.clear();
        s.window.setDocumentType(1);
        QTest::keyClicks(s.view, QStringLiteral("x"));
        EXPECT_TRUE(messages.texts().isEmpty());
        EXPECT_EQ(s.window.rtfText().Text(), QStringLiteral("xArchived letter"));
    }
    app().msgbox = saved;
}

TEST(frmDocumentTest, WordWrapModesRewrapTheText) {
    Shown s;
    s.window.loadText(numberedLines(120) + QStringLiteral("\r\n") +
                      QString(60, QLatin1Char('w'))
                          .replace(QLatin1String("ww"), QLatin1String("w "))
                          .repeated(8));
    const int wrapped = s.window.rtfText().lineCount();
    s.window.SetViewMode(0);
    EXPECT_EQ(s.window.rtfText().lineCount(), 121) << "no wrap: one line a paragraph";
    s.window.SetViewMode(1);
    QTest::keyClicks(s.view, QStringLiteral("abc"));
    s.window.resize(500, 700);
    QApplication::processEvents();
    EXPECT_GT(s.window.rtfText().lineCount(), wrapped) << "a narrow window wraps more";
    s.window.SetViewMode(2);
    EXPECT_EQ(s.window.rtfText().lineCount(), wrapped);
}

TEST(frmDocumentTest, ControlWheelZoomsWithinItsBounds) {
    Shown s;
    auto* view = static_cast<PageView*>(s.view);
    const QPointF at(100, 100);
    auto wheel = [&](int delta) {
        QWheelEvent event(at, view->viewport()->mapToGlobal(at), QPoint(), QPoint(0, delta),
                          Qt::NoButton, Qt::ControlModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(view->viewport(), &event);
    };
    wheel(120);
    EXPECT_EQ(view->zoom(), 110);
    for (int i = 0; i < 20; ++i) {
        wheel(120);
    }
    EXPECT_EQ(view->zoom(), PageView::MaxZoom);
    for (int i = 0; i < 30; ++i) {
        wheel(-120);
    }
    EXPECT_EQ(view->zoom(), PageView::MinZoom);
    // The column of sheets scales with the zoom.
    view->setZoom(200);
    const int wide = view->horizontalScrollBar()->maximum() + view->viewport()->width();
    view->setZoom(100);
    const int narrow = view->horizontalScrollBar()->maximum() + view->viewport()->width();
    EXPECT_GT(wide, narrow);
}

TEST(frmDocumentTest, PaintsWhiteSheetsWithShadowsAndTheText) {
    Shown s;
    s.window.loadText(QStringLiteral("WWWWWWWWWWWWWWWWWWWW"));
    auto* view = static_cast<PageView*>(s.view);
    const QImage image = view->viewport()->grab().toImage();
    const double scale = view->pixelsPerTwip();
    const int inset = view->centringInset();
    auto at = [&](int x, int y) {
        return QColor(image.pixel(inset + int(x * scale), int(y * scale)));
    };
    EXPECT_NE(at(20, 20), QColor(Qt::white)) << "the background around the sheets";
    EXPECT_EQ(at(45 + 500, 90 + 500), QColor(Qt::white)) << "the sheet's margin";
    // The shadow shows beyond the sheet's right edge.
    EXPECT_LT(at(45 + 12240 + 40, 90 + 2000).lightness(), at(20, 20).lightness());
    // Some ink where the first line stands.
    bool ink = false;
    for (int x = 45 + 1440; x < 45 + 1440 + 2000 && !ink; x += 10) {
        for (int y = 90 + 1440; y < 90 + 1440 + 300 && !ink; y += 10) {
            ink = at(x, y).lightness() < 100;
        }
    }
    EXPECT_TRUE(ink);
}

// The window's part: the change runs as a document being made (no event
// of the text acts meanwhile), and its frame shows the new caption.
TEST(frmDocumentTest, ChangingTheTemplateInformationRetitlesTheFrame) {
    ScopedAppContext context;
    QMdiArea area;
    auto* document = new frmDocument;
    document->DocumentCaption = QStringLiteral("Year End");
    QMdiSubWindow* frame = area.addSubWindow(document);
    bool creatingMeanwhile = false;
    QObject::connect(frame, &QWidget::windowTitleChanged,
                     [&] { creatingMeanwhile = app().isCreatingDocument; });
    ASSERT_TRUE(document->changeTemplateInformation(InformationKind::Tasks));
    EXPECT_EQ(frame->windowTitle(), QStringLiteral("Merge Template - Year End"));
    EXPECT_EQ(document->documentType(), 2);
    EXPECT_EQ(document->InformationType(), InformationKind::Tasks);
    EXPECT_TRUE(creatingMeanwhile);
    EXPECT_FALSE(app().isCreatingDocument);

    document->setDocumentType(4);
    EXPECT_FALSE(document->changeTemplateInformation(InformationKind::Contacts));
    EXPECT_EQ(document->documentType(), 4);
    EXPECT_EQ(document->InformationType(), InformationKind::Tasks);
}

} // namespace
