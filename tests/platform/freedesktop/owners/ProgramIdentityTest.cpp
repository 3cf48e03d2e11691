#include "platform/freedesktop/owners/ProgramIdentity.h"

#include <gtest/gtest.h>

namespace hollowfernpike::freedesktop {

namespace {

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
