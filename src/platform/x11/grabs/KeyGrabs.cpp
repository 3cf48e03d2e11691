#include "platform/x11/grabs/KeyGrabs.h"

#include "platform/x11/server/Reply.h"

#include <algorithm>
#include <utility>

#include <xcb/xcb_aux.h>

namespace hollowfernpike::x11 {

KeyGrabs::KeyGrabs(const Connection& connection) : connection_(connection) {}

std::vector<platform::KeyCombination>
KeyGrabs::update(const KeyboardMap& map, std::span<const platform::KeyCombination> combinations) {
    Wishes wishes;
    for (std::size_t index = 0; index < combinations.size(); ++index) {
        const bool isWithSuper =
            (combinations[index].modifierFlags & platform::event_flags::command) != 0;
        for (const auto& press : map.presses(combinations[index])) {
            wishes.emplace(press, Wish{index, isWithSuper});
        }
    }
    ungrabUnwanted(wishes);
    std::erase_if(refused_, [&](const auto& press) { return !wishes.contains(press); });
    std::vector<bool> refused(combinations.size());
    for (const bool refusedBefore : {true, false}) {
        grabMissing(wishes, refusedBefore, refused);
    }
    std::erase_if(wishes, [&](const auto& wish) { return refused[wish.second.combination]; });
    ungrabUnwanted(wishes);
    if (std::exchange(isUnconfirmed_, false)) {
        xcb_aux_sync(connection_.get());
    }

    std::vector<platform::KeyCombination> taken;
    for (std::size_t index = 0; index < combinations.size(); ++index) {
        if (refused[index]) {
            taken.push_back(combinations[index]);
        }
    }
    return taken;
}

// A window may be gone before the server reads a request about it; the error is ignored. The server
// reuses the numbers of windows that are gone, so the focused window may be new and without grabs
// although its number was given before: it is always grabbed anew.
void KeyGrabs::setWindows(Focusable focusable) {
    auto windows = std::move(focusable.windows);
    std::ranges::sort(windows);
    for (const auto window : windows_) {
        if (!std::ranges::binary_search(windows, window)) {
            xcb_ungrab_key(connection_.get(), XCB_GRAB_ANY, window, XCB_MOD_MASK_ANY);
        }
    }
    for (const auto window : windows) {
        if (window != focusable.focused && std::ranges::binary_search(windows_, window)) {
            continue;
        }
        for (const auto& [press, hold] : held_) {
            if (hold.isWithSuper) {
                grabOn(window, press);
            }
        }
    }
    windows_ = std::move(windows);
    xcb_flush(connection_.get());
}

void KeyGrabs::release() {
    setWindows({});
    held_.clear();
    refused_.clear();
    xcb_ungrab_key(connection_.get(), XCB_GRAB_ANY, connection_.root(), XCB_MOD_MASK_ANY);
    xcb_aux_sync(connection_.get());
}

bool KeyGrabs::held(const KeyState& press, std::uint32_t sequence) const {
    const auto found = held_.find(press);
    return found != held_.end() && !isBefore(sequence, found->second.sequence);
}

void KeyGrabs::ungrabUnwanted(const Wishes& wishes) {
    std::erase_if(held_, [&](const auto& entry) {
        const auto& [press, hold] = entry;
        if (wishes.contains(press)) {
            return false;
        }
        ungrabOn(connection_.root(), press);
        if (hold.isWithSuper) {
            for (const auto window : windows_) {
                ungrabOn(window, press);
            }
        }
        return true;
    });
}

void KeyGrabs::grabMissing(const Wishes& wishes, bool refusedBefore, std::vector<bool>& refused) {
    std::vector<std::pair<Wishes::const_iterator, xcb_void_cookie_t>> attempts;
    for (auto wish = wishes.begin(); wish != wishes.end(); ++wish) {
        const auto& press = wish->first;
        if (!held_.contains(press) && !refused[wish->second.combination] &&
            refused_.contains(press) == refusedBefore) {
            attempts.emplace_back(wish,
                                  xcb_grab_key_checked(connection_.get(), 0, connection_.root(),
                                                       press.modifiers, press.key,
                                                       XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_SYNC));
        }
    }
    for (const auto& [wish, cookie] : attempts) {
        const auto& [press, wanted] = *wish;
        const Reply<xcb_generic_error_t> error{xcb_request_check(connection_.get(), cookie)};
        if (error) {
            refused[wanted.combination] = true;
            refused_.insert(press);
            continue;
        }
        refused_.erase(press);
        held_.emplace(press, Hold{cookie.sequence, wanted.isWithSuper});
        if (wanted.isWithSuper && !windows_.empty()) {
            for (const auto window : windows_) {
                grabOn(window, press);
            }
            isUnconfirmed_ = true;
        }
    }
}

void KeyGrabs::grabOn(xcb_window_t window, const KeyState& press) {
    xcb_grab_key(connection_.get(), 0, window, press.modifiers, press.key, XCB_GRAB_MODE_ASYNC,
                 XCB_GRAB_MODE_SYNC);
}

void KeyGrabs::ungrabOn(xcb_window_t window, const KeyState& press) {
    xcb_ungrab_key(connection_.get(), press.key, window, press.modifiers);
    isUnconfirmed_ = true;
}

} // namespace hollowfernpike::x11
