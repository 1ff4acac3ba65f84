#include "platform/TerminationSignal.h"

#include <QSocketNotifier>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

// The write end the handler uses; -1 when no instance is installed.
volatile sig_atomic_t g_writeFd = -1;

void onSignal(int) {
    const int saved = errno;
    const char byte = 1;
    // Only async-signal-safe calls here. A full pipe already holds a wake-up.
    [[maybe_unused]] const ssize_t written = ::write(g_writeFd, &byte, 1);
    errno = saved;
}

} // namespace

TerminationSignal::TerminationSignal(std::function<void()> onTerminate, QObject* parent)
    : QObject(parent), m_onTerminate(std::move(onTerminate)) {
    if (g_writeFd != -1 || ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, m_fds) != 0) {
        m_fds[0] = m_fds[1] = -1;
        return;
    }
    ::fcntl(m_fds[1], F_SETFL, ::fcntl(m_fds[1], F_GETFL) | O_NONBLOCK);
    ::fcntl(m_fds[0], F_SETFL, ::fcntl(m_fds[0], F_GETFL) | O_NONBLOCK);
    g_writeFd = m_fds[1];

    struct sigaction action = {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    if (::sigaction(SIGTERM, &action, &m_previous) != 0) {
        g_writeFd = -1;
        ::close(m_fds[0]);
        ::close(m_fds[1]);
        m_fds[0] = m_fds[1] = -1;
        return;
    }
    m_installed = true;
    m_notifier = new QSocketNotifier(m_fds[0], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &TerminationSignal::readSignal);
}

TerminationSignal::~TerminationSignal() {
    if (m_installed) {
        ::sigaction(SIGTERM, &m_previous, nullptr);
    }
    if (m_fds[1] != -1) {
        g_writeFd = -1;
        ::close(m_fds[0]);
        ::close(m_fds[1]);
    }
}

void TerminationSignal::readSignal() {
    char buffer[16];
    // Several signals before the loop came round are one request.
    while (::read(m_fds[0], buffer, sizeof buffer) > 0) {
    }
    if (m_onTerminate) {
        m_onTerminate();
    }
}
