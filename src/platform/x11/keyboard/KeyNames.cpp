#include "platform/x11/keyboard/KeyNames.h"

#include "platform/EventTap.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <span>
#include <unordered_map>

namespace hollowfernpike::x11 {

namespace {

using Codes = std::unordered_map<std::string_view, std::uint16_t>;

const Codes& virtualKeyCodes() {
    static const Codes codes{
        {"TLDE", 50},  {"AE01", 18},  {"AE02", 19},  {"AE03", 20},  {"AE04", 21},  {"AE05", 23},
        {"AE06", 22},  {"AE07", 26},  {"AE08", 28},  {"AE09", 25},  {"AE10", 29},  {"AE11", 27},
        {"AE12", 24},  {"AE13", 93},  {"BKSP", 51},  {"TAB", 48},   {"AD01", 12},  {"AD02", 13},
        {"AD03", 14},  {"AD04", 15},  {"AD05", 17},  {"AD06", 16},  {"AD07", 32},  {"AD08", 34},
        {"AD09", 31},  {"AD10", 35},  {"AD11", 33},  {"AD12", 30},  {"BKSL", 42},  {"AC12", 42},
        {"AC01", 0},   {"AC02", 1},   {"AC03", 2},   {"AC04", 3},   {"AC05", 5},   {"AC06", 4},
        {"AC07", 38},  {"AC08", 40},  {"AC09", 37},  {"AC10", 41},  {"AC11", 39},  {"RTRN", 36},
        {"LSGT", 10},  {"AB01", 6},   {"AB02", 7},   {"AB03", 8},   {"AB04", 9},   {"AB05", 11},
        {"AB06", 45},  {"AB07", 46},  {"AB08", 43},  {"AB09", 47},  {"AB10", 44},  {"AB11", 94},
        {"SPCE", 49},  {"ESC", 53},   {"MUHE", 102}, {"HENK", 104}, {"FK01", 122}, {"FK02", 120},
        {"FK03", 99},  {"FK04", 118}, {"FK05", 96},  {"FK06", 97},  {"FK07", 98},  {"FK08", 100},
        {"FK09", 101}, {"FK10", 109}, {"FK11", 103}, {"FK12", 111}, {"FK13", 105}, {"FK14", 107},
        {"FK15", 113}, {"FK16", 106}, {"FK17", 64},  {"FK18", 79},  {"FK19", 80},  {"FK20", 90},
        {"INS", 114},  {"HOME", 115}, {"PGUP", 116}, {"DELE", 117}, {"END", 119},  {"PGDN", 121},
        {"LEFT", 123}, {"RGHT", 124}, {"DOWN", 125}, {"UP", 126},   {"NMLK", 71},  {"KPDV", 75},
        {"KPMU", 67},  {"KPSU", 78},  {"KPAD", 69},  {"KPEN", 76},  {"KPEQ", 81},  {"KPDL", 65},
        {"KPPT", 95},  {"I129", 95},  {"JPCM", 95},  {"KP0", 82},   {"KP1", 83},   {"KP2", 84},
        {"KP3", 85},   {"KP4", 86},   {"KP5", 87},   {"KP6", 88},   {"KP7", 89},   {"KP8", 91},
        {"KP9", 92},
    };
    return codes;
}

const Codes& evdevCodes() {
    static const Codes codes{
        {"LCTL", 29},  {"LFSH", 42},  {"RTSH", 54},  {"LALT", 56},  {"CAPS", 58},  {"SCLK", 70},
        {"KATA", 90},  {"HIRA", 91},  {"HKTG", 93},  {"RCTL", 97},  {"PRSC", 99},  {"RALT", 100},
        {"LNFD", 101}, {"MUTE", 113}, {"VOL-", 114}, {"VOL+", 115}, {"POWR", 116}, {"PAUS", 119},
        {"HNGL", 122}, {"HJCV", 123}, {"LWIN", 125}, {"RWIN", 126}, {"COMP", 127}, {"MENU", 127},
        {"STOP", 128}, {"AGAI", 129}, {"PROP", 130}, {"UNDO", 131}, {"FRNT", 132}, {"COPY", 133},
        {"OPEN", 134}, {"PAST", 135}, {"FIND", 136}, {"CUT", 137},  {"HELP", 138}, {"FK21", 191},
        {"FK22", 192}, {"FK23", 193}, {"FK24", 194},
    };
    return codes;
}

std::optional<std::uint16_t> find(const Codes& codes, std::string_view name) {
    const auto found = codes.find(name);
    return found == codes.end() ? std::nullopt : std::optional{found->second};
}

/// "I148" is the key that sends 148, which is eight more than the kernel's code.
std::optional<std::uint16_t> numberedName(std::string_view name) {
    std::uint16_t number = 0;
    if (name.size() != 4 || name.front() != 'I') {
        return std::nullopt;
    }
    const auto [end, error] = std::from_chars(name.begin() + 1, name.end(), number);
    if (error != std::errc{} || end != name.end() || number < 8) {
        return std::nullopt;
    }
    return static_cast<std::uint16_t>(number - 8);
}

constexpr std::array<std::uint16_t, 19> keypadCodes{65, 67, 69, 71, 75, 76, 78, 81, 82, 83,
                                                    84, 85, 86, 87, 88, 89, 91, 92, 95};
constexpr std::array<std::uint16_t, 4> arrowCodes{123, 124, 125, 126};
constexpr std::array<std::uint16_t, 20> functionCodes{
    122, 120, 99, 118, 96, 97, 98, 100, 101, 109, 103, 111, 105, 107, 113, 106, 64, 79, 80, 90};
constexpr std::uint16_t helpCode = 114;
constexpr std::array<std::uint16_t, 6> navigationCodes{helpCode, 115, 116, 117, 119, 121};

bool contains(std::span<const std::uint16_t> codes, std::uint16_t code) {
    return std::ranges::find(codes, code) != codes.end();
}

} // namespace

std::optional<std::uint16_t> virtualKeyCode(std::string_view keyName) {
    return find(virtualKeyCodes(), keyName);
}

std::optional<std::uint16_t> evdevCode(std::string_view keyName) {
    const auto named = find(evdevCodes(), keyName);
    return named ? named : numberedName(keyName);
}

std::uint64_t keyFlags(std::uint16_t virtualKeyCode) {
    using namespace platform::event_flags;
    const bool isArrow = contains(arrowCodes, virtualKeyCode);
    std::uint64_t flags = 0;
    if (isArrow || contains(keypadCodes, virtualKeyCode)) {
        flags |= numericPad;
    }
    if (isArrow || contains(functionCodes, virtualKeyCode) ||
        contains(navigationCodes, virtualKeyCode)) {
        flags |= secondaryFunction;
    }
    if (virtualKeyCode == helpCode) {
        flags |= help;
    }
    return flags;
}

} // namespace hollowfernpike::x11
