#include "platform/x11/grabs/LoneSuperKey.h"

#include <algorithm>
#include <vector>

#include <xcb/xinput.h>

namespace hollowfernpike::x11 {

namespace {

constexpr std::uint16_t noModifier = 0;
constexpr std::uint32_t noXInputModifier = 0;

struct Attempt {
    xcb_void_cookie_t core;
    xcb_input_xi_passive_grab_device_cookie_t xInput;
};

Attempt attempt(const Connection& connection, xcb_keycode_t key) {
    auto* const server = connection.get();
    const auto root = connection.root();
    const Attempt sent{.core = xcb_grab_key_checked(server, 0, root, noModifier, key,
                                                    XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                       .xInput = xcb_input_xi_passive_grab_device(
                           server, XCB_CURRENT_TIME, root, XCB_NONE, key,
                           XCB_INPUT_DEVICE_ALL_MASTER, 1, 0, XCB_INPUT_GRAB_TYPE_KEYCODE,
                           XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_GRAB_MODE_ASYNC,
                           XCB_INPUT_GRAB_OWNER_NO_OWNER, nullptr, &noXInputModifier)};
    xcb_input_xi_passive_ungrab_device(server, root, key, XCB_INPUT_DEVICE_ALL_MASTER, 1,
                                       XCB_INPUT_GRAB_TYPE_KEYCODE, &noXInputModifier);
    xcb_ungrab_key(server, key, root, noModifier);
    return sent;
}

bool failsForCore(const Connection& connection, const Attempt& attempt) {
    const Reply<xcb_generic_error_t> error{xcb_request_check(connection.get(), attempt.core)};
    return error != nullptr;
}

/// The reply lists the modifiers with which the key could not be grabbed.
bool failsForXInput(const Connection& connection, const Attempt& attempt) {
    const auto reply =
        awaitReply<xcb_input_xi_passive_grab_device_reply>(connection.get(), attempt.xInput);
    return reply && reply->num_modifiers > 0;
}

} // namespace

LoneSuperKey loneSuperKey(const Connection& connection, std::span<const xcb_keycode_t> superKeys) {
    std::vector<Attempt> attempts;
    xcb_grab_server(connection.get());
    std::ranges::transform(superKeys, std::back_inserter(attempts),
                           [&](xcb_keycode_t key) { return attempt(connection, key); });
    xcb_ungrab_server(connection.get());
    auto result = LoneSuperKey::free;
    for (const auto& sent : attempts) {
        if (failsForCore(connection, sent)) {
            result = LoneSuperKey::unguarded;
        }
        if (failsForXInput(connection, sent) && result == LoneSuperKey::free) {
            result = LoneSuperKey::guarded;
        }
    }
    return result;
}

} // namespace hollowfernpike::x11
