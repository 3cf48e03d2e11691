#include "platform/freedesktop/keyboard/KeyNames.h"

#include "platform/EventTap.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <span>
#include <unordered_map>

namespace hollowfernpike::freedesktop {

namespace {

using Codes = std::unordered_map<std::string_view, std::uint16_t>;

/// A key that the virtual key codes have a number for. Some keys have two names.
struct NumberedKey {
    std::string_view name; ///< in XKB keyboard maps
    std::uint16_t evdev = 0;
    std::uint16_t virtualCode = 0;
};

constexpr NumberedKey numberedKeys[] = {
    {"TLDE", 41, 50},   {"AE01", 2, 18},    {"AE02", 3, 19},    {"AE03", 4, 20},
    {"AE04", 5, 21},    {"AE05", 6, 23},    {"AE06", 7, 22},    {"AE07", 8, 26},
    {"AE08", 9, 28},    {"AE09", 10, 25},   {"AE10", 11, 29},   {"AE11", 12, 27},
    {"AE12", 13, 24},   {"AE13", 124, 93},  {"BKSP", 14, 51},   {"TAB", 15, 48},
    {"AD01", 16, 12},   {"AD02", 17, 13},   {"AD03", 18, 14},   {"AD04", 19, 15},
    {"AD05", 20, 17},   {"AD06", 21, 16},   {"AD07", 22, 32},   {"AD08", 23, 34},
    {"AD09", 24, 31},   {"AD10", 25, 35},   {"AD11", 26, 33},   {"AD12", 27, 30},
    {"BKSL", 43, 42},   {"AC12", 43, 42},   {"AC01", 30, 0},    {"AC02", 31, 1},
    {"AC03", 32, 2},    {"AC04", 33, 3},    {"AC05", 34, 5},    {"AC06", 35, 4},
    {"AC07", 36, 38},   {"AC08", 37, 40},   {"AC09", 38, 37},   {"AC10", 39, 41},
    {"AC11", 40, 39},   {"RTRN", 28, 36},   {"LSGT", 86, 10},   {"AB01", 44, 6},
    {"AB02", 45, 7},    {"AB03", 46, 8},    {"AB04", 47, 9},    {"AB05", 48, 11},
    {"AB06", 49, 45},   {"AB07", 50, 46},   {"AB08", 51, 43},   {"AB09", 52, 47},
    {"AB10", 53, 44},   {"AB11", 89, 94},   {"SPCE", 57, 49},   {"ESC", 1, 53},
    {"MUHE", 94, 102},  {"HENK", 92, 104},  {"FK01", 59, 122},  {"FK02", 60, 120},
    {"FK03", 61, 99},   {"FK04", 62, 118},  {"FK05", 63, 96},   {"FK06", 64, 97},
    {"FK07", 65, 98},   {"FK08", 66, 100},  {"FK09", 67, 101},  {"FK10", 68, 109},
    {"FK11", 87, 103},  {"FK12", 88, 111},  {"FK13", 183, 105}, {"FK14", 184, 107},
    {"FK15", 185, 113}, {"FK16", 186, 106}, {"FK17", 187, 64},  {"FK18", 188, 79},
    {"FK19", 189, 80},  {"FK20", 190, 90},  {"INS", 110, 114},  {"HOME", 102, 115},
    {"PGUP", 104, 116}, {"DELE", 111, 117}, {"END", 107, 119},  {"PGDN", 109, 121},
    {"LEFT", 105, 123}, {"RGHT", 106, 124}, {"DOWN", 108, 125}, {"UP", 103, 126},
    {"NMLK", 69, 71},   {"KPDV", 98, 75},   {"KPMU", 55, 67},   {"KPSU", 74, 78},
    {"KPAD", 78, 69},   {"KPEN", 96, 76},   {"KPEQ", 117, 81},  {"KPDL", 83, 65},
    {"KPPT", 121, 95},  {"I129", 121, 95},  {"JPCM", 95, 95},   {"KP0", 82, 82},
    {"KP1", 79, 83},    {"KP2", 80, 84},    {"KP3", 81, 85},    {"KP4", 75, 86},
    {"KP5", 76, 87},    {"KP6", 77, 88},    {"KP7", 71, 89},    {"KP8", 72, 91},
    {"KP9", 73, 92},
};

/// Keys that the virtual key codes have no number for.
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
    const auto* const key = std::ranges::find(numberedKeys, keyName, &NumberedKey::name);
    return key == std::end(numberedKeys) ? std::nullopt : std::optional{key->virtualCode};
}

std::optional<std::uint16_t> evdevCode(std::string_view keyName) {
    const auto named = evdevCodes().find(keyName);
    return named == evdevCodes().end() ? numberedName(keyName) : named->second;
}

std::uint16_t virtualKeyCodeOf(std::uint16_t evdev) {
    const auto* const key = std::ranges::find(numberedKeys, evdev, &NumberedKey::evdev);
    return key == std::end(numberedKeys)
               ? static_cast<std::uint16_t>(firstUnnumberedKeyCode + evdev)
               : key->virtualCode;
}

std::vector<std::uint16_t> evdevCodesOf(std::uint16_t virtualKeyCode) {
    std::vector<std::uint16_t> codes;
    for (const auto& key : numberedKeys) {
        if (key.virtualCode == virtualKeyCode && std::ranges::count(codes, key.evdev) == 0) {
            codes.push_back(key.evdev);
        }
    }
    if (virtualKeyCode >= firstUnnumberedKeyCode) {
        const auto evdev = static_cast<std::uint16_t>(virtualKeyCode - firstUnnumberedKeyCode);
        if (virtualKeyCodeOf(evdev) == virtualKeyCode) {
            codes.push_back(evdev);
        }
    }
    return codes;
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

} // namespace hollowfernpike::freedesktop
