#include "platform/x11/windows/WindowRaising.h"

#include "platform/x11/server/WindowManagerMessage.h"

#include <array>
#include <vector>

namespace hollowfernpike::x11 {

namespace {

bool isOrdinary(const WindowRecord& record) {
    return record.identity->layer == ordinaryLayer;
}

bool belongsTo(const WindowRecord& record, std::int32_t process) {
    return record.identity->facts.process == process;
}

/// How far a window is from being seen: what is in sight comes first, then what another desktop
/// shows, then what is minimised.
int distance(const Snapshot& snapshot, const WindowRecord& record) {
    return (record.isHidden ? 2 : 0) + (snapshot.isHere(record) ? 0 : 1);
}

/// The topmost of the nearest windows; null if the process has none.
const WindowRecord* nearest(const Snapshot& snapshot, std::int32_t process) {
    const WindowRecord* best = nullptr;
    for (const auto& record : snapshot.windows) {
        if (isOrdinary(record) && belongsTo(record, process) &&
            (best == nullptr || distance(snapshot, record) < distance(snapshot, *best))) {
            best = &record;
        }
    }
    return best;
}

/// Whether the two are seen together.
bool areBesideEachOther(const Snapshot& snapshot, const WindowRecord& record,
                        const WindowRecord& top) {
    const bool sameDesktop =
        snapshot.isHere(top) ? snapshot.isHere(record) : record.desktop == top.desktop;
    return !record.isHidden && !top.isHidden && sameDesktop;
}

/// The other windows of the process that are seen together with `top`, from back to front; none if
/// no window of another process lies between or above them.
std::vector<xcb_window_t> windowsToRaise(const Snapshot& snapshot, const WindowRecord& top,
                                         std::int32_t process) {
    std::vector<xcb_window_t> windows;
    bool sawOthers = false;
    bool isCovered = false;
    for (const auto& record : snapshot.windows) {
        if (!isOrdinary(record) || !areBesideEachOther(snapshot, record, top)) {
            continue;
        }
        if (!belongsTo(record, process)) {
            sawOthers = true;
        } else {
            isCovered = isCovered || sawOthers;
            if (&record != &top) {
                windows.insert(windows.begin(), record.window);
            }
        }
    }
    return isCovered ? windows : std::vector<xcb_window_t>{};
}

void send(const WindowReader& windows, xcb_window_t window, xcb_atom_t type,
          const std::array<std::uint32_t, 5>& data) {
    const auto& connection = windows.connection();
    sendToWindowManager(connection.get(), connection.root(), window, type, data);
}

// Each window goes to the very top, one after the other: asked to put a window just below another,
// window managers put it at the very bottom.
void raise(const WindowReader& windows, const Snapshot& snapshot, xcb_window_t window) {
    if (snapshot.canRestack) {
        send(windows, window, windows.atoms().restackWindow,
             {fromUser, XCB_NONE, XCB_STACK_MODE_ABOVE});
        return;
    }
    auto* server = windows.connection().get();
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    const auto request =
        xcb_configure_window_checked(server, window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    xcb_discard_reply(server, request.sequence); // the window may be gone
}

} // namespace

bool raiseProcess(const WindowReader& windows, const Snapshot& snapshot, std::int32_t process,
                  xcb_timestamp_t time) {
    const auto* top = nearest(snapshot, process);
    if (top == nullptr) {
        return false;
    }
    const auto& connection = windows.connection();
    if (!snapshot.isHere(*top)) {
        send(windows, connection.root(), windows.atoms().currentDesktop, {*top->desktop, time});
    }
    for (const auto window : windowsToRaise(snapshot, *top, process)) {
        raise(windows, snapshot, window);
    }
    send(windows, top->window, windows.atoms().activeWindow, {fromUser, time, XCB_NONE});
    xcb_flush(connection.get());
    return !connection.isLost();
}

} // namespace hollowfernpike::x11
