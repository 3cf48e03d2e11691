#include "platform/macos/RunningApplications.h"

#include "platform/macos/Text.h"

#include <AppKit/AppKit.h>

namespace hollowfernpike::macos {

namespace {

platform::RunningApplication described(NSRunningApplication* application) {
    return {.processIdentifier = [application processIdentifier],
            .bundleIdentifier = utf8([application bundleIdentifier]),
            .isTerminated = [application isTerminated] != NO};
}

void openAgain(NSRunningApplication* application) {
    NSURL* bundle = [application bundleURL];
    if (bundle == nil) {
        return;
    }
    NSWorkspaceOpenConfiguration* configuration = [NSWorkspaceOpenConfiguration configuration];
    [configuration setActivates:YES];
    [[NSWorkspace sharedWorkspace] openApplicationAtURL:bundle
                                          configuration:configuration
                                      completionHandler:nil];
}

} // namespace

std::vector<platform::RunningApplication>
RunningApplications::withBundleIdentifier(std::string_view bundleIdentifier) {
    @autoreleasepool {
        NSString* identifier = text(bundleIdentifier);
        std::vector<platform::RunningApplication> applications;
        if ([identifier length] == 0) {
            return applications;
        }
        for (NSRunningApplication* application in
             [NSRunningApplication runningApplicationsWithBundleIdentifier:identifier]) {
            applications.push_back(described(application));
        }
        return applications;
    }
}

std::optional<platform::RunningApplication>
RunningApplications::withProcessIdentifier(std::int32_t processIdentifier) {
    @autoreleasepool {
        NSRunningApplication* application =
            [NSRunningApplication runningApplicationWithProcessIdentifier:processIdentifier];
        return application == nil ? std::nullopt : std::optional(described(application));
    }
}

void RunningApplications::activate(const platform::RunningApplication& application) {
    @autoreleasepool {
        NSRunningApplication* running = [NSRunningApplication
            runningApplicationWithProcessIdentifier:application.processIdentifier];
        constexpr auto noOptions = static_cast<NSApplicationActivationOptions>(0);
        if (running == nil || [running activateWithOptions:noOptions] || [running isTerminated]) {
            return; // what has ended is not launched
        }
        openAgain(running);
    }
}

} // namespace hollowfernpike::macos
