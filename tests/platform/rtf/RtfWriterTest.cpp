#include "platform/rtf/RtfWriter.h"

#include "platform/richtext/RichTextBox.h"
#include "platform/rtf/RtfReader.h"
#include "support/TestEnvironment.h"

#include <QBuffer>
#include <QFont>
#include <QImage>
#include <QRegularExpression>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextImageFormat>
#include <QTextList>
#include <QTextTable>
#include <gtest/gtest.h>

namespace {

// The body of a written RTF: what follows the header and tables.
QString bodyOf(const QString& rtf) {
    const qsizetype at = rtf.indexOf(QLatin1String("\\viewkind4\\uc1"));
    return at < 0 ? QString() : rtf.mid(at + 14);
}

QString writtenText(const QString& text) {
    QTextDocument document;
    QTextCursor(&document).insertText(text);
    return RtfWriter::write(document);
}

struct EscapeCase {
    const char* name;
    QString text;
    const char* expected; // must appear in the body
};

class RtfEscapeTest : public ::testing::TestWithParam<EscapeCase> {};

TEST_P(RtfEscapeTest, WritesTheEscape) {
    const QString rtf = writtenText(GetParam().text);
    EXPECT_TRUE(bodyOf(rtf).contains(QLatin1String(GetParam().expected))) << qPrintable(rtf);
}

INSTANTIATE_TEST_SUITE_P(
    Writer, RtfEscapeTest,
    ::testing::Values(EscapeCase{"GuillemetsAsLowerHex", QStringLiteral("\u00ABCompany Name\u00BB"),
                                 " \\'abCompany Name\\'bb"},
                      EscapeCase{"TypographicQuotesIn1252", QStringLiteral("\u201Cq\u201D \u20AC"),
                                 "\\'93q\\'94 \\'80"},
                      EscapeCase{"OutsideCodePageAsSignedUnicode", QStringLiteral("\u0416\uFFFD"),
                                 "\\u1046?\\u-3?"},
                      EscapeCase{"BracesAndBackslash", QStringLiteral("{a\\b}"), "\\{a\\\\b\\}"},
                      EscapeCase{"TabIsAControlWordWithBlank", QStringLiteral("a\tb"), "a\\tab b"},
                      EscapeCase{"LatinLetters", QStringLiteral("caf\u00E9 \u00FC"),
                                 "caf\\'e9 \\'fc"},
                      EscapeCase{"NoBreakSpace", QStringLiteral("a\u00A0b"), "a\\~b"}),
    [](const auto& p) { return std::string(p.param.name); });

TEST(RtfWriter, HeaderIsTheControlsDialect) {
    const QString rtf = writtenText(QStringLiteral("x"));
    EXPECT_TRUE(rtf.startsWith(QLatin1String(
        "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1033{\\fonttbl{\\f0\\fnil\\fcharset0 ")));
    EXPECT_TRUE(rtf.contains(QLatin1String("{\\colortbl ;}")));
    EXPECT_TRUE(rtf.contains(QLatin1String("\\viewkind4\\uc1\\pard")));
    EXPECT_TRUE(rtf.endsWith(QLatin1String("\\par\r\n}")));
}

TEST(RtfWriter, OutputIsSevenBit) {
    const QString rtf = writtenText(QStringLiteral("\u00E9\u0416\u20AC\u00AB"));
    for (const QChar ch : rtf) {
        ASSERT_LT(ch.unicode(), 128);
    }
}

// The merge puts a blank before a value unless the character before the
// placeholder is one; a control word before text must therefore end in its
// blank, and no line break may stand between a control word and text.
TEST(RtfWriter, EveryControlWordBeforeTextEndsInABlank) {
    QTextDocument document;
    QTextCursor cursor(&document);
    QTextCharFormat bold;
    bold.setFontWeight(QFont::Bold);
    cursor.insertText(QStringLiteral("\u00ABStart\u00BB"));
    cursor.insertBlock();
    cursor.insertText(QStringLiteral("\u00ABPara\u00BB"), bold);
    cursor.insertText(QStringLiteral(" and "), QTextCharFormat());
    cursor.insertText(QStringLiteral("\u00ABAfterFormat\u00BB"), bold);
    const QString rtf = RtfWriter::write(document);
    for (const char* name : {"Start", "Para", "AfterFormat"}) {
        const QString token =
            QStringLiteral("\\'ab") + QLatin1String(name) + QStringLiteral("\\'bb");
        const qsizetype at = rtf.indexOf(token);
        ASSERT_GT(at, 0) << name << qPrintable(rtf);
        EXPECT_EQ(rtf.at(at - 1), QLatin1Char(' ')) << name << qPrintable(rtf);
    }
    // Line breaks only before a control word (or the closing brace).
    const QStringList lines = rtf.split(QLatin1String("\r\n"));
    for (qsizetype i = 1; i < lines.size(); ++i) {
        const QString& line = lines.at(i);
        EXPECT_TRUE(line.startsWith(QLatin1Char('\\')) || line.startsWith(QLatin1Char('{')) ||
                    line.startsWith(QLatin1Char('}')) ||
                    line.contains(QRegularExpression(QStringLiteral("^[0-9a-f]+}?$"))))
            << qPrintable(line);
    }
}

TEST(RtfWriter, PlaceholderTypedInOneFormatStaysOneRun) {
    RichTextBox box;
    for (const QChar ch : QStringLiteral("Dear \u00ABContact First Name\u00BB,")) {
        box.typeText(QString(ch));
    }
    EXPECT_TRUE(box.TextRTF().contains(QLatin1String("Dear \\'abContact First Name\\'bb,")))
        << qPrintable(box.TextRTF());
}

TEST(RtfWriter, CharacterFormatsAreWrittenAsChanges) {
    RichTextBox box;
    box.setTextRTF(
        QStringLiteral("{\\rtf1{\\fonttbl{\\f0 Arial;}{\\f1 Courier New;}}"
                       "{\\colortbl ;\\red255\\green0\\blue0;}"
                       "\\f0\\fs20 a\\b b\\i c\\b0\\i0 d\\ul e\\ulnone f\\strike g\\strike0 "
                       "\\cf1 h\\cf0 \\f1\\fs28 i\\up6 j\\dn6 k\\up0 l}"));
    const QString body = bodyOf(box.TextRTF());
    // f0 is the document's default font and f1 the bullet font.
    EXPECT_TRUE(body.contains(QLatin1String("\\f2\\fs20 a\\b b\\i c\\b0\\i0 d\\ul e\\ulnone f"
                                            "\\strike g\\strike0\\cf1 h\\f3\\fs28\\cf0 i\\up6 j"
                                            "\\dn6 k\\nosupersub l")))
        << qPrintable(body);
    EXPECT_TRUE(box.TextRTF().contains(QLatin1String("{\\f3\\fnil\\fcharset0 Courier New;}")));
    EXPECT_TRUE(box.TextRTF().contains(QLatin1String("{\\colortbl ;\\red255\\green0\\blue0;}")));
}

TEST(RtfWriter, ParagraphFormatsAndPageBreaks) {
    RichTextBox box;
    box.setTextRTF(
        QStringLiteral("{\\rtf1\\pard\\qc\\li720\\ri360\\fi-360\\sb120\\sa240\\sl360\\slmult1"
                       "\\tqr\\tx5760 one\\par two\\page\\pard three}"));
    const QString body = bodyOf(box.TextRTF());
    EXPECT_TRUE(body.contains(QLatin1String(
        "\\pard\\qc\\fi-360\\li720\\ri360\\sb120\\sa240\\sl360\\slmult1\\tqr\\tx5760")))
        << qPrintable(body);
    // The second paragraph has the same format: no second \pard.
    EXPECT_TRUE(body.contains(QLatin1String(" one\r\n\\par two\r\n\\page\\pard")))
        << qPrintable(body);
}

TEST(RtfWriter, ListsAreWrittenInTheOldNumberingForm) {
    RichTextBox box;
    box.setText(QStringLiteral("one\r\ntwo"));
    box.setSelStart(0);
    box.setSelLength(box.TextLength());
    box.setSelBullet(true);
    const QString rtf = box.TextRTF();
    EXPECT_EQ(rtf.count(QLatin1String("{\\pntext\\f1\\'b7\\tab}")), 2) << qPrintable(rtf);
    EXPECT_EQ(rtf.count(QLatin1String("{\\*\\pn\\pnlvlblt\\pnf1\\pnindent0{\\pntxtb\\'b7}}")), 1);
    EXPECT_TRUE(rtf.contains(QLatin1String("{\\f1\\fnil\\fcharset2 Symbol;}")));
}

TEST(RtfWriter, SelectionIsWrittenAsADocumentOfItsOwn) {
    QTextDocument document;
    QTextCursor(&document).insertText(QStringLiteral("abc\ndef"));
    const QString part = RtfWriter::write(document, 1, 5); // "bc", line end, "d"
    RichTextBox box;
    box.setTextRTF(part);
    EXPECT_EQ(box.Text(), QStringLiteral("bc\r\nd"));
}

struct RoundTripCase {
    const char* name;
    QString rtf;
};

class RtfRoundTripTest : public ::testing::TestWithParam<RoundTripCase> {};

// Writing what was read from our own output gives the same bytes.
TEST_P(RtfRoundTripTest, OwnOutputIsStable) {
    RichTextBox first;
    first.setTextRTF(GetParam().rtf);
    const QString once = first.TextRTF();
    RichTextBox second;
    second.setTextRTF(once);
    EXPECT_EQ(second.TextRTF(), once);
    EXPECT_EQ(second.Text(), first.Text());
}

QString pngPictureRtf() {
    QImage image(3, 3, QImage::Format_ARGB32);
    image.fill(QColor(10, 200, 30));
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return QStringLiteral("{\\rtf1 a{\\pict\\pngblip\\picwgoal450\\pichgoal450 ") +
           QString::fromLatin1(png.toHex()) + QStringLiteral("}b\\par}");
}

INSTANTIATE_TEST_SUITE_P(
    Writer, RtfRoundTripTest,
    ::testing::Values(
        RoundTripCase{"Empty", QStringLiteral("{\\rtf1}")},
        RoundTripCase{"EmptyLines", QStringLiteral("{\\rtf1 \\par\\par\\par}")},
        RoundTripCase{"Formats", QStringLiteral("{\\rtf1{\\colortbl ;\\red1\\green2\\blue3;}"
                                                "\\b\\i\\ul\\strike\\cf1\\highlight1 x\\plain y}")},
        RoundTripCase{"Paragraphs",
                      QStringLiteral("{\\rtf1\\qc a\\par\\pard\\qr\\li100 b\\line c}")},
        RoundTripCase{"Unicode", QStringLiteral("{\\rtf1 \\u1046?\\'ab\\'bb\\'80}")},
        RoundTripCase{"Lists",
                      QStringLiteral("{\\rtf1{\\*\\pn\\pnlvlbody\\pndec\\pnstart4}a\\par b}")},
        RoundTripCase{"Table", QStringLiteral("{\\rtf1 x\\par\\trowd\\cellx1000\\cellx3000\\intbl "
                                              "a\\cell b\\cell\\row\\pard y}")},
        RoundTripCase{"TableAtEnd",
                      QStringLiteral("{\\rtf1\\trowd\\cellx1000\\intbl a\\cell\\row}")},
        RoundTripCase{"Picture", pngPictureRtf()}),
    [](const auto& p) { return std::string(p.param.name); });

TEST(RtfWriter, TablesAreWrittenAsRows) {
    RichTextBox box;
    box.setTextRTF(QStringLiteral(
        "{\\rtf1 x\\par\\trowd\\cellx1000\\cellx3000\\intbl a\\cell b\\cell\\row\\pard y}"));
    const QString body = bodyOf(box.TextRTF());
    EXPECT_TRUE(body.contains(QLatin1String("\\trowd\\trgaph108\\trleft0\\cellx1000\\cellx3000")))
        << qPrintable(body);
    EXPECT_TRUE(body.contains(QLatin1String("\\intbl")));
    EXPECT_TRUE(body.contains(QLatin1String(" a\\cell")));
    EXPECT_TRUE(body.contains(QLatin1String(" b\\cell\\row")));
}

// Paragraph alignment and bold/italic runs, in the form scripts/lo-runs.py
// gives LibreOffice's reading of a file.
QString runsOf(const QTextDocument& document) {
    QStringList lines;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const Qt::Alignment align = block.blockFormat().alignment() & Qt::AlignHorizontal_Mask;
        QString line = align & Qt::AlignHCenter   ? QStringLiteral("center|")
                       : align & Qt::AlignRight   ? QStringLiteral("right|")
                       : align & Qt::AlignJustify ? QStringLiteral("justify|")
                                                  : QStringLiteral("left|");
        QString attrs;
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            QString text = fragment.text();
            text.remove(QChar::ObjectReplacementCharacter);
            if (text.isEmpty())
                continue;
            text.replace(u'\\', QStringLiteral("\\\\"))
                .replace(u'\t', QStringLiteral("\\t"))
                .replace(QChar::LineSeparator, QStringLiteral("\\n"));
            const QTextCharFormat format = fragment.charFormat();
            QString next = QStringLiteral("[");
            if (format.fontWeight() >= QFont::DemiBold)
                next += u'B';
            if (format.fontItalic())
                next += u'I';
            next += u']';
            if (next != attrs)
                line += next;
            attrs = next;
            line += text;
        }
        lines << line;
    }
    // The editor keeps an empty block after the last paragraph mark.
    if (!lines.isEmpty() && lines.last() == QLatin1String("left|"))
        lines.removeLast();
    return lines.join(u'\n');
}

