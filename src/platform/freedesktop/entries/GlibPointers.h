#pragma once

#include <memory>

#include <glib.h>

namespace hollowfernpike::freedesktop {

/// A deleter that calls a C library's function `release`.
template <auto release>
struct Releaser {
    template <class T>
    void operator()(T* held) const noexcept {
        release(held);
    }
};

/// Own what GLib hands over, and release it with the function for its kind.
using TextPointer = std::unique_ptr<char, Releaser<&g_free>>;
using TextListPointer = std::unique_ptr<char*, Releaser<&g_strfreev>>;
using ErrorPointer = std::unique_ptr<GError, Releaser<&g_error_free>>;
using KeyFilePointer = std::unique_ptr<GKeyFile, Releaser<&g_key_file_unref>>;

/// The text, or an empty one in place of null.
inline const char* orEmpty(const char* text) {
    return text == nullptr ? "" : text;
}

} // namespace hollowfernpike::freedesktop
