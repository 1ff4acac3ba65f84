#pragma once

#include <QString>
#include <QStringList>
#include <ostream>

// Readable failure messages for Qt strings in the spell tests.
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QStringList& list, std::ostream* out) {
    *out << '[';
    for (qsizetype i = 0; i < list.size(); ++i) {
        *out << (i ? ", " : "") << '"' << list.at(i).toStdString() << '"';
    }
    *out << ']';
}
