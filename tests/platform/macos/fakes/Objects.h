#pragma once

#include <Foundation/Foundation.h>

#include "platform/macos/fakes/FakeMac.h"

/// Counts how many there are.
@interface HFPCounted : NSObject
@end

namespace hollowfernpike::test {

inline NSString* textOf(const std::string& utf8) {
    return [NSString stringWithUTF8String:utf8.c_str()];
}

/// Says that the caller owns this from now on.
template <class Object>
Object given(id object) {
    ++FakeMac::shared().owed;
    return reinterpret_cast<Object>(object);
}

} // namespace hollowfernpike::test
