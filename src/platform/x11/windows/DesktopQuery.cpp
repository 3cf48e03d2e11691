#include "platform/x11/windows/DesktopQuery.h"

#include "platform/x11/server/Properties.h"
#include "platform/x11/server/WindowTree.h"

#include <algorithm>
#include <unordered_set>

namespace hollowfernpike::x11 {

namespace {

// Lists are read far, because what counts most, the front or the newest, comes last.
constexpr std::uint32_t longestList = 16384;
constexpr std::uint32_t mostWindows = 1024;
constexpr std::uint32_t mostSupported = 1024;

std::vector<xcb_window_t> cleaned(const std::vector<xcb_window_t>& windows, xcb_window_t root) {
    std::unordered_set<xcb_window_t> seen{XCB_NONE, root};
    std::vector<xcb_window_t> result;
    std::ranges::copy_if(windows, std::back_inserter(result),
                         [&seen](xcb_window_t window) { return seen.insert(window).second; });
    result.resize(std::min<std::size_t>(result.size(), mostWindows));
    return result;
}

bool isWindowList(const PropertyReply& reply) {
    return reply && reply->type == XCB_ATOM_WINDOW && reply->format == 32;
}

} // namespace

DesktopQuery::DesktopQuery(const Connection& connection, const Atoms& atoms)
    : connection_(connection), atoms_(atoms) {
    const auto ask = [&](xcb_atom_t property, xcb_atom_t type, std::uint32_t words) {
        return askProperty(connection, connection.root(), property, type, words);
    };
    stacking_ = ask(atoms.clientListStacking, XCB_ATOM_WINDOW, longestList);
    age_ = ask(atoms.clientList, XCB_ATOM_WINDOW, longestList);
    currentDesktop_ = ask(atoms.currentDesktop, XCB_ATOM_CARDINAL, 1);
    supported_ = ask(atoms.supported, XCB_ATOM_ATOM, mostSupported);
}

DesktopState DesktopQuery::take() {
    const auto stacking = takeProperty(connection_, stacking_);
    const auto age = takeProperty(connection_, age_);
    const auto supported = takeProperty(connection_, supported_);

    DesktopState state;
    state.currentDesktop = numberOf(takeProperty(connection_, currentDesktop_));
    const auto abilities = numbersOf(supported);
    state.canRestack = std::ranges::find(abilities, atoms_.restackWindow) != abilities.end();

    if (isWindowList(stacking) || isWindowList(age)) {
        const auto backToFront = numbersOf(stacking);
        const auto oldestFirst = numbersOf(age);
        state.windows.assign(backToFront.rbegin(), backToFront.rend());
        // A new window may be on one list before it is on the other.
        state.windows.insert(state.windows.end(), oldestFirst.rbegin(), oldestFirst.rend());
        state.oldestFirst.assign(oldestFirst.begin(), oldestFirst.end());
    } else {
        takeFromTree(state);
    }
    state.windows = cleaned(state.windows, connection_.root());
    return state;
}

// The tree is listed from back to front.
void DesktopQuery::takeFromTree(DesktopState& state) const {
    for (const auto& [window, isIconic] :
         managedWindowsOfTree(connection_, atoms_.wmState, mostWindows)) {
        state.windows.push_back(window);
        if (isIconic) {
            state.iconic.push_back(window);
        }
    }
    std::reverse(state.windows.begin(), state.windows.end());
}

} // namespace hollowfernpike::x11
