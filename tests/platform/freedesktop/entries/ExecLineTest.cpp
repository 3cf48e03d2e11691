#include "platform/freedesktop/entries/ExecLine.h"

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

TEST(ExecLineTest, CodesForFilesFallAway) {
    EXPECT_THAT(expand("edit %f"), ElementsAre("edit"));
    EXPECT_THAT(expand("edit %F --new %u end %U"), ElementsAre("edit", "--new", "end"));
}

TEST(ExecLineTest, ACodeForFilesInsideAWordLeavesTheRestOfIt) {
    EXPECT_THAT(expand("edit --file=%f"), ElementsAre("edit", "--file="));
}

TEST(ExecLineTest, DeprecatedCodesFallAway) {
    EXPECT_THAT(expand("edit %d %D %n %N %v %m"), ElementsAre("edit"));
}

TEST(ExecLineTest, IconNameAndPathAreFilledIn) {
    EXPECT_THAT(expand("edit %i %c %k"), ElementsAre("edit", "--icon", "editor-icon", "The Editor",
                                                     "/apps/the editor.desktop"));
}

TEST(ExecLineTest, AnEntryWithoutIconGetsNoIconOption) {
    DesktopEntry entry;
    entry.words = {"edit", "%i"};
    EXPECT_THAT(commandLineOf(entry), ElementsAre("edit"));
}

TEST(ExecLineTest, TwoPercentSignsAreOneAndNeverACode) {
    EXPECT_THAT(expand("edit 100%% %%f"), ElementsAre("edit", "100%", "%f"));
}

TEST(ExecLineTest, ALonePercentSignAtTheEndFallsAway) {
    EXPECT_THAT(expand("edit 100%"), ElementsAre("edit", "100"));
}

TEST(ExecLineTest, QuotedWordsKeepTheirSpacesAndSpecialCharacters) {
    EXPECT_THAT(expand(R"("/opt/My Editor/edit" "a \"b\" \$c \`d\` \\e" ;rm *)"),
                ElementsAre("/opt/My Editor/edit", R"(a "b" $c `d` \e)", ";rm", "*"));
}

TEST(ExecLineTest, AnEmptyQuotedWordStays) {
    EXPECT_THAT(expand(R"(edit "" x)"), ElementsAre("edit", "", "x"));
}

TEST(ExecLineTest, BrokenQuotingOrNothingGivesNothing) {
    EXPECT_THAT(expand(R"(edit "open)"), IsEmpty());
    EXPECT_THAT(expand(""), IsEmpty());
    EXPECT_THAT(expand("   "), IsEmpty());
}

} // namespace

} // namespace hollowfernpike::freedesktop
