#include "platform/freedesktop/Workspace.h"

#include "platform/freedesktop/LaunchError.h"
#include "platform/freedesktop/ProgramLaunch.h"

#include <utility>

namespace hollowfernpike::freedesktop {

namespace {

DesktopEntry applicationAt(const std::string& path) {
    auto entry = readDesktopEntry(path);
    if (entry.hidden) {
        throw hiddenApplication(path);
    }
    return entry;
}

platform::OpenResult failure(const platform::LocalizedError& error) {
    return {.processIdentifier = std::nullopt, .error = error};
}

} // namespace

Workspace::Workspace(platform::ClientWindows& windows, platform::LaunchFeedback& feedback,
                     platform::RunLoop& runLoop, platform::MainQueue& mainQueue)
    : launches_(windows, feedback, mainQueue), children_(runLoop) {}

void Workspace::openApplication(const std::string& path,
                                const platform::OpenConfiguration& configuration,
                                OpenCompletion completion) {
    try {
        const auto entry = applicationAt(path);
        if (const auto launch = launches_.find(entry.stamp)) {
            LaunchesUnderWay::join(*launch, std::move(completion));
            return;
        }
        const auto launch = launches_.begin(entry, configuration.activates);
        LaunchesUnderWay::join(*launch, std::move(completion));
        start(launch);
        launches_.track(launch);
    } catch (const platform::LocalizedError& error) {
        if (completion) {
            completion(failure(error));
        }
    }
}

void Workspace::start(const std::shared_ptr<Launch>& launch) {
    try {
        auto process = launchProgram(launch->entry, launch->startupIdentifier);
        const auto number = process.number;
        children_.adopt(std::move(process), [this, weak = std::weak_ptr(launch)] {
            if (const auto ended = weak.lock()) {
                launches_.finish(*ended);
            }
        });
        launches_.settle(*launch, {.processIdentifier = number, .error = std::nullopt});
    } catch (const platform::LocalizedError& error) {
        launches_.settle(*launch, failure(error));
    }
}

} // namespace hollowfernpike::freedesktop
