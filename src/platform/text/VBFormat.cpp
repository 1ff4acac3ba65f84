#include "platform/text/VBFormat.h"

#include <QRegularExpression>
#include <cmath>

namespace {

const char* const kMonthNames[] = {"January",   "February", "March",    "April",
                                   "May",       "June",     "July",     "August",
                                   "September", "October",  "November", "December"};
const char* const kDayNames[] = {"Monday", "Tuesday",  "Wednesday", "Thursday",
                                 "Friday", "Saturday", "Sunday"};

QString monthName(int month, bool abbreviated) {
    const QString name = QString::fromLatin1(kMonthNames[month - 1]);
    return abbreviated ? name.left(3) : name;
}

QString dayName(int dayOfWeek, bool abbreviated) {
    const QString name = QString::fromLatin1(kDayNames[dayOfWeek - 1]);
    return abbreviated ? name.left(3) : name;
}

QString twoDigits(int n) {
    return QStringLiteral("%1").arg(n, 2, 10, QLatin1Char('0'));
}

bool startsWithNoCase(const QString& text, int at, QLatin1StringView what) {
    return QStringView(text).mid(at, what.size()).compare(what, Qt::CaseInsensitive) == 0;
}

int runLength(const QString& format, int at) {
    const QChar c = format.at(at).toLower();
    int n = 1;
    while (at + n < format.size() && format.at(at + n).toLower() == c) {
        ++n;
    }
    return n;
}

// Whether the format shows a 12-hour clock anywhere.
bool hasTwelveHourMarker(const QString& format) {
    return format.contains(QLatin1String("am/pm"), Qt::CaseInsensitive) ||
           format.contains(QLatin1String("a/p"), Qt::CaseInsensitive) ||
           format.contains(QLatin1String("ampm"), Qt::CaseInsensitive);
}

} // namespace

