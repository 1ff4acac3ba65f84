// Replace All over the generated letters file of about 5 MB, laid out in
// sheets as a document window holds it: a word that occurs 10,000 times is
// replaced, and the whole change must come back with one undo. Run from a
// Release build:
//   bench/documents/find-replace-bench

#include "../support/GeneratedLetters.h"
#include "documents/DocumentModel.h"
#include "documents/FindReplace.h"
#include "documents/PageLayout.h"
#include "platform/richtext/RichTextBox.h"

#include <QGuiApplication>
#include <QTextDocument>
#include <benchmark/benchmark.h>

namespace {

constexpr int kOccurrences = 10000;

// The letters with the first 10,000 "invoices" renamed, so that the word
// replaced occurs exactly that often.
QString lettersWithTenThousandVouchers() {
    QByteArray rtf = generatedLetters();
    qsizetype at = 0;
    for (int i = 0; i < kOccurrences; ++i) {
        at = rtf.indexOf("invoices", at);
        if (at < 0) {
            break;
        }
        rtf.replace(at, 8, "vouchers");
    }
    return QString::fromLatin1(rtf);
}

void BM_ReplaceAllTenThousand(benchmark::State& state) {
    DocumentModel model;
    RichTextBox box;
    PageLayout layout(box, model);
    layout.beginLoad();
    box.setTextRTF(lettersWithTenThousandVouchers());
    layout.endLoad();
    FindReplace search;
    search.findText = QStringLiteral("vouchers");
    search.replaceText = QStringLiteral("receipts");
    search.wholeWord = true;
    for (auto _ : state) {
        const FindReplace::Result result = search.replaceAll(box);
        state.PauseTiming();
        if (result.message != FindReplace::replacementsMessage(kOccurrences)) {
            state.SkipWithError(qPrintable(QStringLiteral("replace all said: ") + result.message));
            break;
        }
        box.undo();
        if (box.canUndo() || box.Find(search.findText, 0, -1, RichTextBox::rtfNoHighlight) < 0) {
            state.SkipWithError("the replacements did not come back with one undo");
            break;
        }
        state.ResumeTiming();
    }
    state.counters["pages"] = layout.totalPages();
}
BENCHMARK(BM_ReplaceAllTenThousand)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
