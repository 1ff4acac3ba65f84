#include "platform/rtf/RtfReader.h"

#include "platform/errorClass.h"
#include "platform/richtext/RichTextBox.h"
#include "platform/richtext/RichTextFormat.h"
#include "support/TestEnvironment.h"

#include <QBuffer>
#include <QRegularExpression>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextImageFormat>
#include <QTextList>
#include <QTextTable>
#include <gtest/gtest.h>

namespace {

QString textOf(const QString& rtf) {
    RichTextBox box;
    box.setTextRTF(rtf);
    return box.Text();
}

QString rtf(const char* body) {
    return QStringLiteral("{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fnil Arial;}"
                          "{\\f1\\fnil\\fcharset204 Cyr;}{\\f2\\fnil\\fcharset2 Symbol;}}") +
           QString::fromLatin1(body) + QStringLiteral("}");
}

// The character format of the first character of a text in the document.
QTextCharFormat formatAt(const QTextDocument& document, const QString& text) {
    const QTextCursor found = document.find(text);
    QTextCursor at(found);
    at.setPosition(found.selectionStart() + 1);
    return at.charFormat();
}

struct TextCase {
    const char* name;
    const char* body;
    QString expected;
};

class RtfTextTest : public ::testing::TestWithParam<TextCase> {};

TEST_P(RtfTextTest, ReadsTheText) {
    EXPECT_EQ(textOf(rtf(GetParam().body)), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Reader, RtfTextTest,
    ::testing::Values(
        TextCase{"PlainWords", "Hello world", QStringLiteral("Hello world")},
        TextCase{"ControlWordBlankIsDelimiter", "\\b Bold\\b0  after",
                 QStringLiteral("Bold after")},
        TextCase{"LineEndsInSourceIgnored", "one\r\ntwo\ntwo", QStringLiteral("onetwotwo")},
        TextCase{"ParagraphsBecomeCrLf", "a\\par b\\par c", QStringLiteral("a\r\nb\r\nc")},
        TextCase{"FinalParIsTheDocumentMark", "a\\par b\\par ", QStringLiteral("a\r\nb")},
        TextCase{"TwoFinalParsKeepOneEmptyLine", "a\\par\\par ", QStringLiteral("a\r\n")},
        TextCase{"LineBreakCountsAsLineEnd", "a\\line b", QStringLiteral("a\r\nb")},
        TextCase{"BackslashNewlineIsParagraph", "a\\\nb", QStringLiteral("a\r\nb")},
        TextCase{"EscapedSpecials", "\\\\ \\{x\\}", QStringLiteral("\\ {x}")},
        TextCase{"HexIn1252Differs", "\\'80\\'93\\'94\\'85",
                 QStringLiteral("\u20AC\u201C\u201D\u2026")},
        TextCase{"GuillemetsByHex", "\\'abName\\'bb", QStringLiteral("\u00ABName\u00BB")},
        TextCase{"UnusedByteKeepsItsValue", "\\'81", QString(QChar(0x81))},
        TextCase{"UnicodeSkipsOneFallback", "\\u8364?x", QStringLiteral("\u20ACx")},
        TextCase{"UnicodeNegative", "\\u-4064?", QString(QChar(0xF020))},
        TextCase{"UnicodeSkipCountTwo", "\\uc2\\u8364\\'80\\'80x", QStringLiteral("\u20ACx")},
        TextCase{"UnicodeSkipStopsAtGroupEnd", "{\\uc3\\u8364 a}b", QStringLiteral("\u20ACb")},
        TextCase{"UnicodeOutOfRangeIgnored", "\\u99999?x\\u-99999?y", QStringLiteral("xy")},
        TextCase{"UprReadsOnlyUnicodePart", "{\\upr{ansi}{\\*\\ud{\\u1046?}}}",
                 QString(QChar(0x0416))},
        TextCase{"FontCharsetDecodesHex", "\\f1\\'c6\\f0\\'c6", QStringLiteral("\u0416\u00C6")},
        TextCase{"UnknownStarDestinationSkipped", "a{\\*\\unknownthing secret}b",
                 QStringLiteral("ab")},
        TextCase{"UnknownPlainWordIgnored", "a\\madeupword b", QStringLiteral("ab")},
        TextCase{"HeaderFooterInfoSkipped",
                 "{\\info{\\title T}}{\\header H}{\\footer F}{\\stylesheet{S;}}body",
                 QStringLiteral("body")},
        TextCase{"FieldShowsItsResult",
                 "{\\field{\\*\\fldinst HYPERLINK \"http://x\"}{\\fldrslt link}}",
                 QStringLiteral("link")},
        TextCase{"ListTextSkipped", "{\\listtext 1.\\tab}item", QStringLiteral("item")},
        TextCase{"PnTextSkipped", "{\\pntext\\f2\\'b7\\tab}{\\*\\pn\\pnlvlblt{\\pntxtb\\'b7}}item",
                 QStringLiteral("item")},
        TextCase{"TabsAndSpecials", "a\\tab b\\~c\\emdash\\endash\\lquote\\rquote",
                 QStringLiteral("a\tb\u00A0c\u2014\u2013\u2018\u2019")},
        TextCase{"HiddenTextDropped", "a{\\v hidden}b", QStringLiteral("ab")},
        TextCase{"BrokenHexYieldsNothing", "a\\'zzb", QStringLiteral("azzb")},
        TextCase{"ExtraClosingBraceEndsDocument", "a}b", QStringLiteral("a")},
        TextCase{"BinSkipsItsData", "a{\\*\\blob\\bin3 {}x}b", QStringLiteral("ab")}),
    [](const auto& p) { return std::string(p.param.name); });

TEST(RtfReader, TrailerBehindTheRtfNeverReachesTheText) {
    const QString withTrailer =
        rtf("Letter text\\par ") +
        QStringLiteral(
            "\r\n{\\QuillmereInfo{\\QMFileSaveType \\val 0}\r\n{\\QMDocumentType \\val 2}\r\n");
    EXPECT_EQ(textOf(withTrailer), QStringLiteral("Letter text"));
}

TEST(RtfReader, UnbalancedBracesReadToTheEnd) {
    EXPECT_EQ(textOf(QStringLiteral("{\\rtf1 {\\b bold {\\i both")), QStringLiteral("bold both"));
}

TEST(RtfReader, InputWithoutHeaderIsInvalidFormat) {
    QTextDocument document;
    try {
        RtfReader::read(QStringLiteral("just text"), document);
        FAIL() << "no error";
    } catch (const QmError& error) {
        EXPECT_EQ(error.number(), QmError::InvalidFileFormat);
    }
}

TEST(RtfReader, HeaderAfterBomAndBlanksAccepted) {
    EXPECT_TRUE(RtfReader::hasRtfHeader(QByteArray("\xEF\xBB\xBF  \r\n{\\rtf1 x}")));
    EXPECT_FALSE(RtfReader::hasRtfHeader(QByteArray("x{\\rtf1 x}")));
}

TEST(RtfReader, CharacterFormats) {
    QTextDocument document;
    RtfReader::read(
        rtf("{\\colortbl ;\\red255\\green0\\blue0;\\red0\\green0\\blue255;}"
            "\\f0\\fs20 plain \\b bold\\b0  \\i italic\\i0  \\ul under\\ulnone  \\strike "
            "gone\\strike0 "
            " \\cf1 red\\cf0  \\highlight2 marked\\highlight0  \\up6 raised\\up0  \\dn4 low\\dn0 "
            " \\fs36 big \\plain reset"),
        document);
    EXPECT_EQ(formatAt(document, "plain").fontPointSize(), 10.0);
    EXPECT_EQ(formatAt(document, "plain").fontFamilies().toStringList(), QStringList{"Arial"});
    EXPECT_EQ(formatAt(document, "bold").fontWeight(), QFont::Bold);
    EXPECT_EQ(formatAt(document, "plain").fontWeight(), QFont::Normal);
    EXPECT_TRUE(formatAt(document, "italic").fontItalic());
    EXPECT_TRUE(formatAt(document, "under").fontUnderline());
    EXPECT_TRUE(formatAt(document, "gone").fontStrikeOut());
    EXPECT_EQ(formatAt(document, "red").foreground().color(), QColor(255, 0, 0));
    EXPECT_EQ(formatAt(document, "marked").background().color(), QColor(0, 0, 255));
    EXPECT_EQ(RichTextFormat::charOffsetTwips(formatAt(document, "raised")), 60);
    EXPECT_EQ(RichTextFormat::charOffsetTwips(formatAt(document, "low")), -40);
    EXPECT_EQ(formatAt(document, "big").fontPointSize(), 18.0);
    EXPECT_EQ(formatAt(document, "reset").fontPointSize(), 12.0);
    EXPECT_FALSE(formatAt(document, "reset").fontUnderline());
}

TEST(RtfReader, GroupsRestoreTheFormat) {
    QTextDocument document;
    RtfReader::read(rtf("a{\\b b{\\i c}d}e"), document);
    EXPECT_EQ(formatAt(document, "a").fontWeight(), QFont::Normal);
    EXPECT_EQ(formatAt(document, "c").fontWeight(), QFont::Bold);
    EXPECT_TRUE(formatAt(document, "c").fontItalic());
    EXPECT_FALSE(formatAt(document, "d").fontItalic());
    EXPECT_EQ(formatAt(document, "e").fontWeight(), QFont::Normal);
}

TEST(RtfReader, ParagraphFormatsApplyToTheirParagraph) {
    QTextDocument document;
    RtfReader::read(rtf("\\pard\\qc centre\\par\\pard\\qr\\li720\\ri360\\fi-360\\sb120\\sa240 right"
                        "\\par\\pard\\qj\\tx1440\\tqr\\tx5760 just\\par\\pard left"),
                    document);
    const QTextBlock centre = document.findBlockByNumber(0);
    const QTextBlock right = document.findBlockByNumber(1);
    const QTextBlock just = document.findBlockByNumber(2);
    const QTextBlock left = document.findBlockByNumber(3);
    EXPECT_TRUE(centre.blockFormat().alignment() & Qt::AlignHCenter);
    EXPECT_TRUE(right.blockFormat().alignment() & Qt::AlignRight);
    EXPECT_EQ(right.blockFormat().intProperty(RichTextFormat::LeftIndentTwips), 720);
    EXPECT_EQ(right.blockFormat().intProperty(RichTextFormat::RightIndentTwips), 360);
    EXPECT_EQ(right.blockFormat().intProperty(RichTextFormat::FirstLineTwips), -360);
    EXPECT_EQ(right.blockFormat().intProperty(RichTextFormat::SpaceBeforeTwips), 120);
    EXPECT_EQ(right.blockFormat().intProperty(RichTextFormat::SpaceAfterTwips), 240);
    EXPECT_TRUE(just.blockFormat().alignment() & Qt::AlignJustify);
    EXPECT_EQ(just.blockFormat().property(RichTextFormat::TabStopsTwips).toList(),
              (QList<QVariant>{1440, 5760}));
    EXPECT_EQ(just.blockFormat().property(RichTextFormat::TabStopKinds).toList(),
              (QList<QVariant>{0, 1}));
    EXPECT_TRUE(left.blockFormat().alignment() & Qt::AlignLeft);
    EXPECT_FALSE(left.blockFormat().hasProperty(RichTextFormat::LeftIndentTwips));
}

TEST(RtfReader, OldAndNewListsBecomeLists) {
    QTextDocument document;
    RtfReader::read(
        rtf("{\\*\\listtable{\\list\\listtemplateid1{\\listlevel\\levelnfc0\\levelstartat3"
            "{\\leveltext\\'02\\'00.;}{\\levelnumbers\\'01;}}\\listid7}}"
            "{\\*\\listoverridetable{\\listoverride\\listid7\\listoverridecount0\\ls1}}"
            "{\\pntext\\f2\\'b7\\tab}{\\*\\pn\\pnlvlblt\\pnf2{\\pntxtb\\'b7}}\\li720\\fi-360 "
            "one\\par "
            "{\\pntext\\f2\\'b7\\tab}two\\par\\pard plain\\par "
            "\\ls1\\ilvl0 {\\listtext 3.\\tab}three\\par\\ls1 {\\listtext 4.\\tab}four"),
        document);
    ASSERT_EQ(document.blockCount(), 5);
    const QTextList* bullets = document.findBlockByNumber(0).textList();
    ASSERT_NE(bullets, nullptr);
    EXPECT_EQ(bullets->format().style(), QTextListFormat::ListDisc);
    EXPECT_EQ(document.findBlockByNumber(1).textList(), bullets);
    EXPECT_EQ(document.findBlockByNumber(2).textList(), nullptr);
    const QTextList* numbers = document.findBlockByNumber(3).textList();
    ASSERT_NE(numbers, nullptr);
    EXPECT_EQ(numbers->format().style(), QTextListFormat::ListDecimal);
    EXPECT_EQ(numbers->format().intProperty(RichTextFormat::ListStartNumber), 3);
    EXPECT_EQ(document.findBlockByNumber(4).textList(), numbers);
}

TEST(RtfReader, SimpleTableFillsItsCells) {
    QTextDocument document;
    RtfReader::read(
        rtf("before\\par\\trowd\\cellx2000\\cellx4000\\pard\\intbl A1\\cell B1\\cell\\row"
            "\\trowd\\cellx2000\\cellx4000\\pard\\intbl A2\\cell B2\\cell\\row\\pard after"),
        document);
    QTextCursor cursor = document.find(QStringLiteral("B2"));
    QTextTable* table = cursor.currentTable();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->rows(), 2);
    EXPECT_EQ(table->columns(), 2);
    auto cellText = [&](int row, int column) {
        QTextTableCell cell = table->cellAt(row, column);
        QTextCursor c = cell.firstCursorPosition();
        c.setPosition(cell.lastPosition(), QTextCursor::KeepAnchor);
        return c.selectedText();
    };
    EXPECT_EQ(cellText(0, 0), QStringLiteral("A1"));
    EXPECT_EQ(cellText(0, 1), QStringLiteral("B1"));
    EXPECT_EQ(cellText(1, 0), QStringLiteral("A2"));
    EXPECT_EQ(cellText(1, 1), QStringLiteral("B2"));
    EXPECT_EQ(table->format().property(RichTextFormat::ColumnWidthsTwips).toList(),
              (QList<QVariant>{2000, 2000}));
    EXPECT_EQ(document.find(QStringLiteral("after")).currentTable(), nullptr);
}

TEST(RtfReader, PngPictureBecomesAnImageOfItsGoalSize) {
    QImage image(4, 2, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    QTextDocument document;
    RtfReader::read(
        rtf(QByteArray(QByteArray("a{\\pict\\pngblip\\picw4\\pich2\\picwgoal600\\pichgoal300 ") +
                       png.toHex() + "}b")
                .constData()),
        document);
    QTextCursor cursor(&document);
    cursor.setPosition(2);
    const QTextCharFormat format = cursor.charFormat();
    ASSERT_TRUE(format.isImageFormat());
    EXPECT_EQ(format.intProperty(RichTextFormat::PictureWidthTwips), 600);
    EXPECT_EQ(format.intProperty(RichTextFormat::PictureHeightTwips), 300);
    const QImage loaded =
        document.resource(QTextDocument::ImageResource, QUrl(format.toImageFormat().name()))
            .value<QImage>();
    EXPECT_EQ(loaded.size(), QSize(4, 2));
    EXPECT_EQ(loaded.pixelColor(0, 0), QColor(Qt::red));
}

TEST(RtfReader, UnknownPictureKeepsItsSizeAsBlank) {
    QTextDocument document;
    RtfReader::read(rtf("{\\pict\\wmetafile8\\picw2540\\pich1270\\picwgoal0 0102zz03}"), document);
    QTextCursor cursor(&document);
    cursor.setPosition(1);
    const QTextCharFormat format = cursor.charFormat();
    ASSERT_TRUE(format.isImageFormat());
    EXPECT_EQ(format.intProperty(RichTextFormat::PictureWidthTwips), 1440);
    EXPECT_EQ(format.intProperty(RichTextFormat::PictureHeightTwips), 720);
}

TEST(RtfReader, BrokenPngHexLeavesABlankNotACrash) {
    QTextDocument document;
    RtfReader::read(rtf("x{\\pict\\pngblip\\picwgoal100\\pichgoal100 89504e47zz0d0a1a}y"),
                    document);
    EXPECT_EQ(document.toPlainText().size(), 3);
}

TEST(RtfReader, InsertJoinsTheLastParagraphWithTheTextBehind) {
    QTextDocument document;
    document.setPlainText(QStringLiteral("head tail"));
    QTextCursor cursor(&document);
    cursor.setPosition(5);
    RtfReader::insert(rtf("one\\par two\\par "), cursor);
    EXPECT_EQ(document.toPlainText(), QStringLiteral("head one\ntwotail"));
}

} // namespace

namespace {

// Lines of text as compared with LibreOffice's own extraction: blanks at
// the ends and empty lines do not count, nor list numbers and bullets
// (LibreOffice writes them as text; ours keeps them as list format, except
// where the file itself has them as text), nor the mark of a picture.
QStringList comparableLines(const QString& text, bool stripListMarkers) {
    static const QRegularExpression marker(
        QStringLiteral("^(\u2022|[0-9]+\\.|[a-zA-Z]\\.|[ivxIVX]+\\.)\\s+"));
    QStringList lines;
    QString normalised = text;
    normalised.remove(QChar(0xFEFF)).remove(QChar::ObjectReplacementCharacter);
    normalised.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    for (QString line : normalised.split(QLatin1Char('\n'))) {
        line = line.trimmed();
        if (stripListMarkers) {
            line.remove(marker);
        }
        if (!line.isEmpty()) {
            lines << line;
        }
    }
    return lines;
}

class RtfCorpusTest : public ::testing::TestWithParam<QString> {};

TEST_P(RtfCorpusTest, TextMatchesLibreOfficesExtraction) {
    const QString name = GetParam();
    const QString text = loadDocumentText(testDataPath(QStringLiteral("rtf/") + name + ".rtf"));
    const QString expected =
        QString::fromUtf8(readTestFile(testDataPath(QStringLiteral("rtf/") + name + ".lo.txt")));
    EXPECT_EQ(comparableLines(text, true).join(QLatin1Char('\n')),
              comparableLines(expected, true).join(QLatin1Char('\n')));
}

INSTANTIATE_TEST_SUITE_P(Corpus, RtfCorpusTest,
                         ::testing::Values(QStringLiteral("lo-letter"), QStringLiteral("lo-plain"),
                                           QStringLiteral("pandoc-doc"),
                                           QStringLiteral("hand-edge"),
                                           QStringLiteral("hand-runs")),
                         [](const auto& p) {
                             return p.param.toStdString().erase(p.param.indexOf('-'), 1);
                         });

// A read replaces the document and its history: nothing of it can be
// undone, while the document records edits after it as it did before, and
// one that records none goes on recording none.
TEST(RtfReaderHistoryTest, AReadLeavesNoHistoryAndKeepsTheDocumentsUndoSetting) {
    QTextDocument document;
    QTextCursor(&document).insertText(QStringLiteral("before"));
    ASSERT_TRUE(document.isUndoAvailable());
    RtfReader::read(QStringLiteral("{\\rtf1 one\\par two\\par}"), document);
    EXPECT_EQ(document.toPlainText(), QStringLiteral("one\ntwo"));
    EXPECT_FALSE(document.isUndoAvailable());
    EXPECT_TRUE(document.isUndoRedoEnabled());
    QTextCursor(&document).insertText(QStringLiteral("x"));
    EXPECT_TRUE(document.isUndoAvailable());

    QTextDocument quiet;
    quiet.setUndoRedoEnabled(false);
    RtfReader::read(QStringLiteral("{\\rtf1 one}"), quiet);
    EXPECT_FALSE(quiet.isUndoRedoEnabled());
    EXPECT_THROW(RtfReader::read(QStringLiteral("no rtf"), document), QmError);
    EXPECT_TRUE(document.isUndoRedoEnabled());
}

} // namespace
