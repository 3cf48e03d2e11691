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
        {"--help", "me"},
        {"--Help"},
    };
    for (const auto& line : lines) {
        EXPECT_EQ(parse(line).purpose, Purpose::misuse) << testing::PrintToString(line);
    }
}

} // namespace

} // namespace hollowfernpike
