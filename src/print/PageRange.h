#pragma once

#include <QString>
#include <optional>

// A range of pages the user asked for, 1-based and inclusive, as a command
// line or a dialog gives it: "3", "2-5", "4-" (to the end), "-2" (from the
// first). `toPage` 0 means "to the last page".
struct PageRange {
    int fromPage = 1;
    int toPage = 0;

    bool isAll() const { return fromPage == 1 && toPage == 0; }
    bool contains(int page) const { return page >= fromPage && (toPage == 0 || page <= toPage); }
};

// What parsing or checking a range came to: the range, or a message for the
// user that says what is wrong with it.
struct PageRangeResult {
    std::optional<PageRange> range;
    QString error;
};

// Reads a range. Fails with a message for text that is no range, for page 0
// or a negative page, and for a range that runs backwards ("7-3").
PageRangeResult parsePageRange(const QString& text);

// Fits a range to a document of `totalPages` pages: an end beyond the last
// page is cut to it ("1-99999" is the whole document); a range that starts
// beyond the last page fails with a message naming the count.
PageRangeResult fitPageRange(const PageRange& range, int totalPages);

// Copies are 1 to MaxCopies; anything else gets a message.
inline constexpr int MaxCopies = 999;
std::optional<QString> checkCopies(int copies);
// Reads a number of copies from text, with the same bounds.
std::optional<int> parseCopies(const QString& text, QString* error);
