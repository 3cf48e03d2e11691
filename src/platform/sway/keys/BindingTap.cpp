#include "platform/sway/keys/BindingTap.h"

#include "platform/freedesktop/Logging.h"
#include "platform/freedesktop/keyboard/KeyNames.h"
#include "platform/sway/ipc/Json.h"
#include "platform/sway/keys/BindingText.h"

#include <chrono>

namespace hollowfernpike::sway {

namespace {

constexpr std::chrono::milliseconds retryInterval{5000};

} // namespace

BindingTap::BindingTap(const Services& services, platform::EventTapCallback callback,
                       void* userInfo)
    : services_(services), listener_{callback, userInfo}, bindings_(services.ipc) {
    services_.keyboard.onKeymapChange = [this] { onKeymapChange(); };
}

BindingTap::~BindingTap() {
    services_.keyboard.onKeymapChange = {};
    invalidate();
}

void BindingTap::setInterest(std::span<const platform::KeyCombination> combinations) {
    interest_.assign(combinations.begin(), combinations.end());
    if (isLive()) {
        bind(interest_);
    }
}

std::vector<platform::KeyCombination> BindingTap::refusedCombinations() const {
    return isLive() ? bindings_.refused() : std::vector<platform::KeyCombination>{};
}

// Subscribes before it binds, so that no press is missed.
void BindingTap::start() {
    if (!events_ || !events_->isOpen()) {
        events_.emplace(services_.ipc.path(), R"(["binding", "workspace"])", services_.runLoop,
                        IpcEvents::Listener{
                            .event = [this](const IpcMessage& event) { handle(event); },
                            .lost = [this] { tryAgain({}); },
                        });
    }
    if (events_->isOpen()) {
        bind(interest_);
    } else {
        tryAgain(retryInterval);
    }
}

void BindingTap::stop() {
    bind({});
    events_.reset();
}

void BindingTap::bind(const std::vector<platform::KeyCombination>& combinations) {
    if (!bindings_.bind(combinations, services_.keyboard.keymap())) {
        qCWarning(freedesktop::keysLog, "sway cannot be asked to bind keys");
        return;
    }
    qCDebug(freedesktop::keysLog, "bound %zu combinations",
            combinations.size() - bindings_.refused().size());
    for (const auto& combination : bindings_.refused()) {
        qCWarning(freedesktop::keysLog, "refused, because sway's own configuration binds it: %s",
                  keysOf(combination).front().c_str());
    }
}

void BindingTap::tryAgain(std::chrono::milliseconds delay) {
    qCWarning(freedesktop::keysLog, "sway's socket %s fails", services_.ipc.path().c_str());
    services_.queue.asyncAfter(delay, [this, life = life()] {
        if (life.lock() && isLive()) {
            start();
        }
    });
}

// The callback may destroy this tap.
void BindingTap::handle(const IpcMessage& event) {
    const auto details = parse(event.payload);
    if (event.kind == IpcKind::bindingEvent) {
        if (const auto combination =
                combinationOf(textMember(member(details, "binding"), "command"))) {
            deliver(*combination);
        }
    } else if (event.kind == IpcKind::workspaceEvent && textMember(details, "change") == "reload") {
        bindings_.onReload();
        reportDisabled();
    }
}

void BindingTap::deliver(const platform::KeyCombination& combination) {
    services_.presses.countPress();
    const platform::KeyEvent event{.keyCode = combination.keyCode,
                                   .flags = platform::event_flags::nonCoalesced |
                                            freedesktop::keyFlags(combination.keyCode) |
                                            combination.modifierFlags};
    listener_.callback(this, platform::eventKeyDown, &event, listener_.userInfo);
}

void BindingTap::onKeymapChange() {
    if (isLive() &&
        bindings_.refusedAmong(interest_, services_.keyboard.keymap()) != bindings_.refused()) {
        reportDisabled();
    }
}

void BindingTap::reportDisabled() {
    listener_.callback(this, platform::eventTapDisabledByUserInput, nullptr, listener_.userInfo);
}

} // namespace hollowfernpike::sway
