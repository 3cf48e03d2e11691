#include "support/PrivateDesktop.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike::test {

namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

std::vector<std::string> sharedNames(const std::filesystem::path& directory) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory)) {
        names.push_back(entry.path().filename());
    }
    return names;
}

TEST(PrivateDesktopTest, SeesNothingOfTheMachineThatItWasNotGiven) {
    const PrivateDesktop desktop("");
    const std::filesystem::path shared = *desktop.environment().at("XDG_DATA_DIRS");
    EXPECT_THAT(sharedNames(shared / "applications"), IsEmpty());
    EXPECT_THAT(sharedNames(shared / "icons"),
                UnorderedElementsAre("Adwaita", "breeze", "breeze-dark", "default"));
    EXPECT_THAT(sharedNames(shared / "themes"),
                UnorderedElementsAre("Adwaita", "Clearlooks", "Default"));
    const auto services = callOnBus(desktop, {"org.freedesktop.DBus", "/org/freedesktop/DBus",
                                              "org.freedesktop.DBus.ListActivatableNames"});
    EXPECT_THAT(services, AllOf(HasSubstr("'org.a11y.Bus'"), HasSubstr("'org.xfce.Xfconf'"),
                                HasSubstr("'org.cinnamon.ScreenSaver'")));
    EXPECT_EQ(std::ranges::count(services, ','), 4) << services;
}

} // namespace

} // namespace hollowfernpike::test
