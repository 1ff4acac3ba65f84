// Command availability runs on every caret move, so it has to stay well
// under a millisecond. Three timings in one run:
//   ResetMenuStatus      the table alone, from a document state
//   BareSelectionChange  moving the selection in a text box nobody watches
//   WindowSelectionChange the same move in the main window's document, which
//                        reads the state, runs the table and applies it to
//                        every action and button
// The cost of availability is the difference of the last two.
//
//   cmake --build build-bench --target ui_bench
//   QT_QPA_PLATFORM=offscreen build-bench/bench/ui/ui_bench
#include "app/modMenuStatus.h"
#include "platform/richtext/RichTextBox.h"
#include "ui/frmDocument.h"
#include "ui/frmMain.h"

#include <QApplication>
#include <QMdiSubWindow>
#include <QTextDocument>
#include <benchmark/benchmark.h>

namespace {

const QString kLetter = QStringLiteral(
    "Dear Client,\nPlease find enclosed the financial statements for the year ended 31 March.\n"
    "Kindly sign and return the engagement letter.\nYours sincerely,\n");

void moveSelection(RichTextBox& box, int step) {
    QTextCursor c = box.textCursor();
    const int length = box.document()->characterCount() - 1;
    c.setPosition(step % length);
    c.setPosition((step * 7) % length, QTextCursor::KeepAnchor);
    box.setTextCursor(c);
}

void ResetMenuStatus(benchmark::State& state) {
    ActiveDocumentState doc;
    doc.changed = true;
    doc.fontName = QStringLiteral("Liberation Serif");
    doc.fontSize = QStringLiteral("12");
    MenuStatus status;
    int i = 0;
    for (auto _ : state) {
        doc.hasSelection = (++i & 1) != 0;
        status = ::ResetMenuStatus(status, doc);
        benchmark::DoNotOptimize(status);
    }
}
BENCHMARK(ResetMenuStatus);

void BareSelectionChange(benchmark::State& state) {
    RichTextBox box;
    box.setText(kLetter.repeated(20));
    int i = 0;
    for (auto _ : state) {
        moveSelection(box, ++i);
    }
}
BENCHMARK(BareSelectionChange)->Unit(benchmark::kMicrosecond);

void WindowSelectionChange(benchmark::State& state) {
    frmMain window;
    window.LoadFonts();
    window.show();
    window.runCommand(QStringLiteral("mnuFileNewStandard"));
    auto* document = qobject_cast<frmDocument*>(window.activeDocumentWindow()->widget());
    document->rtfText().setText(kLetter.repeated(20));
    int i = 0;
    for (auto _ : state) {
        moveSelection(document->rtfText(), ++i);
    }
}
BENCHMARK(WindowSelectionChange)->Unit(benchmark::kMicrosecond);

} // namespace
