#include "platform/x11/taps/EventTaps.h"

#include "platform/freedesktop/Logging.h"
#include "platform/x11/TrustProblem.h"
#include "platform/x11/grabs/GrabbedKeys.h"
#include "platform/x11/keyboard/Xkb.h"
#include "platform/x11/taps/KeyTap.h"
#include "platform/x11/taps/RawKeys.h"

#include <utility>

namespace hollowfernpike::x11 {

namespace {

void selectKeyboardChanges(const Connection& connection) {
    constexpr std::uint16_t events =
        XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    constexpr std::uint16_t allParts = 0xFF;
    xcb_xkb_select_events_details_t repetition{};
    repetition.affectCtrls = XCB_XKB_BOOL_CTRL_REPEAT_KEYS;
    repetition.ctrlDetails = repetition.affectCtrls;
    xcb_xkb_select_events_aux(connection.get(), XCB_XKB_ID_USE_CORE_KBD,
                              events | XCB_XKB_EVENT_TYPE_CONTROLS_NOTIFY, 0, events, allParts,
                              allParts, &repetition);
}

/// Every key press that is meant for our windows, taken from nobody: the source of a listen-only
/// tap.
class ObservedKeys final : public KeySource {
public:
    ObservedKeys(const Connection& connection, std::function<bool()> isScreenLocked,
                 KeyboardFocus::IsOurs isOurs)
        : rawKeys_(connection, std::move(isScreenLocked), true),
          focus_(connection, std::move(isOurs)) {}

    void setInterest(std::span<const platform::KeyCombination>) override {}
    std::vector<platform::KeyCombination> listenOnlyCombinations() const override { return {}; }
    void start(const KeyboardMap& map) override {
        map_ = map;
        focus_.start();
        rawKeys_.start();
    }
    void stop() override {
        rawKeys_.stop();
        focus_.stop();
    }
    bool hasLostFocus() const override { return hasLostFocus_; }
    std::optional<KeyPress> read(const xcb_generic_event_t& event) override {
        hasLostFocus_ = focus_.isLostBy(event);
        const auto press = rawKeys_.read(event);
        const auto keyEvent = press && focus_.isOurs() ? map_->event(press->state) : std::nullopt;
        return keyEvent ? std::optional{KeyPress{*keyEvent, press->time}} : std::nullopt;
    }

private:
    RawKeys rawKeys_;
    KeyboardFocus focus_;
    bool hasLostFocus_ = false;
    std::optional<KeyboardMap> map_;
};

std::unique_ptr<KeySource> makeSource(platform::EventTapOptions options,
                                      const Connection& connection, platform::MainQueue& queue,
                                      const std::function<bool()>& isScreenLocked,
                                      const KeyboardFocus::IsOurs& isOurs) {
    if (options == platform::EventTapOptions::active) {
        return std::make_unique<GrabbedKeys>(connection, queue, isScreenLocked);
    }
    return std::make_unique<ObservedKeys>(connection, isScreenLocked, isOurs);
}

std::function<void()> once(std::function<void()> action) {
    return [action = std::move(action), done = std::make_shared<bool>(false)] {
        if (action && !std::exchange(*done, true)) {
            qCDebug(freedesktop::keysLog, "the X server has closed the connection");
            action();
        }
    };
}

} // namespace

EventTaps::EventTaps(platform::MainQueue& queue, UserTime& userTime, std::string displayName,
                     std::function<void()> onConnectionLost, std::function<bool()> isScreenLocked)
    : queue_(queue), userTime_(userTime), displayName_(std::move(displayName)),
      connectionLost_(once(std::move(onConnectionLost))),
      isScreenLocked_(std::move(isScreenLocked)) {}

std::unique_ptr<platform::EventTap> EventTaps::create(platform::EventTapOptions options,
                                                      platform::EventTapCallback callback,
                                                      void* userInfo) {
    auto connection = Connection::open(displayName_);
    if (const auto problem = findTrustProblem(connection.get())) {
        qCDebug(freedesktop::keysLog, "no tap: %s", trustMessage(*problem).english().c_str());
        return nullptr;
    }
    selectKeyboardChanges(*connection);
    if (!KeyboardDescription::read(*connection)) {
        return nullptr;
    }
    auto source = makeSource(options, *connection, queue_, isScreenLocked_, isOurs_);
    return std::make_unique<KeyTap>(KeyTap::Services{queue_, userTime_, connectionLost_},
                                    std::move(connection), std::move(source), callback, userInfo);
}

} // namespace hollowfernpike::x11
