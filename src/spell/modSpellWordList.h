#pragma once

#include <QString>
#include <QStringList>

// Sorting and growing of string arrays, used to keep the word list file in
// order when the user adds a word. Comparison is binary (by UTF-16 code
// unit), and elements move as handles, never as copied characters.

// Median-of-three quicksort down to partitions of at most four elements,
// then one insertion pass over the whole array.
void TriQuickSortString(QStringList& array);
// The quicksort part over [low, high]; returns at once for partitions of at
// most `cutoff` + 1 elements. Precondition: 0 <= low, high < array.size().
void TriQuickSortString2(QStringList& array, int cutoff, qsizetype low, qsizetype high);
// Plain insertion sort of [low, high].
void InsertionSortString(QStringList& array, qsizetype low, qsizetype high);

// Inserts `text`. While `arrayStarted` is false the array is replaced by the
// single element `text` and the flag is set; afterwards `text` goes to
// `position` when that lies within the array (the rest moves up), and is
// appended otherwise (position -1 appends).
void AddToStringArray(QStringList& array, const QString& text, qsizetype position,
                      bool& arrayStarted);
