#pragma once

#include <cstdlib>
#include <memory>

namespace hollowfernpike::x11 {

struct FreeDeleter {
    void operator()(void* memory) const noexcept { std::free(memory); }
};

/// A reply, event or error that xcb allocated; ours to free.
template <class T>
using Reply = std::unique_ptr<T, FreeDeleter>;

} // namespace hollowfernpike::x11
