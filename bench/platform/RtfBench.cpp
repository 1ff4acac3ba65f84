// Load and save of a generated 5 MB RTF of some 300 pages, and the page
// measurement of a 60-line page. Run from a Release build:
//   bench/platform/rtf-bench [--benchmark_repetitions=N]
// scripts/bench-rtf-external.sh times pandoc and LibreOffice on the same file.

#include "platform/richtext/RichTextBox.h"

#include <QBuffer>
#include <QFile>
#include <QGuiApplication>
#include <QPageSize>
#include <QPdfWriter>
#include <benchmark/benchmark.h>

namespace {

// About 5 MB of letter-like paragraphs with formatting changes, accents and
// placeholders.
QByteArray generatedDocument() {
    QByteArray rtf("{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fnil Arial;}{\\f1\\fnil "
                   "Times New Roman;}}{\\colortbl "
                   ";\\red200\\green0\\blue0;}\\viewkind4\\uc1\\pard\\f0\\fs20 ");
    int n = 0;
    while (rtf.size() < 5 * 1024 * 1024) {
        rtf += "Dear \\b \\'abContact First Name\\'bb\\b0 , this is paragraph " +
               QByteArray::number(n++) +
               " of the quarterly letter about the caf\\'e9 accounts of \\i \\'abCompany "
               "Name\\'bb\\i0 "
               ". The \\cf1 balance\\cf0  stands at \\'80 1,234.56 and is due on \\f1 "
               "\\'ab(Year End Date, mmmm d yyyy)\\'bb\\f0 .\\par\r\n";
        if (n % 40 == 0) {
            rtf += "\\pard\\qc\\b Section " + QByteArray::number(n / 40) + "\\b0\\par\\pard ";
        }
    }
    rtf += "}";
    return rtf;
}

const QByteArray& document() {
    static const QByteArray bytes = generatedDocument();
    return bytes;
}

void BM_LoadRtf(benchmark::State& state) {
    const QString text = QString::fromLatin1(document());
    for (auto _ : state) {
        RichTextBox box;
        box.setTextRTF(text);
        benchmark::DoNotOptimize(box.TextLength());
    }
    state.SetBytesProcessed(state.iterations() * document().size());
}
BENCHMARK(BM_LoadRtf)->Unit(benchmark::kMillisecond);

void BM_SaveRtf(benchmark::State& state) {
    RichTextBox box;
    box.setTextRTF(QString::fromLatin1(document()));
    for (auto _ : state) {
        benchmark::DoNotOptimize(box.TextRTF().size());
    }
}
BENCHMARK(BM_SaveRtf)->Unit(benchmark::kMillisecond);

void BM_MeasurePage(benchmark::State& state) {
    QBuffer sink;
    sink.open(QIODevice::WriteOnly);
    QPdfWriter pdf(&sink);
    pdf.setPageSize(QPageSize(QPageSize::Letter));
    pdf.setResolution(1200);
    RichTextBox box;
    box.setTargetDevice(&pdf, 12240 - 2880);
    QStringList lines;
    for (int i = 0; i < 60; ++i) {
        lines << QStringLiteral("Line %1 of a page of text, with words enough to fill it.").arg(i);
    }
    box.setText(lines.join(QLatin1String("\r\n")));
    RichTextBox::FormatRange range;
    range.hdc = range.hdcTarget = &pdf;
    range.rc = QRect(1440, 1440, 12240 - 2880, 15840 - 2880);
    range.rcPage = QRect(0, 0, 12240, 15840);
    for (auto _ : state) {
        // A keystroke changes the text, so the layout is redone each time.
        box.setSelStart(0);
        box.typeText(QStringLiteral("x"));
        benchmark::DoNotOptimize(box.formatRange(range, false));
        box.releaseFormatCache();
    }
}
BENCHMARK(BM_MeasurePage)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    if (argc > 2 && QByteArray(argv[1]) == "--write") {
        QFile out(QString::fromLocal8Bit(argv[2]));
        out.open(QIODevice::WriteOnly);
        out.write(document());
        return 0;
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
