#include "app/CommandLine.h"

#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike {

namespace {

using Purpose = CommandLine::Purpose;
using testing::HasSubstr;

CommandLine parse(const std::vector<const char*>& arguments) {
    return parseCommandLine(arguments);
}

TEST(CommandLineTest, APlainStartHasNoAction) {
    EXPECT_EQ(parse({}).purpose, Purpose::run);
    EXPECT_EQ(parse({}).action, "");
}

TEST(CommandLineTest, ActionsOfLaunchers) {
    for (const auto* action : {"openMainWindow", "exportShortcuts", "importShortcuts", "quitApp"}) {
        const auto line = parse({"--action", action});
        EXPECT_EQ(line.purpose, Purpose::run) << action;
        EXPECT_EQ(line.action, action);
        EXPECT_THAT(usage(), HasSubstr(action));
    }
}

TEST(CommandLineTest, ASessionManagersIdentifierIsPassedOver) {
    for (const auto& line : {parse({"-session", "10c0ffee_1"}), parse({"-session=10c0ffee_1"})}) {
        EXPECT_EQ(line.purpose, Purpose::run);
        EXPECT_EQ(line.action, "");
    }
    EXPECT_EQ(parse({"--action", "quitApp", "-session", "1"}).action, "quitApp");
    EXPECT_EQ(parse({"-session"}).purpose, Purpose::misuse);
}

TEST(CommandLineTest, APressOfACombination) {
    const auto line = parse({"--press", "⌃⌥K"});
    EXPECT_EQ(line.purpose, Purpose::run);
    EXPECT_EQ(line.action, "");
    EXPECT_EQ(line.press, (platform::KeyCombination{40, platform::event_flags::control |
                                                            platform::event_flags::option}));
    EXPECT_THAT(usage(), HasSubstr("--press"));
}

TEST(CommandLineTest, APressThatIsNotUnderstoodIsMisuseWithItsReason) {
    const auto line = parse({"--press", "Ctrl+Foo"});
    EXPECT_EQ(line.purpose, Purpose::misuse);
    ASSERT_TRUE(line.fault);
    EXPECT_THAT(line.fault->english(), HasSubstr("\"Foo\""));
}

TEST(CommandLineTest, HelpAndVersion) {
    EXPECT_EQ(parse({"--help"}).purpose, Purpose::help);
    EXPECT_EQ(parse({"--version"}).purpose, Purpose::version);
}

TEST(CommandLineTest, AnythingElseIsMisuse) {
    const std::vector<std::vector<const char*>> lines{
        {""},
        {"openMainWindow"},
        {"--action"},
        {"--action", "format"},
        {"--action", "changeLanguage"},
        {"--action", "quitApp", "now"},
        {"--press"},
        {"--press", "Ctrl+K", "Ctrl+L"},
        {"--help", "me"},
        {"--Help"},
    };
    for (const auto& line : lines) {
        EXPECT_EQ(parse(line).purpose, Purpose::misuse) << testing::PrintToString(line);
    }
}

} // namespace

} // namespace hollowfernpike
