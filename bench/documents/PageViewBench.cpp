// The page view on a generated letters file of about 5 MB (some 2,000
// sheets): opening it to the first painted sheet, against the RTF load
// alone; a keystroke with the repaint of the visible sheets on sheet 1 and
// on sheet 1,000; and the pagination the `pages` command prints. Run from a
// Release build, under the offscreen platform:
//   QT_QPA_PLATFORM=offscreen bench/documents/page-view-bench

#include "../support/GeneratedLetters.h"
#include "documents/DocumentModel.h"
#include "documents/PageLayout.h"
#include "platform/richtext/RichTextBox.h"
#include "ui/PageView.h"

#include <QApplication>
#include <QKeyEvent>
#include <QTextCursor>
#include <QTextDocument>
#include <benchmark/benchmark.h>

namespace {

const QString& letters() {
    static const QString text = QString::fromLatin1(generatedLetters());
    return text;
}

struct Window {
    DocumentModel model;
    RichTextBox box;
    PageLayout layout{box, model};
    PageView view{box, layout};

    void load() {
        layout.beginLoad();
        box.setTextRTF(letters());
        layout.endLoad();
    }
};

void BM_LoadRtfAlone(benchmark::State& state) {
    for (auto _ : state) {
        RichTextBox box;
        box.setTextRTF(letters());
        benchmark::DoNotOptimize(box.document()->characterCount());
    }
}
BENCHMARK(BM_LoadRtfAlone)->Unit(benchmark::kMillisecond);

void BM_OpenToFirstSheet(benchmark::State& state) {
    for (auto _ : state) {
        Window w;
        w.view.resize(1000, 800);
        w.load();
        benchmark::DoNotOptimize(w.view.viewport()->grab());
    }
}
BENCHMARK(BM_OpenToFirstSheet)->Unit(benchmark::kMillisecond);

void BM_PagesCommandLayout(benchmark::State& state) {
    for (auto _ : state) {
        Window w;
        w.load();
        const int pages = w.layout.totalPages();
        for (int page = 1; page <= pages; ++page) {
            benchmark::DoNotOptimize(w.layout.sheetText(page).left(60));
        }
        state.counters["pages"] = pages;
    }
}
BENCHMARK(BM_PagesCommandLayout)->Unit(benchmark::kMillisecond);

// One character typed and taken back again on a sheet, each followed by the
// repaint of what is in view.
void BM_KeystrokeOnSheet(benchmark::State& state) {
    Window w;
    w.view.resize(1000, 800);
    w.load();
    const int pages = w.layout.totalPages();
    const int page = std::min<int>(state.range(0), pages);
    QTextCursor cursor = w.box.textCursor();
    cursor.setPosition(w.layout.firstPositionOfSheet(page) + 5);
    w.box.setTextCursor(cursor);
    w.view.ensureCaretVisible();
    w.view.viewport()->grab();
    for (auto _ : state) {
        QKeyEvent type(QEvent::KeyPress, Qt::Key_X, Qt::NoModifier, QStringLiteral("x"));
        QApplication::sendEvent(&w.view, &type);
        w.view.viewport()->repaint();
        QKeyEvent erase(QEvent::KeyPress, Qt::Key_Backspace, Qt::NoModifier);
        QApplication::sendEvent(&w.view, &erase);
        w.view.viewport()->repaint();
    }
    state.counters["page"] = w.layout.currentPage();
    state.counters["pages"] = pages;
}
BENCHMARK(BM_KeystrokeOnSheet)->Arg(1)->Arg(1000)->Unit(benchmark::kMillisecond);

} // namespace
