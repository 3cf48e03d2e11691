#include "desktop/editor/EditorStory.h"
#include "support/WriteFile.h"

#include <QImage>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

namespace hollowfernpike {
namespace {

using namespace test;

constexpr QRgb magenta = 0xffff00ff;
constexpr QRgb cyan = 0xff00ffff;

/// Applications, and icons of them, that are installed while the utility runs.
class InstalledMeanwhileTest : public testing::Test {
protected:
    static constexpr auto application = "Probe";

    EditorStory story;
    Application& probe = story.install(application);
    const std::filesystem::path ownIcons = story.desktop.dataHome() / "icons/hicolor";
    const std::filesystem::path sharedIcons = story.desktop.home() / "shared/icons/hicolor";

    void SetUp() override {
        story.desktop.showOfMachine("icons/hicolor/index.theme");
        writeEntry();
        story.bind(bound, probe);
        story.writeShortcuts();
    }

    void writeEntry() {
        writeFile(probe.entry(), std::string("[Desktop Entry]\nType=Application\nIcon=probe\n") +
                                     "Name=" + application + "\nExec=" + probe.program().string() +
                                     '\n');
    }

    /// Starts the utility in a session that has one more folder for all users.
    void open() {
        auto directories = (story.desktop.home() / "shared").string();
        for (const auto& [name, value] : story.desktop.environment()) {
            if (name == "XDG_DATA_DIRS") {
                directories += ':' + value.value_or("");
            }
        }
        story.start({{"XDG_DATA_DIRS", directories}});
        story.openManagement();
    }

    /// The same for a utility that may not watch any folder: it is in a name space of users that
    /// has its own limit.
    void openUnwatched() {
        unwatched_ = story.desktop.start(
            {"unshare", "--user", "--map-current-user", "--keep-caps", "sh", "-c",
             std::string("echo 0 > ") + limit + " && exec \"$0\"", HFP_PROGRAM});
        story.require([this] { return story.pager.clients(unwatched_->pid()) > 2; },
                      "the utility does not come");
        story.openManagement();
    }

    void allowWatches() {
        story.run({"nsenter", "--user", "--preserve-credentials", "--target",
                   std::to_string(unwatched_->pid()), "sh", "-c",
                   std::string("echo 10000 > ") + limit});
    }

    static void writeIcon(const std::filesystem::path& theme, QRgb color) {
        constexpr int side = 48;
        QImage image(side, side, QImage::Format_RGB32);
        image.fill(color);
        const auto folder = theme / "48x48/apps";
        std::filesystem::create_directories(folder);
        ASSERT_TRUE(image.save(QString::fromStdString((folder / "probe.png").string())));
    }

    /// Whether, after some waiting, this colour is to be seen where icons are, of cards or in the
    /// panel.
    testing::AssertionResult shows(xcb_window_t window, int icons, QRgb color) {
        const auto isSeen = [&] { return isShown(window, icons, color); };
        return waitUntil(isSeen)
                   ? testing::AssertionSuccess()
                   : testing::AssertionFailure() << "not to be seen: " << std::hex << color;
    }

    bool isShown(xcb_window_t window, int icons, QRgb color) {
        constexpr std::ptrdiff_t least = 10; // pixels of the icon's height
        const auto column = story.screen.column(window, icons);
        return std::ranges::count_if(column, [&](std::uint32_t pixel) {
                   return (pixel & RGB_MASK) == (color & RGB_MASK);
               }) >= least;
    }

    static constexpr auto limit = "/proc/sys/user/max_inotify_watches";
    static constexpr int onCard = 16 + 12 + 16;
    static constexpr int inPanel = 30;

private:
    std::unique_ptr<ChildProcess> unwatched_;
};

TEST_F(InstalledMeanwhileTest, AnIconInTheUsersOwnFolderShowsOnTheCard) {
    open();
    const auto window = story.managementComes();
    EXPECT_FALSE(isShown(window, onCard, magenta));
    writeIcon(ownIcons, magenta);
    EXPECT_TRUE(shows(window, onCard, magenta));
    writeIcon(ownIcons, cyan);
    EXPECT_TRUE(shows(window, onCard, cyan)) << "replaced";
}

TEST_F(InstalledMeanwhileTest, AnIconForAllUsersShowsOnTheCardAlsoWhereTheIconsAreListed) {
    std::filesystem::create_directories(sharedIcons / "48x48/apps");
    writeFile(sharedIcons / "index.theme", "[Icon Theme]\nName=Hicolor\nDirectories=48x48/apps\n\n"
                                           "[48x48/apps]\nSize=48\n");
    story.run({"gtk-update-icon-cache", "-f", sharedIcons.string()});
    open();
    const auto window = story.managementComes();
    writeIcon(sharedIcons, magenta);
    story.run({"gtk-update-icon-cache", "-f", sharedIcons.string()});
    EXPECT_TRUE(shows(window, onCard, magenta));
}

TEST_F(InstalledMeanwhileTest, AnApplicationThatComesBackIsNoLongerDimmed) {
    writeIcon(ownIcons, magenta);
    std::filesystem::remove(probe.entry());
    open();
    const auto window = story.managementComes();
    EXPECT_FALSE(isShown(window, onCard, magenta));
    writeEntry();
    EXPECT_TRUE(shows(window, onCard, magenta));
    std::filesystem::remove(probe.entry());
    EXPECT_TRUE(waitUntil([&] { return !isShown(window, onCard, magenta); })) << "gone again";
}

TEST_F(InstalledMeanwhileTest, ShowsToThoseWhoComeBackIfTheKernelWouldNotWatchBefore) {
    openUnwatched();
    const auto window = story.managementComes();
    const auto frame = story.reader.find("frame", story.titles.management);
    ASSERT_TRUE(waitUntil([&] { return story.reader.isActive(frame); })) << "else it comes back";
    EXPECT_FALSE(isShown(window, onCard, magenta));
    writeIcon(ownIcons, magenta);
    allowWatches();
    ASSERT_TRUE(story.switchTo(story.front));
    ASSERT_TRUE(waitUntil([&] { return !story.reader.isActive(frame); })) << "noticed late";
    EXPECT_FALSE(isShown(window, onCard, magenta));
    story.openManagement();
    EXPECT_TRUE(shows(window, onCard, magenta));
    writeIcon(ownIcons, cyan);
    EXPECT_TRUE(shows(window, onCard, cyan)) << "watched from now on";
}

TEST_F(InstalledMeanwhileTest, TheOpenPanelListsItWithItsIcon) {
    std::filesystem::remove(probe.entry());
    open();
    const auto panel = story.openApplications(story.clickAdd());
    writeEntry();
    writeIcon(ownIcons, magenta);
    EXPECT_TRUE(shows(panel, inPanel, magenta));
}

} // namespace
} // namespace hollowfernpike
