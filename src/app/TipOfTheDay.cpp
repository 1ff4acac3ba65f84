#include "app/TipOfTheDay.h"

QStringList TipOfTheDay::parseTips(const QString& text) {
    QStringList tips;
    QString current;
    const auto finish = [&] {
        if (!current.isEmpty()) {
            tips << current;
            current.clear();
        }
    };
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (const QString& raw : lines) {
        const QString line = raw.trimmed();
        if (line.startsWith(QLatin1Char('#'))) {
            continue;
        }
        if (line.isEmpty()) {
            finish();
            continue;
        }
        current += current.isEmpty() ? line : QLatin1Char(' ') + line;
    }
    finish();
    return tips;
}

QString TipOfTheDay::tip(int index) const {
    if (m_tips.isEmpty()) {
        return {};
    }
    const int n = count();
    return m_tips[((index % n) + n) % n];
}

int TipOfTheDay::next(int index) const {
    return m_tips.isEmpty() ? 0 : (((index + 1) % count()) + count()) % count();
}

int TipOfTheDay::firstIndex(const QString& lastShown) const {
    bool ok = false;
    const int last = lastShown.trimmed().toInt(&ok);
    if (!ok || last < 0 || last >= count()) {
        return 0;
    }
    return next(last);
}
