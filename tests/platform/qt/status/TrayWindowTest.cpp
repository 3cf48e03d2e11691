#include "platform/qt/status/TrayWindow.h"

#include "platform/SystemTray.h"

#include <QCoreApplication>
#include <QPixmap>
#include <QScreen>

#include <gtest/gtest.h>
#include <sys/resource.h>

namespace hollowfernpike::qt {
namespace {

/// A tray that takes every window and does nothing with it.
class IdleTray final : public platform::SystemTray {
public:
    bool isThere() override { return true; }
    bool blendsWindows() override { return true; }
    void embed(std::uintptr_t) override {}
    std::unique_ptr<platform::Subscription> watch(std::function<void()>) override {
        return nullptr;
    }
};

long megabytesAtMost() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

TEST(TrayWindowTest, AnItemThatATrayMakesHugeCostsNothing) {
    IdleTray tray;
    TrayWindow window(tray, {});
    QPixmap red(16, 16);
    red.fill(Qt::red);
    window.setImage(QIcon(red), "item");
    QCoreApplication::processEvents();
    const long before = megabytesAtMost();
    window.resize(12'000, 12'000); // 550 MB, of which some are touched
    QCoreApplication::processEvents();
    EXPECT_LT(megabytesAtMost() - before, 20);
    window.resize(32, 32);
    QCoreApplication::processEvents();
    EXPECT_EQ(window.grab().toImage().pixelColor(16, 16), QColor(Qt::red));
}

} // namespace
} // namespace hollowfernpike::qt