namespace VBFormat {

QString formatDate(const QDate& date, const QString& format) {
    return formatDate(QDateTime(date, QTime(0, 0)), format);
}

QString formatDate(const QDateTime& moment, const QString& format) {
    const QDate date = moment.date();
    const QTime time = moment.time();
    const bool twelveHour = hasTwelveHourMarker(format);
    const bool pm = time.hour() >= 12;
    QString out;
    bool afterHour = false;
    int i = 0;
    while (i < format.size()) {
        const QChar c = format.at(i);
        const QChar lower = c.toLower();
        if (c == QLatin1Char('\\') && i + 1 < format.size()) {
            out += format.at(i + 1);
            i += 2;
            continue;
        }
        if (c == QLatin1Char('"')) {
            const int end = format.indexOf(QLatin1Char('"'), i + 1);
            const int stop = end < 0 ? int(format.size()) : end;
            out += format.mid(i + 1, stop - i - 1);
            i = stop + 1;
            continue;
        }
        if (startsWithNoCase(format, i, QLatin1StringView("am/pm"))) {
            const QString marker = pm ? QStringLiteral("PM") : QStringLiteral("AM");
            out += c.isLower() ? marker.toLower() : marker;
            i += 5;
            continue;
        }
        if (startsWithNoCase(format, i, QLatin1StringView("a/p"))) {
            const QString marker = pm ? QStringLiteral("P") : QStringLiteral("A");
            out += c.isLower() ? marker.toLower() : marker;
            i += 3;
            continue;
        }
        if (startsWithNoCase(format, i, QLatin1StringView("ampm"))) {
            out += pm ? QStringLiteral("PM") : QStringLiteral("AM");
            i += 4;
            continue;
        }
        const int n =
            (lower == QLatin1Char('d') || lower == QLatin1Char('m') || lower == QLatin1Char('y') ||
             lower == QLatin1Char('h') || lower == QLatin1Char('n') || lower == QLatin1Char('s'))
                ? runLength(format, i)
                : 0;
        if (n == 0) {
            out += c;
            ++i;
            continue;
        }
        if (lower == QLatin1Char('d')) {
            if (n == 1) {
                out += QString::number(date.day());
            } else if (n == 2) {
                out += twoDigits(date.day());
            } else {
                out += dayName(date.dayOfWeek(), n == 3);
            }
            afterHour = false;
        } else if (lower == QLatin1Char('m')) {
            if (n <= 2 && afterHour) {
                out += n == 1 ? QString::number(time.minute()) : twoDigits(time.minute());
            } else if (n == 1) {
                out += QString::number(date.month());
            } else if (n == 2) {
                out += twoDigits(date.month());
            } else {
                out += monthName(date.month(), n == 3);
            }
            afterHour = false;
        } else if (lower == QLatin1Char('y')) {
            if (n == 1) {
                out += QString::number(date.dayOfYear());
            } else if (n <= 3) {
                out += twoDigits(date.year() % 100);
                if (n == 3) {
                    out += QString::number(date.dayOfYear());
                }
            } else {
                out += QString::number(date.year());
            }
            afterHour = false;
        } else if (lower == QLatin1Char('h')) {
            int hour = time.hour();
            if (twelveHour) {
                hour = hour % 12 == 0 ? 12 : hour % 12;
            }
            out += n == 1 ? QString::number(hour) : twoDigits(hour);
            afterHour = true;
        } else if (lower == QLatin1Char('n')) {
            out += n == 1 ? QString::number(time.minute()) : twoDigits(time.minute());
            afterHour = false;
        } else {
            out += n == 1 ? QString::number(time.second()) : twoDigits(time.second());
            afterHour = false;
        }
        i += n;
    }
    return out;
}

QString formatMoney(double value) {
    const bool negative = value < 0;
    const double cents = std::floor(std::fabs(value) * 100.0 + 0.5 + 1e-9);
    const long long whole = static_cast<long long>(cents / 100.0);
    const int fraction = static_cast<int>(cents - static_cast<double>(whole) * 100.0);
    QString digits = QString::number(whole);
    for (int at = int(digits.size()) - 3; at > 0; at -= 3) {
        digits.insert(at, QLatin1Char(','));
    }
    return (negative && cents > 0 ? QStringLiteral("$-") : QStringLiteral("$")) + digits +
           QLatin1Char('.') + twoDigits(fraction);
}

std::optional<QDateTime> toDateTime(const QVariant& value) {
    if (!value.isValid() || value.isNull()) {
        return std::nullopt;
    }
    if (value.typeId() == QMetaType::QDateTime) {
        return value.toDateTime();
    }
    if (value.typeId() == QMetaType::QDate) {
        return QDateTime(value.toDate(), QTime(0, 0));
    }
    const QString text = value.toString().trimmed();
    if (text.isEmpty()) {
        return std::nullopt;
    }
    static const QRegularExpression iso(
        QStringLiteral("^(\\d{4})-(\\d{1,2})-(\\d{1,2})(?:[ T](\\d{1,2}):(\\d{2})(?::(\\d{2}))?"
                       "(?:\\.\\d+)?)?$"));
    static const QRegularExpression slashed(
        QStringLiteral("^(\\d{1,2})/(\\d{1,2})/(\\d{2}|\\d{4})(?: +(.*))?$"));
    static const QRegularExpression named(
        QStringLiteral("^([A-Za-z]{3,9})\\.? +(\\d{1,2}),? +(\\d{4})(?: +(.*))?$"));
    static const QRegularExpression timeOnly(
        QStringLiteral("^(\\d{1,2}):(\\d{2})(?::(\\d{2}))? *([AaPp][Mm]?)?$"));

    auto parseTime = [](const QString& t) -> std::optional<QTime> {
        if (t.isEmpty()) {
            return QTime(0, 0);
        }
        const auto m = timeOnly.match(t.trimmed());
        if (!m.hasMatch()) {
            return std::nullopt;
        }
        int hour = m.captured(1).toInt();
        const int minute = m.captured(2).toInt();
        const int second = m.captured(3).isEmpty() ? 0 : m.captured(3).toInt();
        const QString marker = m.captured(4).toUpper();
        if (!marker.isEmpty()) {
            if (hour < 1 || hour > 12) {
                return std::nullopt;
            }
            hour = hour % 12 + (marker.startsWith(QLatin1Char('P')) ? 12 : 0);
        }
        const QTime time(hour, minute, second);
        return time.isValid() ? std::optional<QTime>(time) : std::nullopt;
    };
    auto combine = [](const QDate& date,
                      const std::optional<QTime>& time) -> std::optional<QDateTime> {
        if (!date.isValid() || !time) {
            return std::nullopt;
        }
        return QDateTime(date, *time);
    };

    if (const auto m = iso.match(text); m.hasMatch()) {
        const QDate date(m.captured(1).toInt(), m.captured(2).toInt(), m.captured(3).toInt());
        QTime time(0, 0);
        if (!m.captured(4).isEmpty()) {
            time = QTime(m.captured(4).toInt(), m.captured(5).toInt(),
                         m.captured(6).isEmpty() ? 0 : m.captured(6).toInt());
            if (!time.isValid()) {
                return std::nullopt;
            }
        }
        return combine(date, time);
    }
    if (const auto m = slashed.match(text); m.hasMatch()) {
        int year = m.captured(3).toInt();
        if (m.captured(3).size() == 2) {
            year += year < 30 ? 2000 : 1900;
        }
        return combine(QDate(year, m.captured(1).toInt(), m.captured(2).toInt()),
                       parseTime(m.captured(4)));
    }
    if (const auto m = named.match(text); m.hasMatch()) {
        const QString word = m.captured(1).toLower();
        for (int month = 1; month <= 12; ++month) {
            const QString full = QString::fromLatin1(kMonthNames[month - 1]).toLower();
            if (word == full || word == full.left(3)) {
                return combine(QDate(m.captured(3).toInt(), month, m.captured(2).toInt()),
                               parseTime(m.captured(4)));
            }
        }
        return std::nullopt;
    }
    if (const auto time = parseTime(text); time && text.contains(QLatin1Char(':'))) {
        return QDateTime(QDate(1899, 12, 30), *time);
    }
    return std::nullopt;
}

bool isDate(const QVariant& value) {
    return toDateTime(value).has_value();
}

bool readsAsTrue(const QVariant& value) {
    if (!value.isValid() || value.isNull()) {
        return false;
    }
    if (value.typeId() == QMetaType::Bool) {
        return value.toBool();
    }
    const QString text = value.toString().trimmed();
    bool ok = false;
    const double number = text.toDouble(&ok);
    if (ok) {
        return number != 0.0;
    }
    return text.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0 ||
           text.compare(QLatin1String("Yes"), Qt::CaseInsensitive) == 0 ||
           text.compare(QLatin1String("On"), Qt::CaseInsensitive) == 0;
}

QString yesNo(const QVariant& value) {
    return readsAsTrue(value) ? QStringLiteral("Yes") : QStringLiteral("No");
}

QString formatMinutes(long long minutes) {
    const bool negative = minutes < 0;
    const long long total = negative ? -minutes : minutes;
    const long long hours = total / 60;
    const long long rest = total % 60;
    QString out;
    if (hours > 0) {
        out =
            QString::number(hours) + (hours == 1 ? QStringLiteral(" hr") : QStringLiteral(" hrs"));
    }
    if (rest > 0 || hours == 0) {
        if (!out.isEmpty()) {
            out += QLatin1Char(' ');
        }
        out += QString::number(rest) + QStringLiteral(" min");
    }
    return negative ? QLatin1Char('-') + out : out;
}

} // namespace VBFormat
