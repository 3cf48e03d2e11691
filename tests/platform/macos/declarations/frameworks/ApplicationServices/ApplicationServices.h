// What platform/macos calls of this framework, declared by ourselves for machines that have no SDK.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <sys/types.h>

#ifndef CFSTR
#define CFSTR(text) ((__bridge CFStringRef) @text)
#endif

extern "C" {

// Event taps.
typedef struct __CGEvent* CGEventRef;
typedef struct __CGEventTapProxy* CGEventTapProxy;
typedef uint64_t CGEventMask;
#define CGEventMaskBit(eventType) ((CGEventMask)1 << (eventType))

enum CGEventTapLocation : uint32_t { kCGHIDEventTap = 0, kCGSessionEventTap = 1 };
enum CGEventTapPlacement : uint32_t { kCGHeadInsertEventTap = 0, kCGTailAppendEventTap = 1 };
enum CGEventTapOptions : uint32_t {
    kCGEventTapOptionDefault = 0x00000000,
    kCGEventTapOptionListenOnly = 0x00000001
};
enum CGEventType : uint32_t {
    kCGEventKeyDown = 10,
    kCGEventTapDisabledByTimeout = 0xFFFFFFFE,
    kCGEventTapDisabledByUserInput = 0xFFFFFFFF
};
enum CGEventField : uint32_t { kCGKeyboardEventKeycode = 9, kCGKeyboardEventKeyboardType = 10 };
enum CGEventFlags : uint64_t {};

typedef CGEventRef _Nullable (*CGEventTapCallBack)(CGEventTapProxy _Nonnull proxy, CGEventType type,
                                                   CGEventRef _Nonnull event,
                                                   void* _Nullable userInfo);

CFMachPortRef _Nullable CGEventTapCreate(CGEventTapLocation tap, CGEventTapPlacement place,
                                         CGEventTapOptions options, CGEventMask eventsOfInterest,
                                         CGEventTapCallBack _Nonnull callback,
                                         void* _Nullable userInfo);
void CGEventTapEnable(CFMachPortRef _Nonnull tap, bool enable);
int64_t CGEventGetIntegerValueField(CGEventRef _Nullable event, CGEventField field);
CGEventFlags CGEventGetFlags(CGEventRef _Nullable event);

// The list of windows.
typedef uint32_t CGWindowID;
enum CGWindowListOption : uint32_t {
    kCGWindowListOptionAll = 0,
    kCGWindowListOptionOnScreenOnly = 1,
    kCGWindowListExcludeDesktopElements = 16
};
constexpr CGWindowListOption operator|(CGWindowListOption a, CGWindowListOption b) {
    return static_cast<CGWindowListOption>(static_cast<uint32_t>(a) | static_cast<uint32_t>(b));
}
#define kCGNullWindowID ((CGWindowID)0)
extern const CFStringRef _Nonnull kCGWindowOwnerName;
extern const CFStringRef _Nonnull kCGWindowOwnerPID;
extern const CFStringRef _Nonnull kCGWindowLayer;
CFArrayRef _Nullable CGWindowListCopyWindowInfo(CGWindowListOption option,
                                                CGWindowID relativeToWindow);

// Accessibility.
typedef const struct __AXUIElement* AXUIElementRef;
enum AXError : int32_t { kAXErrorSuccess = 0, kAXErrorCannotComplete = -25204 };
#define kAXFrontmostAttribute CFSTR("AXFrontmost")
extern CFStringRef _Nonnull kAXTrustedCheckOptionPrompt;
Boolean AXIsProcessTrusted(void);
Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef _Nullable options);
AXUIElementRef _Nonnull AXUIElementCreateApplication(pid_t pid);
AXError AXUIElementSetMessagingTimeout(AXUIElementRef _Nonnull element, float timeoutInSeconds);
AXError AXUIElementSetAttributeValue(AXUIElementRef _Nonnull element,
                                     CFStringRef _Nonnull attribute, CFTypeRef _Nonnull value);

// Processes by serial numbers.
typedef int32_t OSStatus;
typedef uint32_t OptionBits;
enum { noErr = 0 };
struct ProcessSerialNumber {
    uint32_t highLongOfPSN;
    uint32_t lowLongOfPSN;
};
OSStatus GetProcessForPID(pid_t pid, ProcessSerialNumber* _Nonnull psn)
    __attribute__((availability(macos, introduced = 10.0, deprecated = 10.9)));
enum { kSetFrontProcessCausedByUser = (1 << 1) };
OSStatus SetFrontProcessWithOptions(const ProcessSerialNumber* _Nonnull inProcess,
                                    OptionBits inOptions)
    __attribute__((availability(macos, introduced = 10.0, deprecated = 10.9)));
}
