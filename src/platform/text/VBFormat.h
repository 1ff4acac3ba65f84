#pragma once

#include <QDateTime>
#include <QString>
#include <QVariant>
#include <optional>

// The value formatting of the old runtime, limited to the formats the
// program uses: dates and times with English month and day names, money
// with thousands separators and "Yes"/"No". Nothing here depends on the
// machine's locale.
namespace VBFormat {

// A date/time format such as "dddd, mmmm d yyyy", "dd/mmm/yy", "h:Nn am/pm"
// or "hh:mm AMPM". Tokens: d dd ddd dddd, m mm mmm mmmm (minutes right after
// an hour token), n nn (minutes, either case), h hh, s ss, yy yyyy,
// am/pm, AM/PM, A/P, AMPM; everything else is copied. A backslash copies the
// next character and double quotes copy their contents.
QString formatDate(const QDateTime& moment, const QString& format);
QString formatDate(const QDate& date, const QString& format);

// Money under "$#,##0.00;$-#,##0.00": two decimals, halves rounded away
// from zero, "," every three digits, the second section for negatives.
QString formatMoney(double value);

// The old runtime's IsDate/CDate for the values the database and the
// catalogue's samples hold: ISO dates and date-times ("2024-03-31",
// "2024-03-31 09:15:00", "2024-03-31T09:15:00"), a time alone ("09:15:00",
// "9:15 AM"), which lands on 1899-12-30, "03/31/2024" (month first),
// "Mar 5, 2024" / "March 5 2024". QDate and QDateTime values pass through.
// Anything else has no date.
std::optional<QDateTime> toDateTime(const QVariant& value);
bool isDate(const QVariant& value);

// CBool of a value read from the database: numbers are true unless zero,
// "True"/"Yes"/"On" (any case) are true; empty, Null and other text false.
bool readsAsTrue(const QVariant& value);
QString yesNo(const QVariant& value);

// The application's minutes formatter: "45 min", "1 hr", "2 hrs 5 min".
QString formatMinutes(long long minutes);

} // namespace VBFormat
