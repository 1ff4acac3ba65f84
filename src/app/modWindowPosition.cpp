#include "app/modWindowPosition.h"

#include "files/clsINI.h"

#include <algorithm>

namespace {

std::optional<int> plainNumber(const QString& text) {
    bool ok = false;
    const int value = text.trimmed().toInt(&ok);
    return ok ? std::optional<int>(value) : std::nullopt;
}

bool contains(const FormRect& area, long long x, long long y) {
    return x >= area.left && x < static_cast<long long>(area.left) + area.width && y >= area.top &&
           y < static_cast<long long>(area.top) + area.height;
}

FormRect centredDefault(const FormRect& screen) {
    FormRect window{0, 0, std::min(DefaultWindowWidth, screen.width),
                    std::min(DefaultWindowHeight, screen.height)};
    FormRect centred = CenterForm(window, nullptr, screen);
    centred.left += screen.left;
    centred.top += screen.top;
    return centred;
}

// Moves and cuts `window` so that it lies inside `screen`.
FormRect fitted(FormRect window, const FormRect& screen) {
    window.width = std::min(std::max(window.width, MinimumWindowWidth), screen.width);
    window.height = std::min(std::max(window.height, MinimumWindowHeight), screen.height);
    // Computed in 64 bits: stored positions may be near the integer limits.
    const auto place = [](long long at, long long start, long long room, long long length) {
        at = std::min(at, start + room - length);
        return static_cast<int>(std::max(at, start));
    };
    window.left = place(window.left, screen.left, screen.width, window.width);
    window.top = place(window.top, screen.top, screen.height, window.height);
    return window;
}

} // namespace

StoredWindowPosition readStoredWindowPosition(clsINI& ini) {
    const QString section = QStringLiteral("QuillmerePadWindowSettings");
    const QString unset = QString::fromLatin1(clsINI::NotSet);
    StoredWindowPosition stored;
    stored.top = ini.getKeyString(section, QStringLiteral("WindowTop"), unset);
    stored.left = ini.getKeyString(section, QStringLiteral("WindowLeft"), unset);
    stored.height = ini.getKeyString(section, QStringLiteral("WindowHeight"), unset);
    stored.width = ini.getKeyString(section, QStringLiteral("WindowWidth"), unset);
    stored.state = ini.getKeyString(section, QStringLiteral("WindowState"), unset);
    return stored;
}

MDIPosition positionMDI(const StoredWindowPosition& stored, const std::vector<FormRect>& screens) {
    const FormRect primary = screens.empty()
                                 ? FormRect{0, 0, 1024 * TwipsPerPixel, 768 * TwipsPerPixel}
                                 : screens.front();
    MDIPosition result;
    const auto state = plainNumber(stored.state);
    const auto top = plainNumber(stored.top);
    const auto left = plainNumber(stored.left);
    const auto width = plainNumber(stored.width);
    const auto height = plainNumber(stored.height);
    if (!state || !top || !left || !width || !height || *width < 1 || *height < 1) {
        result.normal = centredDefault(primary);
        return result;
    }
    result.maximized = *state == 2;
    const FormRect wanted{*left, *top, *width, *height};
    // The centre, in 64 bits for the same reason as above.
    const long long cx = static_cast<long long>(wanted.left) + wanted.width / 2;
    const long long cy = static_cast<long long>(wanted.top) + wanted.height / 2;
    FormRect screen = primary;
    for (const FormRect& s : screens) {
        if (contains(s, cx, cy)) {
            screen = s;
            break;
        }
    }
    result.normal = fitted(wanted, screen);
    return result;
}
