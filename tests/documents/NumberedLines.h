#pragma once

#include <QString>
#include <QStringList>

// Paragraphs of one line each, "Line nnn of the letter": 23 characters with
// the paragraph end, about 56 to a letter sheet in 12 points.
inline QString numberedLines(int count) {
    QStringList all;
    for (int i = 0; i < count; ++i) {
        all << QStringLiteral("Line %1 of the letter").arg(i, 3, 10, QLatin1Char('0'));
    }
    return all.join(QLatin1String("\r\n"));
}
