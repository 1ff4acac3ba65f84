#include "spell/modSpellWordList.h"

#include <utility>

namespace {

void swapStrings(QStringList& array, qsizetype a, qsizetype b) {
    array[a].swap(array[b]);
}

void compareAndSwap(QStringList& array, qsizetype a, qsizetype b) {
    if (array.at(b) < array.at(a)) {
        swapStrings(array, a, b);
    }
}

// (low + high) / 2 rounded half to even, as the integer conversion of the
// old runtime rounds.
qsizetype roundedMiddle(qsizetype low, qsizetype high) {
    const qsizetype sum = low + high;
    const qsizetype half = sum / 2;
    if (sum % 2 == 0) {
        return half;
    }
    return half % 2 == 0 ? half : half + 1;
}

} // namespace

void TriQuickSortString2(QStringList& array, int cutoff, qsizetype low, qsizetype high) {
    // The larger side is handled by the loop, the smaller by recursion, so
    // that the depth stays logarithmic whatever the input.
    while (high - low > cutoff) {
        const qsizetype mid = roundedMiddle(low, high);
        compareAndSwap(array, low, mid);
        compareAndSwap(array, low, high);
        compareAndSwap(array, mid, high);

        swapStrings(array, mid, high - 1);
        const QString pivot = array.at(high - 1); // shares the data, no copy
        qsizetype i = low;
        qsizetype j = high - 1;
        for (;;) {
            while (array.at(++i) < pivot) {
            }
            while (pivot < array.at(--j)) {
            }
            if (j < i) {
                break;
            }
            swapStrings(array, i, j);
        }
        swapStrings(array, i, high - 1);

        if (j - low < high - (i + 1)) {
            TriQuickSortString2(array, cutoff, low, j);
            low = i + 1;
        } else {
            TriQuickSortString2(array, cutoff, i + 1, high);
            high = j;
        }
    }
}

void InsertionSortString(QStringList& array, qsizetype low, qsizetype high) {
    for (qsizetype i = low + 1; i <= high; ++i) {
        QString current = std::move(array[i]);
        qsizetype j = i;
        while (j > low && current < array.at(j - 1)) {
            array[j] = std::move(array[j - 1]);
            --j;
        }
        array[j] = std::move(current);
    }
}

void TriQuickSortString(QStringList& array) {
    if (array.size() < 2) {
        return;
    }
    TriQuickSortString2(array, 4, 0, array.size() - 1);
    InsertionSortString(array, 0, array.size() - 1);
}

void AddToStringArray(QStringList& array, const QString& text, qsizetype position,
                      bool& arrayStarted) {
    if (!arrayStarted) {
        array = QStringList{text};
        arrayStarted = true;
    } else if (position >= 0 && position < array.size()) {
        array.insert(position, text);
    } else {
        array.append(text);
    }
}
