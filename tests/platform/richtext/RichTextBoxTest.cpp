#include "platform/richtext/RichTextBox.h"

#include "platform/errorClass.h"
#include "support/TestEnvironment.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QPdfWriter>
#include <QTextCursor>
#include <QTextDocument>
#include <gtest/gtest.h>

namespace {

// Three paragraphs: positions 0-4 "alpha", 5-6 CR LF, 7-10 "beta", 11-12,
// 13-17 "gamma".
const QString kThreeLines = QStringLiteral("alpha\r\nbeta\r\ngamma");

struct SelectionCase {
    const char* name;
    int start;
    int length;
    int expectedStart;
    int expectedLength;
    QString expectedText;
};

class SelectionTest : public ::testing::TestWithParam<SelectionCase> {};

TEST_P(SelectionTest, PositionsCountLineEndsAsTwo) {
    RichTextBox box;
    box.setText(kThreeLines);
    box.setSelStart(GetParam().start);
    box.setSelLength(GetParam().length);
    EXPECT_EQ(box.SelStart(), GetParam().expectedStart);
    EXPECT_EQ(box.SelLength(), GetParam().expectedLength);
    EXPECT_EQ(box.SelText(), GetParam().expectedText);
}

INSTANTIATE_TEST_SUITE_P(
    RichTextBox, SelectionTest,
    ::testing::Values(
        SelectionCase{"FirstWord", 0, 5, 0, 5, QStringLiteral("alpha")},
        SelectionCase{"AcrossLineEnd", 3, 6, 3, 6, QStringLiteral("ha\r\nbe")},
        SelectionCase{"SecondLine", 7, 4, 7, 4, QStringLiteral("beta")},
        SelectionCase{"ThirdLine", 13, 5, 13, 5, QStringLiteral("gamma")},
        SelectionCase{"StartBetweenCrAndLfMovesToCr", 6, 3, 5, 3, QStringLiteral("\r\nb")},
        SelectionCase{"LengthEndingInsidePairTakesThePair", 4, 2, 4, 3, QStringLiteral("a\r\n")},
        SelectionCase{"StartBeyondEndClamps", 99, 5, 18, 0, QString()},
        SelectionCase{"LengthBeyondEndClamps", 15, 50, 15, 3, QStringLiteral("mma")},
        SelectionCase{"NegativeStartClamps", -4, 2, 0, 2, QStringLiteral("al")}),
    [](const auto& p) { return std::string(p.param.name); });

TEST(RichTextBox, TextUsesCrLfAndLengthCountsThem) {
    RichTextBox box;
    box.setText(QStringLiteral("a\nb\rc\r\nd"));
    EXPECT_EQ(box.Text(), QStringLiteral("a\r\nb\r\nc\r\nd"));
    EXPECT_EQ(box.TextLength(), 10);
}

TEST(RichTextBox, TextStartingWithRtfHeaderLoadsRtf) {
    RichTextBox box;
    box.setText(QStringLiteral("{\\rtf1 \\b bold\\b0  text}"));
    EXPECT_EQ(box.Text(), QStringLiteral("bold text"));
    box.setSelStart(1);
    EXPECT_EQ(box.SelBold(), true);
}

TEST(RichTextBox, TextRtfOfNonRtfLoadsPlainText) {
    RichTextBox box;
    box.setTextRTF(QStringLiteral("no header"));
    EXPECT_EQ(box.Text(), QStringLiteral("no header"));
}

// Text positions are kept up through edits rather than counted again from
// the whole text each time: after every kind of edit they agree with a box
// that counts them afresh from the same text.
TEST(RichTextBox, TextPositionsFollowEdits) {
    RichTextBox box;
    box.setText(kThreeLines + QStringLiteral("\r\ndelta epsilon\r\nzeta"));
    const auto expectSameAsFresh = [&box](const char* edit) {
        RichTextBox fresh;
        fresh.setText(box.Text());
        ASSERT_EQ(box.TextLength(), fresh.TextLength()) << edit;
        const int end = box.document()->characterCount() - 1;
        for (int position = 0; position <= end; ++position) {
            ASSERT_EQ(box.toTextPosition(position), fresh.toTextPosition(position))
                << edit << " at " << position;
        }
        for (int text = 0; text <= box.TextLength(); ++text) {
            ASSERT_EQ(box.toDocumentPosition(text), fresh.toDocumentPosition(text))
                << edit << " at " << text;
        }
    };
    expectSameAsFresh("set");
    QTextCursor cursor(box.document());
    cursor.setPosition(2);
    cursor.insertText(QStringLiteral("x"));
    expectSameAsFresh("type");
    cursor.insertText(QStringLiteral("\n"));
    expectSameAsFresh("paragraph end");
    cursor.deletePreviousChar();
    expectSameAsFresh("join paragraphs");
    cursor.insertText(QString(QChar::LineSeparator) + QStringLiteral("a\nb"));
    expectSameAsFresh("line break and paragraphs");
    cursor.setPosition(1);
    cursor.setPosition(15, QTextCursor::KeepAnchor);
    cursor.insertText(QStringLiteral("y"));
    expectSameAsFresh("replace over paragraph ends");
    box.document()->undo();
    expectSameAsFresh("undo");
    box.setSelStart(box.TextLength());
    box.typeText(QStringLiteral("\n"));
    expectSameAsFresh("paragraph end at the end");
    box.setText(QString(5000, QLatin1Char('a')) + QStringLiteral("\r\nb"));
    expectSameAsFresh("a long text set");
}

TEST(RichTextBox, SelTextReplacesTheSelection) {
    RichTextBox box;
    box.setText(kThreeLines);
    box.setSelStart(7);
    box.setSelLength(4);
    box.setSelText(QStringLiteral("BETA\r\nMORE"));
    EXPECT_EQ(box.Text(), QStringLiteral("alpha\r\nBETA\r\nMORE\r\ngamma"));
    EXPECT_EQ(box.SelStart(), 17);
    EXPECT_EQ(box.SelLength(), 0);
}

TEST(RichTextBox, SelRtfMovesFormattedTextBetweenBoxes) {
    RichTextBox source;
    source.setTextRTF(QStringLiteral("{\\rtf1 one \\b two\\b0\\par three}"));
    source.setSelStart(4);
    source.setSelLength(source.TextLength() - 4);
    RichTextBox target;
    target.setText(QStringLiteral("head "));
    target.setSelStart(target.TextLength());
    target.setSelRTF(source.SelRTF());
    source.setSelRTF(QString());
    EXPECT_EQ(target.Text(), QStringLiteral("head two\r\nthree"));
    EXPECT_EQ(source.Text(), QStringLiteral("one "));
    target.setSelStart(6);
    EXPECT_EQ(target.SelBold(), true);
}

TEST(RichTextBox, MixedSelectionReadsAsNull) {
    RichTextBox box;
    box.setTextRTF(QStringLiteral("{\\rtf1{\\fonttbl{\\f0 Arial;}{\\f1 Times;}}"
                                  "\\f0\\fs20 plain \\b\\i\\ul\\strike\\fs28\\f1\\up6 all}"));
    box.setSelStart(0);
    box.setSelLength(5);
    EXPECT_EQ(box.SelBold(), false);
    EXPECT_EQ(box.SelFontName(), QStringLiteral("Arial"));
    EXPECT_EQ(box.SelFontSize(), 10.0);
    EXPECT_EQ(box.SelCharOffset(), 0);
    box.setSelLength(box.TextLength());
    EXPECT_EQ(box.SelBold(), std::nullopt);
    EXPECT_EQ(box.SelItalic(), std::nullopt);
    EXPECT_EQ(box.SelUnderline(), std::nullopt);
    EXPECT_EQ(box.SelStrikeThru(), std::nullopt);
    EXPECT_EQ(box.SelFontName(), std::nullopt);
    EXPECT_EQ(box.SelFontSize(), std::nullopt);
    EXPECT_EQ(box.SelCharOffset(), std::nullopt);
    box.setSelStart(7);
    box.setSelLength(3);
    EXPECT_EQ(box.SelCharOffset(), 60);
    EXPECT_EQ(box.SelFontName(), QStringLiteral("Times"));
}

TEST(RichTextBox, CharacterSettersApplyToTheSelection) {
    RichTextBox box;
    box.setText(QStringLiteral("one two"));
    box.setSelStart(4);
    box.setSelLength(3);
    box.setSelBold(true);
    box.setSelItalic(true);
    box.setSelUnderline(true);
    box.setSelStrikeThru(true);
    box.setSelFontName(QStringLiteral("Courier"));
    box.setSelFontSize(15);
    box.setSelColor(QColor(0, 128, 0));
    box.setSelCharOffset(-40);
    EXPECT_EQ(box.SelBold(), true);
    EXPECT_EQ(box.SelItalic(), true);
    EXPECT_EQ(box.SelUnderline(), true);
    EXPECT_EQ(box.SelStrikeThru(), true);
    EXPECT_EQ(box.SelFontName(), QStringLiteral("Courier"));
    EXPECT_EQ(box.SelFontSize(), 15.0);
    EXPECT_EQ(box.SelColor(), QColor(0, 128, 0));
    EXPECT_EQ(box.SelCharOffset(), -40);
    box.setSelCharOffset(0);
    EXPECT_EQ(box.SelCharOffset(), 0);
    box.setSelStart(0);
    box.setSelLength(3);
    EXPECT_EQ(box.SelBold(), false);
    EXPECT_EQ(box.SelColor(), QColor(0, 0, 0));
}

TEST(RichTextBox, FormatSetWithoutSelectionAppliesToTyping) {
    RichTextBox box;
    box.setText(QStringLiteral("a"));
    box.setSelStart(1);
    box.setSelBold(true);
    box.typeText(QStringLiteral("b"));
    box.setSelStart(1);
    box.setSelLength(1);
    EXPECT_EQ(box.SelBold(), true);
    box.setSelStart(0);
    box.setSelLength(1);
    EXPECT_EQ(box.SelBold(), false);
}

TEST(RichTextBox, ParagraphFormatsInTwips) {
    RichTextBox box;
    box.setText(kThreeLines);
    box.setSelStart(8);
    box.setSelIndent(720);
    box.setSelHangingIndent(360);
    box.setSelRightIndent(1440);
    box.setSelAlignment(RichTextBox::rtfCenter);
    EXPECT_EQ(box.SelIndent(), 720);
    EXPECT_EQ(box.SelHangingIndent(), 360);
    EXPECT_EQ(box.SelRightIndent(), 1440);
    EXPECT_EQ(box.SelAlignment(), RichTextBox::rtfCenter);
    EXPECT_TRUE(box.TextRTF().contains(QLatin1String("\\qc\\fi-360\\li1080\\ri1440 beta")))
        << qPrintable(box.TextRTF());
    box.setSelStart(0);
    box.setSelLength(box.TextLength());
    EXPECT_EQ(box.SelAlignment(), std::nullopt);
    EXPECT_EQ(box.SelIndent(), std::nullopt);
}

TEST(RichTextBox, BulletsOnAndOff) {
    RichTextBox box;
    box.setText(kThreeLines);
    box.setSelStart(0);
    box.setSelLength(9);
    box.setSelBullet(true);
    EXPECT_EQ(box.SelBullet(), true);
    box.setSelStart(14);
    EXPECT_EQ(box.SelBullet(), false);
    box.setSelStart(0);
    box.setSelLength(box.TextLength());
    EXPECT_EQ(box.SelBullet(), std::nullopt);
    box.setSelBullet(false);
    EXPECT_EQ(box.SelBullet(), false);
    EXPECT_EQ(box.Text(), kThreeLines);
}

struct FindCase {
    const char* name;
    QString what;
    int start;
    int end;
    int options;
    int expected;
};

class FindTest : public ::testing::TestWithParam<FindCase> {};

TEST_P(FindTest, FindsInText) {
    RichTextBox box;
    box.setText(QStringLiteral("The cat\r\ncatalogue CAT concat"));
    const FindCase& c = GetParam();
    EXPECT_EQ(box.Find(c.what, c.start, c.end, c.options), c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    RichTextBox, FindTest,
    ::testing::Values(
        FindCase{"FirstMatchIgnoringCase", QStringLiteral("CAT"), 0, -1, 0, 4},
        FindCase{"FromAStart", QStringLiteral("cat"), 5, -1, 0, 9},
        FindCase{"MatchCase", QStringLiteral("CAT"), 0, -1, RichTextBox::rtfMatchCase, 19},
        FindCase{"WholeWordSkipsPartsOfWords", QStringLiteral("cat"), 5, -1,
                 RichTextBox::rtfWholeWord, 19},
        FindCase{"EndLimitsTheSearch", QStringLiteral("cat"), 5, 18, 0, 9},
        FindCase{"EndBeforeMatchFindsNothing", QStringLiteral("concat"), 0, 25, 0, -1},
        FindCase{"AcrossLineEnd", QStringLiteral("cat\r\ncat"), 0, -1, 0, 4},
        FindCase{"Missing", QStringLiteral("dog"), 0, -1, 0, -1}),
    [](const auto& p) { return std::string(p.param.name); });

TEST(RichTextBox, FindSelectsUnlessNoHighlight) {
    RichTextBox box;
    box.setText(QStringLiteral("one two"));
    box.Find(QStringLiteral("two"));
    EXPECT_EQ(box.SelStart(), 4);
    EXPECT_EQ(box.SelLength(), 3);
    box.setSelStart(0);
    box.Find(QStringLiteral("one"), 0, -1, RichTextBox::rtfNoHighlight);
    EXPECT_EQ(box.SelLength(), 0);
}

TEST(RichTextBox, LockedRefusesUserEditsButNotTheProgram) {
    RichTextBox box;
    box.setText(QStringLiteral("fixed"));
    box.setLocked(true);
    box.setSelStart(0);
    box.setSelLength(5);
    box.typeText(QStringLiteral("x"));
    box.performEdit(RichTextBox::WM_CLEAR);
    box.performEdit(RichTextBox::WM_CUT);
    EXPECT_EQ(box.Text(), QStringLiteral("fixed"));
    box.setSelText(QStringLiteral("changed"));
    EXPECT_EQ(box.Text(), QStringLiteral("changed"));
}

TEST(RichTextBox, UndoRevertsTheLastEdit) {
    RichTextBox box;
    box.setText(QStringLiteral("start"));
    EXPECT_FALSE(box.canUndo());
    box.setSelStart(5);
    box.typeText(QStringLiteral(" more"));
    EXPECT_TRUE(box.canUndo());
    EXPECT_EQ(box.performEdit(RichTextBox::EM_UNDO), 0);
    EXPECT_EQ(box.Text(), QStringLiteral("start"));
    EXPECT_EQ(box.performEdit(12345), -1);
}

TEST(RichTextBox, CutCopyPasteKeepFormat) {
    RichTextBox box;
    box.setTextRTF(QStringLiteral("{\\rtf1 plain \\b bold\\b0}"));
    box.setSelStart(6);
    box.setSelLength(4);
    box.performEdit(RichTextBox::WM_COPY);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("bold"));
    box.performEdit(RichTextBox::WM_CUT);
    EXPECT_EQ(box.Text(), QStringLiteral("plain "));
    box.setSelStart(0);
    box.performEdit(RichTextBox::WM_PASTE);
    EXPECT_EQ(box.Text(), QStringLiteral("boldplain "));
    box.setSelStart(1);
    EXPECT_EQ(box.SelBold(), true);
}

TEST(RichTextBox, OverwriteModeReplacesWithinTheLine) {
    RichTextBox box;
    box.setText(QStringLiteral("abc\r\nd"));
    RTBCtrl::setTypingMode(box, true);
    box.setSelStart(1);
    box.typeText(QStringLiteral("XYZ"));
    EXPECT_EQ(box.Text(), QStringLiteral("aXYZ\r\nd"));
}

TEST(RichTextBox, NotificationsForChangeAndSelection) {
    RichTextBox box;
    int changes = 0;
    int selections = 0;
    QObject::connect(&box, &RichTextBox::changed, [&] { ++changes; });
    QObject::connect(&box, &RichTextBox::selectionChanged, [&] { ++selections; });
    box.setText(QStringLiteral("x"));
    EXPECT_GE(changes, 1);
    const int before = selections;
    box.setSelStart(1);
    EXPECT_GT(selections, before);
    const int changesBefore = changes;
    box.setSelStart(0);
    EXPECT_EQ(changes, changesBefore);
}

TEST(RichTextBox, SaveAndLoadBothFormats) {
    TestEnvironment environment;
    RichTextBox box;
    box.setTextRTF(QStringLiteral("{\\rtf1 \\b \\'abName\\'bb\\b0\\par caf\\'e9 \\u1046?}"));
    const QString rtfPath = environment.path(QStringLiteral("doc.qmb"));
    const QString textPath = environment.path(QStringLiteral("doc.txt"));
    box.SaveFile(rtfPath, RichTextBox::rtfRTF);
    box.SaveFile(textPath, RichTextBox::rtfText);
    const QByteArray written = readTestFile(rtfPath);
    EXPECT_TRUE(written.contains("\\b \\'abName\\'bb"));
    EXPECT_EQ(written, box.TextRTF().toLatin1());
    RichTextBox loaded;
    loaded.LoadFile(rtfPath, RichTextBox::rtfRTF);
    EXPECT_EQ(loaded.Text(), box.Text());
    loaded.LoadFile(textPath, RichTextBox::rtfText);
    EXPECT_EQ(loaded.Text(), box.Text());
    // A character outside the code page makes the text file UTF-8.
    EXPECT_TRUE(readTestFile(textPath).startsWith("\xEF\xBB\xBF"));
}

TEST(RichTextBox, PlainTextFileInTheCodePage) {
    TestEnvironment environment;
    const QString path = environment.path(QStringLiteral("old.txt"));
    writeTestFile(path, QByteArray("caf\xE9 \x80\r\nline"));
    RichTextBox box;
    box.LoadFile(path, RichTextBox::rtfText);
    EXPECT_EQ(box.Text(), QStringLiteral("caf\u00E9 \u20AC\r\nline"));
}

TEST(RichTextBox, LoadFileErrors) {
    TestEnvironment environment;
    const QString plain = environment.path(QStringLiteral("plain.txt"));
    writeTestFile(plain, QByteArray("no rtf here"));
    RichTextBox box;
    box.setText(QStringLiteral("kept"));
    auto errorOf = [&](const QString& path, int format) {
        try {
            box.LoadFile(path, format);
        } catch (const QmError& error) {
            return error.number();
        }
        return 0;
    };
    EXPECT_EQ(errorOf(plain, RichTextBox::rtfRTF), QmError::InvalidFileFormat);
    EXPECT_EQ(box.Text(), QStringLiteral("kept"));
    EXPECT_EQ(errorOf(environment.path(QStringLiteral("missing.rtf")), RichTextBox::rtfRTF),
              QmError::FileNotFound);
    EXPECT_EQ(errorOf(plain, RichTextBox::rtfText), 0);
}

TEST(RichTextBox, LoadDocumentTextTakesRtfOrPlain) {
    TestEnvironment environment;
    const QString rtf = environment.path(QStringLiteral("a.qmb"));
    const QString plain = environment.path(QStringLiteral("b.txt"));
    writeTestFile(
        rtf, QByteArray("{\\rtf1 x\\par y}\r\n{\\QuillmereInfo{\\QMFileSaveType \\val 0}\r\n"));
    writeTestFile(plain, QByteArray("p\nq"));
    EXPECT_EQ(loadDocumentText(rtf), QStringLiteral("x\r\ny"));
    EXPECT_EQ(loadDocumentText(plain), QStringLiteral("p\r\nq"));
}

TEST(RichTextBox, SaveToAnUnwritablePlaceThrows) {
    RichTextBox box;
    box.setText(QStringLiteral("x"));
    EXPECT_THROW(box.SaveFile(QStringLiteral("/proc/no/such/folder/x.rtf")), QmError);
}

} // namespace
