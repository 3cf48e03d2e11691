#include "app/Language.h"

#include "app/L10n.h"
#include "support/fakes/FakeServices.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike {

namespace {

using testing::ElementsAre;

class LanguageTest : public testing::Test {
protected:
    /// Records the announcements from here on.
    void watch() {
        observation_ = desktop.notificationCenter.observe(
            "languageDidChange", [this] { seen.push_back(Language::current()); });
    }

    test::FakeServices desktop;
    std::vector<Language> seen; ///< the language at each announcement

private:
    std::unique_ptr<platform::Subscription> observation_;
};

TEST_F(LanguageTest, IsJapaneseAfterAFreshInstallation) {
    EXPECT_EQ(Language::current(), Language::japanese);
    EXPECT_STREQ(localized("日本語", "English"), "日本語");
}

TEST_F(LanguageTest, IsEnglishForExactlyEn) {
    desktop.userDefaults.own["AppLanguage"] = std::string{"en"};
    EXPECT_EQ(Language::current(), Language::english);
    EXPECT_STREQ(localized("日本語", "English"), "English");
}

class OtherSettingTest : public LanguageTest, public testing::WithParamInterface<std::string> {};

TEST_P(OtherSettingTest, IsJapanese) {
    desktop.userDefaults.own["AppLanguage"] = GetParam();
    EXPECT_EQ(Language::current(), Language::japanese);
}

INSTANTIATE_TEST_SUITE_P(Texts, OtherSettingTest,
                         testing::Values("ja", "en-US", "English", "EN", "fr", "", " en", "en "));

TEST_F(LanguageTest, IsJapaneseForAValueThatIsNoText) {
    desktop.userDefaults.own["AppLanguage"] = 1;
    EXPECT_EQ(Language::current(), Language::japanese);
}

TEST_F(LanguageTest, IsKeptAsItsRawValueBeforeItIsAnnounced) {
    watch();
    Language::setCurrent(Language::english);
    EXPECT_EQ(std::any_cast<std::string>(desktop.userDefaults.own.at("AppLanguage")), "en");
    Language::setCurrent(Language::japanese);
    EXPECT_EQ(std::any_cast<std::string>(desktop.userDefaults.own.at("AppLanguage")), "ja");
    EXPECT_THAT(seen, ElementsAre(Language::english, Language::japanese));
}

TEST_F(LanguageTest, ChoosingTheActiveLanguageIsAnnouncedAsWell) {
    Language::setCurrent(Language::english);
    watch();
    Language::setCurrent(Language::english);
    EXPECT_THAT(seen, ElementsAre(Language::english));
}

TEST_F(LanguageTest, CasesComeJapaneseFirst) {
    EXPECT_THAT(Language::allCases, ElementsAre(Language::japanese, Language::english));
}

TEST_F(LanguageTest, RawValuesAreExact) {
    EXPECT_EQ(Language::fromRawValue("ja"), Language::japanese);
    EXPECT_EQ(Language::fromRawValue("en"), Language::english);
    for (const auto* text : {"JA", "En", "", "jp", "en_US"}) {
        EXPECT_EQ(Language::fromRawValue(text), std::nullopt) << text;
    }
    for (const Language language : Language::allCases) {
        EXPECT_EQ(Language::fromRawValue(language.rawValue()), language);
    }
}

TEST_F(LanguageTest, DeleteConfirmationInJapanese) {
    EXPECT_EQ(L10n::Main::deleteConfirmTitle("Safari"),
              "「Safari」のショートカットを削除しますか？");
    EXPECT_EQ(L10n::Main::deleteConfirmInfo("⌃⌥A"), "ショートカットキー: ⌃⌥A");
}

TEST_F(LanguageTest, DeleteConfirmationInEnglish) {
    Language::setCurrent(Language::english);
    EXPECT_EQ(L10n::Main::deleteConfirmTitle("Safari"), "Delete shortcut for \"Safari\"?");
    EXPECT_EQ(L10n::Main::deleteConfirmInfo("⌃⌥A"), "Shortcut key: ⌃⌥A");
}

class OddNameTest : public LanguageTest, public testing::WithParamInterface<std::string> {};

TEST_P(OddNameTest, IsInsertedAsItIs) {
    const auto& name = GetParam();
    EXPECT_EQ(L10n::Main::deleteConfirmTitle(name),
              "「" + name + "」のショートカットを削除しますか？");
    EXPECT_EQ(L10n::Main::deleteConfirmInfo(name), "ショートカットキー: " + name);
    Language::setCurrent(Language::english);
    EXPECT_EQ(L10n::Main::deleteConfirmTitle(name), "Delete shortcut for \"" + name + "\"?");
    EXPECT_EQ(L10n::Main::deleteConfirmInfo(name), "Shortcut key: " + name);
}

INSTANTIATE_TEST_SUITE_P(Names, OddNameTest,
                         testing::Values("", " ", " padded ", "The \"Best\"", "「括弧」",
                                         "%1 %s %%", "<b>bold</b>", "&File &amp;", "{0}",
                                         "back\\slash", "line\nbreak\ttab", "e\u0301 👩‍💻",
                                         "\u202Eright\u202C", std::string("nul\0nul", 7),
                                         "no UTF-8 \xff"));

} // namespace

} // namespace hollowfernpike
