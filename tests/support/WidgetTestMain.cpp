#include "support/PostgresTestServer.h"

#include <QApplication>
#include <gtest/gtest.h>

// Window tests need a widget application; the offscreen platform stands in
// for a display, with a fixed style and font resolution so that sizes do not
// depend on the desktop the suite runs on.
int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    qputenv("QT_FONT_DPI", "96");
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    const int result = RUN_ALL_TESTS();
    PostgresTestServer::stopShared();
    return result;
}
