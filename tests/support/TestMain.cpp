#include "support/PostgresTestServer.h"

#include <QGuiApplication>
#include <gtest/gtest.h>

// Text layout and fonts need a GUI application; no screen is used.
int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QGuiApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    const int result = RUN_ALL_TESTS();
    PostgresTestServer::stopShared();
    return result;
}
