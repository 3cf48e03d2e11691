#include "ui/editor/ApplicationSearch.h"

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

namespace hollowfernpike {

namespace {

using platform::InstalledApplication;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

InstalledApplication named(const std::string& name) {
    return {.path = "/apps/" + name + ".desktop",
            .bundleIdentifier = {},
            .name = name,
            .genericName = {},
            .keywords = {},
            .icon = {}};
}

std::vector<InstalledApplication> someApplications() {
    auto browser = named("Firefox");
    browser.genericName = "Web Browser";
    browser.keywords = {"Internet", "WWW"};
    browser.bundleIdentifier = "org.mozilla.firefox";
    auto files = named("ファイル");
    files.genericName = "ファイルマネージャー";
    files.bundleIdentifier = "org.example.Files";
    return {named("Terminal"), browser, files, named("Web"), named("Other Web Tool")};
}

class ApplicationSearchTest : public testing::Test {
protected:
    static std::vector<std::string> names(const ApplicationSearch& search, const QString& text) {
        std::vector<std::string> found;
        for (const std::size_t index : search.matches(text)) {
            found.push_back(search.applications()[index].name);
        }
        return found;
    }

    std::vector<std::string> found(const QString& text) const { return names(search_, text); }

    ApplicationSearch search_{someApplications(), Language::english};
};

TEST_F(ApplicationSearchTest, WithoutTextFindsAllByName) {
    EXPECT_THAT(found(""), ElementsAre("Firefox", "Other Web Tool", "Terminal", "Web", "ファイル"));
    EXPECT_THAT(found("  \u3000 "), SizeIs(5));
}

TEST_F(ApplicationSearchTest, SortsWithoutRegardToCase) {
    const ApplicationSearch search({named("beta"), named("Gamma"), named("alpha"), named("Beta 2")},
                                   Language::english);
    EXPECT_THAT(names(search, ""), ElementsAre("alpha", "beta", "Beta 2", "Gamma"));
}

TEST_F(ApplicationSearchTest, SortsAccentedLettersAmongTheirLikes) {
    const ApplicationSearch search({named("Zebra"), named("Éclair"), named("Eclipse")},
                                   Language::english);
    EXPECT_THAT(names(search, ""), ElementsAre("Éclair", "Eclipse", "Zebra"));
}

TEST_F(ApplicationSearchTest, SortsKanaInTheirOwnOrder) {
    const ApplicationSearch search(
        {named("メール"), named("カレンダー"), named("あいう"), named("端末")}, Language::japanese);
    EXPECT_THAT(names(search, ""), ElementsAre("あいう", "カレンダー", "メール", "端末"));
}

TEST_F(ApplicationSearchTest, KeepsApplicationsOfOneNameInAStableOrder) {
    auto first = named("Terminal");
    first.path = "/b.desktop";
    auto second = named("Terminal");
    second.path = "/a.desktop";
    for (const auto& listed : {std::vector{first, second}, std::vector{second, first}}) {
        const ApplicationSearch search(listed, Language::english);
        ASSERT_THAT(search.applications(), SizeIs(2));
        EXPECT_EQ(search.applications()[0].path, "/a.desktop");
    }
}

TEST_F(ApplicationSearchTest, FindsPartsOfNames) {
    EXPECT_THAT(found("mina"), ElementsAre("Terminal"));
}

TEST_F(ApplicationSearchTest, FindsByGenericName) {
    EXPECT_THAT(found("browser"), ElementsAre("Firefox"));
}

TEST_F(ApplicationSearchTest, FindsByKeyword) {
    EXPECT_THAT(found("internet"), ElementsAre("Firefox"));
}

TEST_F(ApplicationSearchTest, FindsByIdentifier) {
    EXPECT_THAT(found("org.mozilla"), ElementsAre("Firefox"));
    EXPECT_THAT(found("files"), ElementsAre("ファイル"));
}

TEST_F(ApplicationSearchTest, NamesComeBeforeEverythingElse) {
    EXPECT_THAT(found("web"), ElementsAre("Web", "Other Web Tool", "Firefox"));
}

TEST_F(ApplicationSearchTest, EveryWordMustOccurSomewhere) {
    EXPECT_THAT(found("fire internet"), ElementsAre("Firefox"));
    EXPECT_THAT(found("tool web"), ElementsAre("Other Web Tool"));
    EXPECT_THAT(found("fire terminal"), IsEmpty());
}

TEST_F(ApplicationSearchTest, CaseMakesNoDifference) {
    EXPECT_THAT(found("TERMINAL"), ElementsAre("Terminal"));
    EXPECT_THAT(found("WeB bRoWsEr"), ElementsAre("Firefox"));
}

TEST_F(ApplicationSearchTest, WidthMakesNoDifference) {
    EXPECT_THAT(found("ｔｅｒｍ"), ElementsAre("Terminal"));
    EXPECT_THAT(found("ﾌｧｲﾙ"), ElementsAre("ファイル"));
    EXPECT_THAT(found("ｗｅｂ　ｔｏｏｌ"), ElementsAre("Other Web Tool"));
}

TEST_F(ApplicationSearchTest, BlanksAroundTheTextMakeNoDifference) {
    EXPECT_THAT(found("  web   tool "), ElementsAre("Other Web Tool"));
    EXPECT_THAT(found(" web "), ElementsAre("Web", "Other Web Tool", "Firefox"));
}

TEST_F(ApplicationSearchTest, MayFindNothing) {
    EXPECT_THAT(found("nothing of the kind"), IsEmpty());
    EXPECT_THAT(names(ApplicationSearch({}, Language::japanese), ""), IsEmpty());
}

} // namespace
} // namespace hollowfernpike
