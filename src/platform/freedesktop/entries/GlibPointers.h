#pragma once

#include <memory>

#include <glib.h>

namespace hollowfernpike::freedesktop {

/// Gives what a C library handed over back to it, by one of its functions.
template <auto release>
struct Releaser {
    template <class T>
    void operator()(T* held) const noexcept {
        release(held);
    }
};

/// What GLib hands over for us to release, each kind in the way it wants.
using TextPointer = std::unique_ptr<char, Releaser<&g_free>>;
using TextListPointer = std::unique_ptr<char*, Releaser<&g_strfreev>>;
using ErrorPointer = std::unique_ptr<GError, Releaser<&g_error_free>>;
using KeyFilePointer = std::unique_ptr<GKeyFile, Releaser<&g_key_file_unref>>;

/// The text, or an empty one in place of null.
inline const char* orEmpty(const char* text) {
    return text == nullptr ? "" : text;
}

} // namespace hollowfernpike::freedesktop
