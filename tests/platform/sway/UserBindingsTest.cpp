#include "platform/sway/keys/UserBindings.h"

#include <filesystem>
#include <map>

#include <gmock/gmock.h>

namespace hollowfernpike::test {

namespace {

namespace real = freedesktop::real_modifiers;
using sway::UserBinding;
using testing::ElementsAre;
using testing::IsEmpty;

/// The bindings in a text; `files` are those that can be included, by their paths.
std::vector<UserBinding> read(const std::string& text,
                              const std::map<std::string, std::string>& files = {}) {
    return sway::userBindings(
        {.path = "/sway/config", .text = text},
        [&](const std::string& pattern, const std::filesystem::path& folder) {
            const auto path = (folder / pattern).lexically_normal();
            const auto found = files.find(path.string());
            return found == files.end()
                       ? std::vector<sway::ConfigurationFile>{}
                       : std::vector{sway::ConfigurationFile{.path = path, .text = found->second}};
        });
}

const UserBinding superX{real::mod4, std::string{"x"}};
const UserBinding superCode{real::mod4, 53U};

TEST(UserBindingsTest, SymbolsAndCodesAreRead) {
    EXPECT_THAT(read("bindsym Mod4+x kill\nbindcode Mod4+53 kill"), ElementsAre(superX, superCode));
    EXPECT_THAT(read("  bindsym\tMod4+x\tkill\r\n"), ElementsAre(superX));
    EXPECT_THAT(read("bindsym F5 kill"), ElementsAre(UserBinding{0, std::string{"F5"}}));
}

TEST(UserBindingsTest, EveryNameOfAModifierIsKnownInAnyCase) {
    const std::map<std::string, freedesktop::ModifierState> names{
        {"Shift", real::shift}, {"Ctrl", real::control}, {"control", real::control},
        {"Alt", real::mod1},    {"mod1", real::mod1},    {"Mod2", real::mod2},
        {"Mod3", real::mod3},   {"SUPER", real::mod4},   {"Mod4", real::mod4},
        {"Mod5", real::mod5},   {"Lock", real::lock}};
    for (const auto& [name, modifier] : names) {
        EXPECT_THAT(read("bindsym " + name + "+x kill"),
                    ElementsAre(UserBinding{modifier, std::string{"x"}}))
            << name;
    }
    EXPECT_THAT(
        read("bindsym Ctrl+Alt+Shift+x kill"),
        ElementsAre(UserBinding{real::control | real::mod1 | real::shift, std::string{"x"}}));
}

TEST(UserBindingsTest, FlagsAndGroupsDoNotMatter) {
    EXPECT_THAT(read("bindsym --release --to-code --input-device=1:1:kb Mod4+x kill"),
                ElementsAre(superX));
    EXPECT_THAT(read("bindsym Group2+Mod4+x kill"), ElementsAre(superX));
}

TEST(UserBindingsTest, VariablesAreReplacedTheLongestNameFirst) {
    EXPECT_THAT(read("set $m Mod1\nset $mod Mod4\nset $key x\nbindsym $mod+$key kill"),
                ElementsAre(superX));
    EXPECT_THAT(read("set $mod Mod4\nset $both $mod+Shift\nbindsym $both+x kill"),
                ElementsAre(UserBinding{real::mod4 | real::shift, std::string{"x"}}));
}

TEST(UserBindingsTest, BlocksOfBindingsAreRead) {
    EXPECT_THAT(
        read("bindsym {\n  Mod4+x kill\n  # a remark\n}\nbindcode --release {\nMod4+53 kill\n}"),
        ElementsAre(superX, superCode));
}

TEST(UserBindingsTest, OtherModesAndOtherBlocksDoNotCount) {
    EXPECT_THAT(read("mode \"resize\" {\n bindsym Mod4+x kill\n bindsym {\n Mod4+y kill\n }\n}\n"
                     "mode \"one\" bindsym Mod4+z kill\n"
                     "bar {\n bindsym Mod4+x kill\n}\nbindcode Mod4+53 kill"),
                ElementsAre(superCode));
}

TEST(UserBindingsTest, LinesThatGoOnAreOne) {
    EXPECT_THAT(read("bindsym \\\n Mod4+x \\\n kill"), ElementsAre(superX));
}

TEST(UserBindingsTest, RemarksAndOtherLinesAreSkipped) {
    EXPECT_THAT(read("# bindsym Mod4+x kill\n\noutput * bg x fill\nexec bindsym\nbindsym\n}\n"),
                IsEmpty());
}

TEST(UserBindingsTest, WhatIsTakenBackDoesNotCount) {
    EXPECT_THAT(read("bindsym Mod4+x kill\nbindcode Mod4+53 kill\nunbindsym Mod4+x"),
                ElementsAre(superCode));
    EXPECT_THAT(read("bindcode Mod4+53 kill\nunbindcode Mod4+53"), IsEmpty());
}

TEST(UserBindingsTest, ABindingOfTwoKeysAtOnceIsNoCombination) {
    EXPECT_THAT(read("bindsym Mod4+x+y kill\nbindcode Mod4+53+54 kill\nbindcode Mod4+x kill"),
                IsEmpty());
}

TEST(UserBindingsTest, IncludedFilesAreReadInTheirPlace) {
    EXPECT_THAT(read("set $mod Mod4\ninclude keys\nbindcode $mod+53 kill",
                     {{"/sway/keys", "bindsym $mod+x kill\nset $mod Mod4"}}),
                ElementsAre(superX, superCode));
    EXPECT_THAT(
        read("include \"/other folder/keys\"", {{"/other folder/keys", "bindsym Mod4+x kill"}}),
        ElementsAre(superX));
}

TEST(UserBindingsTest, AnIncludedFileIncludesFromItsOwnFolder) {
    EXPECT_THAT(
        read("include more/all\nbindcode Mod4+53 kill", {{"/sway/more/all", "include keys"},
                                                         {"/sway/more/keys", "bindsym Mod4+x kill"},
                                                         {"/sway/keys", "bindsym Mod4+y kill"}}),
        ElementsAre(superX, superCode));
}

TEST(UserBindingsTest, FilesThatIncludeEachOtherAreReadOnce) {
    const std::string all = "include a\ninclude b\ninclude c\nbindsym Mod4+x kill";
    EXPECT_THAT(read(all, {{"/sway/a", all}, {"/sway/b", all}, {"/sway/c", all}}),
                ElementsAre(superX));
}

TEST(UserBindingsTest, CommandsMayBeWrittenInAnyCase) {
    EXPECT_THAT(read("SET $mod Mod4\nBindSym $mod+x kill\nBINDCODE $mod+53 kill"),
                ElementsAre(superX, superCode));
}

TEST(UserBindingsTest, TheDefaultModeMayBeNamed) {
    EXPECT_THAT(read("mode default {\n bindsym Mod4+x kill\n}\nmode --pango_markup \"default\" "
                     "bindcode Mod4+53 kill"),
                ElementsAre(superX, superCode));
}

TEST(UserBindingsTest, ABraceMayStandAloneOrAtTheEndOfALine) {
    EXPECT_THAT(read("bindsym\n{\n Mod4+x kill }\nbindcode Mod4+53 kill"),
                ElementsAre(superX, superCode));
}

TEST(UserBindingsTest, ABraceThatSwayLeavesOutIsUnderstood) {
    EXPECT_THAT(read("bindsym --release\n Mod4+x kill\n}\nmode resize\nbindsym Mod4+y kill\n}\n"
                     "bindcode Mod4+53 kill"),
                ElementsAre(superX, superCode));
}

TEST(UserBindingsTest, ARemarkEndsWithItsLine) {
    EXPECT_THAT(read("# a folder \\\nbindsym Mod4+x kill"), ElementsAre(superX));
}

TEST(UserBindingsTest, PressAndReleaseAreTakenBackOneByOne) {
    const std::string both = "bindsym Mod4+x a\nbindsym --release Mod4+x b\n";
    EXPECT_THAT(read(both + "unbindsym --release Mod4+x"), ElementsAre(superX));
    EXPECT_THAT(read(both + "unbindsym Mod4+x\nunbindsym --release Mod4+x"), IsEmpty());
}

TEST(UserBindingsTest, ATextThatEndsInTheMiddleIsReadAsFarAsItGoes) {
    EXPECT_THAT(read("bindcode Mod4+53 kill\nbindsym Mod4+x \"kill \\"),
                ElementsAre(superCode, superX));
    EXPECT_THAT(read("{\n}\n}\nset\nset a\ninclude\nmode\nbindsym {\n"), IsEmpty());
}

} // namespace

} // namespace hollowfernpike::test
