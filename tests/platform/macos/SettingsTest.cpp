#include "platform/macos/fakes/Settings.h"
#include "platform/macos/ApplicationBundles.h"
#include "platform/macos/FileManager.h"
#include "platform/macos/LoginItem.h"
#include "platform/macos/OwnWindows.h"
#include "platform/macos/UserDefaults.h"
#include "platform/macos/fakes/FakeMac.h"
#include "support/TemporaryDirectory.h"

#include <fstream>

#include <gmock/gmock.h>

namespace hollowfernpike::macos {

namespace {

using platform::LoginItemStatus;
using test::FakeMac;
using testing::Contains;
using testing::ElementsAre;
using testing::Eq;
using testing::IsEmpty;
using testing::Key;
using testing::Optional;
using testing::SizeIs;

TEST(LoginItemTest, HasTheFourStatesOfTheSystem) {
    constexpr LoginItemStatus states[] = {LoginItemStatus::notRegistered, LoginItemStatus::enabled,
                                          LoginItemStatus::requiresApproval,
                                          LoginItemStatus::notFound};
    for (const auto state : states) {
        FakeMac::shared().loginItemStatus = static_cast<long>(state);
        EXPECT_EQ(LoginItem().status(), state);
    }
    FakeMac::shared().loginItemStatus = 7;
    EXPECT_EQ(LoginItem().status(), LoginItemStatus::notFound) << "one that came later";
}

TEST(LoginItemTest, ComesAndGoes) {
    FakeMac::shared().loginItemError.clear();
    LoginItem().registerItem();
    EXPECT_EQ(LoginItem().status(), LoginItemStatus::enabled);
    LoginItem().unregisterItem();
    EXPECT_EQ(LoginItem().status(), LoginItemStatus::notRegistered);
}

TEST(LoginItemTest, TellsWhatTheSystemSaysOfAFailure) {
    FakeMac::shared().loginItemError = "not allowed";
    using Change = void (LoginItem::*)();
    for (const Change change : {&LoginItem::registerItem, &LoginItem::unregisterItem}) {
        try {
            (LoginItem().*change)();
            ADD_FAILURE() << "nothing was thrown";
        } catch (const platform::LocalizedError& error) {
            EXPECT_EQ(error.english(), "not allowed");
            EXPECT_EQ(error.japanese(), "not allowed");
        }
    }
}

class UserDefaultsTest : public testing::Test {
protected:
    UserDefaultsTest() { test::emptySettings(); }
    ~UserDefaultsTest() override { test::emptySettings(); }

    UserDefaults defaults_;
};

TEST_F(UserDefaultsTest, KeepsTexts) {
    EXPECT_EQ(defaults_.stringForKey("AppLanguage"), std::nullopt);
    EXPECT_FALSE(defaults_.objectForKey("AppLanguage").has_value());
    defaults_.setString("日本語", "AppLanguage");
    EXPECT_THAT(defaults_.stringForKey("AppLanguage"), Optional(Eq("日本語")));
    EXPECT_TRUE(defaults_.objectForKey("AppLanguage").has_value());
}

TEST_F(UserDefaultsTest, ANumberIsNoText) {
    test::setNumberInSettings("count", 3);
    EXPECT_EQ(defaults_.stringForKey("count"), std::nullopt);
    EXPECT_TRUE(defaults_.objectForKey("count").has_value());
}

TEST_F(UserDefaultsTest, WritesAValueAsItWasAlthoughItWasReplacedMeanwhile) {
    test::setListInSettings("list", {"one", "two"});
    const auto value = defaults_.objectForKey("list");
    defaults_.setString("replaced", "list");
    defaults_.setObject(value, "copy");
    EXPECT_THAT(test::listInSettings("copy"), ElementsAre("one", "two"));
    EXPECT_THAT(test::listInSettings("list"), IsEmpty());
}

TEST_F(UserDefaultsTest, AnEmptyValueIsNotWritten) {
    defaults_.setString("en", "AppLanguage");
    defaults_.setObject({}, "AppLanguage");
    EXPECT_THAT(defaults_.stringForKey("AppLanguage"), Optional(Eq("en")));
}

TEST_F(UserDefaultsTest, ReadsTheDomainsOfOthers) {
    EXPECT_EQ(defaults_.persistentDomainForName("com.local.Hollowfernpike"), std::nullopt);
    test::setOtherDomain("com.local.Hollowfernpike", "AppLanguage", "en");
    const auto domain = defaults_.persistentDomainForName("com.local.Hollowfernpike");
    ASSERT_TRUE(domain);
    EXPECT_THAT(*domain, ElementsAre(Key("AppLanguage")));
    defaults_.setObject(domain->at("AppLanguage"), "AppLanguage");
    EXPECT_THAT(defaults_.stringForKey("AppLanguage"), Optional(Eq("en")));
}

TEST(FileManagerTest, KnowsWhereApplicationsKeepTheUsersData) {
    const auto directories = FileManager().applicationSupportDirectories();
    ASSERT_THAT(directories, testing::Not(IsEmpty()));
    EXPECT_TRUE(directories.front().is_absolute());
    EXPECT_THAT(directories.front().string(), testing::HasSubstr("Support"));
}

TEST(OwnWindowsTest, TheDockFollowsThePolicy) {
    OwnWindows().setShownAsApplication(true);
    EXPECT_THAT(FakeMac::shared().activationPolicy, Optional(0));
    OwnWindows().setShownAsApplication(false);
    EXPECT_THAT(FakeMac::shared().activationPolicy, Optional(1));
}

TEST(OwnWindowsTest, AWindowComesWithTheApplication) {
    OwnWindows().bringToFront(test::nativeView());
    EXPECT_THAT(FakeMac::shared().requests, ElementsAre("activate us", "window in front"));
}

class ApplicationBundlesTest : public testing::Test {
protected:
    std::string make(const std::string& name, const std::string& keys) {
        const auto bundle = directory_.path() / name;
        std::filesystem::create_directories(bundle / "Resources");
        std::ofstream(bundle / "Resources" / "Info.plist")
            << "<?xml version=\"1.0\"?>\n<plist version=\"1.0\"><dict>" << keys
            << "</dict></plist>\n";
        return bundle.string();
    }

