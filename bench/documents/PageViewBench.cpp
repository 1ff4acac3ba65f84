// The page view on a generated letters file of about 5 MB (some 2,900
// sheets): opening it to the first painted sheet, against the RTF load
// alone; the same through the main window as File > Open does it (a file
// that big opens in continuous display), and print preview of it to its
// first sheet; a keystroke with the repaint of the visible sheets on sheet
// 1 and on sheet 1,000 (one keystroke an iteration, and its median), and
// the same with Return and Backspace; and the pagination the `pages`
// command prints. Run from a Release build, under the offscreen platform:
//   QT_QPA_PLATFORM=offscreen bench/documents/page-view-bench
// Peak memory: run one benchmark a process under /usr/bin/time -f %M, e.g.
// --benchmark_filter=BM_LoadRtfAlone against BM_PagesCommandLayout (the
// whole document laid out) and BM_PreviewFirstSheet.

#include "../support/GeneratedLetters.h"
#include "context/AppContext.h"
#include "documents/DocumentModel.h"
#include "documents/PageLayout.h"
#include "platform/richtext/RichTextBox.h"
#include "ui/DocumentCommands.h"
#include "ui/PageView.h"
#include "ui/frmDocument.h"
#include "ui/frmMain.h"
#include "ui/frmPrintPreview.h"

#include <QApplication>
#include <QFile>
#include <QKeyEvent>
#include <QMdiSubWindow>
#include <QTemporaryDir>
#include <QTextCursor>
#include <QTextDocument>
#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <ctime>
#include <vector>

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

// The letters as a template file, the way File > Open reads it (an RTF file
// would be renamed into a template on opening).
QString lettersFile() {
    static QTemporaryDir dir;
    static const QString path = [] {
        const QString file = dir.filePath(QStringLiteral("letters.qmb"));
        QFile out(file);
        out.open(QIODevice::WriteOnly);
        out.write(generatedLetters());
        return file;
    }();
    return path;
}

frmDocument* activeDocument(const frmMain& window) {
    QMdiSubWindow* sub = window.activeDocumentWindow();
    return sub ? qobject_cast<frmDocument*>(sub->widget()) : nullptr;
}

// Through the main window's opening routine to the first painted sheet; at
// this size the window shows the document in continuous display.
void BM_WindowOpenToFirstSheet(benchmark::State& state) {
    const QString path = lettersFile();
    for (auto _ : state) {
        frmMain window;
        window.resize(1200, 900);
        window.show();
        documentCommands(window)->openExistingDocument(path, 0);
        frmDocument* document = activeDocument(window);
        benchmark::DoNotOptimize(document->pageView()->viewport()->grab());
        state.counters["display"] = document->currentPageDisplayType;
        state.PauseTiming();
        document->setHasDocumentChanged(false);
        app().isCreatingDocument = false;
        state.ResumeTiming();
    }
}
BENCHMARK(BM_WindowOpenToFirstSheet)->Unit(benchmark::kMillisecond)->Iterations(3);

// File > Print Preview on the opened file, to its first sheet drawn.
void BM_PreviewFirstSheet(benchmark::State& state) {
    frmMain window;
    window.resize(1200, 900);
    window.show();
    documentCommands(window)->openExistingDocument(lettersFile(), 0);
    int sheets = 0;
    for (auto _ : state) {
        window.runCommand(QStringLiteral("mnuFilePrintPreview"));
        auto* preview = window.findChild<frmPrintPreview*>();
        QWidget* canvas = preview->findChild<QWidget*>(QStringLiteral("picPreview"));
        benchmark::DoNotOptimize(canvas->grab());
        sheets = preview->navigator().sheetCount();
        state.PauseTiming();
        delete preview;
        state.ResumeTiming();
    }
    state.counters["sheets"] = sheets;
}
BENCHMARK(BM_PreviewFirstSheet)->Unit(benchmark::kMillisecond)->Iterations(3);

// Keystrokes on a sheet, each followed by the repaint of what is in view:
// a character typed, then taken back with Backspace, and so on, one
// keystroke an iteration. The view is shown, or the repaint would draw
// nothing.
// Counts the paint events a widget receives, so that a benchmark can show
// that its repaints did paint.
class PaintCounter : public QObject {
public:
    explicit PaintCounter(QWidget* widget) { widget->installEventFilter(this); }
    int count = 0;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            ++count;
        }
        return QObject::eventFilter(watched, event);
    }
};

// The median of each keystroke's time, wall clock and this thread's CPU,
// in milliseconds: the target is a median, and on a shared machine the CPU
// time is the steadier of the two.
class KeystrokeTimes {
public:
    void start() {
        m_wall = std::chrono::steady_clock::now();
        m_cpu = cpuNow();
    }
    void stop() {
        m_walls.push_back(
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - m_wall)
                .count());
        m_cpus.push_back(cpuNow() - m_cpu);
    }
    void report(benchmark::State& state) {
        state.counters["median_ms"] = median(m_walls);
        state.counters["median_cpu_ms"] = median(m_cpus);
    }

