#include "desktop/windows/WindowStoryTest.h"
#include "support/Files.h"
#include "support/UserDatabase.h"
#include "support/WriteFile.h"

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gmock/gmock.h>

namespace hollowfernpike {
namespace {

using namespace test;
using testing::Contains;
using testing::Each;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
namespace fs = std::filesystem;

/// The user database knows the home; the working directory is an empty one elsewhere.
class HomeTest : public WindowStoryTest {
protected:
    const fs::path home = story.desktop.home();
    const fs::path settings = home / ".config/app.hollowfernpike.Hollowfernpike.conf";
    const TemporaryDirectory elsewhere;

    void SetUp() override {
        haveHomeInTheUserDatabase(home);
        fs::current_path(elsewhere.path());
    }

    /// What this process was started with, as "NAME=value".
    static std::vector<std::string> environmentOf(pid_t process) {
        std::ifstream stream("/proc/" + std::to_string(process) + "/environ");
        std::vector<std::string> variables;
        for (std::string variable; std::getline(stream, variable, '\0');) {
            variables.push_back(variable);
        }
        return variables;
    }

    /// Adds a shortcut for an application that does not run, and has its keys launch it.
    std::vector<std::string> environmentOfWhatIsLaunched() {
        auto& quartz = story.install("Quartz");
        story.openManagement();
        story.add(quartz, first);
        EXPECT_TRUE(story.switchTo(story.front));
        story.strike(first);
        EXPECT_TRUE(story.isInFront(quartz));
        return environmentOf(quartz.copies().at(0));
    }
};

/// Variables of the session that are unset, or count as if they were.
struct OddVariables {
    const char* name;
    Environment changes;
};

// NOLINTNEXTLINE(readability-identifier-naming): the name is GoogleTest's
void PrintTo(const OddVariables& variables, std::ostream* out) {
    *out << variables.name;
}

class OddVariablesTest : public HomeTest, public testing::WithParamInterface<OddVariables> {};

INSTANTIATE_TEST_SUITE_P(
    Which, OddVariablesTest,
    testing::Values(
        OddVariables{.name = "AreUnset",
                     .changes = {{"HOME", std::nullopt},
                                 {"XDG_CONFIG_HOME", std::nullopt},
                                 {"XDG_DATA_HOME", std::nullopt},
                                 {"XDG_CONFIG_DIRS", std::nullopt},
                                 {"DBUS_FATAL_WARNINGS", std::nullopt}}},
        OddVariables{.name = "AreRelative",
                     .changes = {{"HOME", "home"},
                                 {"XDG_CONFIG_HOME", "config"},
                                 {"XDG_DATA_HOME", "data"},
                                 {"XDG_CACHE_HOME", "cache"},
                                 {"TMPDIR", "tmp"}}},
        OddVariables{.name = "AreRelativeButHome", .changes = {{"XDG_CONFIG_HOME", "config"}}},
        OddVariables{.name = "AreEmpty",
                     .changes = {{"HOME", ""}, {"XDG_CONFIG_HOME", ""}, {"XDG_DATA_HOME", ""}}}),
    [](const auto& tested) { return tested.param.name; });

TEST_P(OddVariablesTest, HaveAllFilesInOneHomeAndNoneInTheWorkingDirectory) {
    story.start(GetParam().changes);
    const auto variables = environmentOfWhatIsLaunched();
    EXPECT_THAT(contentsOf(settings), HasSubstr("preferencesMigratedFrom"));
    EXPECT_EQ(contents(home / ".local/share/Hollowfernpike/shortcuts.json").size(), 1U);
    EXPECT_TRUE(fs::is_empty(elsewhere.path()));
    for (const auto& [name, value] : GetParam().changes) {
        if (value) {
            EXPECT_THAT(variables, Contains(name + '=' + *value));
        } else {
            EXPECT_THAT(variables, Each(Not(StartsWith(name + '='))));
        }
    }
}

TEST_F(HomeTest, SettingsForAllUsersAreNotLookedForInTheWorkingDirectory) {
    const std::string file = "app.hollowfernpike.Hollowfernpike.conf";
    writeFile(elsewhere.path() / "relative" / file, "AppLanguage=ja\n");
    writeFile(home / "all" / file, "AppLanguage=en\n");
    story.titles = englishTitles;
    story.start({{"XDG_CONFIG_DIRS", "relative:" + (home / "all").string()}});
    story.openManagement();
}

} // namespace
} // namespace hollowfernpike
