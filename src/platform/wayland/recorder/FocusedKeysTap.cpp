#include "platform/wayland/recorder/FocusedKeysTap.h"

#include "platform/freedesktop/keyboard/KeyNames.h"
#include "platform/freedesktop/keyboard/Modifiers.h"
#include "platform/wayland/ToolkitWindow.h"

#include <algorithm>
#include <array>

#include <QGuiApplication>
#include <QKeyEvent>

namespace hollowfernpike::wayland {

namespace {

namespace real = freedesktop::real_modifiers;

/// Compositors and toolkits take these for Alt and Super, whatever the keyboard map says.
constexpr freedesktop::Modifiers modifiers{
    .option = real::mod1, .command = real::mod4, .numLock = real::mod2, .scrollLock = 0};

bool isModifier(int key) {
    static constexpr std::array keys{Qt::Key_Shift,   Qt::Key_Control,    Qt::Key_Alt,
                                     Qt::Key_Meta,    Qt::Key_AltGr,      Qt::Key_CapsLock,
                                     Qt::Key_Super_L, Qt::Key_Super_R,    Qt::Key_Hyper_L,
                                     Qt::Key_Hyper_R, Qt::Key_Mode_switch};
    return std::ranges::find(keys, key) != keys.end();
}

} // namespace

FocusedKeysTap::FocusedKeysTap(platform::EventTapCallback callback, void* userInfo)
    : Tap(callback, userInfo) {}

FocusedKeysTap::~FocusedKeysTap() {
    invalidate();
}

void FocusedKeysTap::start() {
    QCoreApplication::instance()->installEventFilter(this);
    listenTo(QGuiApplication::focusWindow());
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &FocusedKeysTap::listenTo,
            Qt::UniqueConnection);
}

void FocusedKeysTap::stop() {
    QCoreApplication::instance()->removeEventFilter(this);
    disconnect(qGuiApp, nullptr, this, nullptr);
    disconnect(hiding_);
    inhibitor_.reset();
    listenedTo_ = nullptr;
}

void FocusedKeysTap::listenTo(QWindow* window) {
    if (listenedTo_ != nullptr && window != listenedTo_) {
        report(platform::eventTapFocusLost);
        return;
    }
    auto* const surface =
        window == nullptr || listenedTo_ != nullptr ? nullptr : surfaceOf(*window);
    if (surface != nullptr) {
        listenedTo_ = window;
        inhibitor_.emplace(surface);
        hiding_ = beforeHiding(*window, [this] { inhibitor_.reset(); });
    }
}

bool FocusedKeysTap::eventFilter(QObject* watched, QEvent* event) {
    if (!watched->isWindowType()) {
        return false;
    }
    if (event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress) {
        handle(static_cast<const QKeyEvent&>(*event));
    }
    return false;
}

// The toolkit announces a press with ShortcutOverride, before it looks for a button or menu with
// that key. If there is none, the press itself follows.
void FocusedKeysTap::handle(const QKeyEvent& press) {
    const bool isKnown = press.timestamp() == lastTime_ && press.nativeScanCode() == lastScanCode_;
    lastTime_ = press.timestamp();
    lastScanCode_ = press.nativeScanCode();
    if (!isKnown) {
        take(press);
    }
}

// The callback may destroy this tap.
void FocusedKeysTap::take(const QKeyEvent& press) {
    if (press.isAutoRepeat() || isModifier(press.key()) ||
        press.nativeScanCode() < freedesktop::xkbKeyCodeOffset) {
        return;
    }
    const auto keyCode = freedesktop::virtualKeyCodeOf(
        static_cast<std::uint16_t>(press.nativeScanCode() - freedesktop::xkbKeyCodeOffset));
    const auto state = static_cast<freedesktop::ModifierState>(press.nativeModifiers());
    deliver(platform::KeyEvent{.keyCode = keyCode,
                               .flags = platform::event_flags::nonCoalesced |
                                        freedesktop::keyFlags(keyCode) | modifiers.flags(state)});
}

} // namespace hollowfernpike::wayland
