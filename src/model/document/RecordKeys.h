#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace hollowfernpike {

/// The members of a shortcut's JSON object, in encoding order.
enum class RecordKey : std::size_t {
    id,
    keyCode,
    modifierFlags,
    appPath,
    appName,
    appBundleIdentifier,
};

inline constexpr std::array<std::string_view, 6> recordKeyNames{
    "id", "keyCode", "modifierFlags", "appPath", "appName", "appBundleIdentifier"};

constexpr std::string_view name(RecordKey key) {
    return recordKeyNames.at(static_cast<std::size_t>(key));
}

} // namespace hollowfernpike
