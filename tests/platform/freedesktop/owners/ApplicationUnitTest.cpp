#include "platform/freedesktop/owners/ApplicationUnit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike::freedesktop {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(ApplicationUnit, AScopeNamesItsApplicationBeforeItsRandomPart) {
    EXPECT_THAT(applicationsOfUnit("/a/app.slice/app-org.gnome.Maps-123.scope"),
                ElementsAre("org.gnome.Maps"));
    EXPECT_THAT(applicationsOfUnit("/a/app-gnome-org.gnome.Maps-123.scope"),
                ElementsAre("org.gnome.Maps"));
}

TEST(ApplicationUnit, EscapedLettersComeBack) {
    EXPECT_THAT(applicationsOfUnit("/app-gnome-firefox\\x2desr-1.scope"),
                ElementsAre("firefox-esr"));
    EXPECT_THAT(applicationsOfUnit("/app-a\\x2-1.scope"), ElementsAre("a\\x2"));
    EXPECT_THAT(applicationsOfUnit("/app-a\\xzz-1.scope"), ElementsAre("a\\xzz"));
}

TEST(ApplicationUnit, AServiceMayHaveARandomPartOrNone) {
    EXPECT_THAT(applicationsOfUnit("/app-org.kde.kate@6f.service"), ElementsAre("org.kde.kate"));
    EXPECT_THAT(applicationsOfUnit("/app-kde-org.kde.kate@autostart.service"),
                ElementsAre("org.kde.kate"));
    EXPECT_THAT(applicationsOfUnit("/app-org.kde.kate.service"), ElementsAre("org.kde.kate"));
}

TEST(ApplicationUnit, OtherUnitsAreNoApplications) {
    for (const auto* group :
         {"", "/", "/system.slice/ssh.service", "/app.slice",
          "/app-org.gnome.Terminal.slice/vte-spawn-1.scope", "/session-2.scope", "/app-.slice"}) {
        EXPECT_THAT(applicationsOfUnit(group), IsEmpty()) << group;
    }
}

TEST(ApplicationUnit, AScopeWithoutRandomPartNamesNothing) {
    EXPECT_THAT(applicationsOfUnit("/app-lonely.scope"), IsEmpty());
}

TEST(ApplicationUnit, TheInnermostUnitDecides) {
    EXPECT_THAT(applicationsOfUnit("/app-a-1.scope/app-b-2.scope"), ElementsAre("b"));
}

TEST(ApplicationUnit, ASnapIsToldByItsScope) {
    EXPECT_EQ(snapApplication("/u/snap.firefox.firefox-0d1f2a3b-1111-2222-3333-444455556666.scope"),
              "firefox_firefox");
    EXPECT_EQ(snapApplication("/u/snap.foo.bar-baz-0d1f2a3b-1111-2222-3333-444455556666.scope"),
              "foo_bar-baz");
    EXPECT_EQ(snapApplication("/u/snap.foo.bar.0d1f2a3b-1111-2222-3333-444455556666.scope"),
              "foo_bar");
    EXPECT_EQ(snapApplication("/u/snap.foo.scope"), "");
    EXPECT_EQ(snapApplication("/u/app-snap.foo.bar-1.scope"), "");
    EXPECT_EQ(snapApplication(""), "");
}

TEST(ApplicationUnit, OurScopesAreReadBackAsTheyWereNamed) {
    for (const auto* identifier : {"org.example.App", "firefox-esr", "odd id/ü@1", ".hidden"}) {
        const auto scope = applicationScope(identifier, 4711);
        EXPECT_THAT(applicationsOfUnit('/' + scope), ElementsAre(identifier));
        EXPECT_EQ(scope.find_first_of("/@ "), std::string::npos);
    }
    EXPECT_EQ(applicationScope("firefox-esr", 7), "app-hollowfernpike-firefox\\x2desr-7.scope");
}

TEST(ApplicationUnit, ANameTooLongForAUnitGetsNone) {
    EXPECT_EQ(applicationScope(std::string(300, 'a'), 1), "");
}

} // namespace

} // namespace hollowfernpike::freedesktop
