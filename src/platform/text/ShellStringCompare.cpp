#include "platform/text/ShellStringCompare.h"

namespace {

bool isAsciiDigit(QChar c) {
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

qsizetype digitRunEnd(QStringView s, qsizetype from) {
    while (from < s.size() && isAsciiDigit(s.at(from))) {
        ++from;
    }
    return from;
}

int sign(qsizetype v) {
    return v < 0 ? -1 : (v > 0 ? 1 : 0);
}

} // namespace

int StrCmpLogicalW(QStringView a, QStringView b) {
    qsizetype i = 0;
    qsizetype j = 0;
    int zerosTieBreak = 0;
    while (i < a.size() && j < b.size()) {
        if (isAsciiDigit(a.at(i)) && isAsciiDigit(b.at(j))) {
            const qsizetype endA = digitRunEnd(a, i);
            const qsizetype endB = digitRunEnd(b, j);
            qsizetype sa = i;
            qsizetype sb = j;
            while (sa < endA - 1 && a.at(sa) == QLatin1Char('0')) {
                ++sa;
            }
            while (sb < endB - 1 && b.at(sb) == QLatin1Char('0')) {
                ++sb;
            }
            const qsizetype lenA = endA - sa;
            const qsizetype lenB = endB - sb;
            if (lenA != lenB) {
                return sign(lenA - lenB);
            }
            const int digits = a.mid(sa, lenA).compare(b.mid(sb, lenB));
            if (digits != 0) {
                return digits < 0 ? -1 : 1;
            }
            if (zerosTieBreak == 0 && (endA - i) != (endB - j)) {
                zerosTieBreak = (endA - i) > (endB - j) ? -1 : 1;
            }
            i = endA;
            j = endB;
            continue;
        }
        const char32_t ca = a.at(i).toCaseFolded().unicode();
        const char32_t cb = b.at(j).toCaseFolded().unicode();
        if (ca != cb) {
            return ca < cb ? -1 : 1;
        }
        ++i;
        ++j;
    }
    if (i < a.size() || j < b.size()) {
        return i < a.size() ? 1 : -1;
    }
    return zerosTieBreak;
}
