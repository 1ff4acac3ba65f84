#include "platform/rtf/RtfTokenizer.h"

#include <QStringList>
#include <gtest/gtest.h>

namespace {

// One line per token, so that a whole stream compares in one assertion and
// a failure shows where the streams part.
QString describe(const RtfTokenizer::Token& t) {
    using Type = RtfTokenizer::Type;
    switch (t.type) {
    case Type::GroupStart:
        return QStringLiteral("{");
    case Type::GroupEnd:
        return QStringLiteral("}");
    case Type::ControlWord:
        return QStringLiteral("word ") + t.name.toString() +
               (t.hasParameter ? QStringLiteral(" ") + QString::number(t.parameter) : QString());
    case Type::ControlSymbol:
        return QStringLiteral("symbol ") +
               (t.symbol.isNull() ? QStringLiteral("NUL") : QString(t.symbol));
    case Type::HexByte:
        return QStringLiteral("hex ") + QString::number(t.byte, 16);
    case Type::Text:
        return QStringLiteral("text [") + t.text.toString() + QStringLiteral("]");
    case Type::Binary:
        return QStringLiteral("bin [") + t.text.toString() + QStringLiteral("]");
    case Type::End:
        return QStringLiteral("end");
    }
    return {};
}

QStringList tokens(const QString& input) {
    RtfTokenizer tokenizer(input);
    QStringList out;
    for (int guard = 0; guard < 10000; ++guard) {
        const RtfTokenizer::Token t = tokenizer.next();
        if (t.type == RtfTokenizer::Type::End) {
            EXPECT_EQ(tokenizer.position(), tokenizer.size()) << "stopped before the end";
            return out;
        }
        out << describe(t);
    }
    ADD_FAILURE() << "the tokenizer does not advance";
    return out;
}

struct Case {
    const char* name;
    QString input;
    QStringList expected;
};

void runCases(const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(tokens(c.input), c.expected);
    }
}

} // namespace

TEST(RtfTokenizerTest, ControlWordsParametersAndDelimiters) {
    runCases({
        {"word alone", "\\par", {"word par"}},
        {"space delimiter is eaten", "\\b hello", {"word b", "text [hello]"}},
        {"only one space is eaten", "\\b  hello", {"word b", "text [ hello]"}},
        {"parameter", "\\fs24 x", {"word fs 24", "text [x]"}},
        {"negative parameter", "\\li-360 x", {"word li -360", "text [x]"}},
        {"minus without digits is text", "\\li-x", {"word li", "text [-x]"}},
        {"zero parameter", "\\b0", {"word b 0"}},
        {"non-letter ends the word", "\\b;x", {"word b", "text [;x]"}},
        {"digits end at a letter", "\\f1abc", {"word f 1", "text [abc]"}},
        {"space after parameter is eaten", "\\f1 abc", {"word f 1", "text [abc]"}},
        {"words back to back", "\\b\\i\\ul0", {"word b", "word i", "word ul 0"}},
        {"case matters", "\\PAR", {"word PAR"}},
        {"huge parameter saturates", "\\fs99999999999999999999", {"word fs 2147483647"}},
        {"huge negative saturates", "\\fs-99999999999999999999", {"word fs -2147483648"}},
    });
}

TEST(RtfTokenizerTest, LongControlWordIsCutToTheLimit) {
    const QString name(40, QLatin1Char('a'));
    const QString input = QStringLiteral("\\") + name + QStringLiteral("5 z");
    RtfTokenizer tokenizer(input);
    const RtfTokenizer::Token word = tokenizer.next();
    ASSERT_EQ(word.type, RtfTokenizer::Type::ControlWord);
    EXPECT_EQ(word.name.size(), RtfTokenizer::kMaxWordLength);
    EXPECT_EQ(word.parameter, 5);
    // The rest of the over-long name is consumed, not read as text.
    const RtfTokenizer::Token text = tokenizer.next();
    EXPECT_EQ(text.text, u"z");
}

