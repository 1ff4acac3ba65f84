// Spelling in the windows, on the generated letters file of about 5 MB:
//
//   Keystroke/0   a key typed and taken back on sheet 1,000, each followed by
//                 the repaint of what is in view; live spelling off
//   Keystroke/1   the same with live spelling on, its check of the
//                 paragraphs in view run after every key, as when the user
//                 pauses after each one (the worst case: a steady typist
//                 never waits for the check, which runs once typing stops)
//   SessionStart  Tools > Spell Check on a ten-page letter up to the first
//                 error on show: the word list loaded, the text scanned, the
//                 first word's suggestions made
//
// The first two side by side give the cost of live spelling on typing.
//   QT_QPA_PLATFORM=offscreen build/bench/ui/spelling_bench
#include "../support/GeneratedLetters.h"
#include "files/clsWorkingFolderLocation.h"
#include "platform/richtext/RichTextBox.h"
#include "spell/SpellCheckSession.h"
#include "spell/clsSpellCheck.h"
#include "ui/LiveSpellChecker.h"
#include "ui/PageView.h"
#include "ui/frmDocument.h"

#include <QApplication>
#include <QDir>
#include <QKeyEvent>
#include <QTemporaryDir>
#include <QTextCursor>
#include <benchmark/benchmark.h>

namespace {

// The word list goes into a templates folder of this run, never the user's.
const QString& templatesFolder() {
    static QTemporaryDir home;
    static const QString folder = [] {
        qputenv("HOME", home.path().toLocal8Bit());
        // Live spelling looks in the default templates folder of that home.
        const QString templates = clsWorkingFolderLocation().getDefaultTemplatesFolder();
        QDir().mkpath(templates);
        return templates;
    }();
    return folder;
}

void Keystroke(benchmark::State& state) {
    templatesFolder();
    const bool live = state.range(0) != 0;
    LiveSpellChecker::setEnabled(live);
    frmDocument document;
    document.resize(1000, 800);
    document.show();
    document.loadText(QString::fromLatin1(generatedLetters()));
    LiveSpellChecker* checker = live ? new LiveSpellChecker(document) : nullptr;
    PageLayout& layout = document.pageLayout();
    QTextCursor cursor = document.rtfText().textCursor();
    cursor.setPosition(layout.firstPositionOfSheet(std::min(1000, layout.totalPages())) + 5);
    // Two slips where the typing happens, so that the check has work to show.
    cursor.insertText(QStringLiteral("clinet speling "));
    document.rtfText().setTextCursor(cursor);
    document.adjustDisplayForCursorPosition();
    if (checker) {
        checker->refresh();
    }
    PageView* view = document.pageView();
    view->viewport()->grab();
    for (auto _ : state) {
        QKeyEvent type(QEvent::KeyPress, Qt::Key_X, Qt::NoModifier, QStringLiteral("x"));
        QApplication::sendEvent(view, &type);
        if (checker) {
            checker->refresh();
        }
        view->viewport()->repaint();
        QKeyEvent erase(QEvent::KeyPress, Qt::Key_Backspace, Qt::NoModifier);
        QApplication::sendEvent(view, &erase);
        if (checker) {
            checker->refresh();
        }
        view->viewport()->repaint();
    }
    state.counters["underlined"] = checker ? double(checker->underlines().size()) : 0;
    LiveSpellChecker::setEnabled(true);
}
BENCHMARK(Keystroke)->Arg(0)->Arg(1)->Arg(0)->Arg(1)->MinTime(3)->Unit(benchmark::kMillisecond);

// About ten sheets of a letter, with a few misspellings on each.
QString tenPageLetter() {
    const QString paragraph = QStringLiteral(
        "We have completed the finacial statements of the company for the year ended 31 March "
        "2024 and enclose two copies for your aproval. Please read them carefully, sign the "
        "balance sheet where indicated and return one copy to us together with the signed "
        "letter of representation. The corporate tax return will be filed once we recieve "
        "them, and the balance owing of $4,512.00 is due on «Year End Date».\r\n");
    return paragraph.repeated(60);
}

void SessionStart(benchmark::State& state) {
    const QString folder = templatesFolder();
    RichTextBox page;
    page.setText(tenPageLetter());
    for (auto _ : state) {
        bool shown = false;
        spellCheckPage(page, folder, [&](SpellCheckSession& session) {
            shown = !session.finished() && !session.targetWord().isEmpty();
            // The user cancels at once: only the way to the first word is timed.
            session.cancel();
        });
        if (!shown) {
            state.SkipWithError("no misspelling was shown");
            return;
        }
    }
}
BENCHMARK(SessionStart)->Unit(benchmark::kMillisecond);

} // namespace