    std::string mail() {
        return make("Mail.app", "<key>CFBundleIdentifier</key><string>org.example.Mail</string>");
    }

    test::TemporaryDirectory directory_;
    ApplicationBundles bundles_;
};

TEST_F(ApplicationBundlesTest, ABundleHasAnIdentifierOrNone) {
    const auto found = bundles_.bundleAt(mail());
    ASSERT_TRUE(found);
    EXPECT_THAT(found->bundleIdentifier, Optional(Eq("org.example.Mail")));
    const auto nameless = bundles_.bundleAt(make("Plain.app", ""));
    ASSERT_TRUE(nameless);
    EXPECT_FALSE(nameless->bundleIdentifier);
    EXPECT_FALSE(bundles_.bundleAt("/nowhere.app"));
    EXPECT_FALSE(bundles_.bundleAt("\xFF"));
    EXPECT_FALSE(bundles_.bundleAt(""));
}

TEST_F(ApplicationBundlesTest, ItsNameHasNoExtension) {
    EXPECT_EQ(bundles_.displayName(mail(), "ja"), "Mail");
    EXPECT_EQ(bundles_.displayName("/nowhere.app", "ja"), "");
}

TEST_F(ApplicationBundlesTest, IsFineAsLongAsItIsThere) {
    EXPECT_EQ(bundles_.standingOf(mail()), platform::Standing::fine);
    EXPECT_EQ(bundles_.standingOf("/nowhere.app"), platform::Standing::gone);
}

TEST_F(ApplicationBundlesTest, TheSystemDrawsItsIcon) {
    EXPECT_EQ(bundles_.iconForFile(mail()).drawnFor, mail());
    EXPECT_EQ(bundles_.iconForFile("/nowhere.app").drawnFor, "/nowhere.app") << "a generic one";
    const auto icon = bundles_.drawIcon(mail(), 3);
    ASSERT_TRUE(icon);
    EXPECT_EQ(icon->side, 3);
    ASSERT_THAT(icon->bytes, SizeIs(3 * 3 * 4));
    for (std::size_t pixel = 0; pixel < 9; ++pixel) {
        EXPECT_EQ(icon->bytes[pixel * 4], pixel / 3) << "row";
        EXPECT_EQ(icon->bytes[pixel * 4 + 1], pixel % 3) << "column";
        EXPECT_EQ(icon->bytes[pixel * 4 + 3], 255);
    }
    EXPECT_FALSE(bundles_.drawIcon("/nothing", 3));
    EXPECT_FALSE(bundles_.drawIcon(mail(), 0));
    EXPECT_FALSE(bundles_.drawIcon("", 3));
}

TEST_F(ApplicationBundlesTest, AreFoldersForFilePanels) {
    EXPECT_EQ(bundles_.applicationFiles().extension, ".app");
    EXPECT_TRUE(bundles_.applicationFiles().areFolders);
}

TEST_F(ApplicationBundlesTest, ListsThoseOfTheUserAndOfFoldersButNotWhatIsInsideThem) {
    const test::HomeOfApplications home;
    const auto add = [&home](const std::string& place, const std::string& identifier) {
        const auto resources = home.applications() / place / "Resources";
        std::filesystem::create_directories(resources);
        std::ofstream(resources / "Info.plist")
            << "<?xml version=\"1.0\"?>\n<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key>"
            << "<string>" << identifier << "</string></dict></plist>\n";
    };
    add("Mail.app", "org.example.Mail");
    add("Mail.app/Inside.app", "org.example.Inside");
    add("Tools/Hammer.app", "org.example.Hammer");
    add("Tools/Deep/Down.app", "org.example.Down");
    EXPECT_THAT(bundles_.applicationDirectories(), Contains(home.applications().string()));
    std::vector<std::string> identifiers;
    for (const auto& installed : bundles_.installedApplications("en")) {
        identifiers.push_back(installed.bundleIdentifier);
    }
    EXPECT_THAT(identifiers,
                testing::UnorderedElementsAre("org.example.Mail", "org.example.Hammer"));
}

} // namespace

} // namespace hollowfernpike::macos