// What we write is read by LibreOffice with the same paragraphs, alignment
// and bold and italic runs that we read from it ourselves. The expected
// runs are LibreOffice's reading of our output (scripts/make-rtf-lo-runs.sh,
// which also checks that it equals LibreOffice's reading of the original).
class RtfLibreOfficeRunsTest : public ::testing::TestWithParam<const char*> {};

TEST_P(RtfLibreOfficeRunsTest, OurOutputReadsAsLibreOfficeReadsIt) {
    const QString name = QString::fromUtf8(GetParam());
    QTextDocument original;
    RtfReader::read(readTestFile(testDataPath(QStringLiteral("rtf/") + name + ".rtf")), original);
    QTextDocument written;
    RtfReader::read(RtfWriter::write(original), written);
    const QString expected = QString::fromUtf8(readTestFile(testDataPath(QStringLiteral("rtf/") +
                                                                         name + ".lo-runs.txt")))
                                 .trimmed();
    EXPECT_EQ(runsOf(written).toStdString(), expected.toStdString());
}

INSTANTIATE_TEST_SUITE_P(Corpus, RtfLibreOfficeRunsTest,
                         ::testing::Values("hand-runs", "hand-edge", "lo-letter", "lo-plain",
                                           "pandoc-doc"),
                         [](const ::testing::TestParamInfo<const char*>& p) {
                             std::string n = p.param;
                             std::erase(n, '-');
                             return n;
                         });

} // namespace
