#include "platform/wayland/configuration/BindingLines.h"

#include "platform/wayland/CompiledKeymap.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>

namespace hollowfernpike::test {

namespace {

using namespace platform::event_flags;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

// Virtual key codes.
constexpr std::uint16_t letterK = 40;
constexpr std::uint16_t apostrophe = 39;
constexpr std::uint16_t codeOfKeypadFive = 87;

const platform::BoundCommand onK{.combination = {letterK, control | option},
                                 .words = {"hollowfernpike", "--press", "Ctrl+Alt+K"}};

class BindingLinesTest : public testing::Test {
protected:
    std::unique_ptr<wayland::Keymap> keymap = wayland::Keymap::parse(keymapText("us"));

    std::vector<std::string> lines(const char* compositor,
                                   const platform::BoundCommand& command = onK) const {
        return wayland::bindingLines(compositor, "", keymap.get(), std::vector{command}).lines;
    }
};

TEST_F(BindingLinesTest, EveryKnownCompositorHasItsOwnForm) {
    EXPECT_THAT(lines("labwc"),
                ElementsAre(R"(<keybind key="C-A-k"><action name="Execute" )"
                            R"(command="hollowfernpike --press Ctrl+Alt+K"/></keybind>)"));
    EXPECT_THAT(lines("wayfire"),
                ElementsAre("binding_hollowfernpike_ca_37 = <ctrl> <alt> KEY_K\n"
                            "command_hollowfernpike_ca_37 = hollowfernpike --press Ctrl+Alt+K"));
    EXPECT_THAT(lines("river"), ElementsAre("riverctl map normal Control+Alt k spawn "
                                            "'hollowfernpike --press Ctrl+Alt+K'"));
    EXPECT_THAT(lines("Hyprland"),
                ElementsAre("bind = CTRL ALT , code:45, exec, hollowfernpike --press Ctrl+Alt+K"));
    EXPECT_THAT(lines("niri"),
                ElementsAre(R"(Ctrl+Alt+k { spawn "hollowfernpike" "--press" "Ctrl+Alt+K"; })"));
    EXPECT_THAT(lines("sway"), ElementsAre("bindcode --no-repeat Ctrl+Mod1+45 exec "
                                           "hollowfernpike --press Ctrl+Alt+K"));
}

TEST_F(BindingLinesTest, WhatIsSpecialIsQuotedAsEachFormReadsIt) {
    const platform::BoundCommand odd{
        .combination = {apostrophe, shift | command},
        .words = {R"(/opt/a & "b"/it's)", "--press", "Shift+Super+Key(39)"}};
    EXPECT_THAT(
        lines("labwc", odd),
        ElementsAre(R"(<keybind key="S-W-apostrophe"><action name="Execute" command=")"
                    R"-('/opt/a &amp; &quot;b&quot;/it'\''s' --press 'Shift+Super+Key(39)'")-"
                    "/></keybind>"));
    EXPECT_THAT(lines("niri", odd),
                ElementsAre(R"-(Shift+Super+apostrophe { spawn "/opt/a & \"b\"/it's" )-"
                            R"-("--press" "Shift+Super+Key(39)"; })-"));
    EXPECT_THAT(lines("weston", odd),
                ElementsAre(R"-('/opt/a & "b"/it'\''s' --press 'Shift+Super+Key(39)')-"));
}

TEST_F(BindingLinesTest, AKeyOfTheKeypadIsBoundWithAndWithoutNumLock) {
    const platform::BoundCommand onFive{.combination = {codeOfKeypadFive, control}, .words = {"x"}};
    EXPECT_THAT(lines("labwc", onFive),
                ElementsAre(HasSubstr("\"C-KP_Begin\""), HasSubstr("\"C-KP_5\"")));
    EXPECT_THAT(lines("sway", onFive), ElementsAre("bindcode --no-repeat Ctrl+84 exec x"));
}

TEST_F(BindingLinesTest, SymbolsAreThoseOfTheFirstLayout) {
    keymap = wayland::Keymap::parse(keymapText("de,us"));
    const platform::BoundCommand onZ{.combination = {6, control}, .words = {"x"}};
    EXPECT_THAT(lines("labwc", onZ), ElementsAre(HasSubstr("\"C-y\"")));
}

TEST_F(BindingLinesTest, TheSessionNamesACompositorWhoseProcessIsNotKnown) {
    const auto bindings =
        wayland::bindingLines("", "X:LABWC:wlroots", keymap.get(), std::vector{onK});
    EXPECT_THAT(bindings.lines, ElementsAre(HasSubstr("<keybind")));
    EXPECT_THAT(bindings.reason.english(), HasSubstr("~/.config/labwc/rc.xml"));
    EXPECT_THAT(bindings.reason.japanese(), HasSubstr("~/.config/labwc/rc.xml"));
}

TEST_F(BindingLinesTest, OthersAreToldTheCommands) {
    for (const auto* const map : {keymap.get(), static_cast<wayland::Keymap*>(nullptr)}) {
        const auto bindings = wayland::bindingLines(map == nullptr ? "labwc" : "weston", "weston",
                                                    map, std::vector{onK});
        EXPECT_THAT(bindings.lines, ElementsAre("hollowfernpike --press Ctrl+Alt+K"));
        EXPECT_THAT(bindings.reason.english(), HasSubstr("This Wayland session (weston) shows"));
        EXPECT_THAT(bindings.reason.japanese(), HasSubstr("この Wayland セッション (weston)は"));
    }
    EXPECT_THAT(wayland::bindingLines("", "", nullptr, {}).reason.english(),
                HasSubstr("This Wayland session shows"));
}

TEST_F(BindingLinesTest, AnEmptyListNeedsNoLines) {
    EXPECT_THAT(wayland::bindingLines("labwc", "", keymap.get(), {}).lines, IsEmpty());
}

} // namespace

} // namespace hollowfernpike::test
