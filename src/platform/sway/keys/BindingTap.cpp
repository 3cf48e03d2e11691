#include "platform/sway/keys/BindingTap.h"

#include "platform/freedesktop/Logging.h"
#include "platform/sway/ipc/Json.h"
#include "platform/sway/keys/BindingText.h"

#include <chrono>
#include <utility>

namespace hollowfernpike::sway {

namespace {

constexpr std::chrono::milliseconds retryInterval{5000};

} // namespace

BindingTap::BindingTap(const Services& services, platform::EventTapCallback callback,
                       void* userInfo)
    : Tap(callback, userInfo), services_(services), bindings_(services.ipc) {
    services_.keyboard.onKeymapChange = [this] { onKeymapChange(); };
}

BindingTap::~BindingTap() {
    services_.keyboard.onKeymapChange = {};
    invalidate();
}

void BindingTap::setInterest(std::span<const platform::KeyCombination> combinations) {
    interest_.assign(combinations.begin(), combinations.end());
    if (isLive()) {
        bind();
    }
}

std::vector<platform::KeyCombination> BindingTap::refusedCombinations() const {
    return isLive() ? bindings_.refused() : std::vector<platform::KeyCombination>{};
}

// Subscribes before it binds, so that no press is missed.
void BindingTap::start() {
    if (!events_ || !events_->isOpen()) {
        bindings_.onDoubt();
        events_.emplace(services_.ipc.path(), R"(["binding", "workspace"])", services_.runLoop,
                        IpcEvents::Listener{
                            .event = [this](const IpcMessage& event) { handle(event); },
                            .lost = [this] { tryAgain({}); },
                        });
    }
    if (events_->isOpen()) {
        bind();
    } else {
        tryAgain(retryInterval);
    }
}

void BindingTap::stop() {
    if (!bindings_.unbind()) {
        qCWarning(freedesktop::keysLog, "sway cannot be asked to unbind keys");
    }
    events_.reset();
}

void BindingTap::bind() {
    if (!bindings_.bind(interest_, services_.keyboard.keymap())) {
        tryAgain(retryInterval);
        return;
    }
    for (const auto& combination : bindings_.refused()) {
        qCWarning(freedesktop::keysLog, "refused, because sway or its configuration has it: %s",
                  keysOf(combination).front().c_str());
    }
    qCDebug(freedesktop::keysLog, "bound %zu combinations",
            interest_.size() - bindings_.refused().size());
}

// A connection that breaks as soon as it is made must not be made without a pause.
void BindingTap::tryAgain(std::chrono::milliseconds delay) {
    qCWarning(freedesktop::keysLog, "sway's socket %s fails", services_.ipc.path().c_str());
    if (std::exchange(isToTryAgain_, true)) {
        return;
    }
    const auto now = std::chrono::steady_clock::now();
    const bool isSoon = now < std::exchange(lastFailure_, now) + retryInterval;
    services_.queue.asyncAfter(isSoon ? retryInterval : delay, [this, life = life()] {
        if (life.lock()) {
            isToTryAgain_ = false;
            if (isLive()) {
                start();
            }
        }
    });
}

// The callback may destroy this tap.
void BindingTap::handle(const IpcMessage& event) {
    const auto details = parse(event.payload);
    if (event.kind == IpcKind::bindingEvent) {
        if (const auto combination =
                combinationOf(textMember(member(details, "binding"), "command"))) {
            onPressed(*combination);
        }
    } else if (event.kind == IpcKind::workspaceEvent && textMember(details, "change") == "reload") {
        bindings_.onReload();
        report(platform::eventTapDisabledByUserInput);
    }
}

void BindingTap::onPressed(const platform::KeyCombination& combination) {
    services_.presses.countPress();
    deliver(combination);
}

void BindingTap::onKeymapChange() {
    if (isLive() &&
        bindings_.refusedAmong(interest_, services_.keyboard.keymap()) != bindings_.refused()) {
        report(platform::eventTapDisabledByUserInput);
    }
}

} // namespace hollowfernpike::sway
