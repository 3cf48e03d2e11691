#include "main/Program.h"

#include "hotkeys/HotkeyManager.h"
#include "platform/LaunchFeedback.h"
#include "platform/Windows.h"

namespace hollowfernpike {

Program::Program(platform::FoundDesktop& desktop, platform::UserDefaults& userDefaults,
                 qt::TerminationSignals& terminationSignals)
    : desktop_(desktop.open({.mainQueue = mainQueue_,
                             .runLoop = runLoop_,
                             .windowOwners = windowOwners_,
                             .onLost = [this] { application_.terminate(); }})),
      services_{
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

void Program::perform(const std::string& action, const std::string& startupIdentifier) {
    mainQueue_.async([this, action, startupIdentifier] {
        if (!startupIdentifier.empty() && isLive()) {
            desktop_->launchFeedback().end(startupIdentifier);
        }
        application_.performAction(action.empty() ? defaultAction : action);
    });
}

int Program::run(const std::string& action) {
    // The first key press would pay for reading the applications and the windows' owners.
    mainQueue_.async([this] {
        if (isLive()) {
            desktop_->windows().clientWindows();
        }
    });
    if (!action.empty()) {
        perform(action, {});
    }
    return application_.run();
}

bool Program::isLive() {
    return HotkeyManager::shared().eventTap() != nullptr;
}

} // namespace hollowfernpike
