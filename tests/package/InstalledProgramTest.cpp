#include "package/InstalledProgram.h"

#include "support/WaitUntil.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <utility>

#include <gmock/gmock.h>

namespace hollowfernpike::test {
namespace {

namespace fs = std::filesystem;

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;

/// The libraries and plug-ins that a process has in memory.
std::set<std::string> librariesOf(pid_t process) {
    std::ifstream maps("/proc/" + std::to_string(process) + "/maps");
    std::set<std::string> libraries;
    for (std::string line; std::getline(maps, line);) {
        const auto path = line.find('/');
        if (path != std::string::npos && line.find(".so", path) != std::string::npos) {
            libraries.insert(line.substr(path));
        }
    }
    return libraries;
}

class InstalledLookTest : public InstalledProgramTest {
protected:
    /// The sizes of the icons that a window carries, as "WIDTH x HEIGHT".
    std::vector<std::string> iconSizes(xcb_window_t window) {
        const auto look =
            story.desktop.start({"xprop", "-id", std::to_string(window), "_NET_WM_ICON"});
        EXPECT_EQ(look->wait(), 0) << look->errors();
        static const std::regex size(R"(Icon \((\d+ x \d+)\))");
        std::vector<std::string> sizes;
        for (std::sregex_iterator found(look->output().begin(), look->output().end(), size), end;
             found != end; ++found) {
            sizes.push_back((*found)[1]);
        }
        return sizes;
    }
};

TEST_F(InstalledProgramTest, TheBusStartsItAndItBringsAnApplicationForward) {
    const auto& target = bindTarget();
    activate();
    EXPECT_EQ(
        fs::read_symlink("/proc/" + std::to_string(installed::process(story.desktop)) + "/exe"),
        installed::program);
    ASSERT_TRUE(story.areLive());
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(target));
}

TEST_F(InstalledProgramTest, ItsEntryStartsItOverTheBus) {
    story.run({"gtk-launch", installed::identifier});
    user.managementComes();
    EXPECT_GT(installed::process(story.desktop), 0);
}

TEST_F(InstalledProgramTest, ItsEntryStartsItWhereTheBusIsNotAsked) {
    const auto program = story.desktop.start(InstalledEntry{}.command());
    user.managementComes();
    EXPECT_EQ(installed::process(story.desktop), program->pid());
}

TEST_F(InstalledProgramTest, TheActionsOfItsEntryWork) {
    const InstalledEntry entry;
    ASSERT_THAT(entry.actions(),
                ElementsAre("openMainWindow", "exportShortcuts", "importShortcuts", "quitApp"));
    const auto program = story.desktop.start(entry.command("openMainWindow"));
    user.managementComes();
    for (const auto& [action, title] : {std::pair{"exportShortcuts", user.titles.exporting},
                                        std::pair{"importShortcuts", user.titles.importing}}) {
        story.run(entry.command(action));
        user.strikeAndLeave(user.comes(title), "ESC");
    }
    story.run(entry.command("quitApp"));
    EXPECT_EQ(program->wait(), 0) << program->errors();
}

TEST_F(InstalledProgramTest, TheActionsOfItsEntryWorkOverTheBus) {
    const auto act = [this](const std::string& action) {
        installed::call(story.desktop, "ActivateAction", {action, "[]", "{}"});
    };
    act("openMainWindow");
    user.managementComes();
    const auto process = installed::process(story.desktop);
    for (const auto& [action, title] : {std::pair{"exportShortcuts", user.titles.exporting},
                                        std::pair{"importShortcuts", user.titles.importing}}) {
        act(action);
        user.strikeAndLeave(user.comes(title), "ESC");
    }
    act("quitApp");
    EXPECT_TRUE(waitUntil([&] { return ::kill(process, 0) != 0; }));
}

TEST_F(InstalledProgramTest, ItsEntryCallsTheActionsAsTheMenuDoes) {
    StatusMenu menu(story.desktop);
    menu.startHost();
    activate();
    ASSERT_TRUE(menu.showsItem());
    const InstalledEntry entry;
    const auto japanese = menu.labels();
    menu.choose("English");
    ASSERT_TRUE(menu.becomes("English", true));
    const auto english = menu.labels();
    for (const auto& action : entry.actions()) {
        EXPECT_THAT(japanese, Contains(entry.value(action, "Name[ja]")));
        EXPECT_THAT(english, Contains(entry.value(action, "Name")));
    }
}

TEST_F(InstalledLookTest, ItsWindowsNameTheEntryAndShowItsIcon) {
    activate();
    const InstalledEntry entry;
    EXPECT_EQ(entry.value("Icon"), installed::identifier);
    EXPECT_EQ(entry.value("StartupWMClass"), story.pager.classOf(story.pager.activeWindow()));
    EXPECT_THAT(iconSizes(story.pager.activeWindow()),
                IsSupersetOf({"32 x 32", "48 x 48", "64 x 64"}));
}

TEST_F(InstalledProgramTest, AllThatItLoadsComesWithWhatThePackageDependsOn) {
    StatusMenu menu(story.desktop);
    menu.startHost();
    const auto& target = bindTarget();
    activate();
    ASSERT_TRUE(menu.showsItem());
    const auto editor = user.clickAdd();
    user.choose(editor, target.name());
    story.strike(bound);
    ASSERT_TRUE(story.isInFront(target));

    const auto libraries = librariesOf(installed::process(story.desktop));
    EXPECT_THAT(libraries, Contains(testing::HasSubstr("/libqsvg.so")));
    std::vector<std::string> line{HFP_PYTHON, "-B", HFP_DEPENDENCIES, HFP_PACKAGE};
    line.insert(line.end(), libraries.begin(), libraries.end());
    ChildProcess comparison(line);
    EXPECT_EQ(comparison.wait(30s), 0) << comparison.errors();
    EXPECT_EQ(comparison.output(), "");
}

TEST_F(InstalledProgramTest, NothingIsLeftOfAPackageThatIsPurged) {
    ASSERT_THAT(package.files(), Contains(fs::path(installed::program)));
    package.purge();
    EXPECT_THAT(package.files(), IsEmpty());
}

} // namespace
} // namespace hollowfernpike::test
