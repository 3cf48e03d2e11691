#include "app/AppDelegate.h"

#include "hotkeys/AppLauncher.h"
#include "hotkeys/HotkeyManager.h"
#include "model/ShortcutStore.h"
#include "platform/AccessibilityTrust.h"
#include "platform/NotificationCenter.h"

namespace hollowfernpike {

AppDelegate::AppDelegate(const platform::Services& services) : services_(services) {}

void AppDelegate::applicationDidFinishLaunching() {
    services_.accessibilityTrust.isProcessTrustedWithPrompt();
    AppLauncher::shared(); // so that the first key press does not pay for it
    shortcutsObservation_ = services_.notificationCenter.observe(hollowfernpike::shortcutsDidChange,
                                                                 [this] { shortcutsDidChange(); });
    HotkeyManager::shared().start();
}

void AppDelegate::applicationWillTerminate() {
    HotkeyManager::shared().stop();
}

void AppDelegate::shortcutsDidChange() {
    HotkeyManager::shared().buildShortcutMap();
}

} // namespace hollowfernpike
