#include "platform/freedesktop/entries/DesktopEntries.h"

#include "platform/LocalizedError.h"
#include "platform/freedesktop/ApplicationsHome.h"

#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike::freedesktop {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr auto minimal = "[Desktop Entry]\nType=Application\nName=A\nExec=true\n";

class DesktopEntriesTest : public ::testing::Test {
protected:
    std::vector<std::string> identifiers() {
        std::vector<std::string> result;
        for (const auto& entry : entries_.index().entries()) {
            result.push_back(entry.identifier);
        }
        std::ranges::sort(result);
        return result;
    }

    std::string pathOf(const std::string& identifier) {
        const auto* entry = entries_.index().withIdentifier(identifier);
        return entry == nullptr ? std::string{} : entry->path;
    }

    test::ApplicationsHome home_;
    DesktopEntries entries_;
};

TEST_F(DesktopEntriesTest, ListsTheUsersAndTheSystemsApplications) {
    home_.addEntry("mine", "true");
    home_.write(home_.systemApplications() / "theirs.desktop", minimal);
    home_.write(home_.systemApplications() / "notes.txt", minimal);
    EXPECT_THAT(identifiers(), ElementsAre("mine", "theirs"));
}

TEST_F(DesktopEntriesTest, ASubdirectoryIsPartOfTheIdentifier) {
    const auto path = home_.write(home_.applications() / "kde/deep/org.kde.App.desktop", minimal);
    EXPECT_THAT(identifiers(), ElementsAre("kde-deep-org.kde.App"));
    EXPECT_EQ(entries_.entryAt(path).identifier, "kde-deep-org.kde.App");
    EXPECT_EQ(entries_.entryAt(path).name, "org.kde.App");
}

TEST_F(DesktopEntriesTest, AnEntryOfTheUserShadowsOneOfTheSystem) {
    const auto mine = home_.addEntry("app", "true");
    const auto theirs = home_.write(home_.systemApplications() / "app.desktop", minimal);
    EXPECT_EQ(pathOf("app"), mine);
    EXPECT_EQ(entries_.entryAt(theirs).identifier, "app");
    EXPECT_EQ(pathOf("app"), mine) << "still";
}

TEST_F(DesktopEntriesTest, AHiddenEntryOfTheUserRemovesOneOfTheSystem) {
    home_.addEntry("app", "true", "Hidden=true\n");
    home_.write(home_.systemApplications() / "app.desktop", minimal);
    EXPECT_THAT(identifiers(), IsEmpty());
}

TEST_F(DesktopEntriesTest, WhatCannotRunIsNotInstalled) {
    home_.addEntry("no-program", "/nowhere/at/all");
    home_.addEntry("idle", "");
    home_.addEntry("not-tried", "true", "TryExec=/nowhere/at/all\n");
    home_.write(home_.applications() / "broken.desktop", "[Desktop\n");
    home_.write(home_.applications() / "empty.desktop", "");
    home_.addEntry("fine", "true", "NoDisplay=true\n");
    EXPECT_THAT(identifiers(), ElementsAre("fine"));
}

TEST_F(DesktopEntriesTest, AnEntryElsewhereIsIdentifiedByItsFileName) {
    home_.addEntry("app", "true");
    const auto copy = home_.write(home_.path() / "Desktop/app.desktop", minimal);
    EXPECT_EQ(entries_.entryAt(copy).identifier, "app");
    EXPECT_EQ(entries_.entryAt(copy).path, copy);
    EXPECT_NE(pathOf("app"), copy) << "the installed one has the identifier";
    EXPECT_THROW(entries_.entryAt("/nowhere/app.desktop"), platform::LocalizedError);
}

TEST_F(DesktopEntriesTest, AnEntryElsewhereIsKnownOnceItWasAskedFor) {
    const auto stray = home_.write(home_.path() / "Desktop/tool.desktop", minimal);
    EXPECT_EQ(pathOf("tool"), "");
    EXPECT_EQ(entries_.entryAt(stray).identifier, "tool");
    ASSERT_EQ(pathOf("tool"), stray);
    EXPECT_FALSE(entries_.index().withIdentifier("tool")->isInstalled);
    const auto installed = home_.addEntry("tool", "true");
    EXPECT_EQ(pathOf("tool"), installed);
}

TEST_F(DesktopEntriesTest, ALinkToAnInstalledEntryHasItsIdentifier) {
    const auto path = home_.addEntry("app", "true");
    const auto link = home_.path() / "app.desktop";
    std::filesystem::create_symlink(path, link);
    EXPECT_EQ(entries_.entryAt(link.string()).identifier, "app");
}

TEST_F(DesktopEntriesTest, APathWithAZeroByteIsThatOfNoEntry) {
    const auto path = home_.addEntry("app", "true") + '\0';
    for (const auto& longer : {path, path + "/app.desktop"}) {
        EXPECT_EQ(entries_.index().withPath(longer), nullptr);
        EXPECT_THROW(entries_.entryAt(longer), platform::LocalizedError);
    }
}

TEST_F(DesktopEntriesTest, NothingNewLeavesTheGenerationAlone) {
    home_.addEntry("app", "true");
    const auto before = entries_.generation();
    EXPECT_GT(before, 0U);
    home_.write(home_.applications() / "mimeinfo.cache", "[MIME Cache]\n");
    std::filesystem::last_write_time(home_.systemApplications(),
                                     std::filesystem::file_time_type::clock::now());
    EXPECT_EQ(entries_.generation(), before);
}

