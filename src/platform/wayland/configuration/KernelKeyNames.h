#pragma once

#include <cstdint>
#include <string>

namespace hollowfernpike::wayland {

/// What the kernel calls a key, such as "KEY_K"; its number if it is a rare one.
std::string kernelKeyName(std::uint16_t evdev);

} // namespace hollowfernpike::wayland
