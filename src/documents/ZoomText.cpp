#include "documents/ZoomText.h"

#include <algorithm>

QStringList ZoomText::choices() {
    QStringList out;
    for (int percent : {50, 75, 100, 125, 150, 175, 200}) {
        out << format(percent);
    }
    return out;
}

QString ZoomText::format(int percent) {
    return QString::number(percent) + QLatin1Char('%');
}

std::optional<int> ZoomText::parse(const QString& text) {
    QString digits = text.trimmed();
    if (digits.endsWith(QLatin1Char('%'))) {
        digits.chop(1);
        digits = digits.trimmed();
    }
    bool ok = false;
    const int percent = digits.toInt(&ok);
    if (!ok) {
        return std::nullopt;
    }
    return std::clamp(percent, Min, Max);
}
