#include "desktop/Pager.h"

#include "desktop/XReplies.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include <xcb/res.h>
#include <xcb/xcb_icccm.h>

namespace hollowfernpike::test {

namespace {

constexpr std::uint32_t sourcePager = 2;

} // namespace

Pager::Pager(const std::string& display)
    : connection_(xcb_connect(display.c_str(), nullptr)), clock_(xcb_generate_id(connection_)) {
    if (xcb_ewmh_init_atoms_replies(&ewmh_, xcb_ewmh_init_atoms(connection_, &ewmh_), nullptr) ==
        0) {
        throw std::runtime_error("no display " + display);
    }
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(connection_, 0, clock_, ewmh_.screens[0]->root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      &events);
}

Pager::~Pager() {
    xcb_ewmh_connection_wipe(&ewmh_);
    xcb_disconnect(connection_);
}

xcb_window_t Pager::activeWindow() {
    xcb_window_t window = XCB_NONE;
    const auto cookie = xcb_ewmh_get_active_window(&ewmh_, 0);
    return xcb_ewmh_get_active_window_reply(&ewmh_, cookie, &window, nullptr) != 0 ? window
                                                                                   : XCB_NONE;
}

xcb_window_t Pager::focusedWindow() {
    const auto reply =
        held(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    return reply ? reply->focus : XCB_NONE;
}

std::vector<xcb_window_t> Pager::stacking() {
    xcb_ewmh_get_windows_reply_t list{};
    const auto cookie = xcb_ewmh_get_client_list_stacking(&ewmh_, 0);
    if (xcb_ewmh_get_client_list_stacking_reply(&ewmh_, cookie, &list, nullptr) == 0) {
        return {};
    }
    std::vector<xcb_window_t> windows(list.windows, list.windows + list.windows_len);
    xcb_ewmh_get_windows_reply_wipe(&list);
    return windows;
}

std::string Pager::classOf(xcb_window_t window) {
    xcb_icccm_get_wm_class_reply_t reply{};
    const auto cookie = xcb_icccm_get_wm_class(connection_, window);
    if (xcb_icccm_get_wm_class_reply(connection_, cookie, &reply, nullptr) == 0) {
        return {};
    }
    std::string name = reply.class_name;
    xcb_icccm_get_wm_class_reply_wipe(&reply);
    return name;
}

std::string Pager::titleOf(xcb_window_t window) {
    xcb_ewmh_get_utf8_strings_reply_t reply{};
    if (xcb_ewmh_get_wm_name_reply(&ewmh_, xcb_ewmh_get_wm_name(&ewmh_, window), &reply, nullptr) ==
        0) {
        return {};
    }
    std::string title(reply.strings, reply.strings_len);
    xcb_ewmh_get_utf8_strings_reply_wipe(&reply);
    return title;
}

xcb_window_t Pager::windowCalled(std::string_view title) {
    const auto windows = stacking();
    const auto found =
        std::ranges::find_if(windows, [&](auto window) { return titleOf(window) == title; });
    return found == windows.end() ? XCB_NONE : *found;
}

bool Pager::isInTaskBar(xcb_window_t window) {
    xcb_ewmh_get_atoms_reply_t reply{};
    if (xcb_ewmh_get_wm_state_reply(&ewmh_, xcb_ewmh_get_wm_state(&ewmh_, window), &reply,
                                    nullptr) == 0) {
        return true;
    }
    const bool isSkipped =
        std::find(reply.atoms, reply.atoms + reply.atoms_len, ewmh_._NET_WM_STATE_SKIP_TASKBAR) !=
        reply.atoms + reply.atoms_len;
    xcb_ewmh_get_atoms_reply_wipe(&reply);
    return !isSkipped;
}

bool Pager::isMinimised(xcb_window_t window) {
    const auto type = internAtom(connection_, "WM_STATE");
    const auto reply = held(xcb_get_property_reply(
        connection_, xcb_get_property(connection_, 0, window, type, type, 0, 1), nullptr));
    return reply && xcb_get_property_value_length(reply.get()) == sizeof(std::uint32_t) &&
           *static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get())) ==
               XCB_ICCCM_WM_STATE_ICONIC;
}

std::uint32_t Pager::workspaceOf(xcb_window_t window) {
    std::uint32_t workspace = 0;
    xcb_ewmh_get_wm_desktop_reply(&ewmh_, xcb_ewmh_get_wm_desktop(&ewmh_, window), &workspace,
                                  nullptr);
    return workspace;
}

std::uint32_t Pager::currentWorkspace() {
    std::uint32_t workspace = 0;
    xcb_ewmh_get_current_desktop_reply(&ewmh_, xcb_ewmh_get_current_desktop(&ewmh_, 0), &workspace,
                                       nullptr);
    return workspace;
}

void Pager::activate(xcb_window_t window) {
    send(window, ewmh_._NET_ACTIVE_WINDOW, {sourcePager, serverTime(), XCB_NONE});
}

void Pager::minimise(xcb_window_t window) {
    send(window, internAtom(connection_, "WM_CHANGE_STATE"), {XCB_ICCCM_WM_STATE_ICONIC});
}

void Pager::close(xcb_window_t window) {
    send(window, ewmh_._NET_CLOSE_WINDOW, {serverTime(), sourcePager});
}

void Pager::moveToWorkspace(xcb_window_t window, std::uint32_t workspace) {
    send(window, ewmh_._NET_WM_DESKTOP, {workspace, sourcePager});
}

void Pager::setWorkspaceCount(std::uint32_t count) {
    send(ewmh_.screens[0]->root, ewmh_._NET_NUMBER_OF_DESKTOPS, {count});
}

std::uint32_t Pager::workspaceCount() {
    std::uint32_t count = 0;
    xcb_ewmh_get_number_of_desktops_reply(&ewmh_, xcb_ewmh_get_number_of_desktops(&ewmh_, 0),
                                          &count, nullptr);
    return count;
}

std::size_t Pager::clients(pid_t process) {
    const xcb_res_client_id_spec_t everybody{.client = 0,
                                             .mask = XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const auto reply = held(xcb_res_query_client_ids_reply(
        connection_, xcb_res_query_client_ids(connection_, 1, &everybody), nullptr));
    if (!reply) {
        return 0;
    }
    std::size_t count = 0;
    for (auto id = xcb_res_query_client_ids_ids_iterator(reply.get()); id.rem > 0;
         xcb_res_client_id_value_next(&id)) {
        if (*xcb_res_client_id_value_value(id.data) == static_cast<std::uint32_t>(process)) {
            ++count;
        }
    }
    return count;
}

xcb_timestamp_t Pager::serverTime() {
    xcb_change_property(connection_, XCB_PROP_MODE_APPEND, clock_, XCB_ATOM_WM_NAME,
                        XCB_ATOM_STRING, 8, 0, "");
    xcb_flush(connection_);
    while (const auto event = held(xcb_wait_for_event(connection_))) {
        if (eventCode(*event) == XCB_PROPERTY_NOTIFY) {
            return reinterpret_cast<const xcb_property_notify_event_t&>(*event).time;
        }
    }
    throw std::runtime_error("the display went away");
}

void Pager::send(xcb_window_t window, xcb_atom_t type, std::vector<std::uint32_t> values) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = type;
    std::ranges::copy(values, std::begin(message.data.data32));
    xcb_send_event(connection_, 0, ewmh_.screens[0]->root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(connection_);
}

} // namespace hollowfernpike::test
