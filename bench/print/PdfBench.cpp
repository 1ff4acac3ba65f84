// Writing PDF: the generated letters file of about 5 MB (some 2,900 sheets)
// from its RTF to a PDF in one run, as `quillmere-pad pdf` does it; a merged
// batch of 1,000 two-page letters into one PDF, and into 1,000 PDFs. Run
// from a Release build, under the offscreen platform:
//   QT_QPA_PLATFORM=offscreen bench/print/pdf-bench
// For the comparison with another office suite, time its headless
// conversion of the same RTF (written by --benchmark_filter=WriteRtf to
// $TMPDIR/letters-5mb.rtf) on the same machine.

#include "../support/GeneratedLetters.h"
#include "documents/DocumentModel.h"
#include "documents/PageLayout.h"
#include "platform/ProgressReporter.h"
#include "platform/richtext/RichTextBox.h"
#include "print/PdfExport.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

namespace {

// A letter of two sheets.
QString twoPageLetter(int client) {
    QString rtf =
        QStringLiteral("{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Liberation Serif;}}\\f0\\fs24 "
                       "Dear client %1,\\par\\par ")
            .arg(client);
    for (int p = 0; p < 9; ++p) {
        rtf += QStringLiteral("We have reviewed the accounts of your company for the year and "
                              "enclose the draft return, due on the last day of the quarter; "
                              "please send the invoices and bank statements in time.\\par\\par ");
    }
    return rtf + QStringLiteral("\\page Schedule of documents for client %1.\\par }").arg(client);
}

std::vector<PrintLetter> batch() {
    std::vector<PrintLetter> letters;
    for (int i = 0; i < 1000; ++i) {
        letters.push_back({QStringLiteral("Client %1").arg(i), twoPageLetter(i)});
    }
    return letters;
}

void BM_WriteRtf(benchmark::State& state) {
    for (auto _ : state) {
        QFile file(QDir::temp().filePath(QStringLiteral("letters-5mb.rtf")));
        file.open(QIODevice::WriteOnly);
        file.write(generatedLetters());
    }
}
BENCHMARK(BM_WriteRtf)->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_LettersFileToPdf(benchmark::State& state) {
    const QTemporaryDir dir;
    const QString source = dir.filePath(QStringLiteral("letters.rtf"));
    {
        QFile file(source);
        file.open(QIODevice::WriteOnly);
        file.write(generatedLetters());
    }
    int pages = 0;
    for (auto _ : state) {
        const auto document = PaginatedDocument::openToWrite(source);
        NullProgress progress;
        pages = writeDocumentPdf(document->layout, document->model,
                                 dir.filePath(QStringLiteral("letters.pdf")), PageRange{},
                                 QStringLiteral("Letters"), progress)
                    .pages;
    }
    state.counters["sheets"] = pages;
}
BENCHMARK(BM_LettersFileToPdf)->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_MergedBatchToOnePdf(benchmark::State& state) {
    const QTemporaryDir dir;
    const auto letters = batch();
    int pages = 0;
    for (auto _ : state) {
        NullProgress progress;
        pages = writeLettersPdf(letters, DocumentModel(), dir.filePath(QStringLiteral("batch.pdf")),
                                QStringLiteral("Batch"), progress)
                    .pages;
    }
    state.counters["sheets"] = pages;
}
BENCHMARK(BM_MergedBatchToOnePdf)->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_MergedBatchToPdfPerLetter(benchmark::State& state) {
    const QTemporaryDir dir;
    const auto letters = batch();
    for (auto _ : state) {
        for (size_t i = 0; i < letters.size(); ++i) {
            NullProgress progress;
            writeLettersPdf({letters[i]}, DocumentModel(),
                            dir.filePath(QStringLiteral("letter-%1.pdf").arg(i)), letters[i].name,
                            progress);
        }
    }
}
BENCHMARK(BM_MergedBatchToPdfPerLetter)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace
