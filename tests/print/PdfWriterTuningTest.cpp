#include "print/PdfWriterTuning.h"

#include "platform/ProgressReporter.h"
#include "print/PdfExport.h"
#include "support/TestEnvironment.h"

#include <QByteArray>
#include <QFile>
#include <gtest/gtest.h>
#include <memory>
#include <thread>
#include <zlib.h>

namespace {

// What a sheet's content stream looks like: text operators and numbers.
QByteArray contentLikeText() {
    QByteArray text;
    for (int i = 0; i < 3000; ++i) {
        text += QByteArray::number(i % 97 * 1.5) + " 0 Td <00" + QByteArray::number(i % 60, 16) +
                "> Tj\n";
    }
    return text;
}

// Deflates in one pass as Qt's PDF writer does: all input, then finish.
QByteArray deflateWith(const QByteArray& input, const std::function<int(z_stream&)>& init) {
    z_stream stream{};
    EXPECT_EQ(init(stream), Z_OK);
    QByteArray output(int(deflateBound(&stream, uLong(input.size()))), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(input.constData()));
    stream.avail_in = uInt(input.size());
    stream.next_out = reinterpret_cast<Bytef*>(output.data());
    stream.avail_out = uInt(output.size());
    EXPECT_EQ(deflate(&stream, Z_NO_FLUSH), Z_OK);
    EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
    output.resize(int(stream.total_out));
    deflateEnd(&stream);
    return output;
}

QByteArray deflateDefault(const QByteArray& input) {
    return deflateWith(
        input, [](z_stream& stream) { return deflateInit(&stream, Z_DEFAULT_COMPRESSION); });
}

QByteArray deflateAt(const QByteArray& input, int level) {
    return deflateWith(input, [level](z_stream& stream) {
        return deflateInit2(&stream, level, Z_DEFLATED, MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
    });
}

QByteArray inflateAll(const QByteArray& input) {
    z_stream stream{};
    EXPECT_EQ(inflateInit(&stream), Z_OK);
    QByteArray output;
    QByteArray chunk(65536, '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(input.constData()));
    stream.avail_in = uInt(input.size());
    int result = Z_OK;
    while (result == Z_OK) {
        stream.next_out = reinterpret_cast<Bytef*>(chunk.data());
        stream.avail_out = uInt(chunk.size());
        result = inflate(&stream, Z_NO_FLUSH);
        output += chunk.left(chunk.size() - int(stream.avail_out));
    }
    EXPECT_EQ(result, Z_STREAM_END);
    inflateEnd(&stream);
    return output;
}

TEST(PdfWriterTuningTest, TheFastLevelHoldsOnItsThreadUntilTheLastScopeCloses) {
    EXPECT_EQ(PdfWriterTuning::defaultLevelInForce(), Z_DEFAULT_COMPRESSION);
    auto first = std::make_unique<PdfWriterTuning>();
    auto second = std::make_unique<PdfWriterTuning>();
    EXPECT_EQ(PdfWriterTuning::defaultLevelInForce(), PdfWriterTuning::FastLevel);
    int elsewhere = 0;
    std::thread([&elsewhere] { elsewhere = PdfWriterTuning::defaultLevelInForce(); }).join();
    EXPECT_EQ(elsewhere, Z_DEFAULT_COMPRESSION);
    // Closed out of order: the one still open keeps the level.
    first.reset();
    EXPECT_EQ(PdfWriterTuning::defaultLevelInForce(), PdfWriterTuning::FastLevel);
    second.reset();
    EXPECT_EQ(PdfWriterTuning::defaultLevelInForce(), Z_DEFAULT_COMPRESSION);
}

TEST(PdfWriterTuningTest, OnlyTheDefaultLevelChangesAndOnlyInsideAScope) {
    const QByteArray text = contentLikeText();
    const QByteArray fast = deflateAt(text, PdfWriterTuning::FastLevel);
    const QByteArray usual = deflateAt(text, 6);
    ASSERT_NE(fast, usual);
    EXPECT_EQ(deflateDefault(text), usual);
    {
        const PdfWriterTuning tuning;
        EXPECT_EQ(deflateDefault(text), fast);
        // A caller that names its level gets it.
        EXPECT_EQ(deflateWith(text, [](z_stream& s) { return deflateInit(&s, 9); }),
                  deflateAt(text, 9));
        EXPECT_EQ(inflateAll(deflateDefault(text)), text);
    }
    EXPECT_EQ(deflateDefault(text), usual);
}

TEST(PdfWriterTuningTest, QtsPdfWriterDeflatesTheSheetsAtTheFastLevel) {
    TestEnvironment env;
    const auto document =
        PaginatedDocument::open(testDataPath(QStringLiteral("documents/three-page-letter.rtf")));
    const QString pdf = env.path(QStringLiteral("letter.pdf"));
    NullProgress progress;
    ASSERT_TRUE(
        writeDocumentPdf(document->layout, document->model, pdf, PageRange{}, {}, progress).ok());
    QFile file(pdf);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    // The first stream is the first sheet's content.
    const qsizetype begin = bytes.indexOf("stream\n") + 7;
    const qsizetype end = bytes.indexOf("endstream", begin);
    ASSERT_GT(begin, 7);
    ASSERT_GT(end, begin);
    QByteArray stored = bytes.mid(begin, end - begin);
    if (stored.endsWith('\n')) {
        stored.chop(1);
    }
    const QByteArray content = inflateAll(stored);
    ASSERT_TRUE(content.contains("Tj")) << content.left(200).toStdString();
    EXPECT_EQ(stored, deflateAt(content, PdfWriterTuning::FastLevel));
    // And the scope closed with the file.
    EXPECT_EQ(PdfWriterTuning::defaultLevelInForce(), Z_DEFAULT_COMPRESSION);
}

} // namespace
