#include "platform/macos/OwnWindows.h"

#include <AppKit/AppKit.h>

namespace hollowfernpike::macos {

void OwnWindows::setShownAsApplication(bool shown) {
    @autoreleasepool {
        [[NSApplication sharedApplication]
            setActivationPolicy:shown ? NSApplicationActivationPolicyRegular
                                      : NSApplicationActivationPolicyAccessory];
    }
}

void OwnWindows::bringToFront(std::uintptr_t window) {
    @autoreleasepool {
        [[NSApplication sharedApplication] activateIgnoringOtherApps:YES];
        NSView* view = (__bridge NSView*)reinterpret_cast<void*>(window);
        [[view window] makeKeyAndOrderFront:nil];
    }
}

} // namespace hollowfernpike::macos
