#include "platform/portal/PortalTap.h"

#include "platform/freedesktop/Logging.h"
#include "platform/freedesktop/keyboard/KeyNames.h"

#include <utility>

namespace hollowfernpike::portal {

namespace {

using namespace platform::event_flags;

constexpr std::pair<std::uint64_t, const char*> modifierNames[] = {
    {control, "CTRL+"}, {option, "ALT+"}, {shift, "SHIFT+"}, {command, "LOGO+"}};

/// Desktops remember by it what the user has decided, so it stays the same for ever.
QString nameOf(const platform::KeyCombination& combination) {
    return QString::number(combination.keyCode) + '-' + QString::number(combination.modifierFlags);
}

/// As the "shortcuts" specification of freedesktop.org writes it; empty if the keyboard has no such
/// key.
QString triggerOf(const platform::KeyCombination& combination, const wayland::Keymap& keymap) {
    for (const auto evdev : freedesktop::evdevCodesOf(combination.keyCode)) {
        const auto symbols = keymap.symbolsOf(evdev + freedesktop::xkbKeyCodeOffset);
        if (!symbols.empty()) {
            QString trigger;
            for (const auto& [flag, name] : modifierNames) {
                trigger += (combination.modifierFlags & flag) != 0 ? name : "";
            }
            return trigger + QString::fromStdString(symbols.back()); // with Num Lock
        }
    }
    return {};
}

} // namespace

PortalTap::PortalTap(const Services& services, platform::EventTapCallback callback, void* userInfo)
    : Tap(callback, userInfo), services_(services), portal_(services.bus) {
    services_.keyboard.onKeymapChange = [this] { bind(); };
    connect(&portal_, &ShortcutsPortal::bound, this, &PortalTap::onBound);
    connect(&portal_, &ShortcutsPortal::pressed, this, &PortalTap::onPressed);
    connect(&portal_, &ShortcutsPortal::released, this, [this] { held_.letGo(); });
    connect(&portal_, &ShortcutsPortal::lost, this, [this] { granted_.reset(); });
}

PortalTap::~PortalTap() {
    services_.keyboard.onKeymapChange = {};
    invalidate();
}

void PortalTap::setInterest(std::span<const platform::KeyCombination> combinations) {
    interest_.clear();
    for (const auto& combination : combinations) {
        interest_.emplace(nameOf(combination), combination);
    }
    bind();
}

std::vector<platform::KeyCombination> PortalTap::refusedCombinations() const {
    std::vector<platform::KeyCombination> refused;
    for (const auto& [name, combination] : interest_) {
        if (isLive() && granted_ && !granted_->contains(name)) {
            refused.push_back(combination);
        }
    }
    return refused;
}

void PortalTap::start() {
    bind();
}

void PortalTap::stop() {
    portal_.release();
    asked_.clear();
    granted_.reset();
    held_.letGo();
}

// A label in another language is no reason to ask the user once more.
void PortalTap::bind() {
    if (!isLive() || services_.keyboard.keymap() == nullptr) {
        return; // which tells when it is there
    }
    std::map<QString, QString> triggers;
    QList<PortalShortcut> shortcuts;
    for (const auto& [name, combination] : interest_) {
        const auto trigger = triggerOf(combination, *services_.keyboard.keymap());
        if (!trigger.isEmpty()) {
            triggers.emplace(name, trigger);
            shortcuts.push_back(
                {.name = name,
                 .label = QString::fromStdString(services_.host.purposeOf(combination)),
                 .trigger = trigger});
        }
    }
    if (triggers != std::exchange(asked_, triggers)) {
        granted_.reset();
        portal_.bind(shortcuts);
    }
}

// The callback may destroy this tap.
void PortalTap::onBound(const QStringList& names) {
    if (!isLive() || granted_ == names) {
        return;
    }
    granted_ = names;
    const auto refused = refusedCombinations();
    for (const auto& combination : refused) {
        qCWarning(freedesktop::keysLog, "not granted by the desktop: %s",
                  qPrintable(nameOf(combination)));
    }
    qCDebug(freedesktop::keysLog, "bound %zu combinations", interest_.size() - refused.size());
    reportRefused();
}

// The callback may destroy this tap.
void PortalTap::onPressed(const QString& name, const QString& token) {
    const auto found = interest_.find(name);
    if (!isLive() || found == interest_.end() ||
        !held_.press(name, services_.keyboard.repeatDelay()) || services_.host.isScreenLocked()) {
        return;
    }
    services_.presses.countPress(token.toStdString());
    deliver(found->second);
}

} // namespace hollowfernpike::portal
