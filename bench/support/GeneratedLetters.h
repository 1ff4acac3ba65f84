#pragma once

#include <QByteArray>

// About 5 MB of RTF: letters to clients, one after another, each ending on
// a page break (some 2,900 sheets). Shared by the benchmarks that need a
// large document.
inline QByteArray generatedLetters() {
    QByteArray rtf("{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\froman Liberation "
                   "Serif;}}\\f0\\fs24 ");
    int letter = 0;
    while (rtf.size() < 5 * 1024 * 1024) {
        rtf += "{\\b Harbour & Vale Accountants\\b0}\\par 12 Quay Street\\par\\par Dear client ";
        rtf += QByteArray::number(letter++);
        rtf += ",\\par\\par ";
        for (int p = 0; p < 6; ++p) {
            rtf += "We have reviewed the accounts of your company for the year and enclose the "
                   "draft return. The \\i balance\\i0  of \\'80 1,234.56 is due on the last day "
                   "of the quarter; please send the outstanding invoices and the bank "
                   "statements so that the return can be filed in time.\\par\\par ";
        }
        rtf += "Yours sincerely,\\par\\par Jordan Reyes\\par\\page ";
    }
    rtf += "}";
    return rtf;
}
