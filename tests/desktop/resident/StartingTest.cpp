#include "desktop/resident/Resident.h"
#include "support/BusConnection.h"
#include "support/Files.h"
#include "support/SilentSocket.h"
#include "support/WaitUntil.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace hollowfernpike {
namespace {

using namespace test;

/// Surroundings that do not answer while the program starts.
class StartingTest : public ResidentTest {
protected:
    StartingTest() {
        story.bind(bound, story.install("Target"));
        story.writeShortcuts();
    }

    std::filesystem::path file(const std::string& name) const {
        return story.desktop.home() / name;
    }

    std::filesystem::path pipe(const std::filesystem::path& path) {
        std::filesystem::create_directories(path.parent_path());
        EXPECT_EQ(::mkfifo(path.c_str(), 0600), 0);
        return path;
    }

    /// In a time that leaves room for a busy machine, but for no wait of the toolkit's.
    void expectToStart(const Environment& changes) {
        const auto begin = std::chrono::steady_clock::now();
        story.launchUtility(changes);
        EXPECT_TRUE(story.areLive());
        EXPECT_LT(std::chrono::steady_clock::now() - begin, patience / 2);
        story.utility().signal(SIGTERM);
        EXPECT_EQ(story.utility().wait(), 0) << story.utility().errors();
    }
};

TEST_F(StartingTest, IsNotHeldUpByASessionBusThatStaysSilent) {
    const SilentSocket bus(file("silent"));
    expectToStart({{"DBUS_SESSION_BUS_ADDRESS", "unix:path=" + file("silent").string()}});
}

TEST_F(StartingTest, IsNotHeldUpByASilentBusInTheRuntimeDirectory) {
    const SilentSocket bus(story.desktop.home() / "run/bus");
    expectToStart({{"DBUS_SESSION_BUS_ADDRESS", ""}});
}

TEST_F(StartingTest, IsNotHeldUpByASilentSessionManager) {
    const SilentSocket manager(file("silent"));
    expectToStart({{"SESSION_MANAGER", "unix/:" + file("silent").string()}});
}

TEST_F(StartingTest, IsNotHeldUpByAReaderThatDoesNotReadWhatItSays) {
    putFile(story.shortcutsFile(), "no list");
    const auto output = pipe(file("output"));
    const int reader = ::open(output.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    const std::string block(4096, 'x');
    while (::write(reader, block.data(), block.size()) > 0) {
    }
    const auto utility =
        story.desktop.start({"sh", "-c", R"(exec "$0" > "$1" 2>&1)", HFP_PROGRAM, output.string()},
                            {{"QT_LOGGING_RULES", "*.debug=true"}});
    ASSERT_TRUE(waitUntil([&] { return story.pager.clients(utility->pid()) >= 3; }));
    EXPECT_EQ(resident.startAgain()->wait(), 0) << "it answers, so it has started";
    EXPECT_TRUE(resident.shows(japaneseTitle));
    utility->signal(SIGTERM);
    EXPECT_EQ(utility->wait(), 0);
    ::close(reader);
}

TEST_F(StartingTest, IsNotHeldUpBySettingsThatAreAPipe) {
    pipe(resident.configuration("app.hollowfernpike.Hollowfernpike.conf"));
    expectToStart({});
}

TEST_F(StartingTest, IsNotHeldUpByOlderOrCommonSettingsThatAreAPipe) {
    pipe(resident.configuration("com.local.Hollowfernpike.conf"));
    pipe(file("common/app.hollowfernpike.Hollowfernpike.conf"));
    expectToStart({{"XDG_CONFIG_DIRS", file("common").string()}});
}

TEST_F(StartingTest, ASignalEndsItEvenIfTheDisplayDoesNotAnswer) {
    story.launchUtility();
    ASSERT_TRUE(story.areLive());
    story.desktop.virtualDisplay().server().signal(SIGSTOP);
    story.utility().signal(SIGTERM);
    EXPECT_TRUE(story.utility().wait(patience / 2));
    story.desktop.virtualDisplay().server().signal(SIGCONT);
}

TEST_F(StartingTest, ASecondStartDoesNotWaitForAFirstThatHangs) {
    story.launchUtility();
    ASSERT_TRUE(story.areLive());
    story.utility().signal(SIGSTOP);
    const auto second = resident.startAgain();
    EXPECT_EQ(second->wait(patience / 2), 1);
    EXPECT_THAT(second->errors(), testing::HasSubstr("does not answer"));
    story.utility().signal(SIGCONT);
}

TEST_F(StartingTest, SessionManagersMayRestartIt) {
    const auto utility = story.desktop.start({HFP_PROGRAM, "-session", "10c0ffee_1"});
    EXPECT_TRUE(story.areLive());
    EXPECT_FALSE(utility->hasEnded()) << utility->errors();
}

TEST_F(StartingTest, AnotherProgramWithItsNameOnTheBusDoesNotKeepItFromStarting) {
    const auto impostor = connectToBus(story.desktop.bus().address());
    const std::unique_ptr<GVariant, decltype(&g_variant_unref)> reply{
        g_dbus_connection_call_sync(impostor.get(), "org.freedesktop.DBus", "/",
                                    "org.freedesktop.DBus", "RequestName",
                                    g_variant_new("(su)", "app.hollowfernpike.Hollowfernpike", 0U),
                                    nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr),
        g_variant_unref};
    ASSERT_NE(reply, nullptr);
    expectToStart({});
    EXPECT_THAT(story.utilityTells(), testing::HasSubstr("Another program has our name"));
}

TEST_F(StartingTest, StartedWithoutStandardDescriptorsItOpensSome) {
    const auto utility =
        story.desktop.start({"sh", "-c", R"(exec "$0" <&- >&- 2>&-)", HFP_PROGRAM});
    ASSERT_TRUE(story.areLive());
    const auto process = std::filesystem::path("/proc") / std::to_string(utility->pid()) / "fd";
    for (const char* number : {"0", "1", "2"}) {
        EXPECT_EQ(std::filesystem::read_symlink(process / number), "/dev/null");
    }
}

} // namespace
} // namespace hollowfernpike
