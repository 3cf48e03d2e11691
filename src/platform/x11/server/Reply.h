#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <type_traits>

#include <xcb/xcb.h>

namespace hollowfernpike::x11 {

struct FreeDeleter {
    void operator()(void* memory) const noexcept { std::free(memory); }
};

/// A reply, event or error that xcb allocated; ours to free.
template <class T>
using Reply = std::unique_ptr<T, FreeDeleter>;

/// Waits for the reply to a request with `take`, xcb's function for replies of that kind. Null if
/// the request failed or the connection is lost.
template <auto take, class Cookie>
auto awaitReply(xcb_connection_t* connection, Cookie request) {
    auto* const reply = take(connection, request, nullptr);
    return Reply<std::remove_pointer_t<decltype(reply)>>(reply);
}

/// Whether one of a connection's request numbers, widened to 32 bits by xcb, comes before another.
/// Works across their wrap-around.
constexpr bool isBefore(std::uint32_t sequence, std::uint32_t other) {
    return static_cast<std::int32_t>(sequence - other) < 0;
}

} // namespace hollowfernpike::x11
