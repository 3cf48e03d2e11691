#include "main/Program.h"

#include "app/L10n.h"
#include "hotkeys/HotkeyManager.h"
#include "main/Restart.h"
#include "model/CombinationText.h"
#include "platform/LaunchFeedback.h"
#include "platform/Windows.h"
#include "ui/parts/AppName.h"

#include <utility>

namespace hollowfernpike {

Program::Program(platform::FoundDesktop& desktop, platform::UserDefaults& userDefaults,
                 qt::TerminationSignals& terminationSignals, freedesktop::SessionBus* bus,
                 std::string openWindows)
    : bus_(bus), windowsToReopen_(std::move(openWindows)), desktop_(desktop.open(desktopHost())),
      bindingsReminder_(*desktop_, userDefaults,
                        QCoreApplication::applicationFilePath().toStdString()),
      services_(makeServices(userDefaults)) {
    toolkitTexts_.setLanguage(Language::current().rawValue());
    application_.setDelegate(&delegate_);
    application_.setActivationPolicy(platform::ActivationPolicy::accessory);
    terminationSignals.watch(runLoop_, [this] { application_.terminate(); });
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, [this] { isEnding_ = true; });
}

platform::Services Program::makeServices(platform::UserDefaults& userDefaults) {
    return {
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
    };
}

platform::DesktopHost Program::desktopHost() {
    return {.mainQueue = mainQueue_,
            .runLoop = runLoop_,
            .windowOwners = windowOwners_,
            .onLost = [this] { application_.terminate(); },
            .isScreenLocked = [this] { return screenLock_.isLocked(); },
            .bus = bus_,
            .purposeOf = [this](const auto& combination) { return purposeOf(combination); },
            .onReassigned = &Program::reassign,
            .onTrusted = [this] { mainQueue_.async([] { HotkeyManager::shared().start(); }); },
            .restart = [this] { restart(); }};
}

std::string Program::purposeOf(const platform::KeyCombination& combination) const {
    const auto* const shortcut = HotkeyManager::shared().shortcutFor(combination);
    if (shortcut == nullptr) {
        return {};
    }
    return L10n::purpose(shownAppName(shortcut->appPath, shortcut->appName).toStdString());
}

bool Program::reassign(const platform::KeyCombination& from, const platform::KeyCombination& to) {
    const auto& manager = HotkeyManager::shared();
    const auto* const shortcut = manager.shortcutFor(from);
    if (shortcut == nullptr || to.modifierFlags == 0 || manager.shortcutFor(to) != nullptr) {
        return false;
    }
    auto changed = *shortcut;
    changed.keyCode = to.keyCode;
    changed.modifierFlags = to.modifierFlags;
    ShortcutStore::shared().update(changed);
    return manager.shortcutFor(to) != nullptr;
}

// Desktops show what our combinations do in the language of the interface.
void Program::languageDidChange() {
    toolkitTexts_.setLanguage(Language::current().rawValue());
    if (isLive()) {
        HotkeyManager::shared().buildShortcutMap();
    }
    bindingsReminder_.update();
}

void Program::restart() {
    if (!isEnding_) {
        restartProgram(QCoreApplication::applicationFilePath().toStdString(),
                       windowsToReopen_ ? *windowsToReopen_ : delegate_.openWindows());
    }
}

void Program::perform(const freedesktop::InstanceRequest& request) {
    mainQueue_.async([this, request] {
        if (request.action == pressAction) {
            press(request);
            return;
        }
        if (!request.startupIdentifier.empty()) {
            useStartupIdentifier(request.startupIdentifier);
        }
        application_.performAction(request.action);
    });
}

bool Program::isBound(const platform::KeyCombination& combination) {
    if (!isLive()) {
        HotkeyManager::shared().buildShortcutMap();
    }
    return HotkeyManager::shared().shortcutFor(combination) != nullptr;
}

bool Program::canPerform(const freedesktop::InstanceRequest& request) {
    try {
        return request.action != pressAction || isBound(CombinationText::parse(request.parameter));
    } catch (const platform::LocalizedError&) {
        return false;
    }
}

void Program::press(const freedesktop::InstanceRequest& request) {
    if (!canPerform(request)) {
        return;
    }
    const auto combination = CombinationText::parse(request.parameter);
    desktop_->launchFeedback().notePress(combination, request.startupIdentifier);
    const platform::KeyEvent event{.keyCode = combination.keyCode,
                                   .flags = combination.modifierFlags};
    hotkeyEventTapCallback(HotkeyManager::shared().eventTap(), platform::eventKeyDown, &event,
                           nullptr);
}

int Program::run(const std::optional<freedesktop::InstanceRequest>& request) {
    // Reads the applications and the windows' owners now, so that the first key press need not.
    mainQueue_.async([this] {
        if (isLive()) {
            knowApplications();
            desktop_->windows().clientWindows();
        }
    });
    if (request) {
        perform(*request);
    }
    mainQueue_.async([this] {
        delegate_.reopenWindows(*windowsToReopen_);
        windowsToReopen_.reset();
        bindingsReminder_.update();
    });
    return application_.run();
}

// The windows of applications that are not installed are known by their entries alone.
void Program::knowApplications() {
    for (const auto& shortcut : ShortcutStore::shared().shortcuts()) {
        if (entries_.index().withPath(shortcut.appPath) == nullptr) {
            applicationBundles_.bundleAt(shortcut.appPath);
        }
    }
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
