#include "desktop/Combination.h"
#include "desktop/ShortcutList.h"
#include "desktop/SignalName.h"
#include "desktop/Utility.h"
#include "desktop/editor/ScreenReader.h"
#include "desktop/wayland/KeylessWords.h"
#include "desktop/windows/WindowTitles.h"
#include "support/Leaks.h"
#include "support/PrivateDesktop.h"
#include "support/TemporaryDirectory.h"
#include "support/WaitUntil.h"
#include "support/WestonDesktop.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <gmock/gmock.h>

namespace hollowfernpike {
namespace {

using namespace test;
using testing::Ge;
using testing::HasSubstr;
using testing::Optional;

TEST(WestonDesktopTest, FailsWhereWestonIsNotInstalled) {
    const TemporaryDirectory programs;
    std::filesystem::create_symlink("/usr/bin/dbus-daemon", programs.path() / "dbus-daemon");
    ::setenv("PATH", programs.path().c_str(), 1);
    EXPECT_THROW(WestonDesktop(), std::system_error);
}

/// A compositor of which the program knows nothing but that it speaks Wayland, and which shows it
/// no windows of others.
class UnknownCompositorTest : public testing::Test {
protected:
    WestonDesktop desktop;
    ScreenReader reader{desktop.bus().address()};
    const KeylessWords words = keylessIn("weston");

    /// Starts the utility with one shortcut and waits until it has told what is missing.
    void start(const Environment& changes = {}) {
        ShortcutList shortcuts;
        shortcuts.add(
            bound,
            {.path = "/nonexistent/Target.desktop", .name = "Target", .identifier = "Target"});
        shortcuts.write(ShortcutList::fileIn(desktop.dataHome()));
        utility_.start(desktop, changed({leaksAllowed()}, changes));
        ASSERT_TRUE(waitUntil([this] { return timesIn(errors(), words.english) > 0; }))
            << utility_.tells();
    }

    const std::string& errors() { return utility().errors(); }
    ChildProcess& utility() { return utility_.process(); }

    void startAgain() {
        const auto second = desktop.start({HFP_PROGRAM});
        ASSERT_EQ(second->wait(), 0) << second->errors();
        EXPECT_EQ(second->output() + second->errors(), "");
    }

private:
    Utility utility_;
};

TEST_F(UnknownCompositorTest, ItTellsOnceInBothLanguagesWhatIsMissingAndGoesOn) {
    start();
    const auto window = reader.find("dialog", "ショートカットキーをデスクトップに設定してください");
    EXPECT_THAT(reader.description(window), HasSubstr(words.japanese));
    const auto lines = reader.find(window, "text", "設定に書く行");
    EXPECT_THAT(reader.text(lines), HasSubstr("--press Ctrl+Alt+L"));
    startAgain();
    reader.find("frame", japaneseTitles.management);
    EXPECT_FALSE(utility().hasEnded());
    EXPECT_EQ(timesIn(errors(), words.japanese), 1) << errors();
    EXPECT_EQ(timesIn(errors(), words.english), 1) << errors();
}

TEST_F(UnknownCompositorTest, ASecondStartShowsTheWindowWithTheShortcuts) {
    start();
    startAgain();
    const auto window = reader.find("frame", japaneseTitles.management);
    reader.find(window, "label", "Target");
    reader.press(reader.find(window, "push button", "編集"));
    reader.find("dialog", japaneseTitles.editing);
    EXPECT_FALSE(utility().hasEnded());
}

// Such an X server is the compositor's guest and sees the keys of its own windows alone.
TEST_F(UnknownCompositorTest, ItIsNoSessionOfAnXServerThatIsThereAsWell) {
    const VirtualDisplay guest;
    start({{"DISPLAY", guest.name()}});
    startAgain();
    reader.find("frame", japaneseTitles.management);
}

TEST_F(UnknownCompositorTest, WhenTheCompositorIsKilledItEnds) {
    start();
    desktop.compositor().signal(SIGKILL);
    EXPECT_THAT(utility().wait(), Optional(Ge(0))) << errors();
}

class SignalWithoutKeysTest : public UnknownCompositorTest,
                              public testing::WithParamInterface<int> {};

TEST_P(SignalWithoutKeysTest, EndsWithSuccess) {
    start();
    utility().signal(GetParam());
    EXPECT_EQ(utility().wait(), 0) << errors();
}

TEST_P(SignalWithoutKeysTest, EndsWithSuccessWhileWindowsAreOpen) {
    start();
    startAgain();
    const auto window = reader.find("frame", japaneseTitles.management);
    reader.press(reader.find(window, "push button", "削除"));
    reader.find("alert message", "「Target」のショートカットを削除しますか？");
    utility().signal(GetParam());
    EXPECT_EQ(utility().wait(), 0) << errors();
}

INSTANTIATE_TEST_SUITE_P(By, SignalWithoutKeysTest, testing::Values(SIGTERM, SIGINT, SIGHUP),
                         signalName);

} // namespace
} // namespace hollowfernpike
