#include "platform/x11/OwnWindows.h"

#include "platform/x11/server/Atoms.h"
#include "platform/x11/server/Connection.h"
#include "platform/x11/server/Events.h"
#include "platform/x11/server/Properties.h"
#include "platform/x11/server/WindowManagerMessage.h"

#include <vector>

namespace hollowfernpike::x11 {

namespace {

constexpr std::uint32_t stateRemove = 0;
constexpr std::uint32_t stateAdd = 1;
constexpr std::uint32_t mostStates = 64;
constexpr std::uint32_t everyWorkspace = 0xFFFFFFFF;
constexpr std::uint32_t withdrawnState = 0; // WM_STATE

/// The user asked outside our windows, so no event of ours carries the time.
xcb_timestamp_t timeNow() {
    const auto connection = Connection::open();
    return connection == nullptr ? XCB_CURRENT_TIME : Events(*connection).serverTime();
}

} // namespace

OwnWindows::OwnWindows(xcb_connection_t* toolkit)
    : toolkit_(toolkit), root_(xcb_setup_roots_iterator(xcb_get_setup(toolkit)).data->root) {}

// The window manager alone writes the states of a window that it manages, shown or minimised. If it
// does not manage the window yet, it may still have read the states already, because the window is
// about to be shown. So the message is sent in any case.
void OwnWindows::setShownInTaskBar(std::uintptr_t native, bool shown) {
    const auto window = static_cast<xcb_window_t>(native);
    if (!isManaged(window)) {
        writeState(window, shown);
    }
    sendToWindowManager(toolkit_, root_, window, internAtom(toolkit_, "_NET_WM_STATE"),
                        {shown ? stateRemove : stateAdd,
                         internAtom(toolkit_, "_NET_WM_STATE_SKIP_TASKBAR"),
                         internAtom(toolkit_, "_NET_WM_STATE_SKIP_PAGER"), fromApplication});
    xcb_flush(toolkit_);
}

// Asked to activate a window on another workspace, window managers only mark it, so we switch to
// that workspace first.
void OwnWindows::bringToFront(std::uintptr_t native) {
    const auto window = static_cast<xcb_window_t>(native);
    const auto time = timeNow();
    const auto current = number(root_, "_NET_CURRENT_DESKTOP", XCB_ATOM_CARDINAL);
    const auto workspace =
        number(window, "_NET_WM_DESKTOP", XCB_ATOM_CARDINAL).value_or(everyWorkspace);
    if (current && workspace != everyWorkspace && workspace != *current) {
        sendToWindowManager(toolkit_, root_, root_, internAtom(toolkit_, "_NET_CURRENT_DESKTOP"),
                            {workspace, time});
    }
    sendToWindowManager(toolkit_, root_, window, internAtom(toolkit_, "_NET_ACTIVE_WINDOW"),
                        {fromUser, time, XCB_NONE});
    xcb_flush(toolkit_);
}

// By the Inter-Client Communication Conventions Manual 4.1.3.1.
bool OwnWindows::isManaged(xcb_window_t window) {
    const auto state = number(window, "WM_STATE", internAtom(toolkit_, "WM_STATE"));
    return state.value_or(withdrawnState) != withdrawnState;
}

std::optional<std::uint32_t> OwnWindows::number(xcb_window_t window, std::string_view property,
                                                xcb_atom_t type) {
    return numberOf(readProperty(toolkit_, window, internAtom(toolkit_, property), type, 1));
}

// Before a window is managed, its owner writes the states; the window manager reads them when it
// begins to manage it.
void OwnWindows::writeState(xcb_window_t window, bool shown) {
    const auto property = internAtom(toolkit_, "_NET_WM_STATE");
    const auto reply = readProperty(toolkit_, window, property, XCB_ATOM_ATOM, mostStates);
    const auto known = numbersOf(reply);
    std::vector<xcb_atom_t> states(known.begin(), known.end());
    for (const char* name : {"_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER"}) {
        std::erase(states, internAtom(toolkit_, name));
        if (!shown) {
            states.push_back(internAtom(toolkit_, name));
        }
    }
    xcb_change_property(toolkit_, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_ATOM, 32,
                        static_cast<std::uint32_t>(states.size()), states.data());
}

} // namespace hollowfernpike::x11
