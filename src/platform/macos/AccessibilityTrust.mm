#include "platform/macos/AccessibilityTrust.h"

#include <ApplicationServices/ApplicationServices.h>
#include <Foundation/Foundation.h>

namespace hollowfernpike::macos {

bool AccessibilityTrust::isProcessTrusted() {
    return AXIsProcessTrusted() != 0;
}

bool AccessibilityTrust::isProcessTrustedWithPrompt() {
    @autoreleasepool {
        NSDictionary* options = @{(__bridge NSString*)kAXTrustedCheckOptionPrompt : @(YES)};
        return AXIsProcessTrustedWithOptions((__bridge CFDictionaryRef)options) != 0;
    }
}

} // namespace hollowfernpike::macos
