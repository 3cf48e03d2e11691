#include "desktop/Combination.h"
#include "platform/freedesktop/keyboard/KeyNames.h"
#include "platform/wayland/CompiledKeymap.h"

#include <algorithm>
#include <set>
#include <string>

#include <gmock/gmock.h>

namespace hollowfernpike::test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

/// The kernel's code of a key by its name, as the system's own keyboard description has it.
std::uint16_t evdevOf(xkb_keymap* keymap, std::string_view name) {
    const auto key = xkb_keymap_key_by_name(keymap, std::string{name}.c_str());
    return static_cast<std::uint16_t>(key - freedesktop::xkbKeyCodeOffset);
}

TEST(KeyPositionsTest, EveryKeyIsWhereTheSystemSaysItIs) {
    const auto keymap = compiledKeymap("us");
    ASSERT_EQ(namedKeys().size(), 80U);
    for (const auto keys : {namedKeys(), unnamedKeys()}) {
        for (const auto& key : keys) {
            const auto evdev = evdevOf(keymap.get(), key.name);
            EXPECT_EQ(freedesktop::virtualKeyCodeOf(evdev), key.keyCode) << key.name;
            EXPECT_THAT(freedesktop::evdevCodesOf(key.keyCode), Contains(evdev)) << key.name;
        }
    }
}

TEST(KeyPositionsTest, NoTwoKeysOfAKeyboardShareACodeExceptTheKeypadsCommas) {
    std::set<std::uint16_t> codes;
    std::set<std::uint16_t> shared;
    for (std::uint16_t evdev = 1; evdev < 256; ++evdev) {
        if (!codes.insert(freedesktop::virtualKeyCodeOf(evdev)).second) {
            shared.insert(freedesktop::virtualKeyCodeOf(evdev));
        }
    }
    EXPECT_THAT(shared, ElementsAre(95));
    EXPECT_THAT(freedesktop::evdevCodesOf(95), testing::UnorderedElementsAre(95, 121));
}

TEST(KeyPositionsTest, AKeyWithoutANumberHasItsOwnCode) {
    constexpr std::uint16_t mute = 113;
    EXPECT_EQ(freedesktop::virtualKeyCodeOf(mute), freedesktop::firstUnnumberedKeyCode + mute);
    EXPECT_THAT(freedesktop::evdevCodesOf(freedesktop::firstUnnumberedKeyCode + mute),
                ElementsAre(mute));
}

TEST(KeyPositionsTest, CodesThatNoKeyHasHaveNoKey) {
    constexpr std::uint16_t keyA = 30;
    EXPECT_THAT(freedesktop::evdevCodesOf(52), IsEmpty());
    EXPECT_THAT(freedesktop::evdevCodesOf(freedesktop::firstUnnumberedKeyCode + keyA), IsEmpty());
}

} // namespace

} // namespace hollowfernpike::test
