#include "merge/NormalisedLetter.h"

#include "platform/richtext/RichTextBox.h"

#include <QRandomGenerator>
#include <QTextCursor>
#include <gtest/gtest.h>

// Filing skips the box's round trip for letters the check accepts, so the
// check must never accept a letter the round trip would change.
namespace {

QString roundTrip(const QString& rtf) {
    RichTextBox box;
    box.setTextRTF(rtf);
    return box.TextRTF();
}

// A template as the box writes it: placeholders in plain, bold and italic
// runs, right after a control word, two side by side, across paragraphs.
QString normalisedTemplate() {
    RichTextBox box;
    QTextCursor cursor(box.document());
    QTextCharFormat plain;
    QTextCharFormat bold;
    bold.setFontWeight(QFont::Bold);
    QTextCharFormat italic;
    italic.setFontItalic(true);
    cursor.insertText(QStringLiteral("Dear \u00abContact Name\u00bb,"), plain);
    cursor.insertBlock();
    cursor.insertText(QStringLiteral("\u00abCompany Name\u00bb"), bold);
    cursor.insertText(QStringLiteral(" year end \u00abYear End\u00bb\u00abSuffix\u00bb."), plain);
    cursor.insertBlock();
    cursor.insertText(QStringLiteral("Fees of \u00abFee\u00bb"), italic);
    cursor.insertText(QStringLiteral(" are due; caf\u00e9 \u00abCity\u00bb"), plain);
    return roundTrip(box.TextRTF());
}

QString substitute(QString text, const QStringList& values) {
    for (const QString& value : values) {
        const qsizetype start = text.indexOf(QStringLiteral("\\'ab"));
        const qsizetype end = text.indexOf(QStringLiteral("\\'bb"), start);
        if (start < 0 || end < 0) {
            ADD_FAILURE() << "more values than placeholders";
            break;
        }
        text.replace(start, end + 4 - start, value);
    }
    return text;
}

QString randomPlainValue(QRandomGenerator& random, bool accents = false) {
    static const QString plainAlphabet =
        QStringLiteral("abcXYZ 0123456789.,;:'\"!?-_()[]<>&#$%*+=/|~`@^");
    static const QString accentedAlphabet =
        plainAlphabet +
        QStringLiteral("\u00e9\u00e8\u00c9\u00ea\u00e7\u00f4\u00fc\u00df\u00a9\u00bd\u00ff\u00a1");
    const QString& alphabet = accents ? accentedAlphabet : plainAlphabet;
    QString value;
    const int length = 1 + int(random.bounded(24));
    for (int i = 0; i < length; ++i) {
        value += alphabet.at(int(random.bounded(alphabet.size())));
    }
    return value;
}

} // namespace

TEST(NormalisedLetterTest, EveryLetterItAcceptsIsWhatTheBoxWouldWrite) {
    const QString templateRtf = normalisedTemplate();
    RichTextBox scratch;
    const auto check = NormalisedLetter::fromTemplate(scratch, templateRtf);
    ASSERT_TRUE(check.has_value());
    // Plain values come back unchanged; accented ones as the box escapes them.
    for (const bool accents : {false, true}) {
        QRandomGenerator random(accents ? 20261124 : 20261123);
        for (int letter = 0; letter < 200; ++letter) {
            QStringList values;
            for (int i = 0; i < 6; ++i) {
                values << randomPlainValue(random, accents);
            }
            const QString merged = substitute(templateRtf, values);
            const std::optional<QString> text = check->normalisedText(merged);
            ASSERT_TRUE(text.has_value()) << qPrintable(values.join(QLatin1Char('|')));
            ASSERT_EQ(*text, roundTrip(merged)) << qPrintable(values.join(QLatin1Char('|')));
            // The bytes filed are those of the box's text.
            ASSERT_EQ(check->normalisedLatin1(merged), roundTrip(merged).toLatin1());
            if (!accents) {
                ASSERT_TRUE(check->isFixedPoint(merged));
            }
        }
    }
}

