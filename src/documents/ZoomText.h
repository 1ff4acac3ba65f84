#pragma once

#include <QString>
#include <QStringList>
#include <optional>

// The zoom of a page view as the user reads and types it ("125%").
class ZoomText {
public:
    static constexpr int Min = 50;
    static constexpr int Max = 200;

    // The choices offered, smallest first.
    static QStringList choices();
    static QString format(int percent);
    // "120", "120%", " 120 % ": the percent, brought into 50..200. Anything
    // that is not a whole number is refused (nothing), so that a slip of
    // the keyboard leaves the zoom as it was.
    static std::optional<int> parse(const QString& text);
};
