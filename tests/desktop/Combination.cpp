#include "desktop/Combination.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include <xcb/xcb.h>

namespace hollowfernpike::test {

namespace {

struct Modifier {
    std::uint64_t flag;
    std::string_view key;
    std::uint16_t state;
};

constexpr std::array<Modifier, 4> modifiers{{
    {control, "LCTL", XCB_MOD_MASK_CONTROL},
    {option, "LALT", XCB_MOD_MASK_1},
    {shift, "LFSH", XCB_MOD_MASK_SHIFT},
    {command, "LWIN", XCB_MOD_MASK_4},
}};

constexpr std::array<KeyPosition, 80> named{{
    {0, "AC01"},   {1, "AC02"},   {2, "AC03"},   {3, "AC04"},   {4, "AC06"},   {5, "AC05"},
    {6, "AB01"},   {7, "AB02"},   {8, "AB03"},   {9, "AB04"},   {11, "AB05"},  {12, "AD01"},
    {13, "AD02"},  {14, "AD03"},  {15, "AD04"},  {16, "AD06"},  {17, "AD05"},  {18, "AE01"},
    {19, "AE02"},  {20, "AE03"},  {21, "AE04"},  {22, "AE06"},  {23, "AE05"},  {24, "AE12"},
    {25, "AE09"},  {26, "AE07"},  {27, "AE11"},  {28, "AE08"},  {29, "AE10"},  {30, "AD12"},
    {31, "AD09"},  {32, "AD07"},  {33, "AD11"},  {34, "AD08"},  {35, "AD10"},  {36, "RTRN"},
    {37, "AC09"},  {38, "AC07"},  {39, "AC11"},  {40, "AC08"},  {41, "AC10"},  {42, "BKSL"},
    {43, "AB08"},  {44, "AB10"},  {45, "AB06"},  {46, "AB07"},  {47, "AB09"},  {48, "TAB"},
    {49, "SPCE"},  {51, "BKSP"},  {53, "ESC"},   {82, "KP0"},   {83, "KP1"},   {84, "KP2"},
    {85, "KP3"},   {86, "KP4"},   {87, "KP5"},   {88, "KP6"},   {89, "KP7"},   {91, "KP8"},
    {92, "KP9"},   {122, "FK01"}, {120, "FK02"}, {99, "FK03"},  {118, "FK04"}, {96, "FK05"},
    {97, "FK06"},  {98, "FK07"},  {100, "FK08"}, {101, "FK09"}, {109, "FK10"}, {103, "FK11"},
    {111, "FK12"}, {105, "FK13"}, {107, "FK14"}, {113, "FK15"}, {123, "LEFT"}, {124, "RGHT"},
    {125, "DOWN"}, {126, "UP"},
}};

constexpr std::uint16_t kernelCodes = 256; // a key without a virtual code: this plus the kernel's

constexpr std::array unnamed{
    KeyPosition{10, "LSGT"},
    KeyPosition{50, "TLDE"},
    KeyPosition{65, "KPDL"},
    KeyPosition{67, "KPMU"},
    KeyPosition{69, "KPAD"},
    KeyPosition{71, "NMLK"},
    KeyPosition{75, "KPDV"},
    KeyPosition{76, "KPEN"},
    KeyPosition{78, "KPSU"},
    KeyPosition{81, "KPEQ"},
    KeyPosition{93, "AE13"},
    KeyPosition{94, "AB11"},
    KeyPosition{95, "JPCM"},
    KeyPosition{102, "MUHE"},
    KeyPosition{104, "HENK"},
    KeyPosition{114, "INS"},
    KeyPosition{115, "HOME"},
    KeyPosition{116, "PGUP"},
    KeyPosition{117, "DELE"},
    KeyPosition{119, "END"},
    KeyPosition{121, "PGDN"},
    KeyPosition{106, "FK16"},
    KeyPosition{64, "FK17"},
    KeyPosition{79, "FK18"},
    KeyPosition{80, "FK19"},
    KeyPosition{90, "FK20"},
    KeyPosition{kernelCodes + 99, "PRSC"},
    KeyPosition{kernelCodes + 113, "MUTE"},
    KeyPosition{kernelCodes + 114, "VOL-"},
    KeyPosition{kernelCodes + 115, "VOL+"},
    KeyPosition{kernelCodes + 119, "PAUS"},
    KeyPosition{kernelCodes + 127, "COMP"},
    KeyPosition{kernelCodes + 164, "I172"}, // play and pause
};

} // namespace

std::span<const KeyPosition> namedKeys() {
    return named;
}

std::span<const KeyPosition> unnamedKeys() {
    return unnamed;
}

std::vector<std::string> Combination::keys() const {
    std::vector<std::string> result;
    for (const auto& modifier : modifiers) {
        if ((modifierFlags & modifier.flag) != 0) {
            result.emplace_back(modifier.key);
        }
    }
    result.push_back(keyName());
    return result;
}

std::string Combination::keyName() const {
    for (const auto& keys : {namedKeys(), unnamedKeys()}) {
        const auto found = std::ranges::find(keys, keyCode, &KeyPosition::keyCode);
        if (found != keys.end()) {
            return std::string{found->name};
        }
    }
    throw std::out_of_range("no place for key code " + std::to_string(keyCode));
}

std::uint16_t Combination::modifierState() const {
    unsigned state = 0;
    for (const auto& modifier : modifiers) {
        state |= (modifierFlags & modifier.flag) != 0 ? modifier.state : 0U;
    }
    return static_cast<std::uint16_t>(state);
}

std::vector<std::uint64_t> modifierSets() {
    std::vector<std::uint64_t> sets;
    for (std::uint64_t bits = 0; bits < 16; ++bits) {
        sets.push_back(bits * shift);
    }
    return sets;
}

} // namespace hollowfernpike::test
