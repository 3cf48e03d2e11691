#include "platform/x11/grabs/SuperKeyHolder.h"

#include "platform/x11/taps/EventKinds.h"

#include <algorithm>
#include <optional>

#include <sys/socket.h>
#include <xcb/xinput.h>

namespace hollowfernpike::test {

namespace {

/// The number that the server gives it. A grab on all devices would not do: nothing is replayed
/// from it.
constexpr xcb_input_device_id_t virtualCoreKeyboard = 3;
constexpr std::uint32_t anyXInputModifier = XCB_INPUT_MODIFIER_MASK_ANY;
constexpr std::uint32_t keyEvents =
    XCB_INPUT_XI_EVENT_MASK_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_KEY_RELEASE;

} // namespace

SuperKeyHolder::SuperKeyHolder(const std::string& display, Manner manner,
                               std::vector<xcb_keycode_t> keys)
    : manner_(manner), keys_(std::move(keys)), client_(display) {
    auto* const server = client_.server();
    const x11::Reply<xcb_input_xi_query_version_reply_t> version{xcb_input_xi_query_version_reply(
        server, xcb_input_xi_query_version(server, 2, 1), nullptr)};
    if (manner == Manner::mutter) {
        guardTheRoot();
    }
    for (const auto key : keys_) {
        grab(key);
    }
    client_.sync();
    thread_ = std::thread([this] { run(); });
}

SuperKeyHolder::~SuperKeyHolder() {
    ::shutdown(client_.connection().descriptor(), SHUT_RD);
    thread_.join();
}

void SuperKeyHolder::guardTheRoot() {
    auto* const server = client_.server();
    const auto window = xcb_generate_id(server);
    const std::uint32_t isOverridden = 1;
    xcb_create_window(server, XCB_COPY_FROM_PARENT, window, client_.connection().root(), 0, 0,
                      0x7FFF, 0x7FFF, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
                      XCB_CW_OVERRIDE_REDIRECT, &isOverridden);
    const std::uint32_t below = XCB_STACK_MODE_BELOW;
    xcb_configure_window(server, window, XCB_CONFIG_WINDOW_STACK_MODE, &below);
    xcb_map_window(server, window);
}

void SuperKeyHolder::grab(xcb_keycode_t key) {
    auto* const server = client_.server();
    const auto root = client_.connection().root();
    if (manner_ == Manner::icewm) {
        xcb_grab_key(server, 0, root, XCB_MOD_MASK_ANY, key, XCB_GRAB_MODE_ASYNC,
                     XCB_GRAB_MODE_SYNC);
        return;
    }
    const x11::Reply<xcb_input_xi_passive_grab_device_reply_t> reply{
        xcb_input_xi_passive_grab_device_reply(
            server,
            xcb_input_xi_passive_grab_device(
                server, XCB_CURRENT_TIME, root, XCB_NONE, key, virtualCoreKeyboard, 1, 1,
                XCB_INPUT_GRAB_TYPE_KEYCODE, XCB_INPUT_GRAB_MODE_22_SYNC, XCB_GRAB_MODE_ASYNC,
                XCB_INPUT_GRAB_OWNER_NO_OWNER, &keyEvents, &anyXInputModifier),
            nullptr)};
    if (!reply || reply->num_modifiers != 0) {
        throw std::runtime_error("the Super key is held by somebody else");
    }
}

void SuperKeyHolder::run() {
    while (const x11::Reply<xcb_generic_event_t> event{xcb_wait_for_event(client_.server())}) {
        const auto& connection = client_.connection();
        const auto kind = x11::eventCode(*event);
        const bool isXInputPress = x11::isXInputEvent(connection, *event, XCB_INPUT_KEY_PRESS);
        if (isXInputPress || x11::isXInputEvent(connection, *event, XCB_INPUT_KEY_RELEASE)) {
            const auto& key = reinterpret_cast<const xcb_input_key_press_event_t&>(*event);
            handle({isXInputPress, static_cast<xcb_keycode_t>(key.detail), key.time, key.deviceid});
        } else if (kind == XCB_KEY_PRESS || kind == XCB_KEY_RELEASE) {
            const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(*event);
            handle({kind == XCB_KEY_PRESS, key.detail, key.time, 0});
        }
    }
}

void SuperKeyHolder::handle(const Key& key) {
    const bool isSuper = std::ranges::find(keys_, key.code) != keys_.end();
    if (isSuper && key.isDown) {
        isOnlyKeyDown_ = true;
        allow(key, XCB_ALLOW_SYNC_KEYBOARD, XCB_INPUT_EVENT_MODE_SYNC_DEVICE);
    } else if (key.isDown) {
        isOnlyKeyDown_ = false;
        allow(key, XCB_ALLOW_REPLAY_KEYBOARD, XCB_INPUT_EVENT_MODE_REPLAY_DEVICE);
    } else {
        menus_ += isSuper && isOnlyKeyDown_ ? 1 : 0;
        isOnlyKeyDown_ = false;
        allow(key, XCB_ALLOW_ASYNC_KEYBOARD, XCB_INPUT_EVENT_MODE_ASYNC_DEVICE);
    }
}

void SuperKeyHolder::allow(const Key& key, std::uint8_t coreMode, std::uint8_t xInputMode) {
    auto* const server = client_.server();
    if (manner_ == Manner::icewm) {
        xcb_allow_events(server, coreMode, key.time);
    } else {
        xcb_input_xi_allow_events(server, key.time, key.device, xInputMode, 0, 0);
    }
    xcb_flush(server);
}

} // namespace hollowfernpike::test
