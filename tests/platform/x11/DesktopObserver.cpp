#include "platform/x11/DesktopObserver.h"

#include "platform/x11/server/Reply.h"

#include <algorithm>
#include <stdexcept>

#include <xcb/xcb_icccm.h>

namespace hollowfernpike::test {

using x11::Reply;

namespace {

constexpr std::uint32_t fromUser = 2;

} // namespace

DesktopObserver::DesktopObserver(const std::string& display)
    : connection_(xcb_connect(display.c_str(), nullptr)) {
    if (xcb_connection_has_error(connection_) != 0) {
        throw std::runtime_error("no display " + display);
    }
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
}

DesktopObserver::~DesktopObserver() {
    xcb_disconnect(connection_);
}

xcb_atom_t DesktopObserver::atom(std::string_view name) {
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        connection_,
        xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

std::vector<std::uint32_t> DesktopObserver::numbers(xcb_window_t window,
                                                    std::string_view property) {
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        connection_,
        xcb_get_property(connection_, 0, window, atom(property), XCB_ATOM_ANY, 0, 4096), nullptr));
    if (!reply || reply->format != 32) {
        return {};
    }
    const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {first, first + reply->value_len};
}

xcb_window_t DesktopObserver::activeWindow() {
    const auto value = numbers(root_, "_NET_ACTIVE_WINDOW");
    return value.empty() ? XCB_NONE : value.front();
}

std::uint32_t DesktopObserver::currentDesktop() {
    return numbers(root_, "_NET_CURRENT_DESKTOP").at(0);
}

std::vector<xcb_window_t> DesktopObserver::stacking() {
    return numbers(root_, "_NET_CLIENT_LIST_STACKING");
}

std::vector<xcb_window_t> DesktopObserver::children(xcb_window_t window) {
    const Reply<xcb_query_tree_reply_t> reply(
        xcb_query_tree_reply(connection_, xcb_query_tree(connection_, window), nullptr));
    if (!reply) {
        return {};
    }
    const auto* first = xcb_query_tree_children(reply.get());
    return {first, first + xcb_query_tree_children_length(reply.get())};
}

bool DesktopObserver::hasState(xcb_window_t window, std::string_view state) {
    return std::ranges::count(numbers(window, "_NET_WM_STATE"), atom(state)) > 0;
}

bool DesktopObserver::isFocused(xcb_window_t window) {
    const Reply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    return reply && reply->focus == window;
}

void DesktopObserver::minimise(xcb_window_t window) {
    message(window, "WM_CHANGE_STATE", {XCB_ICCCM_WM_STATE_ICONIC});
}

void DesktopObserver::moveToDesktop(xcb_window_t window, std::uint32_t desktop) {
    message(window, "_NET_WM_DESKTOP", {desktop, fromUser});
}

void DesktopObserver::switchToDesktop(std::uint32_t desktop) {
    message(root_, "_NET_CURRENT_DESKTOP", {desktop, XCB_CURRENT_TIME});
}

void DesktopObserver::activate(xcb_window_t window, xcb_timestamp_t time) {
    message(window, "_NET_ACTIVE_WINDOW", {fromUser, time, XCB_NONE});
}

xcb_window_t DesktopObserver::createWindow(xcb_window_t parent) {
    const auto window = xcb_generate_id(connection_);
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, parent, 0, 0, 50, 50, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    sync();
    return window;
}

void DesktopObserver::destroyWindow(xcb_window_t window) {
    xcb_destroy_window(connection_, window);
    sync();
}

void DesktopObserver::setNumbers(xcb_window_t window, std::string_view property, xcb_atom_t type,
                                 const std::vector<std::uint32_t>& values) {
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(property), type, 32,
                        static_cast<std::uint32_t>(values.size()), values.data());
    sync();
}

void DesktopObserver::setText(xcb_window_t window, std::string_view property,
                              std::string_view value) {
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(property), XCB_ATOM_STRING,
                        8, static_cast<std::uint32_t>(value.size()), value.data());
    sync();
}

void DesktopObserver::sync() {
    const Reply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

void DesktopObserver::message(xcb_window_t window, std::string_view type,
                              const std::vector<std::uint32_t>& values) {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = atom(type);
    std::ranges::copy(values, event.data.data32);
    xcb_send_event(connection_, 0, root_,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&event));
    sync();
}

} // namespace hollowfernpike::test
