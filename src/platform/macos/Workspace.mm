#include "platform/macos/Workspace.h"

#include "platform/macos/Text.h"

#include <AppKit/AppKit.h>

namespace hollowfernpike::macos {

namespace {

platform::OpenResult failure(const std::string& reason) {
    return {.processIdentifier = std::nullopt,
            .error = platform::LocalizedError("アプリケーションを開けません: " + reason,
                                              "Cannot open the application: " + reason)};
}

platform::OpenResult resultOf(NSRunningApplication* opened, NSError* error) {
    if (error != nil) {
        return failure(utf8([error localizedDescription]));
    }
    return {.processIdentifier =
                opened == nil ? std::nullopt : std::optional([opened processIdentifier]),
            .error = std::nullopt};
}

} // namespace

// The system calls the handler on a thread of its own.
void Workspace::openApplication(const std::string& path,
                                const platform::OpenConfiguration& configuration,
                                OpenCompletion completion) {
    const auto report = [queue = &mainQueue_, completion](const platform::OpenResult& result) {
        if (completion) {
            queue->async([completion, result] { completion(result); });
        }
    };
    @autoreleasepool {
        NSString* place = text(path);
        if ([place length] == 0) {
            report(failure(path));
            return;
        }
        NSWorkspaceOpenConfiguration* how = [NSWorkspaceOpenConfiguration configuration];
        [how setActivates:configuration.activates ? YES : NO];
        [[NSWorkspace sharedWorkspace]
            openApplicationAtURL:[NSURL fileURLWithPath:place]
                   configuration:how
               completionHandler:^(NSRunningApplication* opened, NSError* error) {
                 report(resultOf(opened, error));
               }];
    }
}

} // namespace hollowfernpike::macos
