#include "platform/kde/keys/ShortcutTap.h"

#include "platform/freedesktop/Logging.h"
#include "platform/freedesktop/keyboard/KeyNames.h"

#include <algorithm>
#include <utility>

namespace hollowfernpike::kde {

namespace {

using Clock = std::chrono::steady_clock;

/// The longest pause before a held key repeats that the settings of the desktop offer. If the
/// key-up was lost, a press after that is a new one.
constexpr std::chrono::milliseconds longestRepeatDelay{5000};

/// KWin keeps actions by name in a file, so the names stay the same for ever.
QString nameOf(const platform::KeyCombination& combination) {
    return QString::number(combination.keyCode) + '-' + QString::number(combination.modifierFlags);
}

} // namespace

ShortcutTap::ShortcutTap(const Services& services, platform::EventTapCallback callback,
                         void* userInfo)
    : services_(services), listener_{callback, userInfo}, shortcuts_(services.bus),
      layouts_(services.bus) {
    services_.keyboard.onKeymapChange = [this] { onKeyboardChange(); };
    layouts_.onChange = [this] { onKeyboardChange(); };
    connect(&shortcuts_, &GlobalShortcuts::pressed, this, &ShortcutTap::onPressed);
    connect(&shortcuts_, &GlobalShortcuts::released, this, [this] { held_.clear(); });
    connect(&shortcuts_, &GlobalShortcuts::changedByUser, this, &ShortcutTap::onChangedByUser);
    connect(&shortcuts_, &GlobalShortcuts::appeared, this, [this] {
        actions_.clear();
        knowsLeftovers_ = false;
        held_.clear();
        onKeyboardChange();
    });
}

ShortcutTap::~ShortcutTap() {
    services_.keyboard.onKeymapChange = {};
    invalidate();
}

void ShortcutTap::setInterest(std::span<const platform::KeyCombination> combinations) {
    interest_.assign(combinations.begin(), combinations.end());
    if (isLive()) {
        bind();
    }
}

std::vector<platform::KeyCombination> ShortcutTap::refusedCombinations() const {
    std::vector<platform::KeyCombination> refused;
    for (const auto& [name, action] : actions_) {
        if (action.isRefused) {
            refused.push_back(action.combination);
        }
    }
    return refused;
}

void ShortcutTap::start() {
    bind();
}

void ShortcutTap::stop() {
    for (const auto& [name, action] : std::exchange(actions_, {})) {
        if (action.isRegistered) {
            shortcuts_.deactivate(name, action.label);
        }
    }
    shortcuts_.finish();
    held_.clear();
}

// Keys are released before others get them: with another layout, two actions may swap theirs.
void ShortcutTap::bind() {
    if (services_.keyboard.keymap() == nullptr || !layouts_.current()) {
        return; // onKeyboardChange() comes
    }
    if (!knowsLeftovers_) {
        findLeftovers();
        return;
    }
    const auto wanted = wantedActions();
    releaseChanged(wanted);
    for (const auto& [name, action] : wanted) {
        if (const auto known = actions_.find(name);
            known == actions_.end() || !known->second.isToStayFor(action)) {
            assign(name, action);
        }
    }
    if (unanswered_ == 0) {
        onSettled();
    }
}

// An action that an earlier run has left, active or not, keeps its keys from the others.
void ShortcutTap::findLeftovers() {
    if (std::exchange(isAsking_, true)) {
        return;
    }
    shortcuts_.list([this](const QStringList& names) {
        isAsking_ = false;
        knowsLeftovers_ = true;
        for (const auto& name : names) {
            actions_[name].isRegistered = true;
        }
        onKeyboardChange();
    });
}

ShortcutTap::Actions ShortcutTap::wantedActions() const {
    const KeyValues values(*services_.keyboard.keymap(), *layouts_.current(), services_.plasma);
    Actions actions;
    for (const auto& combination : interest_) {
        const auto label = services_.host.purposeOf(combination);
        actions[nameOf(combination)] = {.combination = combination,
                                        .label = QString::fromStdString(label),
                                        .keys = values.valuesOf(combination)};
    }
    return actions;
}

void ShortcutTap::releaseChanged(const Actions& wanted) {
    std::erase_if(actions_, [&](const auto& entry) {
        const auto& [name, action] = entry;
        const auto found = wanted.find(name);
        const bool isToGo = found == wanted.end();
        if (isToGo && action.isRegistered) {
            shortcuts_.forget(name);
        } else if (!isToGo && action.isRegistered && !action.isToStayFor(found->second)) {
            shortcuts_.release(name, action.label);
        }
        return isToGo;
    });
}

void ShortcutTap::assign(const QString& name, const Action& action) {
    auto& known = actions_[name];
    const bool wasRegistered = known.isRegistered;
    known = action;
    known.isRefused = action.keys.isEmpty(); // the keyboard has no such key
    known.isRegistered = wasRegistered || !action.keys.isEmpty();
    if (action.keys.isEmpty()) {
        return;
    }
    ++unanswered_;
    shortcuts_.assign(name, action.label, action.keys,
                      [this, name, keys = action.keys](const auto& granted) {
                          onGranted(name, keys, granted.value_or(keys));
                      });
}

void ShortcutTap::onGranted(const QString& name, const QList<int>& keys,
                            const QList<int>& granted) {
    const auto action = actions_.find(name);
    if (action != actions_.end() && action->second.keys == keys) {
        action->second.isRefused =
            std::ranges::none_of(keys, [&](int key) { return granted.contains(key); });
    }
    if (--unanswered_ == 0) {
        onSettled();
    }
}

// The callback may destroy this tap.
void ShortcutTap::onPressed(const QString& name) {
    const auto now = Clock::now();
    const bool isRecent = now < std::exchange(lastPress_, now) + longestRepeatDelay;
    const bool isRepeat = std::exchange(held_, name) == name && isRecent;
    const auto action = actions_.find(name);
    if (isRepeat || action == actions_.end() || !isLive()) {
        return;
    }
    services_.presses.countPress();
    const auto combination = action->second.combination;
    const platform::KeyEvent event{.keyCode = combination.keyCode,
                                   .flags = platform::event_flags::nonCoalesced |
                                            freedesktop::keyFlags(combination.keyCode) |
                                            combination.modifierFlags};
    listener_.callback(this, platform::eventKeyDown, &event, listener_.userInfo);
}

void ShortcutTap::onChangedByUser(const QString& name, const QList<int>& keys) {
    const auto found = actions_.find(name);
    if (!isLive() || found == actions_.end() || found->second.keys == keys) {
        return;
    }
    auto& action = found->second;
    action.keys = keys;
    if (keys.isEmpty()) {
        action.isRefused = action.isTakenAway = true;
        onSettled();
        return;
    }
    const KeyValues values(*services_.keyboard.keymap(), layouts_.current().value_or(0),
                           services_.plasma);
    const auto combination = values.combinationOf(keys.front());
    if (!combination || !services_.host.onReassigned(action.combination, *combination)) {
        bind();
    }
}

void ShortcutTap::onKeyboardChange() {
    if (isLive()) {
        bind();
    }
}

void ShortcutTap::onSettled() {
    const auto refused = refusedCombinations();
    qCDebug(freedesktop::keysLog, "bound %zu combinations", actions_.size() - refused.size());
    for (const auto& combination : refused) {
        qCWarning(freedesktop::keysLog, "refused, because the desktop has it: %s",
                  qPrintable(nameOf(combination)));
    }
    if (refused != std::exchange(reportedRefused_, refused)) {
        listener_.callback(this, platform::eventTapDisabledByUserInput, nullptr,
                           listener_.userInfo);
    }
}

} // namespace hollowfernpike::kde
