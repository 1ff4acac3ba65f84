#pragma once

#include <QString>
#include <QVariant>

// String and value helpers shared by every subsystem.
class stringControl {
public:
    // True for an empty, null or missing value, and for text of blanks only.
    static bool isBlank(const QVariant& value);
    static bool isBlank(const QString& value);

    // The lenient numeric conversion of the old runtime: leading blanks,
    // an optional sign, then digits; anything else stops it. Text without
    // leading digits gives 0.
    static long long leadingNumber(const QString& text);

    // Strict integer conversion: surrounding blanks allowed, the rest must be
    // a number. Throws QmError TypeMismatch otherwise.
    static long long toInteger(const QString& text);
};
