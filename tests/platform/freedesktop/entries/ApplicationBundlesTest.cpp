#include "platform/freedesktop/entries/ApplicationBundles.h"

#include "platform/freedesktop/ApplicationsHome.h"

#include <algorithm>
#include <cstdlib>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike::test {
namespace {

using platform::FileIcon;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ApplicationBundlesTest : public testing::Test {
protected:
    ApplicationBundlesTest() { ::unsetenv("XDG_CURRENT_DESKTOP"); }

    FileIcon iconOf(const std::string& value) {
        return bundles_.iconForFile(home_.addEntry("icon", "true", "Icon=" + value + '\n'));
    }

    std::vector<std::string> offered(const std::string& language = "en") {
        std::vector<std::string> identifiers;
        for (const auto& application : bundles_.installedApplications(language)) {
            identifiers.push_back(application.bundleIdentifier);
        }
        std::ranges::sort(identifiers);
        return identifiers;
    }

    platform::InstalledApplication only(const std::string& language) {
        const auto applications = bundles_.installedApplications(language);
        EXPECT_EQ(applications.size(), 1U);
        return applications.at(0);
    }

    ApplicationsHome home_;
    freedesktop::DesktopEntries entries_;
    freedesktop::ApplicationBundles bundles_{entries_};
};

// --- what lies at a path ---

TEST_F(ApplicationBundlesTest, ABundlesIdentifierIsThatOfItsEntry) {
    const auto path = home_.addEntry("org.example.Editor", "true");
    const auto below = home_.write(home_.applications() / "kde/App.desktop",
                                   "[Desktop Entry]\nType=Application\nName=A\nExec=true\n");
    EXPECT_EQ(bundles_.bundleAt(path).value().bundleIdentifier, "org.example.Editor");
    EXPECT_EQ(bundles_.bundleAt(below).value().bundleIdentifier, "kde-App");
}

TEST_F(ApplicationBundlesTest, AnEntryElsewhereIsIdentifiedByItsFileName) {
    home_.addEntry("app", "true");
    const auto* const text = "[Desktop Entry]\nType=Application\nName=Other\nExec=true\n";
    const auto bundle = bundles_.bundleAt(home_.write(home_.path() / "Desktop/app.desktop", text));
    ASSERT_TRUE(bundle);
    EXPECT_EQ(bundle->bundleIdentifier, "app");
}

TEST_F(ApplicationBundlesTest, ALinkToAnInstalledEntryIsThatApplication) {
    const auto path = home_.addEntry("app", "true");
    const auto link = home_.path() / "app.desktop";
    std::filesystem::create_symlink(path, link);
    EXPECT_EQ(bundles_.bundleAt(link).value().bundleIdentifier, "app");
}

TEST_F(ApplicationBundlesTest, WhatIsNoApplicationIsNoBundle) {
    const auto& directory = home_.applications();
    EXPECT_FALSE(bundles_.bundleAt(""));
    EXPECT_FALSE(bundles_.bundleAt(directory / "nothing.desktop"));
    EXPECT_FALSE(bundles_.bundleAt(directory));
    EXPECT_FALSE(bundles_.bundleAt("/dev/zero"));
    EXPECT_FALSE(bundles_.bundleAt(home_.write(directory / "noise.desktop", "\x01\xFF[[[\n")));
    EXPECT_FALSE(bundles_.bundleAt(home_.write(home_.path() / "notes.txt", "Exec=true\n")));
    EXPECT_FALSE(bundles_.bundleAt(home_.addEntry("lost", "/nowhere/at/all")));
    EXPECT_FALSE(bundles_.bundleAt(home_.addEntry("removed", "true", "Hidden=true\n")));
    EXPECT_FALSE(bundles_.bundleAt(home_.addEntry("app", "true") + '\0' + "/app.desktop"));
}

TEST_F(ApplicationBundlesTest, ABundleIsAsItsFileIsNow) {
    const auto path = home_.addEntry("app", "true");
    EXPECT_TRUE(bundles_.bundleAt(path));
    std::filesystem::remove(path);
    EXPECT_FALSE(bundles_.bundleAt(path));
    home_.addEntry("app", "true");
    EXPECT_TRUE(bundles_.bundleAt(path));
}

// --- icons ---

TEST_F(ApplicationBundlesTest, AnIconIsANameInTheTheme) {
    EXPECT_EQ(iconOf("org.example.Editor"), (FileIcon{"org.example.Editor", ""}));
    EXPECT_EQ(iconOf("web-browser"), (FileIcon{"web-browser", ""}));
}

TEST_F(ApplicationBundlesTest, OrAnImageAtAnAbsolutePath) {
    EXPECT_EQ(iconOf("/opt/a b/icon.png"), (FileIcon{"", "/opt/a b/icon.png"}));
}

TEST_F(ApplicationBundlesTest, ANameLosesTheExtensionOfAnImage) {
    EXPECT_EQ(iconOf("editor.png").themeName, "editor");
    EXPECT_EQ(iconOf("editor.svg").themeName, "editor");
    EXPECT_EQ(iconOf("editor.xpm").themeName, "editor");
    EXPECT_EQ(iconOf("org.example.Png").themeName, "org.example.Png");
    EXPECT_EQ(iconOf("editor.jpeg").themeName, "editor.jpeg");
}

TEST_F(ApplicationBundlesTest, WithoutAnIconThereIsNone) {
    EXPECT_EQ(bundles_.iconForFile(home_.addEntry("app", "true", "Icon=edit\n") + '\0'),
              FileIcon{});
    EXPECT_EQ(bundles_.iconForFile(home_.addEntry("app", "true")), FileIcon{});
    EXPECT_EQ(bundles_.iconForFile("/nowhere/at/all.desktop"), FileIcon{});
    EXPECT_EQ(bundles_.iconForFile(""), FileIcon{});
}

// --- the listing ---

TEST_F(ApplicationBundlesTest, ListsWhatMenusShow) {
    home_.addEntry("shown", "true");
    home_.addEntry("hidden", "true", "Hidden=true\n");
    home_.addEntry("helper", "true", "NoDisplay=true\n");
    home_.addEntry("untried", "true", "TryExec=/nowhere/at/all\n");
    home_.addEntry("lost", "/nowhere/at/all");
    home_.addEntry("idle", "");
    home_.write(home_.systemApplications() / "theirs.desktop",
                "[Desktop Entry]\nType=Application\nName=T\nExec=true\nTryExec=true\n");
    home_.write(home_.applications() / "link.desktop",
                "[Desktop Entry]\nType=Link\nName=L\nURL=file:///\n");
    EXPECT_THAT(offered(), ElementsAre("shown", "theirs"));
}

TEST_F(ApplicationBundlesTest, AListedApplicationIsDescribedInFull) {
    const auto path = home_.addEntry("org.example.Web", "true %U",
                                     "GenericName=Web Browser\nKeywords=Internet;WWW;\n"
                                     "Icon=web.png\n");
    const auto application = only("en");
    EXPECT_EQ(application.path, path);
    EXPECT_EQ(application.bundleIdentifier, "org.example.Web");
    EXPECT_EQ(application.name, "org.example.Web");
    EXPECT_EQ(application.genericName, "Web Browser");
    EXPECT_THAT(application.keywords, ElementsAre("Internet", "WWW"));
    EXPECT_EQ(application.icon, (FileIcon{"web", ""}));
}

TEST_F(ApplicationBundlesTest, TextsAreInTheLanguageThatWasAskedFor) {
    home_.addEntry("app", "true",
                   "Name[ja]=ファイル\nName[de]=Dateien\nGenericName=Manager\n"
                   "GenericName[ja]=管理\nKeywords=folder;\nKeywords[ja]=フォルダ;整理\n");
    const auto japanese = only("ja");
    EXPECT_EQ(japanese.name, "ファイル");
    EXPECT_EQ(japanese.genericName, "管理");
    EXPECT_THAT(japanese.keywords, ElementsAre("フォルダ", "整理"));
    const auto english = only("en");
    EXPECT_EQ(english.name, "app");
    EXPECT_EQ(english.genericName, "Manager");
    EXPECT_THAT(english.keywords, ElementsAre("folder"));
}

TEST_F(ApplicationBundlesTest, TheLanguageOfTheProcessDoesNotMatter) {
    ::setenv("LANGUAGE", "ja", 1);
    ::setenv("LC_ALL", "ja_JP.UTF-8", 1);
    home_.addEntry("app", "true", "Name[ja]=ファイル\nName[de]=Dateien\n");
    EXPECT_EQ(only("en").name, "app");
    EXPECT_EQ(only("de").name, "Dateien");
}

TEST_F(ApplicationBundlesTest, AnEnglishTranslationWinsOverTheUntranslatedText) {
    home_.addEntry("app", "true", "Name[en]=Files\n");
    EXPECT_EQ(only("en").name, "Files");
    EXPECT_EQ(only("ja").name, "app");
}

TEST_F(ApplicationBundlesTest, ANameThatIsNoTextIsReplacedByThatOfTheFile) {
    home_.addEntry("app", "true", "Name[ja]=caf\xE9\n");
    EXPECT_EQ(only("ja").name, "app");
}

TEST_F(ApplicationBundlesTest, ApplicationsOfOtherDesktopsAreNotListed) {
    home_.addEntry("everywhere", "true");
    home_.addEntry("gnome", "true", "OnlyShowIn=GNOME;Unity;\n");
    home_.addEntry("no-gnome", "true", "NotShowIn=GNOME;\n");
    home_.addEntry("nowhere", "true", "OnlyShowIn=\n");
    EXPECT_THAT(offered(), ElementsAre("everywhere", "no-gnome"));
    ::setenv("XDG_CURRENT_DESKTOP", "GNOME", 1);
    EXPECT_THAT(offered(), ElementsAre("everywhere", "gnome"));
    ::setenv("XDG_CURRENT_DESKTOP", "KDE", 1);
    EXPECT_THAT(offered(), ElementsAre("everywhere", "no-gnome"));
}

TEST_F(ApplicationBundlesTest, OfSeveralDesktopNamesTheFirstThatIsMentionedCounts) {
    home_.addEntry("gnome", "true", "OnlyShowIn=GNOME;\nNotShowIn=ubuntu;\n");
    ::setenv("XDG_CURRENT_DESKTOP", "other:GNOME:ubuntu", 1);
    EXPECT_THAT(offered(), ElementsAre("gnome"));
    ::setenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME", 1);
    EXPECT_THAT(offered(), IsEmpty());
}

TEST_F(ApplicationBundlesTest, TheListingFollowsTheFiles) {
    const auto path = home_.addEntry("app", "true", "Name[ja]=前\n");
    EXPECT_EQ(only("ja").name, "前");
    home_.addEntry("app", "true", "Name[ja]=後の\n");
    EXPECT_EQ(only("ja").name, "後の");
    std::filesystem::remove(path);
    EXPECT_THAT(offered(), IsEmpty());
}

// --- directories ---

TEST_F(ApplicationBundlesTest, DirectoriesAreThoseThatExistTheUsersFirst) {
    EXPECT_THAT(bundles_.applicationDirectories(),
                ElementsAre(home_.applications(), home_.systemApplications()));
    std::filesystem::remove(home_.applications());
    EXPECT_THAT(bundles_.applicationDirectories(), ElementsAre(home_.systemApplications()));
}

TEST_F(ApplicationBundlesTest, ADirectoryThatIsNamedTwiceIsListedOnce) {
    freedesktop::DesktopEntries twice({home_.applications(), home_.applications()});
    EXPECT_THAT(freedesktop::ApplicationBundles(twice).applicationDirectories(),
                ElementsAre(home_.applications()));
}

TEST_F(ApplicationBundlesTest, ToldApartAreThoseThatAreGoneAndThoseThatAreNotTrusted) {
    using platform::Standing;
    EXPECT_EQ(bundles_.standingOf(home_.addEntry("app", "true")), Standing::fine);
    EXPECT_EQ(bundles_.standingOf("/nowhere/app.desktop"), Standing::gone);
    EXPECT_EQ(bundles_.standingOf(home_.addEntry("lost", "/no/such/program")), Standing::gone);
    EXPECT_EQ(bundles_.standingOf(home_.addEntry("hidden", "true", "Hidden=true\n")),
              Standing::gone);
    const auto outside = home_.write(home_.path() / "Downloads/tool.desktop",
                                     "[Desktop Entry]\nType=Application\nName=T\nExec=true\n");
    EXPECT_EQ(bundles_.standingOf(outside), Standing::untrusted);
    std::filesystem::permissions(outside, std::filesystem::perms::owner_all);
    EXPECT_EQ(bundles_.standingOf(outside), Standing::fine);
}

} // namespace
} // namespace hollowfernpike::test