TEST(RtfTokenizerTest, SymbolsAndHexEscapes) {
    runCases({
        {"escaped specials", "\\{\\}\\\\", {"symbol {", "symbol }", "symbol \\"}},
        {"non-breaking and optional", "\\~\\-\\_", {"symbol ~", "symbol -", "symbol _"}},
        {"ignorable destination", "{\\*\\foo x}", {"{", "symbol *", "word foo", "text [x]", "}"}},
        {"symbol keeps the following space", "\\~ x", {"symbol ~", "text [ x]"}},
        {"hex lower and upper", "\\'e9\\'C9", {"hex e9", "hex c9"}},
        {"hex takes two digits only", "\\'4142", {"hex 41", "text [42]"}},
        {"hex with one digit is dropped", "\\'4z", {"symbol NUL", "text [z]"}},
        {"hex with no digit", "\\'zz", {"symbol NUL", "text [zz]"}},
        {"hex at the end", "\\'", {"symbol NUL"}},
        {"backslash line end is a paragraph", "a\\\nb", {"text [a]", "symbol \n", "text [b]"}},
        {"backslash carriage return too", "a\\\rb", {"text [a]", "symbol \n", "text [b]"}},
        {"backslash at the end of input", "x\\", {"text [x]", "symbol \\"}},
    });
}

TEST(RtfTokenizerTest, UnicodeEscapeIsAWordWithItsFallback) {
    runCases({
        {"positive", "\\u8364?", {"word u 8364", "text [?]"}},
        {"negative for the upper half", "\\u-3913 x", {"word u -3913", "text [x]"}},
        {"skip count", "\\uc2\\u1046\\'81\\'87", {"word uc 2", "word u 1046", "hex 81", "hex 87"}},
    });
}

TEST(RtfTokenizerTest, GroupsTextAndLineEnds) {
    runCases({
        {"nested groups", "{{a}}", {"{", "{", "text [a]", "}", "}"}},
        {"unbalanced open", "{{", {"{", "{"}},
        {"unbalanced close", "}}a", {"}", "}", "text [a]"}},
        {"line ends are dropped", "ab\r\ncd\n", {"text [ab]", "text [cd]"}},
        {"line ends before a word", "\n\r\\par", {"word par"}},
        {"empty input", "", {}},
        {"spaces are text", "  ", {"text [  ]"}},
        {"characters above a byte pass as text",
         QString::fromUtf8("\u00e9\u0416\\par"),
         {QString::fromUtf8("text [\u00e9\u0416]"), "word par"}},
    });
}

TEST(RtfTokenizerTest, BinaryData) {
    runCases({
        {"exact length", "\\bin3 a{}b", {"bin [a{}]", "text [b]"}},
        {"specials inside are data", "\\bin4 \\par", {"bin [\\par]"}},
        {"length beyond input takes the rest", "\\bin100 xyz", {"bin [xyz]"}},
        {"zero length", "\\bin0 x", {"bin []", "text [x]"}},
        {"negative length is empty", "\\bin-5 x", {"bin []", "text [x]"}},
        {"no parameter is a plain word", "\\bin x", {"word bin", "text [x]"}},
        {"no space before data", "\\bin2ab", {"bin [ab]"}},
    });
}

TEST(RtfTokenizerTest, DocumentHeader) {
    const QString header = QStringLiteral(
        "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fnil\\fcharset0 Arial;}}\r\n"
        "\\pard\\plain\\f0\\fs20 Dear \\b Client\\b0 ,\\par\r\n}");
    EXPECT_EQ(tokens(header), (QStringList{"{",
                                           "word rtf 1",
                                           "word ansi",
                                           "word ansicpg 1252",
                                           "word deff 0",
                                           "{",
                                           "word fonttbl",
                                           "{",
                                           "word f 0",
                                           "word fnil",
                                           "word fcharset 0",
                                           "text [Arial;]",
                                           "}",
                                           "}",
                                           "word pard",
                                           "word plain",
                                           "word f 0",
                                           "word fs 20",
                                           "text [Dear ]",
                                           "word b",
                                           "text [Client]",
                                           "word b 0",
                                           "text [,]",
                                           "word par",
                                           "}"}));
}