TEST_F(DesktopEntriesTest, AnInstalledEntryIsSeenAtOnce) {
    const auto before = entries_.generation();
    home_.addEntry("new", "true");
    EXPECT_GT(entries_.generation(), before);
    EXPECT_THAT(identifiers(), ElementsAre("new"));
}

TEST_F(DesktopEntriesTest, ARemovedEntryIsMissedAtOnce) {
    const auto path = home_.addEntry("old", "true");
    const auto before = entries_.generation();
    std::filesystem::remove(path);
    EXPECT_GT(entries_.generation(), before);
    EXPECT_THAT(identifiers(), IsEmpty());
}

TEST_F(DesktopEntriesTest, AnEntryEditedInPlaceIsSeenAtOnce) {
    const auto path = home_.addEntry("app", "true", "StartupWMClass=Before\n");
    const auto before = entries_.generation();
    std::ofstream(path, std::ios::app) << "X-Comment=more\n";
    EXPECT_GT(entries_.generation(), before);
    home_.addEntry("app", "true", "StartupWMClass=After!\n");
    EXPECT_EQ(entries_.index().withIdentifier("app")->windowClass, "After!");
}

TEST_F(DesktopEntriesTest, AnEntryReplacedByRenamingIsSeenAtOnce) {
    const auto path = home_.addEntry("app", "true", "StartupWMClass=One\n");
    EXPECT_EQ(entries_.index().withIdentifier("app")->windowClass, "One");
    const auto fresh =
        home_.write(home_.path() / "fresh", std::string(minimal) + "StartupWMClass=Two\n");
    std::filesystem::rename(fresh, path);
    EXPECT_EQ(entries_.index().withIdentifier("app")->windowClass, "Two");
}

TEST_F(DesktopEntriesTest, ChangesInNewAndOldSubdirectoriesAreSeen) {
    home_.write(home_.applications() / "old/one.desktop", minimal);
    EXPECT_THAT(identifiers(), ElementsAre("old-one"));
    home_.write(home_.applications() / "old/two.desktop", minimal);
    EXPECT_THAT(identifiers(), ElementsAre("old-one", "old-two"));
    home_.write(home_.applications() / "new/three.desktop", minimal);
    EXPECT_THAT(identifiers(), ElementsAre("new-three", "old-one", "old-two"));
    home_.write(home_.applications() / "new/four.desktop", minimal);
    EXPECT_THAT(identifiers(), ElementsAre("new-four", "new-three", "old-one", "old-two"));
    std::filesystem::remove_all(home_.applications() / "old");
    EXPECT_THAT(identifiers(), ElementsAre("new-four", "new-three"));
}

TEST_F(DesktopEntriesTest, AnApplicationsDirectoryThatAppearsLaterIsSeen) {
    std::filesystem::remove_all(home_.path() / "data");
    const auto before = entries_.generation();
    home_.write(home_.path() / "unrelated.txt", "");
    EXPECT_EQ(entries_.generation(), before);
    home_.addEntry("late", "true");
    EXPECT_THAT(identifiers(), ElementsAre("late"));
}

TEST_F(DesktopEntriesTest, ALoopOfDirectoriesEnds) {
    home_.addEntry("app", "true");
    std::filesystem::create_directory_symlink(home_.applications(), home_.applications() / "loop");
    EXPECT_THAT(identifiers(), ElementsAre("app"));
}

TEST_F(DesktopEntriesTest, FoldersThatLinkToEachOtherAreReadOnce) {
    constexpr int folders = 24; // with all ways between them it would take hours
    for (int number = 0; number < folders; ++number) {
        const auto folder = home_.applications() / std::to_string(number);
        home_.write(folder / "app.desktop", minimal);
        for (int other = 0; other < folders; ++other) {
            std::filesystem::create_directory_symlink(home_.applications() / std::to_string(other),
                                                      folder / ("to" + std::to_string(other)));
        }
    }
    EXPECT_EQ(identifiers().size(), folders);
}

TEST_F(DesktopEntriesTest, AnUnlistedEntryThatChangesIsReadAsItIsNow) {
    const auto path = home_.write(home_.path() / "tool.desktop", minimal);
    EXPECT_EQ(entries_.entryAt(path).displayName, "A");
    home_.write(path, "[Desktop Entry]\nType=Application\nName=B\nExec=true\n");
    EXPECT_EQ(entries_.entryAt(path).displayName, "B");
    std::filesystem::remove(path);
    EXPECT_THROW(entries_.entryAt(path), platform::LocalizedError);
}

TEST_F(DesktopEntriesTest, ManyEntriesAreAllThere) {
    for (int number = 0; number < 500; ++number) {
        home_.addEntry("org.example.App" + std::to_string(number), "true %U");
    }
    EXPECT_EQ(entries_.index().entries().size(), 500U);
    EXPECT_NE(entries_.index().withIdentifier("org.example.App499"), nullptr);
}

TEST(ApplicationsDirectories, FollowTheEnvironmentAndItsDefaults) {
    ::setenv("XDG_DATA_HOME", "/home/me/data", 1);
    ::setenv("XDG_DATA_DIRS", "/one:relative::/two/", 1);
    EXPECT_THAT(applicationsDirectories(), ElementsAre("/home/me/data/applications",
                                                       "/one/applications", "/two/applications"));
    ::setenv("XDG_DATA_DIRS", "", 1);
    EXPECT_THAT(applicationsDirectories(),
                ElementsAre("/home/me/data/applications", "/usr/local/share/applications",
                            "/usr/share/applications"));
}

} // namespace

} // namespace hollowfernpike::freedesktop
