#include "platform/macos/fakes/Objects.h"

#include <algorithm>

#include <ApplicationServices/ApplicationServices.h>

using hollowfernpike::test::FakeMac;
using hollowfernpike::test::given;
using hollowfernpike::test::textOf;

@interface HFPElement : HFPCounted {
@public
    pid_t process;
    float timeout;
}
@end
@implementation HFPElement
@end

namespace {

void setNumber(NSMutableDictionary* window, CFStringRef key, std::optional<std::int64_t> number) {
    if (number) {
        [window setObject:[NSNumber numberWithLongLong:*number] forKey:(NSString*)key];
    }
}

NSDictionary* dictionaryOf(const hollowfernpike::test::MacWindow& window) {
    NSMutableDictionary* dictionary = [NSMutableDictionary dictionary];
    if (window.ownerName) {
        [dictionary setObject:textOf(*window.ownerName) forKey:(NSString*)kCGWindowOwnerName];
    }
    setNumber(dictionary, kCGWindowOwnerPID, window.ownerProcess);
    setNumber(dictionary, kCGWindowLayer, window.layer);
    if (!window.oddity.empty()) {
        [dictionary setObject:[NSArray array] forKey:textOf(window.oddity)];
    }
    return dictionary;
}

void bringWindowsForward(pid_t process) {
    if (auto& windows = FakeMac::shared().windows) {
        std::stable_partition(windows->begin(), windows->end(),
                              [&](const auto& window) { return window.ownerProcess == process; });
    }
}

void note(const std::string& request, pid_t process) {
    FakeMac::shared().requests.push_back(request + ' ' + std::to_string(process));
}

} // namespace

const CFStringRef kCGWindowOwnerName = reinterpret_cast<CFStringRef>(@"kCGWindowOwnerName");
const CFStringRef kCGWindowOwnerPID = reinterpret_cast<CFStringRef>(@"kCGWindowOwnerPID");
const CFStringRef kCGWindowLayer = reinterpret_cast<CFStringRef>(@"kCGWindowLayer");
CFStringRef kAXTrustedCheckOptionPrompt =
    reinterpret_cast<CFStringRef>(@"AXTrustedCheckOptionPrompt");

CFArrayRef CGWindowListCopyWindowInfo(CGWindowListOption option, CGWindowID /*relativeTo*/) {
    auto& mac = FakeMac::shared();
    mac.windowListOptions.push_back(option);
    if (!mac.windows) {
        return nullptr;
    }
    NSMutableArray* list = [NSMutableArray new];
    @autoreleasepool {
        if (mac.listsSomethingElse) {
            [list addObject:@"a text"];
        }
        for (const auto& window : *mac.windows) {
            [list addObject:dictionaryOf(window)];
        }
    }
    return given<CFArrayRef>(list);
}

Boolean AXIsProcessTrusted(void) {
    return FakeMac::shared().trusted;
}

Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options) {
    id prompt = [(NSDictionary*)options objectForKey:(NSString*)kAXTrustedCheckOptionPrompt];
    if ([prompt boolValue] && !FakeMac::shared().trusted) {
        ++FakeMac::shared().prompts;
    }
    return AXIsProcessTrusted();
}

AXUIElementRef AXUIElementCreateApplication(pid_t pid) {
    HFPElement* element = [HFPElement new];
    element->process = pid;
    return given<AXUIElementRef>(element);
}

AXError AXUIElementSetMessagingTimeout(AXUIElementRef element, float timeoutInSeconds) {
    ((HFPElement*)element)->timeout = timeoutInSeconds;
    return kAXErrorSuccess;
}

AXError AXUIElementSetAttributeValue(AXUIElementRef element, CFStringRef attribute,
                                     CFTypeRef value) {
    const auto* asked = (HFPElement*)element;
    const bool isPatient = asked->timeout <= 0 || asked->timeout > 0.5F;
    note(isPatient ? "waits too long for" : "attribute", asked->process);
    const bool isFrontmost =
        [(NSString*)attribute isEqualToString:@"AXFrontmost"] && value == kCFBooleanTrue;
    const auto* application = FakeMac::shared().application(asked->process);
    return isFrontmost && application != nullptr && application->takesAttribute
               ? kAXErrorSuccess
               : kAXErrorCannotComplete;
}

OSStatus GetProcessForPID(pid_t pid, ProcessSerialNumber* number) {
    constexpr OSStatus noSuchProcess = -600;
    const auto* application = FakeMac::shared().application(pid);
    if (application == nullptr || !application->hasSerialNumber) {
        return noSuchProcess;
    }
    *number = {.highLongOfPSN = 0, .lowLongOfPSN = static_cast<std::uint32_t>(pid)};
    return noErr;
}

OSStatus SetFrontProcessWithOptions(const ProcessSerialNumber* number, OptionBits options) {
    constexpr OSStatus refused = -606;
    const auto pid = static_cast<pid_t>(number->lowLongOfPSN);
    note(options == 2 ? "serial number" : "serial number without the user", pid);
    if (!FakeMac::shared().application(pid)->comesForward) {
        return refused;
    }
    bringWindowsForward(pid);
    return noErr;
}
