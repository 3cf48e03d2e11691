#pragma once

#include <cstdint>

namespace hollowfernpike::x11 {

/// Whether one of a connection's request numbers, as xcb widens them, comes before another; they
/// wrap around.
constexpr bool isBefore(std::uint32_t sequence, std::uint32_t other) {
    return static_cast<std::int32_t>(sequence - other) < 0;
}

} // namespace hollowfernpike::x11
