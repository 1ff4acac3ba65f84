#pragma once

#include <QObject>
#include <csignal>
#include <functional>

class QSocketNotifier;

// Turns SIGTERM (the desktop session ending, a service manager stopping us)
// into a call on the event loop, so that the program ends through its one
// way out instead of dying with unsaved documents. The signal handler only
// writes a byte to a pipe; the routine runs from the loop when it reads it.
//
// One instance at a time; while it lives it owns the SIGTERM disposition,
// and its destruction puts the previous one back. If the pipe cannot be
// made, nothing is installed and active() is false.
class TerminationSignal : public QObject {
    Q_OBJECT
public:
    explicit TerminationSignal(std::function<void()> onTerminate, QObject* parent = nullptr);
    ~TerminationSignal() override;
    TerminationSignal(const TerminationSignal&) = delete;
    TerminationSignal& operator=(const TerminationSignal&) = delete;

    bool active() const { return m_notifier != nullptr; }

private:
    void readSignal();

    std::function<void()> m_onTerminate;
    QSocketNotifier* m_notifier = nullptr;
    int m_fds[2] = {-1, -1};
    struct sigaction m_previous = {};
    bool m_installed = false;
};