TEST(NormalisedLetterTest, CharactersBeyondLatinOneTakeTheRoundTrip) {
    const QString templateRtf = normalisedTemplate();
    RichTextBox scratch;
    const auto check = NormalisedLetter::fromTemplate(scratch, templateRtf);
    ASSERT_TRUE(check.has_value());
    // The no-break space too: the box writes it as a control symbol.
    for (const QString& value :
         {QStringLiteral("O\u2019Brien"), QStringLiteral("a\u00a0b"), QStringLiteral("\u20ac5")}) {
        const QStringList values = {"Pat", "Acme", "March 31", "x", value, "Toronto"};
        EXPECT_FALSE(check->normalisedText(substitute(templateRtf, values)).has_value())
            << qPrintable(value);
        EXPECT_FALSE(check->normalisedLatin1(substitute(templateRtf, values)).has_value());
    }
    // In a run of a symbol font an accented byte may read as another
    // character: whatever the probe found, an accepted letter is exact.
    RichTextBox box;
    QTextCursor cursor(box.document());
    QTextCharFormat symbol;
    symbol.setFontFamilies({QStringLiteral("Symbol")});
    cursor.insertText(QStringLiteral("Signed \u00abName\u00bb"), symbol);
    const QString symbolTemplate = roundTrip(box.TextRTF());
    const auto symbolCheck = NormalisedLetter::fromTemplate(scratch, symbolTemplate);
    ASSERT_TRUE(symbolCheck.has_value());
    const QString merged = substitute(symbolTemplate, {QStringLiteral("Ren\u00e9e")});
    if (const std::optional<QString> text = symbolCheck->normalisedText(merged)) {
        EXPECT_EQ(*text, roundTrip(merged));
    }
}

TEST(NormalisedLetterTest, ValuesThatAreNotPlainTextTakeTheRoundTrip) {
    const QString templateRtf = normalisedTemplate();
    RichTextBox scratch;
    const auto check = NormalisedLetter::fromTemplate(scratch, templateRtf);
    ASSERT_TRUE(check.has_value());
    const QStringList plain = {"Pat", "Acme", "March 31", "x", "$1,200.00", "Toronto"};
    ASSERT_TRUE(check->isFixedPoint(substitute(templateRtf, plain)));
    struct Case {
        const char* why;
        int at;
        QString value;
    };
    const Case cases[] = {
        {"empty value in a bold run", 1, QString()},
        {"accented letter", 5, QStringLiteral("Montr\u00e9al")},
        {"RTF in a value", 1, QStringLiteral("Acme \\b Ltd")},
        {"brace in a value", 5, QStringLiteral("Toronto}")},
        {"line break", 0, QStringLiteral("Pat\\par \r\nSmith")},
        {"tab", 4, QStringLiteral("1\t200")},
    };
    for (const Case& c : cases) {
        QStringList values = plain;
        values[c.at] = c.value;
        EXPECT_FALSE(check->isFixedPoint(substitute(templateRtf, values))) << c.why;
    }
    // The check is needed: an emptied bold run does not survive the box.
    QStringList emptied = plain;
    emptied[1].clear();
    const QString merged = substitute(templateRtf, emptied);
    EXPECT_NE(roundTrip(merged), merged);
    // Text that moved outside the placeholders is not the template's.
    QString moved = substitute(templateRtf, plain);
    moved.replace(QStringLiteral("are due"), QStringLiteral("are owed"));
    EXPECT_FALSE(check->isFixedPoint(moved));
}

TEST(NormalisedLetterTest, TemplatesTheBoxWouldRewriteAreNotTrusted) {
    RichTextBox scratch;
    // Not as the box writes it.
    EXPECT_FALSE(
        NormalisedLetter::fromTemplate(scratch, QStringLiteral("{\\rtf1 Dear \\'abName\\'bb\\par}"))
            .has_value());
    // Formatting inside a placeholder span.
    RichTextBox box;
    QTextCursor cursor(box.document());
    QTextCharFormat bold;
    bold.setFontWeight(QFont::Bold);
    cursor.insertText(QStringLiteral("\u00abCompany "));
    cursor.insertText(QStringLiteral("Name\u00bb"), bold);
    EXPECT_FALSE(NormalisedLetter::fromTemplate(scratch, roundTrip(box.TextRTF())).has_value());
    // No placeholder at all: nothing to gain.
    EXPECT_FALSE(
        NormalisedLetter::fromTemplate(scratch, roundTrip(QStringLiteral("{\\rtf1 Hello\\par}")))
            .has_value());
}
