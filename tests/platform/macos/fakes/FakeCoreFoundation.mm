#include "platform/macos/fakes/Objects.h"

#include <ApplicationServices/ApplicationServices.h>

using hollowfernpike::test::FakeMac;
using hollowfernpike::test::given;
using hollowfernpike::test::MacTap;

/// A tap's port. Owns what the tests know of the tap.
@interface HFPPort : HFPCounted {
@public
    MacTap* tap;
}
@end
@implementation HFPPort
- (void)dealloc {
    std::erase(FakeMac::shared().taps, tap);
    delete tap;
    [super dealloc];
}
@end

@interface HFPSource : HFPCounted {
@public
    HFPPort* port;
}
@end
@implementation HFPSource
- (void)dealloc {
    [port release];
    [super dealloc];
}
@end

namespace {

std::string nameOf(CFRunLoopMode mode) {
    return mode == kCFRunLoopCommonModes ? "common" : "default";
}

char mainLoop; // its address stands for it

} // namespace

const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFBooleanRef kCFBooleanTrue = reinterpret_cast<CFBooleanRef>(@"true");
const CFRunLoopMode kCFRunLoopDefaultMode = reinterpret_cast<CFRunLoopMode>(@"default");
const CFRunLoopMode kCFRunLoopCommonModes = reinterpret_cast<CFRunLoopMode>(@"common");

CFTypeRef CFRetain(CFTypeRef object) {
    [(id)object retain];
    return given<CFTypeRef>((id)object);
}

void CFRelease(CFTypeRef object) {
    --FakeMac::shared().owed;
    [(id)object release];
}

CFMachPortRef CGEventTapCreate(CGEventTapLocation location, CGEventTapPlacement placement,
                               CGEventTapOptions options, CGEventMask mask,
                               CGEventTapCallBack callback, void* userInfo) {
    auto& mac = FakeMac::shared();
    if (options == kCGEventTapOptionDefault ? mac.refusesActive : mac.refusesListenOnly) {
        return nullptr;
    }
    HFPPort* port = [HFPPort new];
    port->tap = new MacTap{.location = location,
                           .placement = placement,
                           .options = options,
                           .mask = mask,
                           .callback = reinterpret_cast<void*>(callback),
                           .userInfo = userInfo,
                           .modes = {}};
    mac.taps.push_back(port->tap);
    return given<CFMachPortRef>(port);
}

void CGEventTapEnable(CFMachPortRef port, bool enable) {
    reinterpret_cast<HFPPort*>(port)->tap->isEnabled = enable;
}

CFRunLoopSourceRef CFMachPortCreateRunLoopSource(CFAllocatorRef /*allocator*/, CFMachPortRef port,
                                                 CFIndex /*order*/) {
    HFPSource* source = [HFPSource new];
    source->port = [reinterpret_cast<HFPPort*>(port) retain];
    return given<CFRunLoopSourceRef>(source);
}

void CFMachPortInvalidate(CFMachPortRef port) {
    reinterpret_cast<HFPPort*>(port)->tap->isValid = false;
}

CFRunLoopRef CFRunLoopGetMain(void) {
    return reinterpret_cast<CFRunLoopRef>(&mainLoop);
}

void CFRunLoopAddSource(CFRunLoopRef /*loop*/, CFRunLoopSourceRef source, CFRunLoopMode mode) {
    reinterpret_cast<HFPSource*>(source)->port->tap->modes.insert(nameOf(mode));
}

void CFRunLoopRemoveSource(CFRunLoopRef /*loop*/, CFRunLoopSourceRef source, CFRunLoopMode mode) {
    reinterpret_cast<HFPSource*>(source)->port->tap->modes.erase(nameOf(mode));
}
