#include "support/BareEnvironment.h"

#include <QApplication>

#include <gmock/gmock.h>

namespace {

// Before anything else: some tests set variables while their objects are made.
[[gnu::constructor(101)]] void leaveTheDesktopBehind() {
    hollowfernpike::test::enterBareEnvironment();
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleMock(&argc, argv);
    const QApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
