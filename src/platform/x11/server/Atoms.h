#pragma once

#include "platform/x11/server/Connection.h"

#include <span>
#include <string_view>
#include <vector>

#include <xcb/xcb.h>

namespace hollowfernpike::x11 {

/// The atoms of these names, asked for in one batch. Waits for the server; XCB_ATOM_NONE after a
/// failure, and for names that no atom has yet if only existing ones are wanted.
std::vector<xcb_atom_t> internAtoms(xcb_connection_t* connection,
                                    std::span<const std::string_view> names,
                                    bool onlyExisting = false);

/// The atom of one name. Waits for the server; XCB_ATOM_NONE after a failure.
xcb_atom_t internAtom(xcb_connection_t* connection, std::string_view name);

/// The atoms that the window services use. All are asked for in one batch; after a failure they are
/// XCB_ATOM_NONE, which no property has.
struct Atoms {
    explicit Atoms(const Connection& connection);

    xcb_atom_t supported = XCB_ATOM_NONE;
    xcb_atom_t clientList = XCB_ATOM_NONE;
    xcb_atom_t clientListStacking = XCB_ATOM_NONE;
    xcb_atom_t currentDesktop = XCB_ATOM_NONE;
    xcb_atom_t activeWindow = XCB_ATOM_NONE;
    xcb_atom_t restackWindow = XCB_ATOM_NONE;

    xcb_atom_t wmState = XCB_ATOM_NONE;
    xcb_atom_t state = XCB_ATOM_NONE;
    xcb_atom_t stateHidden = XCB_ATOM_NONE;
    xcb_atom_t desktop = XCB_ATOM_NONE;
    xcb_atom_t pid = XCB_ATOM_NONE;

    xcb_atom_t type = XCB_ATOM_NONE;
    xcb_atom_t typeNormal = XCB_ATOM_NONE;
    xcb_atom_t typeDialog = XCB_ATOM_NONE;
    xcb_atom_t typeUtility = XCB_ATOM_NONE;
    xcb_atom_t typeToolbar = XCB_ATOM_NONE;
    xcb_atom_t typeDesktop = XCB_ATOM_NONE;
    xcb_atom_t typeDock = XCB_ATOM_NONE;
    xcb_atom_t typeSplash = XCB_ATOM_NONE;
    xcb_atom_t typeMenu = XCB_ATOM_NONE;
    xcb_atom_t typeDropdownMenu = XCB_ATOM_NONE;
    xcb_atom_t typePopupMenu = XCB_ATOM_NONE;
    xcb_atom_t typeTooltip = XCB_ATOM_NONE;
    xcb_atom_t typeNotification = XCB_ATOM_NONE;
    xcb_atom_t typeCombo = XCB_ATOM_NONE;
    xcb_atom_t typeDragIcon = XCB_ATOM_NONE;

    xcb_atom_t gtkApplicationId = XCB_ATOM_NONE;
    xcb_atom_t kdeDesktopFile = XCB_ATOM_NONE;
    xcb_atom_t bamfDesktopFile = XCB_ATOM_NONE;

    xcb_atom_t startupInfoBegin = XCB_ATOM_NONE;
    xcb_atom_t startupInfo = XCB_ATOM_NONE;
};

} // namespace hollowfernpike::x11
