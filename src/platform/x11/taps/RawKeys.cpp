#include "platform/x11/taps/RawKeys.h"

#include "platform/x11/keyboard/Xkb.h"
#include "platform/x11/server/Reply.h"
#include "platform/x11/taps/EventKinds.h"

#include <utility>

#include <xcb/xinput.h>

namespace hollowfernpike::x11 {

namespace {

struct EventMask {
    xcb_input_event_mask_t head;
    std::uint32_t events;
};

} // namespace

RawKeys::RawKeys(const Connection& connection, std::function<bool()> isScreenLocked,
                 bool alsoReleases)
    : connection_(connection), input_(connection), isScreenLocked_(std::move(isScreenLocked)),
      events_(alsoReleases
                  ? XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE
                  : XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS) {}

void RawKeys::start() {
    if (started_) {
        return;
    }
    select(true);
    const auto cookie = xcb_xkb_get_state(connection_.get(), XCB_XKB_ID_USE_CORE_KBD);
    const auto state = awaitReply<xcb_xkb_get_state_reply>(connection_.get(), cookie);
    started_ = state != nullptr;
    startedAt_ = cookie.sequence;
    modifiers_ = state ? state->mods : freedesktop::ModifierState{0};
    isModifierHeld_ = state && state->baseMods != 0;
    const auto taken = input_.devices();
    wasInputTaken_ = taken.keyboard && taken.pointer;
}

void RawKeys::stop() {
    if (started_) {
        started_ = false;
        stoppedAt_ = select(false);
        xcb_flush(connection_.get());
    }
}

// The server sends events in the order in which things happened, and the raw event of a key before
// the change of state that the key causes. So the last state read is that of the press; asking the
// server on receipt would tell of a later moment.
std::optional<RawKeys::Press> RawKeys::read(const xcb_generic_event_t& event) {
    if (!covers(event)) {
        return std::nullopt;
    }
    if (isXkbEvent(connection_, event, XCB_XKB_STATE_NOTIFY)) {
        const auto& state = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event);
        modifiers_ = state.mods;
        isModifierHeld_ = state.baseMods != 0;
    }
    if (!isXInputEvent(connection_, event, XCB_INPUT_RAW_KEY_PRESS) || isForAnother()) {
        return std::nullopt;
    }
    const auto& raw = reinterpret_cast<const xcb_input_raw_key_press_event_t&>(event);
    return Press{
        {static_cast<xcb_keycode_t>(raw.detail), modifiers_}, raw.time, event.full_sequence};
}

bool RawKeys::covers(const xcb_generic_event_t& event) const {
    return !isBefore(event.full_sequence, startedAt_) &&
           (started_ || isBefore(event.full_sequence, stoppedAt_));
}

// A client may take the input because of this very press (Alt+Tab of a window manager). So a press
// with a modifier held is ignored only if the input was already taken at the press before, which
// may be that of the modifier. The keyboard alone may be taken by a grab of this press, so it
// counts only after both were taken: some lockers leave the pointer to the user for their dialog.
bool RawKeys::isForAnother() {
    const auto taken = input_.devices();
    const bool isLocked = taken.keyboard && isScreenLocked_ && isScreenLocked_();
    const bool wasTaken = wasInputTaken_ || isLocked;
    wasInputTaken_ = taken.keyboard && (taken.pointer || wasTaken);
    return wasInputTaken_ && (wasTaken || !isModifierHeld_);
}

std::uint32_t RawKeys::select(bool wanted) const {
    const EventMask mask{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, wanted ? events_ : 0};
    const auto cookie =
        xcb_input_xi_select_events(connection_.get(), connection_.root(), 1, &mask.head);
    xcb_xkb_select_events_details_t details{};
    details.affectState = XCB_XKB_STATE_PART_MODIFIER_STATE;
    details.stateDetails = wanted ? details.affectState : std::uint16_t{0};
    xcb_xkb_select_events_aux(connection_.get(), XCB_XKB_ID_USE_CORE_KBD,
                              XCB_XKB_EVENT_TYPE_STATE_NOTIFY, 0, 0, 0, 0, &details);
    return cookie.sequence;
}

} // namespace hollowfernpike::x11
