#include "platform/kde/keys/ShortcutTap.h"

#include "platform/freedesktop/Logging.h"

#include <algorithm>
#include <utility>

namespace hollowfernpike::kde {

namespace {

/// KWin keeps actions by name in a file, so the names stay the same for ever.
QString nameOf(const platform::KeyCombination& combination) {
    return QString::number(combination.keyCode) + '-' + QString::number(combination.modifierFlags);
}

} // namespace

ShortcutTap::ShortcutTap(const Services& services, platform::EventTapCallback callback,
                         void* userInfo)
    : Tap(callback, userInfo), services_(services), shortcuts_(services.bus),
      layouts_(services.bus) {
    services_.keyboard.onKeymapChange = [this] { bindIfLive(); };
    layouts_.onChange = [this] { bindIfLive(); };
    connect(&shortcuts_, &GlobalShortcuts::pressed, this, &ShortcutTap::onPressed);
    connect(&shortcuts_, &GlobalShortcuts::released, this, [this] { held_.letGo(); });
    connect(&shortcuts_, &GlobalShortcuts::changedByUser, this, &ShortcutTap::onChangedByUser);
    connect(&shortcuts_, &GlobalShortcuts::othersChangedByUser, this, &ShortcutTap::bindIfLive);
    connect(&shortcuts_, &GlobalShortcuts::appeared, this, [this] {
        actions_.clear();
        knowsLeftovers_ = false;
        held_.letGo();
        bindIfLive();
    });
}

ShortcutTap::~ShortcutTap() {
    services_.keyboard.onKeymapChange = {};
    invalidate();
}

void ShortcutTap::setInterest(std::span<const platform::KeyCombination> combinations) {
    interest_.clear();
    for (const auto& combination : combinations) {
        interest_[nameOf(combination)] = {
            .combination = combination,
            .label = QString::fromStdString(services_.host.purposeOf(combination)),
            .keys = {}};
    }
    bindIfLive();
}

std::vector<platform::KeyCombination> ShortcutTap::refusedCombinations() const {
    std::vector<platform::KeyCombination> refused;
    for (const auto& [name, action] : actions_) {
        if (action.verdict == Verdict::refused || action.verdict == Verdict::takenAway) {
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
        shortcuts_.deactivate(name, action.label);
    }
    shortcuts_.finish();
    held_.letGo();
}

// Keys are released before others get them: with another layout, two actions may swap theirs.
void ShortcutTap::bind() {
    if (services_.keyboard.keymap() == nullptr || !layouts_.current()) {
        return; // both tell when they are there
    }
    if (!knowsLeftovers_) {
        findLeftovers();
        return;
    }
    const auto wanted = wantedActions();
    forgetUnwanted(wanted);
    for (const auto& [name, known] : actions_) {
        if (isToChange(known, wanted.at(name)) && known.keys != wanted.at(name).keys) {
            shortcuts_.release(name, known.label);
        }
    }
    for (const auto& [name, action] : wanted) {
        const auto known = actions_.find(name);
        if (known == actions_.end() || isToChange(known->second, action)) {
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
            actions_[name];
        }
        bindIfLive();
    });
}

ShortcutTap::Actions ShortcutTap::wantedActions() const {
    const auto values = keyValues();
    auto actions = interest_;
    for (auto& [name, action] : actions) {
        action.keys = values.valuesOf(action.combination);
    }
    return actions;
}

KeyValues ShortcutTap::keyValues() const {
    return {*services_.keyboard.keymap(), *layouts_.current(), services_.plasma};
}

bool ShortcutTap::isToChange(const Action& known, const Action& wanted) {
    const bool isAsWanted = known.keys == wanted.keys && known.label == wanted.label &&
                            known.verdict != Verdict::refused;
    return !isAsWanted && known.verdict != Verdict::takenAway;
}

void ShortcutTap::forgetUnwanted(const Actions& wanted) {
    std::erase_if(actions_, [&](const auto& known) {
        const bool isWanted = wanted.contains(known.first);
        if (!isWanted) {
            ++unanswered_;
            shortcuts_.forget(known.first, [this] { onAnswered(); });
        }
        return !isWanted;
    });
}

// Until KWin answers, its last verdict stands.
void ShortcutTap::assign(const QString& name, const Action& wanted) {
    auto& known = actions_[name];
    const auto verdict = wanted.keys.isEmpty() ? Verdict::refused : known.verdict;
    known = wanted;
    known.verdict = verdict;
    if (!wanted.keys.isEmpty()) {
        ++unanswered_;
        shortcuts_.assign(name, wanted.label, wanted.keys,
                          [this, name, keys = wanted.keys](const auto& granted) {
                              onAnswer(name, keys, granted);
                          });
    }
}

void ShortcutTap::onAnswer(const QString& name, const QList<int>& keys,
                           const std::optional<QList<int>>& granted) {
    const auto action = actions_.find(name);
    if (action != actions_.end() && action->second.keys == keys) {
        const bool hasOne =
            std::ranges::any_of(keys, [&](int key) { return granted && granted->contains(key); });
        action->second.verdict = hasOne ? Verdict::granted : Verdict::refused;
    }
    onAnswered();
}

void ShortcutTap::onAnswered() {
    if (--unanswered_ == 0 && isLive()) {
        onSettled();
    }
}

// The callback may destroy this tap.
void ShortcutTap::onPressed(const QString& name) {
    const bool isNew = held_.press(name, services_.keyboard.repeatDelay());
    const auto action = actions_.find(name);
    if (!isNew || action == actions_.end() || !isLive()) {
        return;
    }
    services_.presses.countPress();
    deliver(action->second.combination);
}

void ShortcutTap::onChangedByUser(const QString& name, const QList<int>& keys) {
    const auto found = actions_.find(name);
    if (!isLive() || found == actions_.end() || found->second.keys == keys) {
        return;
    }
    auto before = std::exchange(found->second.keys, keys);
    found->second.verdict = keys.isEmpty() ? Verdict::takenAway : Verdict::none;
    const auto chosen = std::ranges::find_if(keys, [&](int key) { return !before.contains(key); });
    const bool isOther = chosen != keys.end() && services_.keyboard.keymap() != nullptr &&
                         layouts_.current().has_value();
    const auto combination = isOther ? keyValues().combinationOf(*chosen) : std::nullopt;
    if (!combination || !services_.host.onReassigned(found->second.combination, *combination)) {
        bind(); // what was there before, unless it was taken away
    }
}

void ShortcutTap::bindIfLive() {
    if (isLive()) {
        bind();
    }
}

void ShortcutTap::onSettled() {
    for (const auto& [name, action] : actions_) {
        if (action.verdict == Verdict::refused) {
            qCWarning(freedesktop::keysLog, "refused, because the desktop has it: %s, %s",
                      qPrintable(name), qPrintable(action.label));
        }
    }
    qCDebug(freedesktop::keysLog, "bound %zu combinations",
            actions_.size() - refusedCombinations().size());
    reportRefused();
}

} // namespace hollowfernpike::kde
