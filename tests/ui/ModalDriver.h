#pragma once

#include <QApplication>
#include <QTimer>
#include <QWidget>
#include <functional>

// Runs `drive` on the top-level window named `name` as soon as it shows,
// which is how a test reaches a dialog that the code under test runs
// modally. Gives up after `timeoutMs`; `ran()` tells whether it was reached.
class ModalDriver {
public:
    ModalDriver(QString name, std::function<void(QWidget*)> drive, int timeoutMs = 5000)
        : m_name(std::move(name)), m_drive(std::move(drive)), m_left(timeoutMs / 10) {
        m_timer.setInterval(10);
        QObject::connect(&m_timer, &QTimer::timeout, [this] { poll(); });
        m_timer.start();
    }

    bool ran() const { return m_ran; }

private:
    void poll() {
        for (QWidget* w : QApplication::topLevelWidgets()) {
            if (w->objectName() == m_name && w->isVisible()) {
                m_timer.stop();
                m_ran = true;
                m_drive(w);
                return;
            }
        }
        if (--m_left <= 0) {
            m_timer.stop();
        }
    }

    QString m_name;
    std::function<void(QWidget*)> m_drive;
    int m_left;
    QTimer m_timer;
    bool m_ran = false;
};
