#include "platform/text/CodePage1252.h"

#include <gtest/gtest.h>

namespace {

struct ByteCase {
    unsigned char byte;
    char16_t character;
};

// The typographic block, where the code page departs from Latin-1.
const ByteCase kTypographic[] = {
    {0x80, 0x20AC}, {0x82, 0x201A}, {0x83, 0x0192}, {0x84, 0x201E}, {0x85, 0x2026}, {0x86, 0x2020},
    {0x87, 0x2021}, {0x88, 0x02C6}, {0x89, 0x2030}, {0x8A, 0x0160}, {0x8B, 0x2039}, {0x8C, 0x0152},
    {0x8E, 0x017D}, {0x91, 0x2018}, {0x92, 0x2019}, {0x93, 0x201C}, {0x94, 0x201D}, {0x95, 0x2022},
    {0x96, 0x2013}, {0x97, 0x2014}, {0x98, 0x02DC}, {0x99, 0x2122}, {0x9A, 0x0161}, {0x9B, 0x203A},
    {0x9C, 0x0153}, {0x9E, 0x017E}, {0x9F, 0x0178},
};

const unsigned char kUnused[] = {0x81, 0x8D, 0x8F, 0x90, 0x9D};

} // namespace

TEST(CodePage1252Test, TypographicBlockMapsBothWays) {
    for (const ByteCase& c : kTypographic) {
        SCOPED_TRACE(c.byte);
        EXPECT_EQ(CodePage1252::toUnicode(c.byte).unicode(), c.character);
        const auto back = CodePage1252::fromUnicode(QChar(c.character));
        ASSERT_TRUE(back.has_value());
        EXPECT_EQ(*back, c.byte);
    }
}

TEST(CodePage1252Test, UnusedBytesDecodeToTheirControlAndComeBack) {
    for (const unsigned char byte : kUnused) {
        SCOPED_TRACE(byte);
        EXPECT_EQ(CodePage1252::toUnicode(byte).unicode(), char16_t(byte));
        const auto back = CodePage1252::fromUnicode(QChar(char16_t(byte)));
        ASSERT_TRUE(back.has_value());
        EXPECT_EQ(*back, byte);
    }
}

TEST(CodePage1252Test, ControlsOfTheTypographicBlockHaveNoByte) {
    // U+0080 is the euro's byte in Latin-1, but here 0x80 is the euro: the
    // control character itself cannot be written.
    for (const ByteCase& c : kTypographic) {
        SCOPED_TRACE(c.byte);
        EXPECT_FALSE(CodePage1252::fromUnicode(QChar(char16_t(c.byte))).has_value());
    }
}

TEST(CodePage1252Test, LatinOneRangesAreIdentity) {
    for (int b = 0; b < 256; ++b) {
        if (b >= 0x80 && b <= 0x9F) {
            continue;
        }
        SCOPED_TRACE(b);
        EXPECT_EQ(CodePage1252::toUnicode(static_cast<unsigned char>(b)).unicode(), char16_t(b));
        EXPECT_EQ(CodePage1252::fromUnicode(QChar(char16_t(b))), static_cast<unsigned char>(b));
    }
}

TEST(CodePage1252Test, EveryByteSurvivesARoundTrip) {
    QByteArray all;
    for (int b = 0; b < 256; ++b) {
        all.append(static_cast<char>(b));
    }
    const QString text = CodePage1252::decode(all);
    ASSERT_EQ(text.size(), 256);
    EXPECT_TRUE(CodePage1252::canEncode(text));
    EXPECT_EQ(CodePage1252::encode(text), all);
}

TEST(CodePage1252Test, CharactersOutsideTheCodePage) {
    const struct {
        const char* name;
        QString text;
        QByteArray encoded;
        bool encodable;
    } cases[] = {
        {"plain", QStringLiteral("Smith & Co"), "Smith & Co", true},
        {"accented and typographic", QString::fromUtf8("Caf\u00e9 \u201cA\u201d \u20ac5"),
         "Caf\xe9 \x93"
         "A\x94 \x80"
         "5",
         true},
        {"cyrillic", QString::fromUtf8("\u0416ar"), "?ar", false},
        {"surrogate pair becomes two replacements", QString::fromUtf8("a\U0001F600b"), "a??b",
         false},
        {"empty", QString(), QByteArray(), true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(CodePage1252::encode(c.text), c.encoded);
        EXPECT_EQ(CodePage1252::canEncode(c.text), c.encodable);
    }
    EXPECT_EQ(CodePage1252::encode(QString::fromUtf8("\u0416"), '_'), QByteArray("_"));
}

TEST(CodePageDecoderTest, CodePagesAndFallbacks) {
    const struct {
        int codePage;
        int expected; // the code page the decoder settles on
        QByteArray bytes;
        QString text;
    } cases[] = {
        {1252, 1252, "\x80\x81", QString::fromUtf8("\u20ac\u0081")},
        {28591, 28591, "\x80\xe9", QString::fromUtf8("\u0080\u00e9")},
        {0, 1252, "\x93q\x94", QString::fromUtf8("\u201cq\u201d")},
        {-5, 1252, "\x85", QString::fromUtf8("\u2026")},
        {12345, 1252, "\x99", QString::fromUtf8("\u2122")},
        {65001, 65001, "\xc3\xa9", QString::fromUtf8("\u00e9")},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.codePage);
        const CodePageDecoder decoder(c.codePage);
        EXPECT_EQ(decoder.codePage(), c.expected);
        EXPECT_EQ(decoder.decode(c.bytes), c.text);
    }
}

TEST(CodePageDecoderTest, PlatformCodePagesDecodeWhenAvailable) {
    // Cyrillic where the platform has the converter, 1252 otherwise: either
    // way the decoder never loses the bytes.
    const CodePageDecoder cyrillic(1251);
    const QString text = cyrillic.decode("\xc6");
    if (cyrillic.codePage() == 1251) {
        EXPECT_EQ(text, QString::fromUtf8("\u0416"));
    } else {
        EXPECT_EQ(cyrillic.codePage(), 1252);
        EXPECT_EQ(text, QString::fromUtf8("\u00c6"));
    }
}

TEST(CodePageDecoderTest, FontCharsets) {
    const struct {
        int charset;
        int codePage;
    } cases[] = {{0, 1252},   {1, 1252},   {2, 1252},   {77, 10000}, {128, 932},  {161, 1253},
                 {162, 1254}, {177, 1255}, {178, 1256}, {186, 1257}, {204, 1251}, {238, 1250},
                 {255, 437},  {3, 0},      {-1, 0},     {999, 0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.charset);
        EXPECT_EQ(CodePageDecoder::codePageForCharset(c.charset), c.codePage);
    }
}
