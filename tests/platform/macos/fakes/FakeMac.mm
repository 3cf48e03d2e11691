#include "platform/macos/fakes/FakeMac.h"

#include "platform/macos/fakes/Objects.h"

#include <algorithm>

#include <ApplicationServices/ApplicationServices.h>

@implementation HFPCounted
- (id)init {
    self = [super init];
    ++hollowfernpike::test::FakeMac::shared().alive;
    return self;
}
- (void)dealloc {
    --hollowfernpike::test::FakeMac::shared().alive;
    [super dealloc];
}
@end

@interface HFPEvent : HFPCounted {
@public
    const hollowfernpike::test::MacEvent* event;
}
@end
@implementation HFPEvent
@end

namespace hollowfernpike::test {

FakeMac& FakeMac::shared() {
    static FakeMac mac;
    return mac;
}

// What the test still holds stays counted.
void FakeMac::reset() {
    const auto kept = shared();
    shared() = {};
    shared().taps = kept.taps;
    shared().owed = kept.owed;
    shared().alive = kept.alive;
}

bool FakeMac::press(MacTap& tap, std::int64_t keyCode, std::uint64_t flags, bool isMenuOpen) {
    const bool isSeen =
        tap.isValid && tap.isEnabled &&
        (tap.modes.contains("common") || (tap.modes.contains("default") && !isMenuOpen)) &&
        (tap.mask & (1U << kCGEventKeyDown)) != 0;
    constexpr std::int64_t keyboardType = 40;
    const MacEvent event{.fields = {{9, keyCode}, {10, keyboardType}}, .flags = flags};
    const bool isListening = tap.options == 1;
    return !isSeen || deliver(tap, kCGEventKeyDown, event) || isListening;
}

bool FakeMac::deliver(const MacTap& tap, std::uint32_t type, const MacEvent& event) {
    HFPEvent* object = [HFPEvent new];
    object->event = &event;
    const auto callback = reinterpret_cast<CGEventTapCallBack>(tap.callback);
    char proxy = 0; // its address stands for it
    const auto passed =
        callback(reinterpret_cast<CGEventTapProxy>(&proxy), static_cast<CGEventType>(type),
                 reinterpret_cast<CGEventRef>(object), tap.userInfo);
    const bool isSame = passed == reinterpret_cast<CGEventRef>(object);
    if (passed != nullptr && !isSame) {
        shared().requests.emplace_back("another event passed on");
    }
    [object release];
    return isSame;
}

MacApplication* FakeMac::application(std::int32_t process) {
    const auto found = std::ranges::find(running, process, &MacApplication::process);
    return found == running.end() ? nullptr : &*found;
}

} // namespace hollowfernpike::test

int64_t CGEventGetIntegerValueField(CGEventRef event, CGEventField field) {
    const auto& fields = reinterpret_cast<HFPEvent*>(event)->event->fields;
    const auto found = fields.find(field);
    return found == fields.end() ? 0 : found->second;
}

CGEventFlags CGEventGetFlags(CGEventRef event) {
    return static_cast<CGEventFlags>(reinterpret_cast<HFPEvent*>(event)->event->flags);
}
