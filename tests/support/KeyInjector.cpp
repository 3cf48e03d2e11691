#include "support/KeyInjector.h"

#include "platform/x11/keyboard/Xkb.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>

#include <xcb/xtest.h>

namespace hollowfernpike::test {

KeyInjector::KeyInjector(const std::string& display)
    : connection_(xcb_connect(display.c_str(), nullptr)) {
    if (xcb_connection_has_error(connection_) != 0) {
        throw std::runtime_error("no display " + display);
    }
    std::free(xcb_xkb_use_extension_reply(connection_, xcb_xkb_use_extension(connection_, 1, 0),
                                          nullptr));
}

KeyInjector::~KeyInjector() {
    while (!down_.empty()) {
        fake(XCB_KEY_RELEASE, down_.back());
        down_.pop_back();
    }
    sync();
    xcb_disconnect(connection_);
}

void KeyInjector::press(std::string_view keyName) {
    press(known(keyName));
}

void KeyInjector::release(std::string_view keyName) {
    release(known(keyName));
}

// A press in the same millisecond as the release before it looks to toolkits like a key that is
// held down, which they tell by equal times.
void KeyInjector::press(xcb_keycode_t key) {
    constexpr std::uint32_t untilAnotherTime = 2; // milliseconds
    down_.push_back(key);
    fake(XCB_KEY_PRESS, key, key == released_ ? untilAnotherTime : 0);
}

void KeyInjector::release(xcb_keycode_t key) {
    std::erase(down_, key);
    fake(XCB_KEY_RELEASE, key);
    released_ = key;
}

void KeyInjector::sync() const {
    std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

xcb_keycode_t KeyInjector::keycode(std::string_view keyName) const {
    const auto cookie =
        xcb_xkb_get_names(connection_, XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_NAME_DETAIL_KEY_NAMES);
    const std::unique_ptr<xcb_xkb_get_names_reply_t, decltype(&std::free)> reply(
        xcb_xkb_get_names_reply(connection_, cookie, nullptr), &std::free);
    if (!reply) {
        return 0;
    }
    xcb_xkb_get_names_value_list_t values{};
    xcb_xkb_get_names_value_list_unpack(xcb_xkb_get_names_value_list(reply.get()), reply->nTypes,
                                        reply->indicators, reply->virtualMods, reply->groupNames,
                                        reply->nKeys, reply->nKeyAliases, reply->nRadioGroups,
                                        reply->which, &values);
    for (int index = 0; index < reply->nKeys; ++index) {
        const char* name = values.keyNames[index].name;
        if (keyName == std::string_view(name, ::strnlen(name, 4))) {
            return static_cast<xcb_keycode_t>(reply->firstKey + index);
        }
    }
    return 0;
}

xcb_keycode_t KeyInjector::known(std::string_view keyName) const {
    const auto key = keycode(keyName);
    if (key == 0) {
        throw std::invalid_argument("no key " + std::string{keyName});
    }
    return key;
}

void KeyInjector::fake(std::uint8_t type, xcb_keycode_t keycode, std::uint32_t delay) {
    xcb_test_fake_input(connection_, type, keycode, delay, XCB_NONE, 0, 0, 0);
    xcb_flush(connection_);
}

} // namespace hollowfernpike::test
