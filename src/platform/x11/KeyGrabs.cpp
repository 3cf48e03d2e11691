#include "platform/x11/KeyGrabs.h"

#include "platform/x11/Sequence.h"

#include <utility>

#include <xcb/xcb_aux.h>

namespace hollowfernpike::x11 {

KeyGrabs::KeyGrabs(const Connection& connection) : connection_(connection) {}

std::vector<platform::KeyCombination>
KeyGrabs::update(const KeyboardMap& map, std::span<const platform::KeyCombination> combinations) {
    Wanted wanted;
    for (std::size_t index = 0; index < combinations.size(); ++index) {
        for (const auto& press : map.presses(combinations[index])) {
            wanted.emplace(press, index);
        }
    }
    ungrabUnwanted(wanted);
    const auto refused = grabMissing(wanted, combinations.size());
    std::erase_if(wanted, [&](const auto& entry) { return refused[entry.second]; });
    ungrabUnwanted(wanted);
    xcb_flush(connection_.get());

    std::vector<platform::KeyCombination> taken;
    for (std::size_t index = 0; index < combinations.size(); ++index) {
        if (refused[index]) {
            taken.push_back(combinations[index]);
        }
    }
    return taken;
}

void KeyGrabs::release() {
    held_.clear();
    xcb_ungrab_key(connection_.get(), XCB_GRAB_ANY, connection_.root(), XCB_MOD_MASK_ANY);
    xcb_aux_sync(connection_.get());
}

bool KeyGrabs::held(const KeyState& press, std::uint32_t sequence) const {
    const auto found = held_.find(press);
    return found != held_.end() && !isBefore(sequence, found->second);
}

void KeyGrabs::ungrabUnwanted(const Wanted& wanted) {
    std::erase_if(held_, [&](const auto& entry) {
        const auto& press = entry.first;
        const bool unwanted = !wanted.contains(press);
        if (unwanted) {
            xcb_ungrab_key(connection_.get(), press.key, connection_.root(), press.modifiers);
        }
        return unwanted;
    });
}

std::vector<bool> KeyGrabs::grabMissing(const Wanted& wanted, std::size_t combinationCount) {
    std::vector<std::pair<Wanted::const_iterator, xcb_void_cookie_t>> attempts;
    for (auto entry = wanted.begin(); entry != wanted.end(); ++entry) {
        const auto& press = entry->first;
        if (!held_.contains(press)) {
            attempts.emplace_back(entry,
                                  xcb_grab_key_checked(connection_.get(), 0, connection_.root(),
                                                       press.modifiers, press.key,
                                                       XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_SYNC));
        }
    }
    std::vector<bool> refused(combinationCount);
    for (const auto& [entry, cookie] : attempts) {
        const Reply<xcb_generic_error_t> error{xcb_request_check(connection_.get(), cookie)};
        if (error) {
            refused[entry->second] = true;
        } else {
            held_.emplace(entry->first, cookie.sequence);
        }
    }
    return refused;
}

} // namespace hollowfernpike::x11
