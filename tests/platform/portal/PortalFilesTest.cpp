#include "platform/portal/PortalFiles.h"

#include "support/TemporaryDirectory.h"
#include "support/WriteFile.h"

#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

namespace hollowfernpike::test {

namespace {

constexpr const char* keys = "org.freedesktop.impl.portal.GlobalShortcuts";

class PortalFilesTest : public testing::Test {
protected:
    PortalFilesTest() {
        for (const char* variable :
             {"XDG_DATA_HOME", "XDG_DATA_DIRS", "XDG_CONFIG_HOME", "XDG_CONFIG_DIRS"}) {
            ::setenv(variable, (home_.path() / variable).c_str(), 1);
        }
    }

    void installPortal(const std::string& name, const std::string& users,
                       const std::string& interface = keys) {
        writeFile(home_.path() / "XDG_DATA_DIRS/xdg-desktop-portal/portals" / (name + ".portal"),
                  "[portal]\nDBusName=x\nInterfaces=org.example.Other;" + interface +
                      ";\nUseIn=" + users + '\n');
    }

    void choose(const std::string& file, const std::string& line) {
        writeFile(home_.path() / "XDG_CONFIG_HOME/xdg-desktop-portal" / file,
                  "# of the user's\n[preferred]\n" + line + '\n');
    }

    TemporaryDirectory home_;
};

TEST_F(PortalFilesTest, NothingIsInstalled) {
    EXPECT_EQ(portal::portalFor(keys, "GNOME"), "");
}

TEST_F(PortalFilesTest, APortalSaysWhereItIsUsed) {
    installPortal("gnome", "gnome");
    EXPECT_EQ(portal::portalFor(keys, "GNOME"), "gnome");
    EXPECT_EQ(portal::portalFor(keys, "Debian:GNOME"), "gnome");
    EXPECT_EQ(portal::portalFor(keys, "labwc:wlroots"), "");
    EXPECT_EQ(portal::portalFor(keys, ""), "");
}

TEST_F(PortalFilesTest, APortalThatBindsNoKeysDoesNotCount) {
    installPortal("gnome", "gnome", "org.freedesktop.impl.portal.Screenshot");
    EXPECT_EQ(portal::portalFor(keys, "GNOME"), "");
}

TEST_F(PortalFilesTest, WhatWasChosenForTheDesktopComesFirst) {
    installPortal("gnome", "gnome");
    installPortal("other", "other");
    choose("gnome-portals.conf", "default=gtk;\norg.freedesktop.impl.portal.GlobalShortcuts=other");
    EXPECT_EQ(portal::portalFor(keys, "GNOME"), "other");
    EXPECT_EQ(portal::portalFor(keys, "Other"), "other") << "nothing was chosen there";
    choose("gnome-portals.conf", "default=gnome;gtk;");
    EXPECT_EQ(portal::portalFor(keys, "GNOME"), "gnome");
    choose("gnome-portals.conf", "default=none");
    EXPECT_EQ(portal::portalFor(keys, "GNOME"), "");
}

TEST_F(PortalFilesTest, TheFirstOfThoseThatWereChosenIsTaken) {
    installPortal("a", "other");
    installPortal("b", "other");
    choose("portals.conf", "default = missing;b;a;");
    EXPECT_EQ(portal::portalFor(keys, "GNOME"), "b");
    choose("portals.conf", "default=a;b");
    EXPECT_EQ(portal::portalFor(keys, "GNOME"), "a");
    choose("portals.conf", "default=b;*");
    EXPECT_EQ(portal::portalFor(keys, "GNOME"), "b");
    choose("portals.conf", "default=b;none");
    EXPECT_EQ(portal::portalFor(keys, "GNOME"), "");
}

TEST_F(PortalFilesTest, AStarMeansAnyAndOneFileIsForAllDesktops) {
    installPortal("other", "other");
    choose("portals.conf", "default=*");
    EXPECT_EQ(portal::portalFor(keys, "GNOME"), "other");
}

} // namespace

} // namespace hollowfernpike::test
