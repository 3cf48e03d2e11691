#pragma once

#include "model/AppShortcut.h"
#include "platform/EventTap.h"

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <tuple>

namespace hollowfernpike {

/// For the messages of failed tests.
inline void PrintTo(const UUID& id, std::ostream* out) { // NOLINT(readability-identifier-naming)
    *out << id.text();
}

} // namespace hollowfernpike

namespace hollowfernpike::test {

using namespace platform::event_flags;

/// The id whose last digits are `number` and whose others are those of an arbitrary UUID.
inline UUID idNumber(std::uint8_t number) {
    auto bytes = UUID::parse("E621E1F8-C36C-495A-93FC-0C247A3E6E00")->bytes();
    bytes.back() = number;
    return UUID{bytes};
}

inline AppShortcut makeShortcut(std::uint8_t number, std::uint16_t keyCode,
                                std::uint64_t modifierFlags, const std::string& name = "Editor") {
    return {.id = idNumber(number),
            .keyCode = keyCode,
            .modifierFlags = modifierFlags,
            .appPath = "/Applications/" + name + ".app",
            .appName = name,
            .appBundleIdentifier = "org.example." + name};
}

/// All six fields, to be compared.
inline auto fields(const AppShortcut& shortcut) {
    return std::tuple{shortcut.id,      shortcut.keyCode, shortcut.modifierFlags,
                      shortcut.appPath, shortcut.appName, shortcut.appBundleIdentifier};
}

} // namespace hollowfernpike::test
