#include "platform/x11/windows/WindowReader.h"

#include <algorithm>
#include <iterator>
#include <unordered_set>
#include <utility>

namespace hollowfernpike::x11 {

namespace {

WindowIdentity identityOf(const WindowState& state, const WindowTraits& traits) {
    return {
        .clientProcess = state.clientProcess,
        .windowClass = state.windowClass,
        .layer = traits.layer,
        .facts = factsOf(state, traits),
        .owner = std::nullopt,
    };
}

} // namespace

WindowReader::WindowReader(std::unique_ptr<Connection> connection, platform::WindowOwners& owners)
    : connection_(std::move(connection)), owners_(owners) {}

const Snapshot* WindowReader::read() {
    DesktopQuery desktopQuery(*connection_, atoms_);
    WindowStateQuery knownQuery(*connection_, atoms_, processes_, knownWindows());
    const auto desktop = desktopQuery.take();
    auto states = knownQuery.take();
    const auto unknown = unknownAmong(desktop.windows, states);
    if (!unknown.empty()) {
        learn(unknown, states);
    }
    assemble(desktop, states);
    forgetVanished();
    forgetChangedOwners();
    events_.drain();
    return connection_->isLost() ? nullptr : &snapshot_;
}

const platform::WindowOwner& WindowReader::ownerOf(const WindowRecord& record) {
    auto& identity = *record.identity;
    if (!identity.owner) {
        identity.owner = owners_.ownerOf(identity.facts);
    }
    return *identity.owner;
}

std::vector<xcb_window_t> WindowReader::knownWindows() const {
    std::vector<xcb_window_t> windows;
    std::ranges::transform(identities_, std::back_inserter(windows),
                           [](const auto& known) { return known.first; });
    return windows;
}

// The server reuses window numbers once a client is gone, so a known number is the known window
// only if its process is the same. Where the server cannot name the process, every window counts as
// unknown.
std::vector<xcb_window_t> WindowReader::unknownAmong(const std::vector<xcb_window_t>& windows,
                                                     const States& states) const {
    std::vector<xcb_window_t> unknown;
    std::ranges::copy_if(windows, std::back_inserter(unknown), [&](xcb_window_t window) {
        const auto identity = identities_.find(window);
        const auto state = states.find(window);
        return identity == identities_.end() || state == states.end() ||
               !state->second.clientProcess ||
               state->second.clientProcess != identity->second.clientProcess ||
               state->second.windowClass != identity->second.windowClass;
    });
    return unknown;
}

void WindowReader::learn(const std::vector<xcb_window_t>& unknown, States& states) {
    WindowStateQuery stateQuery(*connection_, atoms_, processes_, unknown);
    WindowTraitsQuery traitsQuery(*connection_, atoms_, unknown);
    for (const auto window : unknown) {
        states.erase(window);
    }
    states.merge(stateQuery.take());
    for (const auto& [window, traits] : traitsQuery.take()) {
        if (const auto state = states.find(window); state != states.end()) {
            identities_.insert_or_assign(window, identityOf(state->second, traits));
        }
    }
}

void WindowReader::assemble(const DesktopState& desktop, const States& states) {
    snapshot_ = {.windows = {},
                 .oldestFirst = desktop.oldestFirst,
                 .currentDesktop = desktop.currentDesktop,
                 .canRestack = desktop.canRestack};
    for (const auto window : desktop.windows) {
        const auto state = states.find(window);
        if (state == states.end()) {
            continue;
        }
        const bool isIconic = std::ranges::find(desktop.iconic, window) != desktop.iconic.end();
        snapshot_.windows.push_back({.window = window,
                                     .isHidden = state->second.isHidden || isIconic,
                                     .desktop = state->second.desktop,
                                     .identity = &identities_.at(window)});
    }
}

void WindowReader::forgetVanished() {
    std::unordered_set<xcb_window_t> seen;
    for (const auto& record : snapshot_.windows) {
        seen.insert(record.window);
    }
    std::erase_if(identities_, [&seen](const auto& known) { return !seen.contains(known.first); });
}

void WindowReader::forgetChangedOwners() {
    const auto generation = owners_.generation();
    if (generation == ownersGeneration_) {
        return;
    }
    ownersGeneration_ = generation;
    for (auto& [window, identity] : identities_) {
        identity.owner.reset();
    }
}

} // namespace hollowfernpike::x11
