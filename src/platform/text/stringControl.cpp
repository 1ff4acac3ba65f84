#include "platform/text/stringControl.h"

#include "platform/errorClass.h"

bool stringControl::isBlank(const QVariant& value) {
    if (!value.isValid() || value.isNull()) {
        return true;
    }
    return isBlank(value.toString());
}

bool stringControl::isBlank(const QString& value) {
    return value.trimmed().isEmpty();
}

long long stringControl::leadingNumber(const QString& text) {
    int i = 0;
    while (i < text.size() && text.at(i).isSpace()) {
        ++i;
    }
    bool negative = false;
    if (i < text.size() && (text.at(i) == QLatin1Char('-') || text.at(i) == QLatin1Char('+'))) {
        negative = text.at(i) == QLatin1Char('-');
        ++i;
    }
    long long value = 0;
    for (; i < text.size() && text.at(i) >= QLatin1Char('0') && text.at(i) <= QLatin1Char('9');
         ++i) {
        if (value < 1'000'000'000'000'000LL) {
            value = value * 10 + (text.at(i).unicode() - u'0');
        }
    }
    return negative ? -value : value;
}

long long stringControl::toInteger(const QString& text) {
    bool ok = false;
    const long long value = text.trimmed().toLongLong(&ok);
    if (!ok) {
        throw QmError(QmError::TypeMismatch, QStringLiteral("Type mismatch: \"%1\"").arg(text));
    }
    return value;
}
