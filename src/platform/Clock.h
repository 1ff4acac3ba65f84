#pragma once

#include <QDate>
#include <QDateTime>

#include <optional>

// The one source of "today" and "now" for the whole program, so that tests
// and the command line can fix the date a merge or a log entry sees.
class Clock {
public:
    QDate today() const;
    QDateTime now() const;

    // Fixes the clock at the given moment until reset() is called.
    void setFixed(const QDateTime& moment);
    void reset();
    bool isFixed() const { return m_fixed.has_value(); }

private:
    std::optional<QDateTime> m_fixed;
};
