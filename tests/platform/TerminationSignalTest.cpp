#include "platform/TerminationSignal.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <csignal>
#include <gtest/gtest.h>

namespace {

void processEventsFor(int ms) {
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < ms) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
}

sighandler_t currentHandler() {
    struct sigaction now = {};
    ::sigaction(SIGTERM, nullptr, &now);
    return now.sa_handler;
}

} // namespace

TEST(TerminationSignalTest, SigtermBecomesOneCallOnTheEventLoop) {
    const sighandler_t before = currentHandler();
    int calls = 0;
    {
        TerminationSignal signal([&calls] { ++calls; });
        ASSERT_TRUE(signal.active());
        // A second one while the first lives would fight over the signal.
        TerminationSignal second([] {});
        EXPECT_FALSE(second.active());

        ::raise(SIGTERM);
        // Nothing runs inside the handler itself.
        EXPECT_EQ(calls, 0);
        processEventsFor(200);
        EXPECT_EQ(calls, 1);

        // Two before the loop comes round are one request.
        ::raise(SIGTERM);
        ::raise(SIGTERM);
        processEventsFor(200);
        EXPECT_EQ(calls, 2);
    }
    EXPECT_EQ(currentHandler(), before);
    // Free again for the next owner.
    TerminationSignal again([] {});
    EXPECT_TRUE(again.active());
}
