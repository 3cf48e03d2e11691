#include "main/Program.h"

#include "hotkeys/HotkeyManager.h"
#include "platform/LaunchFeedback.h"
#include "platform/Windows.h"

namespace hollowfernpike {

Program::Program(platform::FoundDesktop& desktop, platform::UserDefaults& userDefaults,
                 qt::TerminationSignals& terminationSignals, freedesktop::SessionBus* bus)
    : desktop_(desktop.open({.mainQueue = mainQueue_,
                             .runLoop = runLoop_,
                             .windowOwners = windowOwners_,
                             .onLost = [this] { application_.terminate(); },
                             .isScreenLocked = [this] { return screenLock_.isLocked(); }})),
      bus_(bus), services_{
                     .accessibilityTrust = trustPrompt_,
                     .application = application_,
                     .applicationBundles = applicationBundles_,
                     .eventTaps = desktop_->eventTaps(),
                     .fileManager = fileManager_,
                     .loginItem = loginItem_,
                     .mainQueue = mainQueue_,
                     .notificationCenter = notificationCenter_,
                     .runningApplications = runningApplications_,
                     .statusBar = statusBar_,
                     .textComparison = textComparison_,
                     .userDefaults = userDefaults,
                     .windows = desktop_->windows(),
                     .workspace = workspace_,
                     .standardOutput = std::cout,
                 } {
    toolkitTexts_.setLanguage(Language::current().rawValue());
    application_.setDelegate(&delegate_);
    application_.setActivationPolicy(platform::ActivationPolicy::accessory);
    terminationSignals.watch(runLoop_, [this] { application_.terminate(); });
}

void Program::perform(const freedesktop::InstanceRequest& request) {
    mainQueue_.async([this, request] {
        if (!request.startupIdentifier.empty()) {
            useStartupIdentifier(request.startupIdentifier);
        }
        application_.performAction(request.action);
    });
}

int Program::run(const std::string& action) {
    // Reads the applications and the windows' owners now, so that the first key press need not.
    mainQueue_.async([this] {
        if (isLive()) {
            desktop_->windows().clientWindows();
        }
    });
    if (!action.empty()) {
        perform({.action = action, .startupIdentifier = {}});
    }
    return application_.run();
}

void Program::useStartupIdentifier(const std::string& identifier) {
    desktop_->ownWindows().useActivationToken(identifier);
    if (isLive()) {
        desktop_->launchFeedback().end(identifier);
    }
}

bool Program::isLive() {
    return HotkeyManager::shared().eventTap() != nullptr;
}

} // namespace hollowfernpike
