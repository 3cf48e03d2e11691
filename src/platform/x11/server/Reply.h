#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>

namespace hollowfernpike::x11 {

struct FreeDeleter {
    void operator()(void* memory) const noexcept { std::free(memory); }
};

/// A reply, event or error that xcb allocated; ours to free.
template <class T>
using Reply = std::unique_ptr<T, FreeDeleter>;

/// Whether one of a connection's request numbers, widened to 32 bits by xcb, comes before another.
/// Works across their wrap-around.
constexpr bool isBefore(std::uint32_t sequence, std::uint32_t other) {
    return static_cast<std::int32_t>(sequence - other) < 0;
}

} // namespace hollowfernpike::x11
