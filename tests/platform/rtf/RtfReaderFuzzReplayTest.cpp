// Replays the fuzz target's seed corpus and hostile inputs under the normal
// build, so that the reader's safety is checked in every run of the suite.

#include "../fuzz/RtfFuzzTarget.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <gtest/gtest.h>

namespace {

void replay(const QByteArray& bytes) {
    readRtfForFuzzing(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                      static_cast<std::size_t>(bytes.size()));
}

TEST(RtfReaderFuzzReplay, SeedCorpus) {
    const QDir corpus(QStringLiteral(QM_TEST_DATA_DIR "/../../fuzz/corpus"));
    const QStringList files = corpus.entryList(QDir::Files);
    ASSERT_FALSE(files.isEmpty());
    for (const QString& file : files) {
        SCOPED_TRACE(file.toStdString());
        const QByteArray bytes = readTestFile(corpus.filePath(file));
        replay(bytes);
        // Every prefix of a small file too: truncated input is the common fault.
        for (qsizetype cut = 1; cut < bytes.size() && cut < 600; cut += 7) {
            replay(bytes.left(cut));
        }
    }
}

struct HostileCase {
    const char* name;
    QByteArray bytes;
};

class HostileInputTest : public ::testing::TestWithParam<HostileCase> {};

TEST_P(HostileInputTest, ReadsWithoutFault) {
    replay(GetParam().bytes);
}

QByteArray nested(int depth) {
    return QByteArray("{\\rtf1 ") + QByteArray(depth, '{') + "deep" + QByteArray(depth, '}') + "}";
}

INSTANTIATE_TEST_SUITE_P(
    Reader, HostileInputTest,
    ::testing::Values(
        HostileCase{"HundredThousandNestedGroups", nested(100000)},
        HostileCase{"UnclosedNesting", QByteArray("{\\rtf1 ") + QByteArray(100000, '{') + "x"},
        HostileCase{"BinClaimingFourGigabytes", QByteArray("{\\rtf1 a\\bin4294967296 xyz}")},
        HostileCase{"BinNegative", QByteArray("{\\rtf1 a\\bin-5 xyz}")},
        HostileCase{"UnicodeOutOfRange",
                    QByteArray("{\\rtf1 \\u2147483647?\\u-2147483648?\\uc99 x}")},
        HostileCase{"HugeParameters",
                    QByteArray("{\\rtf1\\fs999999999\\li-99999999999\\cellx9 x}")},
        HostileCase{"PictureWithBrokenHex",
                    QByteArray("{\\rtf1{\\pict\\pngblip\\picw99999\\pich99999 89504e47zzzz0d0a}}")},
        HostileCase{
            "PictureClaimingHugeSize",
            QByteArray("{\\rtf1{\\pict\\jpegblip\\picwgoal2147483647\\pichgoal2147483647 ff}}")},
        HostileCase{"CellsWithoutRows",
                    QByteArray("{\\rtf1\\cell\\cell\\row\\row\\intbl\\cell x}")},
        HostileCase{"ManyColumns",
                    QByteArray("{\\rtf1\\intbl ") + QByteArray("x\\cell ").repeated(500) + "}"},
        HostileCase{"ListWithoutTables", QByteArray("{\\rtf1\\ls99\\ilvl99 a\\par\\ls-1 b}")},
        HostileCase{"NulBytesAndControls", QByteArray("{\\rtf1 a\0b\x01\x7f\\'00c}", 24)},
        HostileCase{"OnlyHeader", QByteArray("{\\rtf")},
        HostileCase{"BackslashAtEnd", QByteArray("{\\rtf1 x\\")},
        HostileCase{"TrailingGarbageAfterClose", QByteArray("{\\rtf1 x}\xff\xfe{{{{\\bin9999")}),
    [](const auto& p) { return std::string(p.param.name); });

TEST(RtfReaderFuzzReplay, LargeFileReadsWhole) {
    // Five megabytes of paragraphs: read in bounded time and memory.
    QByteArray big("{\\rtf1\\ansi ");
    const QByteArray paragraph("Some text with \\b bold\\b0  words and \\'e9 accents.\\par\n");
    while (big.size() < 5 * 1024 * 1024) {
        big += paragraph;
    }
    big += "}";
    RichTextBox box;
    box.setTextRTF(QString::fromLatin1(big));
    EXPECT_EQ(box.Text().count(QLatin1String("\r\n")) + 1, big.count("\\par") - 0);
}

} // namespace
