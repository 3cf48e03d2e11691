#include "platform/x11/keyboard/ToolkitModifiers.h"

#include "platform/x11/keyboard/Xkb.h"

#include <QGuiApplication>
#include <QWindow>

namespace hollowfernpike::x11 {

namespace {

constexpr std::uint16_t locksAndLayouts =
    XCB_XKB_STATE_PART_MODIFIER_LOCK | XCB_XKB_STATE_PART_GROUP_STATE |
    XCB_XKB_STATE_PART_GROUP_BASE | XCB_XKB_STATE_PART_GROUP_LATCH | XCB_XKB_STATE_PART_GROUP_LOCK;
constexpr std::uint16_t everything = 0x3FFF; // the parts of the state in the X keyboard extension

} // namespace

// Clients that the server does not trust lack the extension, and asking for it would end the
// connection.
ToolkitModifiers::ToolkitModifiers(xcb_connection_t* toolkit) : toolkit_(toolkit) {
    if (xcb_get_extension_data(toolkit, &xcb_xkb_id)->present == 0) {
        return;
    }
    const auto selectFor = [this](const QWindow* focused) {
        select(focused == nullptr ? locksAndLayouts : everything);
    };
    QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, &context_, selectFor);
    selectFor(QGuiApplication::focusWindow());
}

void ToolkitModifiers::select(std::uint16_t parts) const {
    xcb_xkb_select_events_details_t details{};
    details.affectState = everything;
    details.stateDetails = parts;
    xcb_xkb_select_events_aux(toolkit_, XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_EVENT_TYPE_STATE_NOTIFY, 0,
                              0, 0, 0, &details);
    xcb_flush(toolkit_);
}

} // namespace hollowfernpike::x11
