#include "context/AppContext.h"

#include <QCoreApplication>

namespace {
AppContext& defaultContext() {
    static AppContext context;
    return context;
}
AppContext* g_current = nullptr;
} // namespace

AppContext& app() {
    return g_current ? *g_current : defaultContext();
}

ScopedAppContext::ScopedAppContext() : m_previous(g_current) {
    m_context.programVersion = getProgramVersion();
    g_current = &m_context;
}

ScopedAppContext::~ScopedAppContext() {
    g_current = m_previous;
}

QString getProgramVersion() {
    return QStringLiteral("%1.%2.%3")
        .arg(QM_VERSION_MAJOR)
        .arg(QM_VERSION_MINOR)
        .arg(QM_VERSION_PATCH);
}

void doEventsIfInputPending() {
    if (QCoreApplication::instance() == nullptr) {
        return;
    }
    // Only input and the paints it causes; timers and sockets wait, so a
    // long loop is not re-entered by anything but the user.
    QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers, 5);
}
