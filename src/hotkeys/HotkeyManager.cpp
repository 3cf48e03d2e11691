#include "hotkeys/HotkeyManager.h"

#include "hotkeys/AppLauncher.h"
#include "model/ShortcutStore.h"
#include "platform/AccessibilityTrust.h"
#include "platform/EventTap.h"
#include "platform/MainQueue.h"
#include "platform/NotificationCenter.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <vector>

namespace hollowfernpike {

namespace {

constexpr std::chrono::milliseconds retryInterval{5000};

/// Load factor of the map. Low, because most key presses are bound to nothing, and an empty bucket
/// shows that without a look at any shortcut.
constexpr float sparse = 0.25F;

Holder holderOf(const platform::KeyCombination& combination, const platform::EventTap& tap) {
    const auto isAmong = [&](const std::vector<platform::KeyCombination>& combinations) {
        return std::ranges::find(combinations, combination) != combinations.end();
    };
    if (isAmong(tap.refusedCombinations())) {
        return Holder::desktop;
    }
    return isAmong(tap.listenOnlyCombinations()) ? Holder::program : Holder::nobody;
}

void enableTapAfterCallback() {
    platform::services().mainQueue.async([] {
        if (auto* const tap = HotkeyManager::shared().eventTap()) {
            tap->enable(true);
            platform::services().notificationCenter.post(refusedCombinationsDidChange);
        }
    });
}

/// Drops exceptions, because the key press is consumed even if the launch fails. Services do not
/// throw, but memory may run out.
void launch(const AppShortcut& shortcut) {
    try {
        AppLauncher::shared().performLaunchOrActivate(shortcut.appBundleIdentifier,
                                                      shortcut.appName, shortcut.appPath);
    } catch (const std::exception&) {
        return;
    }
}

} // namespace

HotkeyManager::HotkeyManager(const platform::Services& services)
    : accessibilityTrust_(services.accessibilityTrust), eventTaps_(services.eventTaps),
      mainQueue_(services.mainQueue) {}

void HotkeyManager::start() {
    if (eventTap_) {
        return;
    }
    if (accessibilityTrust_.isProcessTrusted()) {
        buildShortcutMap();
        installEventTap();
        return;
    }
    accessibilityTrust_.isProcessTrustedWithPrompt();
    mainQueue_.asyncAfter(retryInterval, [weakSelf = weak_from_this()] {
        if (const auto self = weakSelf.lock()) {
            self->start();
        }
    });
}

void HotkeyManager::buildShortcutMap() {
    const auto& shortcuts = ShortcutStore::shared().shortcuts();
    auto map = std::make_shared<ShortcutMap>();
    map->max_load_factor(sparse);
    map->reserve(shortcuts.size());
    for (const auto& shortcut : shortcuts) {
        const ShortcutMapKey key(shortcut.keyCode, shortcut.modifierFlags);
        map->insert_or_assign(std::string{key.text()}, shortcut);
    }
    shortcutMap_ = std::move(map);
    if (eventTap_) {
        tellInterest();
    }
}

void HotkeyManager::installEventTap() {
    using enum platform::EventTapOptions;
    eventTap_ = eventTaps_.create(active, &hotkeyEventTapCallback, nullptr);
    if (!eventTap_) {
        eventTap_ = eventTaps_.create(listenOnly, &hotkeyEventTapCallback, nullptr);
    }
    if (!eventTap_) {
        return;
    }
    runLoopSource_ = eventTap_->createRunLoopSource();
    tellInterest();
    runLoopSource_->addToMainRunLoop();
    eventTap_->enable(true);
}

void HotkeyManager::tellInterest() {
    eventTap_->setInterest(interest());
}

std::vector<platform::KeyCombination> HotkeyManager::interest() const {
    std::vector<platform::KeyCombination> combinations;
    combinations.reserve(shortcutMap_->size());
    for (const auto& [key, shortcut] : *shortcutMap_) {
        combinations.push_back({shortcut.keyCode, shortcut.modifierFlags & modifierMask});
    }
    return combinations;
}

void HotkeyManager::stop() {
    if (eventTap_) {
        eventTap_->enable(false);
        runLoopSource_->removeFromMainRunLoop();
        runLoopSource_.reset();
        eventTap_->invalidate();
        eventTap_.reset();
    }
    shortcutMap_ = std::make_shared<ShortcutMap>();
}

const AppShortcut* HotkeyManager::shortcutFor(const platform::KeyCombination& combination) const {
    const ShortcutMapKey key(combination.keyCode, combination.modifierFlags);
    const auto found = shortcutMap_->find(key.text());
    return found == shortcutMap_->end() ? nullptr : &found->second;
}

Holder HotkeyManager::otherHolder(const platform::KeyCombination& combination) const {
    if (!eventTap_) {
        return Holder::nobody;
    }
    if (shortcutFor(combination) != nullptr) {
        return holderOf(combination, *eventTap_);
    }
    auto combinations = interest();
    combinations.push_back(combination);
    eventTap_->setInterest(combinations);
    const auto holder = holderOf(combination, *eventTap_);
    combinations.pop_back();
    eventTap_->setInterest(combinations);
    return holder;
}

void HotkeyManager::tryAgain() {
    if (!eventTap_) {
        return;
    }
    if (const auto shared = eventTap_->listenOnlyCombinations(); !shared.empty()) {
        tellInterest();
        if (eventTap_->listenOnlyCombinations() != shared) {
            platform::services().notificationCenter.post(refusedCombinationsDidChange);
        }
    }
}

const platform::KeyEvent* hotkeyEventTapCallback(platform::EventTap* /*proxy*/,
                                                 platform::EventType type,
                                                 const platform::KeyEvent* event,
                                                 void* /*userInfo*/) noexcept {
    if (type == platform::eventTapDisabledByTimeout ||
        type == platform::eventTapDisabledByUserInput) {
        enableTapAfterCallback();
        return event;
    }
    if (type != platform::eventKeyDown) {
        return event;
    }
    const ShortcutMapKey key(platform::checkedKeyCode(*event), event->flags);
    const auto shortcuts = HotkeyManager::shared().shortcutMap();
    const auto match = shortcuts->find(key.text());
    if (match == shortcuts->end()) {
        return event;
    }
    launch(match->second);
    return nullptr;
}

} // namespace hollowfernpike
