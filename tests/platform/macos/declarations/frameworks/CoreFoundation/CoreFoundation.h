// What platform/macos calls of this framework, declared by ourselves for machines that have no SDK.
#pragma once

#include <stdint.h>

extern "C" {

typedef long CFIndex;
typedef unsigned char Boolean;
typedef const void* CFTypeRef;
typedef const struct __CFAllocator* CFAllocatorRef;
typedef const struct __CFArray* CFArrayRef;
typedef const struct __CFBoolean* CFBooleanRef;
typedef const struct __CFDictionary* CFDictionaryRef;
typedef const struct __CFString* CFStringRef;
typedef CFStringRef CFRunLoopMode;
typedef struct __CFMachPort* CFMachPortRef;
typedef struct __CFRunLoop* CFRunLoopRef;
typedef struct __CFRunLoopSource* CFRunLoopSourceRef;

#pragma clang assume_nonnull begin

extern const CFAllocatorRef _Null_unspecified kCFAllocatorDefault;
extern const CFBooleanRef kCFBooleanTrue;
extern const CFRunLoopMode kCFRunLoopDefaultMode;
extern const CFRunLoopMode kCFRunLoopCommonModes;

CFTypeRef CFRetain(CFTypeRef cf);
void CFRelease(CFTypeRef cf);
CFRunLoopSourceRef _Null_unspecified CFMachPortCreateRunLoopSource(
    CFAllocatorRef _Null_unspecified allocator, CFMachPortRef _Null_unspecified port,
    CFIndex order);
void CFMachPortInvalidate(CFMachPortRef _Null_unspecified port);
CFRunLoopRef _Null_unspecified CFRunLoopGetMain(void);
void CFRunLoopAddSource(CFRunLoopRef _Null_unspecified rl,
                        CFRunLoopSourceRef _Null_unspecified source,
                        CFRunLoopMode _Null_unspecified mode);
void CFRunLoopRemoveSource(CFRunLoopRef _Null_unspecified rl,
                           CFRunLoopSourceRef _Null_unspecified source,
                           CFRunLoopMode _Null_unspecified mode);

#pragma clang assume_nonnull end
}
