#pragma once

namespace hollowfernpike::freedesktop {

/// Gives what a C library handed over back to it, by one of its functions.
template <auto release>
struct Releaser {
    template <class T>
    void operator()(T* held) const noexcept {
        release(held);
    }
};

} // namespace hollowfernpike::freedesktop
