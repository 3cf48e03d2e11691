#include "platform/gnome/AcceleratorTap.h"

#include "platform/freedesktop/Logging.h"
#include "platform/freedesktop/keyboard/KeyNames.h"

#include <QPointer>

#include <utility>

namespace hollowfernpike::gnome {

namespace {

using namespace platform::event_flags;

constexpr std::pair<std::uint64_t, const char*> modifierNames[] = {
    {control, "<Control>"}, {shift, "<Shift>"}, {option, "<Alt>"}, {command, "<Super>"}};

/// What the shell calls the combination, one for each key that has its code. The shell knows keys
/// by two hexadecimal digits of XKB's code.
QStringList acceleratorsOf(const platform::KeyCombination& combination) {
    constexpr int hexadecimal = 16;
    constexpr int digits = 2;
    constexpr int largestKey = 0xFF;
    QString modifiers;
    for (const auto& [flag, name] : modifierNames) {
        if ((combination.modifierFlags & flag) != 0) {
            modifiers += name;
        }
    }
    QStringList accelerators;
    for (const auto evdev : freedesktop::evdevCodesOf(combination.keyCode)) {
        const int key = evdev + freedesktop::xkbKeyCodeOffset;
        if (key <= largestKey) {
            accelerators +=
                modifiers + QStringLiteral("0x%1").arg(key, digits, hexadecimal, QLatin1Char('0'));
        }
    }
    return accelerators;
}

} // namespace

AcceleratorTap::AcceleratorTap(ShellExtension& extension, ShellLaunches& launches,
                               platform::EventTapCallback callback, void* userInfo)
    : Tap(callback, userInfo), extension_(extension), launches_(launches) {
    connect(&extension_, &ShellExtension::pressed, this, &AcceleratorTap::onPressed);
    connect(&extension_, &ShellExtension::appeared, this, &AcceleratorTap::bind);
    connect(&extension_, &ShellExtension::vanished, this, &AcceleratorTap::bind);
    connect(&extension_, &ShellExtension::keysFreed, this, &AcceleratorTap::bind);
}

AcceleratorTap::~AcceleratorTap() {
    invalidate();
}

void AcceleratorTap::setInterest(std::span<const platform::KeyCombination> combinations) {
    bindings_.clear();
    accelerators_.clear();
    for (const auto& combination : combinations) {
        const auto names = acceleratorsOf(combination);
        for (const auto& name : names) {
            accelerators_.emplace(name, bindings_.size());
        }
        bindings_.push_back({.combination = combination, .isRefused = names.isEmpty()});
    }
    bind();
}

std::vector<platform::KeyCombination> AcceleratorTap::refusedCombinations() const {
    std::vector<platform::KeyCombination> refused;
    for (const auto& binding : bindings_) {
        if (isLive() && binding.isRefused) {
            refused.push_back(binding.combination);
        }
    }
    return refused;
}

void AcceleratorTap::start() {
    bind();
}

void AcceleratorTap::stop() {
    ++questions_;
    extension_.setAccelerators({}, [](const QList<bool>&) {});
}

void AcceleratorTap::bind() {
    const auto question = ++questions_;
    if (!isLive()) {
        return;
    }
    if (!extension_.isThere()) {
        take({});
        return;
    }
    QStringList names;
    for (const auto& [name, binding] : accelerators_) {
        names.push_back(name);
    }
    extension_.setAccelerators(names, [self = QPointer(this), question](const auto& granted) {
        if (self != nullptr && self->questions_ == question) {
            self->take(granted);
        }
    });
}

// The callback may destroy this tap.
void AcceleratorTap::take(const QList<bool>& granted) {
    for (auto& binding : bindings_) {
        binding.isRefused = true;
    }
    qsizetype index = 0;
    for (const auto& [name, binding] : accelerators_) {
        if (granted.value(index++)) {
            bindings_[binding].isRefused = false;
        } else if (extension_.isThere()) {
            qCWarning(freedesktop::keysLog, "refused, because the shell has it: %s",
                      qPrintable(name));
        }
    }
    qCDebug(freedesktop::keysLog, "bound %zu combinations",
            bindings_.size() - refusedCombinations().size());
    reportRefused();
}

// The callback may destroy this tap.
void AcceleratorTap::onPressed(const QString& accelerator) {
    const auto found = accelerators_.find(accelerator);
    if (!isLive() || found == accelerators_.end()) {
        return;
    }
    launches_.countPress();
    deliver(bindings_[found->second].combination);
}

} // namespace hollowfernpike::gnome
