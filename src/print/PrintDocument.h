#pragma once

#include "documents/DocumentModel.h"

#include <QString>
#include <vector>

class PageLayout;
class PrintTarget;
class ProgressReporter;

// What the print dialog answered, as the page loop reads it. The page
// counter runs over the whole job (all copies, all letters of a merged
// batch); pages from `fromPage` to `toPage` of that count are printed unless
// `printAll` is set.
struct PrintRequest {
    int copies = 1;
    int fromPage = 1;
    int toPage = 1;
    bool printAll = true;
    // Nothing goes to a device: the pages are only counted.
    bool countOnly = false;

    // The dialog's copies and range against the highest page it offered:
    // print-all stays set only for the range 1 to maxPage. Copies below 1
    // count as 1.
    static PrintRequest fromDialog(int copies, int fromPage, int toPage, int maxPage);
    bool inRange(int counter) const {
        return printAll || (counter >= fromPage && counter <= toPage);
    }
};

// One letter of a merge result: its display name and its whole RTF.
struct PrintLetter {
    QString name;
    QString rtf;
};

// How a print run ended.
struct PrintOutcome {
    // Pages passed through: the page counter less 1; 0 when cancelled.
    int pages = 0;
    bool cancelled = false;
    // Why the device failed; empty when it did not.
    QString error;
    bool ok() const { return !cancelled && error.isEmpty(); }
};

// The page loop of printing, over our own pagination. Every copy and every
// letter goes into one job. A single document feeds a sheet after every
// page but its last, printed or not, and runs to its end whatever the range;
// a merged batch feeds a sheet only after a printed page, starts each letter
// on a new sheet when the last page before it was printed, and leaves a
// letter once the counter has passed the range. Before every copy but the
// first a sheet is fed.
//
// The target is begun and ended here (not under countOnly, where it may be
// null). A device failure drops the job and reports the target's error;
// a cancelled progress drops it too.
class PrintDocument {
public:
    PrintDocument(PrintTarget* target, const PrintRequest& request, ProgressReporter& progress);

    // The single-document branch over a paginated layout; `name` is shown
    // on the progress. The layout must be in page display and print wrap;
    // `geometry` is the page setup the layout was bound to.
    PrintOutcome printDocument(const PageLayout& layout, const DocumentModel& geometry,
                               const QString& name);
    // The merged branch: each letter is laid out alone with the page setup
    // of `geometry`, one at a time, "Preparing to print: " + its name shown
    // under the progress caption.
    PrintOutcome printLetters(const std::vector<PrintLetter>& letters,
                              const DocumentModel& geometry,
                              const QString& caption = QStringLiteral("Printing Merge Documents"));

private:
    bool start(const DocumentModel& geometry);
    bool feed();
    PrintOutcome finish();
    PrintOutcome fail(bool cancelled);
    bool printPage(const PageLayout& layout, int page);

    PrintTarget* m_target;
    PrintRequest m_request;
    ProgressReporter& m_progress;
    int m_counter = 1;
    bool m_failed = false;
};
