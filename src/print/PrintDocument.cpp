#include "print/PrintDocument.h"

#include "documents/PageLayout.h"
#include "platform/ProgressReporter.h"
#include "platform/richtext/RichTextBox.h"
#include "print/PrintTarget.h"

PrintRequest PrintRequest::fromDialog(int copies, int fromPage, int toPage, int maxPage) {
    PrintRequest request;
    request.copies = std::max(1, copies);
    request.fromPage = fromPage;
    request.toPage = toPage;
    request.printAll = toPage == maxPage && fromPage == 1;
    return request;
}

PrintDocument::PrintDocument(PrintTarget* target, const PrintRequest& request,
                             ProgressReporter& progress)
    : m_target(request.countOnly ? nullptr : target), m_request(request), m_progress(progress) {
    m_request.copies = std::max(1, m_request.copies);
}

bool PrintDocument::start(const DocumentModel& geometry) {
    m_counter = 1;
    m_failed = false;
    return m_target == nullptr || m_target->begin(geometry);
}

bool PrintDocument::feed() {
    if (m_target != nullptr && !m_target->newPage()) {
        m_failed = true;
    }
    return !m_failed;
}

bool PrintDocument::printPage(const PageLayout& layout, int page) {
    const bool printed = m_request.inRange(m_counter);
    if (printed && m_target != nullptr) {
        m_target->paintSheet(layout, page);
    }
    ++m_counter;
    return printed;
}

PrintOutcome PrintDocument::finish() {
    m_progress.end();
    if (m_target != nullptr && !m_target->end()) {
        return {0, false, m_target->error()};
    }
    return {m_counter - 1, false, {}};
}

PrintOutcome PrintDocument::fail(bool cancelled) {
    m_progress.end();
    PrintOutcome outcome{0, cancelled, {}};
    if (m_target != nullptr) {
        outcome.error = cancelled ? QString() : m_target->error();
        m_target->abort();
    }
    return outcome;
}

PrintOutcome PrintDocument::printDocument(const PageLayout& layout, const DocumentModel& geometry,
                                          const QString& name) {
    const int pages = layout.totalPages();
    m_progress.begin(QStringLiteral("Printing"), pages * m_request.copies);
    if (!start(geometry)) {
        return fail(false);
    }
    for (int copy = 1; copy <= m_request.copies; ++copy) {
        if (copy > 1 && !feed()) {
            return fail(false);
        }
        for (int page = 1;; ++page) {
            m_progress.step(QStringLiteral("Preparing to print: ") + name);
            if (m_progress.cancelled()) {
                return fail(true);
            }
            printPage(layout, page);
            if (page >= pages) {
                break;
            }
            // A sheet is fed after every page but the last, printed or not.
            if (!feed()) {
                return fail(false);
            }
        }
    }
    return finish();
}

PrintOutcome PrintDocument::printLetters(const std::vector<PrintLetter>& letters,
                                         const DocumentModel& geometry, const QString& caption) {
    m_progress.begin(caption, int(letters.size()) * m_request.copies);
    if (!start(geometry)) {
        return fail(false);
    }
    // One box and one layout, filled with each letter in turn: only one
    // letter is ever laid out.
    RichTextBox box;
    PageLayout layout(box, geometry);
    for (int copy = 1; copy <= m_request.copies; ++copy) {
        if (copy > 1 && !feed()) {
            return fail(false);
        }
        bool lastWasSkipped = true;
        for (const PrintLetter& letter : letters) {
            m_progress.step(QStringLiteral("Preparing to print: ") + letter.name);
            if (m_progress.cancelled()) {
                return fail(true);
            }
            layout.beginLoad();
            box.setTextRTF(letter.rtf);
            layout.endLoad();
            const int pages = layout.totalPages();
            // The page before was printed: this letter starts a new sheet.
            if (!lastWasSkipped && !feed()) {
                return fail(false);
            }
            for (int page = 1;; ++page) {
                const bool printed = printPage(layout, page);
                lastWasSkipped = !printed;
                if (!m_request.printAll && m_counter > m_request.toPage) {
                    break;
                }
                if (page >= pages) {
                    break;
                }
                if (printed && !feed()) {
                    return fail(false);
                }
            }
        }
    }
    return finish();
}
