#pragma once

#include <string>
#include <string_view>

#include <Foundation/Foundation.h>

namespace hollowfernpike::macos {

/// What alloc and init have made, released with the innermost pool: so sources compile with and
/// without automatic reference counting.
template <class Object>
Object* pooled(Object* made) {
#if __has_feature(objc_arc)
    return made;
#else
    return [made autorelease];
#endif
}

/// Nil if the text is not UTF-8.
inline NSString* text(std::string_view utf8) {
    return pooled([[NSString alloc] initWithBytes:utf8.data()
                                           length:utf8.size()
                                         encoding:NSUTF8StringEncoding]);
}

/// Empty for nil, and for a text that has no UTF-8.
inline std::string utf8(NSString* text) {
    const char* const bytes = [text UTF8String];
    return bytes == nullptr ? std::string() : bytes;
}

/// A text in a list or dictionary of the system, where anything may be; nil if it is none.
inline NSString* textOrNil(id value) {
    return [value isKindOfClass:[NSString class]] ? static_cast<NSString*>(value) : nil;
}

} // namespace hollowfernpike::macos
