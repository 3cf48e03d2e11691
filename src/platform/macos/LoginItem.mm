#include "platform/macos/LoginItem.h"

#include "platform/macos/Text.h"

#include <ServiceManagement/ServiceManagement.h>

namespace hollowfernpike::macos {

namespace {

/// In the system's words, which it has in one language.
platform::LocalizedError refusal(NSError* error) {
    const auto reason = utf8([error localizedDescription]);
    return {reason, reason};
}

platform::LocalizedError tooOld() {
    return {"ログイン項目には macOS 13 以降が必要です", "Login items need macOS 13 or later"};
}

} // namespace

platform::LoginItemStatus LoginItem::status() {
    using enum platform::LoginItemStatus;
    @autoreleasepool {
        if (@available(macOS 13.0, *)) {
            switch ([[SMAppService mainAppService] status]) {
            case SMAppServiceStatusNotRegistered:
                return notRegistered;
            case SMAppServiceStatusEnabled:
                return enabled;
            case SMAppServiceStatusRequiresApproval:
                return requiresApproval;
            case SMAppServiceStatusNotFound:
                return notFound;
            }
        }
        return notFound;
    }
}

void LoginItem::registerItem() {
    @autoreleasepool {
        if (@available(macOS 13.0, *)) {
            NSError* error = nil;
            if ([[SMAppService mainAppService] registerAndReturnError:&error]) {
                return;
            }
            throw refusal(error);
        }
        throw tooOld();
    }
}

void LoginItem::unregisterItem() {
    @autoreleasepool {
        if (@available(macOS 13.0, *)) {
            NSError* error = nil;
            if ([[SMAppService mainAppService] unregisterAndReturnError:&error]) {
                return;
            }
            throw refusal(error);
        }
        throw tooOld();
    }
}

} // namespace hollowfernpike::macos
