#include "platform/x11/windows/DesktopQuery.h"

#include "platform/x11/server/Properties.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <unordered_set>

namespace hollowfernpike::x11 {

namespace {

// Lists are read up to 16384 entries, because the most important ones, the front or the newest,
// come last.
constexpr std::uint32_t longestList = 16384;
constexpr std::uint32_t mostWindows = 1024;
constexpr std::uint32_t mostSupported = 1024;

/// A window that carries WM_STATE, which a window manager puts on every window it manages (ICCCM
/// 4.1.3.1).
struct TreeWindow {
    xcb_window_t window;
    bool isIconic;
};

constexpr std::uint32_t iconicState = 3; // WM_STATE, as XIconifyWindow leaves it

std::vector<xcb_window_t> takeChildren(const Connection& connection,
                                       xcb_query_tree_cookie_t question) {
    const auto reply = awaitReply<xcb_query_tree_reply>(connection.get(), question);
    if (!reply) {
        return {};
    }
    const auto* first = xcb_query_tree_children(reply.get());
    return {first, first + xcb_query_tree_children_length(reply.get())};
}

void keepLast(std::vector<xcb_window_t>& windows, std::size_t most) {
    const auto surplus = windows.size() - std::min(windows.size(), most);
    windows.erase(windows.begin(), windows.begin() + static_cast<std::ptrdiff_t>(surplus));
}

/// Every child of the root, each followed by its own children.
std::vector<xcb_window_t> candidates(const Connection& connection, std::size_t most) {
    auto* server = connection.get();
    auto children = takeChildren(connection, xcb_query_tree(server, connection.root()));
    keepLast(children, most);
    std::vector<xcb_query_tree_cookie_t> questions;
    std::ranges::transform(children, std::back_inserter(questions),
                           [server](auto window) { return xcb_query_tree(server, window); });
    std::vector<xcb_window_t> all;
    for (std::size_t index = 0; index < children.size(); ++index) {
        all.push_back(children[index]);
        std::ranges::copy(takeChildren(connection, questions[index]), std::back_inserter(all));
    }
    keepLast(all, 4 * most);
    return all;
}

/// The managed windows from the bottom to the top: children of the root, or of a frame there. At
/// most `most`. Waits for the server, three times.
std::vector<TreeWindow> managedWindowsOfTree(const Connection& connection, xcb_atom_t wmStateAtom,
                                             std::size_t most) {
    const auto windows = candidates(connection, most);
    std::vector<xcb_get_property_cookie_t> questions;
    for (const auto window : windows) {
        questions.push_back(askProperty(connection, window, wmStateAtom, wmStateAtom, 1));
    }
    std::vector<TreeWindow> managed;
    for (std::size_t index = 0; index < windows.size(); ++index) {
        const auto state = numberOf(takeProperty(connection, questions[index]));
        if (state && managed.size() < most) {
            managed.push_back({.window = windows[index], .isIconic = *state == iconicState});
        }
    }
    return managed;
}

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
