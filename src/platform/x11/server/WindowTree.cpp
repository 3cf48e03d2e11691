#include "platform/x11/server/WindowTree.h"

#include "platform/x11/server/Properties.h"

#include <algorithm>
#include <iterator>
#include <span>

namespace hollowfernpike::x11 {

namespace {

constexpr std::uint32_t iconicState = 3; // WM_STATE, as XIconifyWindow leaves it

std::vector<xcb_window_t> takeChildren(const Connection& connection,
                                       xcb_query_tree_cookie_t question) {
    const Reply<xcb_query_tree_reply_t> reply(
        xcb_query_tree_reply(connection.get(), question, nullptr));
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

} // namespace

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

} // namespace hollowfernpike::x11
