#include "ui/MainWindowPosition.h"

#include "app/modWindowPosition.h"
#include "context/AppContext.h"
#include "files/clsINI.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <algorithm>

namespace {

FormRect toTwips(const QRect& r) {
    return FormRect{r.left() * TwipsPerPixel, r.top() * TwipsPerPixel, r.width() * TwipsPerPixel,
                    r.height() * TwipsPerPixel};
}

QRect toPixels(const FormRect& r) {
    return QRect(r.left / TwipsPerPixel, r.top / TwipsPerPixel, r.width / TwipsPerPixel,
                 r.height / TwipsPerPixel);
}

} // namespace

void positionMDI(QWidget& window) {
    if (window.isMaximized()) {
        return;
    }
    std::vector<FormRect> screens;
    if (QScreen* primary = QGuiApplication::primaryScreen()) {
        screens.push_back(toTwips(primary->availableGeometry()));
    }
    for (QScreen* screen : QGuiApplication::screens()) {
        if (screen != QGuiApplication::primaryScreen()) {
            screens.push_back(toTwips(screen->availableGeometry()));
        }
    }
    StoredWindowPosition stored;
    if (clsINI* ini = app().iniSettings) {
        stored = readStoredWindowPosition(*ini);
    }
    const MDIPosition position = positionMDI(stored, screens);
    const QRect normal = toPixels(position.normal);
    window.setMinimumSize(std::min(MinimumWindowWidth / TwipsPerPixel, normal.width()),
                          std::min(MinimumWindowHeight / TwipsPerPixel, normal.height()));
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.setGeometry(normal);
    if (position.maximized) {
        window.setWindowState(window.windowState() | Qt::WindowMaximized);
    }
}
