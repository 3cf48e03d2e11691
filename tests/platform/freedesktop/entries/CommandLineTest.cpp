#include "platform/freedesktop/entries/CommandLine.h"

#include "platform/freedesktop/entries/DesktopEntry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike::freedesktop {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::string> expand(const std::string& exec) {
    DesktopEntry entry;
    entry.path = "/apps/the editor.desktop";
    entry.displayName = "The Editor";
    entry.icon = "editor-icon";
    entry.words = wordsOf(exec);
    return commandLineOf(entry);
}

TEST(CommandLineTest, CodesForFilesFallAway) {
    EXPECT_THAT(expand("edit %f"), ElementsAre("edit"));
    EXPECT_THAT(expand("edit %F --new %u end %U"), ElementsAre("edit", "--new", "end"));
}

TEST(CommandLineTest, ACodeForFilesInsideAWordLeavesTheRestOfIt) {
    EXPECT_THAT(expand("edit --file=%f"), ElementsAre("edit", "--file="));
}

TEST(CommandLineTest, DeprecatedCodesFallAway) {
    EXPECT_THAT(expand("edit %d %D %n %N %v %m"), ElementsAre("edit"));
}

TEST(CommandLineTest, IconNameAndPathAreFilledIn) {
    EXPECT_THAT(expand("edit %i %c %k"), ElementsAre("edit", "--icon", "editor-icon", "The Editor",
                                                     "/apps/the editor.desktop"));
}

TEST(CommandLineTest, AnEntryWithoutIconGetsNoIconOption) {
    DesktopEntry entry;
    entry.words = {"edit", "%i"};
    EXPECT_THAT(commandLineOf(entry), ElementsAre("edit"));
}

TEST(CommandLineTest, TwoPercentSignsAreOneAndNeverACode) {
    EXPECT_THAT(expand("edit 100%% %%f"), ElementsAre("edit", "100%", "%f"));
}

TEST(CommandLineTest, ALonePercentSignAtTheEndFallsAway) {
    EXPECT_THAT(expand("edit 100%"), ElementsAre("edit", "100"));
}

TEST(CommandLineTest, QuotedWordsKeepTheirSpacesAndSpecialCharacters) {
    EXPECT_THAT(expand(R"("/opt/My Editor/edit" "a \"b\" \$c \`d\` \\e" ;rm *)"),
                ElementsAre("/opt/My Editor/edit", R"(a "b" $c `d` \e)", ";rm", "*"));
}

TEST(CommandLineTest, AnEmptyQuotedWordStays) {
    EXPECT_THAT(expand(R"(edit "" x)"), ElementsAre("edit", "", "x"));
}

TEST(CommandLineTest, BrokenQuotingOrNothingGivesNothing) {
    EXPECT_THAT(expand(R"(edit "open)"), IsEmpty());
    EXPECT_THAT(expand(""), IsEmpty());
    EXPECT_THAT(expand("   "), IsEmpty());
}

} // namespace

} // namespace hollowfernpike::freedesktop
