#include "platform/Clock.h"

QDate Clock::today() const {
    return now().date();
}

QDateTime Clock::now() const {
    return m_fixed ? *m_fixed : QDateTime::currentDateTime();
}

void Clock::setFixed(const QDateTime& moment) {
    m_fixed = moment;
}

void Clock::reset() {
    m_fixed.reset();
}
