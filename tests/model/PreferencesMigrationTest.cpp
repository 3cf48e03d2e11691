#include "model/PreferencesMigration.h"

#include "support/fakes/FakeUserDefaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike {

namespace {

using testing::Contains;
using testing::Key;
using testing::Not;

constexpr std::string_view old = "com.local.Hollowfernpike";
constexpr std::string_view older = "com.local.Older";

class PreferencesMigrationTest : public testing::Test {
protected:
    std::optional<std::string> migrate(const std::vector<std::string_view>& previous = {old}) {
        return PreferencesMigration::run(defaults, previous);
    }

    std::string text(const std::string& key) {
        return defaults.stringForKey(key).value_or("(no text)");
    }

    test::FakeUserDefaults defaults;
    test::FakeUserDefaults::Domain& source = defaults.others[std::string{old}];
};

TEST_F(PreferencesMigrationTest, WithoutAnOldDomainTheMarkerIsEmptyAndNothingElseIsWritten) {
    defaults.others.clear();
    EXPECT_EQ(migrate(), std::nullopt);
    EXPECT_EQ(text("preferencesMigratedFrom"), "");
    EXPECT_EQ(defaults.own.size(), 1);
}

TEST_F(PreferencesMigrationTest, WithoutNamesTheMarkerIsEmpty) {
    source["AppLanguage"] = std::string{"en"};
    EXPECT_EQ(migrate({}), std::nullopt);
    EXPECT_EQ(text("preferencesMigratedFrom"), "");
    EXPECT_EQ(defaults.own.size(), 1);
}

TEST_F(PreferencesMigrationTest, AnOldDomainOfExcludedKeysCountsAsEmpty) {
    source["NSWindow Frame main"] = std::string{"0 0 1 1"};
    source["NSStatusItem Visible Item-0"] = true;
    EXPECT_EQ(migrate(), std::nullopt);
    EXPECT_EQ(text("preferencesMigratedFrom"), "");
    EXPECT_EQ(defaults.own.size(), 1);
}

TEST_F(PreferencesMigrationTest, TheLanguageIsCarriedOver) {
    source["AppLanguage"] = std::string{"en"};
    EXPECT_EQ(migrate(), old);
    EXPECT_EQ(text("AppLanguage"), "en");
    EXPECT_EQ(text("preferencesMigratedFrom"), old);
}

TEST_F(PreferencesMigrationTest, AnExistingSettingStays) {
    defaults.own["AppLanguage"] = std::string{"ja"};
    source["AppLanguage"] = std::string{"en"};
    EXPECT_EQ(migrate(), old);
    EXPECT_EQ(text("AppLanguage"), "ja");
    EXPECT_EQ(text("preferencesMigratedFrom"), old);
}

TEST_F(PreferencesMigrationTest, ASettingForAllUsersCountsAsExisting) {
    defaults.fallback["AppLanguage"] = std::string{"ja"};
    source["AppLanguage"] = std::string{"en"};
    EXPECT_EQ(migrate(), old);
    EXPECT_THAT(defaults.own, Not(Contains(Key("AppLanguage"))));
}

TEST_F(PreferencesMigrationTest, ExistingSettingsThatAreNoTextsStay) {
    const std::vector<int> list{1, 2};
    defaults.own["Number"] = 3.5;
    defaults.own["List"] = list;
    defaults.fallback["Common"] = list;
    for (const auto* key : {"Number", "List", "Common"}) {
        source[key] = std::string{"old"};
    }
    EXPECT_EQ(migrate(), old);
    EXPECT_EQ(std::any_cast<double>(defaults.own.at("Number")), 3.5);
    EXPECT_EQ(std::any_cast<std::vector<int>>(defaults.own.at("List")), list);
    EXPECT_THAT(defaults.own, Not(Contains(Key("Common"))));
}

TEST_F(PreferencesMigrationTest, RunsOnce) {
    migrate();
    source["AppLanguage"] = std::string{"en"};
    defaults.writes = 0;
    defaults.domainReads = 0;
    EXPECT_EQ(migrate(), std::nullopt);
    EXPECT_EQ(defaults.writes, 0);
    EXPECT_EQ(defaults.domainReads, 0);
    EXPECT_THAT(defaults.own, Not(Contains(Key("AppLanguage"))));
}

TEST_F(PreferencesMigrationTest, RunsOnceAfterSomethingWasCarriedOver) {
    source["AppLanguage"] = std::string{"en"};
    migrate();
    source["Another"] = std::string{"value"};
    EXPECT_EQ(migrate(), std::nullopt);
    EXPECT_THAT(defaults.own, Not(Contains(Key("Another"))));
}

TEST_F(PreferencesMigrationTest, RunsAgainWhenTheMarkerIsGone) {
    migrate();
    defaults.own.clear();
    source["AppLanguage"] = std::string{"en"};
    EXPECT_EQ(migrate(), old);
}

TEST_F(PreferencesMigrationTest, AMarkerThatIsNoTextDoesNotCount) {
    defaults.own["preferencesMigratedFrom"] = 1;
    source["AppLanguage"] = std::string{"en"};
    EXPECT_EQ(migrate(), old);
    EXPECT_EQ(text("preferencesMigratedFrom"), old);
}

class ExcludedKeyTest : public PreferencesMigrationTest,
                        public testing::WithParamInterface<std::string> {};

TEST_P(ExcludedKeyTest, IsLeftBehind) {
    source[GetParam()] = 1;
    source["Kept"] = 2;
    EXPECT_EQ(migrate(), old);
    EXPECT_THAT(defaults.own, Not(Contains(Key(GetParam()))));
    EXPECT_THAT(defaults.own, Contains(Key("Kept")));
}

INSTANTIATE_TEST_SUITE_P(Keys, ExcludedKeyTest,
                         testing::Values("NSWindow", "NSWindow Frame main", "NSSplitView 1",
                                         "NSToolbar x", "NSNavPanelExpanded", "NSNav",
                                         "NSOSPLastRootDirectory", "ApplePersistenceIgnoreState",
                                         "NSStatusItem Visible Item-0", "com.apple.trackpad",
                                         "com.apple."));

class IncludedKeyTest : public PreferencesMigrationTest,
                        public testing::WithParamInterface<std::string> {};

TEST_P(IncludedKeyTest, IsCopied) {
    source[GetParam()] = 1;
    EXPECT_EQ(migrate(), old);
    EXPECT_EQ(std::any_cast<int>(defaults.own.at(GetParam())), 1);
}

INSTANTIATE_TEST_SUITE_P(Keys, IncludedKeyTest,
                         testing::Values("NSNa", "nswindow", "nsnavPanel", "com.apple",
                                         "Com.Apple.x", "xNSWindow", "AppLanguage", ""));

TEST_F(PreferencesMigrationTest, ValuesKeepTheirTypes) {
    source["Number"] = 3.5;
    source["Flag"] = true;
    source["List"] = std::vector<int>{1, 2};
    migrate();
    EXPECT_EQ(std::any_cast<double>(defaults.own.at("Number")), 3.5);
    EXPECT_TRUE(std::any_cast<bool>(defaults.own.at("Flag")));
    EXPECT_EQ(std::any_cast<std::vector<int>>(defaults.own.at("List")), (std::vector{1, 2}));
}

TEST_F(PreferencesMigrationTest, TheFirstDomainThatHasSomethingIsTheOnlySource) {
    source["AppLanguage"] = std::string{"en"};
    defaults.others[std::string{older}]["Older"] = 1;
    EXPECT_EQ(migrate({"com.local.Missing", old, older}), old);
    EXPECT_THAT(defaults.own, Not(Contains(Key("Older"))));
}

TEST_F(PreferencesMigrationTest, ADomainWithoutAnythingWorthKeepingIsPassedOver) {
    source["NSWindow Frame main"] = 1;
    defaults.others[std::string{older}]["AppLanguage"] = std::string{"en"};
    EXPECT_EQ(migrate({old, older}), older);
    EXPECT_EQ(text("preferencesMigratedFrom"), older);
    EXPECT_THAT(defaults.own, Not(Contains(Key("NSWindow Frame main"))));
}

} // namespace

} // namespace hollowfernpike
