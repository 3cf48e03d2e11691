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

TEST(ProgramIdentity, OrdinaryProgramsAreThemselves) {
    EXPECT_EQ(identifyingProgram({"mousepad", "--preferences"}), "mousepad");
    EXPECT_EQ(identifyingProgram({"/opt/a b/c"}), "/opt/a b/c");
}

TEST(ProgramIdentity, EnvAndItsAssignmentsAreLookedThrough) {
    EXPECT_EQ(identifyingProgram({"env", "GDK_BACKEND=x11", "-u", "X=1", "gimp", "a=b"}), "gimp");
    EXPECT_EQ(identifyingProgram({"/usr/bin/env", "A=1"}), "");
}

TEST(ProgramIdentity, AnInterpreterStandsForItsScript) {
    EXPECT_EQ(identifyingProgram({"python3.11", "-u", "/opt/tool.py", "x"}), "/opt/tool.py");
    EXPECT_EQ(identifyingProgram({"java", "-Xmx1g", "-jar", "/opt/a.jar"}), "/opt/a.jar");
    EXPECT_EQ(identifyingProgram({"electron25", "/usr/share/a/app.asar"}), "/usr/share/a/app.asar");
    EXPECT_EQ(identifyingProgram({"sh", "-c", "anything"}), "");
    EXPECT_EQ(identifyingProgram({"python3", "-m", "module"}), "");
    EXPECT_EQ(identifyingProgram({"bash"}), "");
}

TEST(ProgramIdentity, StartersOfOthersIdentifyNothing) {
    EXPECT_EQ(identifyingProgram({"/usr/bin/flatpak", "run", "org.example.App"}), "");
    EXPECT_EQ(identifyingProgram({"pkexec", "synaptic"}), "");
}

TEST(ProgramIdentity, NothingIdentifiesNothing) {
    EXPECT_EQ(identifyingProgram({}), "");
    EXPECT_EQ(identifyingProgram({""}), "");
}

TEST(ProgramIdentity, InterpretersAreToldWithAndWithoutVersion) {
    EXPECT_TRUE(isInterpreter("python3.11"));
    EXPECT_TRUE(isInterpreter("perl"));
    EXPECT_FALSE(isInterpreter("gimp-2.10"));
    EXPECT_FALSE(isInterpreter("7"));
    EXPECT_FALSE(isInterpreter(""));
}

} // namespace

} // namespace hollowfernpike::freedesktop
