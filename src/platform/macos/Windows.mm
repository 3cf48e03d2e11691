#include "platform/macos/Windows.h"

#include "platform/macos/Ref.h"
#include "platform/macos/Text.h"

#include <ApplicationServices/ApplicationServices.h>

#include <limits>

namespace hollowfernpike::macos {

namespace {

// Brings a process forward although ours is not in front.

constexpr float patience = 0.1F; // seconds: a program that hangs must not hold up the keyboard

std::optional<std::string> textUnder(CFStringRef key, NSDictionary* window) {
    NSString* text = textOrNil([window objectForKey:(__bridge NSString*)key]);
    return text == nil ? std::nullopt : std::optional(utf8(text));
}

std::optional<std::int32_t> integerUnder(CFStringRef key, NSDictionary* window) {
    using Limits = std::numeric_limits<std::int32_t>;
    const id value = [window objectForKey:(__bridge NSString*)key];
    if (![value isKindOfClass:[NSNumber class]]) {
        return std::nullopt;
    }
    const double number = [static_cast<NSNumber*>(value) doubleValue];
    if (!(number >= Limits::min() && number <= Limits::max())) {
        return std::nullopt;
    }
    const auto integer = static_cast<std::int32_t>(number);
    return integer == number ? std::optional(integer) : std::nullopt;
}

// Deprecated. What has taken its place may be refused to a program in the background.
bool bringForwardBySerialNumber(std::int32_t processIdentifier) {
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wdeprecated-declarations"
    ProcessSerialNumber number = {0, 0};
    return GetProcessForPID(processIdentifier, &number) == noErr &&
           SetFrontProcessWithOptions(&number, kSetFrontProcessCausedByUser) == noErr;
#pragma clang diagnostic pop
}

bool bringForwardByAttribute(std::int32_t processIdentifier) {
    const auto application =
        Ref<AXUIElementRef>::owned(AXUIElementCreateApplication(processIdentifier));
    AXUIElementSetMessagingTimeout(application.get(), patience);
    return AXUIElementSetAttributeValue(application.get(), kAXFrontmostAttribute, kCFBooleanTrue) ==
           kAXErrorSuccess;
}

} // namespace

std::optional<std::vector<platform::WindowInfo>> Windows::copyWindowInfo() {
    @autoreleasepool {
        const auto list = Ref<CFArrayRef>::owned(CGWindowListCopyWindowInfo(
            kCGWindowListOptionOnScreenOnly | kCGWindowListExcludeDesktopElements,
            kCGNullWindowID));
        if (!list) {
            return std::nullopt;
        }
        std::vector<platform::WindowInfo> windows;
        for (id entry in (__bridge NSArray*)list.get()) {
            if (![entry isKindOfClass:[NSDictionary class]]) {
                return std::nullopt;
            }
            NSDictionary* window = static_cast<NSDictionary*>(entry);
            windows.push_back({.ownerName = textUnder(kCGWindowOwnerName, window),
                               .ownerProcess = integerUnder(kCGWindowOwnerPID, window),
                               .layer = integerUnder(kCGWindowLayer, window)});
        }
        return windows;
    }
}

bool Windows::bringToFront(std::int32_t processIdentifier) {
    return bringForwardBySerialNumber(processIdentifier) ||
           bringForwardByAttribute(processIdentifier);
}

} // namespace hollowfernpike::macos