private:
    static double cpuNow() {
        timespec now{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
        return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
    }
    static double median(std::vector<double> values) {
        if (values.empty()) {
            return 0;
        }
        const auto middle = values.begin() + std::ptrdiff_t(values.size() / 2);
        std::nth_element(values.begin(), middle, values.end());
        return *middle;
    }
    std::chrono::steady_clock::time_point m_wall;
    double m_cpu = 0;
    std::vector<double> m_walls;
    std::vector<double> m_cpus;
};

QKeyEvent keystroke(benchmark::IterationCount n, Qt::Key typed = Qt::Key_X,
                    const QString& text = QStringLiteral("x")) {
    if (n % 2 == 0) {
        return {QEvent::KeyPress, typed, Qt::NoModifier, text};
    }
    return {QEvent::KeyPress, Qt::Key_Backspace, Qt::NoModifier};
}

void keystrokesOnSheet(benchmark::State& state, Qt::Key typed, const QString& text) {
    Window w;
    w.view.resize(1000, 800);
    w.view.show();
    w.load();
    const int pages = w.layout.totalPages();
    const int page = std::min<int>(state.range(0), pages);
    QTextCursor cursor = w.box.textCursor();
    cursor.setPosition(w.layout.firstPositionOfSheet(page) + 5);
    w.box.setTextCursor(cursor);
    w.view.ensureCaretVisible();
    // Shown is not yet painted: the window must be exposed first.
    QApplication::processEvents();
    w.view.viewport()->repaint();
    const int inPlace = w.layout.editsInPlace();
    PaintCounter paints(w.view.viewport());
    KeystrokeTimes times;
    benchmark::IterationCount n = 0;
    for (auto _ : state) {
        QKeyEvent key = keystroke(n++, typed, text);
        times.start();
        QApplication::sendEvent(&w.view, &key);
        w.view.viewport()->repaint();
        times.stop();
    }
    times.report(state);
    // An odd count leaves an x behind; the pages are counted before.
    state.counters["page"] = w.layout.currentPage();
    state.counters["pages"] = pages;
    state.counters["inPlace"] = double(w.layout.editsInPlace() - inPlace) / double(n);
    state.counters["paints"] = double(paints.count) / double(n);
}
void BM_KeystrokeOnSheet(benchmark::State& state) {
    keystrokesOnSheet(state, Qt::Key_X, QStringLiteral("x"));
}
BENCHMARK(BM_KeystrokeOnSheet)->Arg(1)->Arg(1000)->Unit(benchmark::kMillisecond);

// Return and Backspace: a paragraph end added and taken away moves every
// line after it, which Qt's layout follows down to the document's end.
void BM_ParagraphEndOnSheet(benchmark::State& state) {
    keystrokesOnSheet(state, Qt::Key_Return, QStringLiteral("\r"));
}
BENCHMARK(BM_ParagraphEndOnSheet)->Arg(1)->Arg(1000)->Unit(benchmark::kMillisecond);

// The same in the main window, in page display, with all a keystroke sets
// off there: the status bar's line and page counts, command availability,
// the ruler, each let run by the event loop before the next key, which also
// paints what the keystroke changed.
void BM_WindowKeystrokeOnSheet(benchmark::State& state) {
    frmMain window;
    window.resize(1200, 900);
    window.show();
    frmDocument* document = window.openDocumentWindow(lettersFile());
    PageLayout& layout = document->pageLayout();
    const int pages = layout.totalPages();
    const int page = std::min<int>(state.range(0), pages);
    QTextCursor cursor = document->rtfText().textCursor();
    cursor.setPosition(layout.firstPositionOfSheet(page) + 5);
    document->rtfText().setTextCursor(cursor);
    PageView* view = document->pageView();
    view->setFocus();
    view->ensureCaretVisible();
    QApplication::processEvents();
    PaintCounter paints(view->viewport());
    KeystrokeTimes times;
    benchmark::IterationCount n = 0;
    for (auto _ : state) {
        QKeyEvent key = keystroke(n++);
        times.start();
        QApplication::sendEvent(view, &key);
        QApplication::processEvents();
        times.stop();
    }
    times.report(state);
    state.counters["paints"] = double(paints.count) / double(n);
    state.counters["page"] = layout.currentPage();
    state.counters["pages"] = pages;
    document->setHasDocumentChanged(false);
}
BENCHMARK(BM_WindowKeystrokeOnSheet)->Arg(1)->Arg(1000)->Unit(benchmark::kMillisecond);

} // namespace
