#include "platform/x11/server/Atoms.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace hollowfernpike::x11 {

namespace {

using Member = xcb_atom_t Atoms::*;

struct Name {
    Member member;
    std::string_view text;
};

constexpr auto namesOfAtoms = std::to_array<Name>({
    {&Atoms::supported, "_NET_SUPPORTED"},
    {&Atoms::clientList, "_NET_CLIENT_LIST"},
    {&Atoms::clientListStacking, "_NET_CLIENT_LIST_STACKING"},
    {&Atoms::currentDesktop, "_NET_CURRENT_DESKTOP"},
    {&Atoms::activeWindow, "_NET_ACTIVE_WINDOW"},
    {&Atoms::restackWindow, "_NET_RESTACK_WINDOW"},
    {&Atoms::wmState, "WM_STATE"},
    {&Atoms::state, "_NET_WM_STATE"},
    {&Atoms::stateHidden, "_NET_WM_STATE_HIDDEN"},
    {&Atoms::desktop, "_NET_WM_DESKTOP"},
    {&Atoms::pid, "_NET_WM_PID"},
    {&Atoms::type, "_NET_WM_WINDOW_TYPE"},
    {&Atoms::typeNormal, "_NET_WM_WINDOW_TYPE_NORMAL"},
    {&Atoms::typeDialog, "_NET_WM_WINDOW_TYPE_DIALOG"},
    {&Atoms::typeUtility, "_NET_WM_WINDOW_TYPE_UTILITY"},
    {&Atoms::typeToolbar, "_NET_WM_WINDOW_TYPE_TOOLBAR"},
    {&Atoms::typeDesktop, "_NET_WM_WINDOW_TYPE_DESKTOP"},
    {&Atoms::typeDock, "_NET_WM_WINDOW_TYPE_DOCK"},
    {&Atoms::typeSplash, "_NET_WM_WINDOW_TYPE_SPLASH"},
    {&Atoms::typeMenu, "_NET_WM_WINDOW_TYPE_MENU"},
    {&Atoms::typeDropdownMenu, "_NET_WM_WINDOW_TYPE_DROPDOWN_MENU"},
    {&Atoms::typePopupMenu, "_NET_WM_WINDOW_TYPE_POPUP_MENU"},
    {&Atoms::typeTooltip, "_NET_WM_WINDOW_TYPE_TOOLTIP"},
    {&Atoms::typeNotification, "_NET_WM_WINDOW_TYPE_NOTIFICATION"},
    {&Atoms::typeCombo, "_NET_WM_WINDOW_TYPE_COMBO"},
    {&Atoms::typeDragIcon, "_NET_WM_WINDOW_TYPE_DND"},
    {&Atoms::gtkApplicationId, "_GTK_APPLICATION_ID"},
    {&Atoms::kdeDesktopFile, "_KDE_NET_WM_DESKTOP_FILE"},
    {&Atoms::bamfDesktopFile, "_BAMF_DESKTOP_FILE"},
    {&Atoms::startupInfoBegin, "_NET_STARTUP_INFO_BEGIN"},
    {&Atoms::startupInfo, "_NET_STARTUP_INFO"},
});

} // namespace

std::vector<xcb_atom_t> internAtoms(xcb_connection_t* connection,
                                    std::span<const std::string_view> names, bool onlyExisting) {
    std::vector<xcb_intern_atom_cookie_t> questions;
    for (const auto name : names) {
        questions.push_back(xcb_intern_atom(connection, onlyExisting ? 1 : 0,
                                            static_cast<std::uint16_t>(name.size()), name.data()));
    }
    std::vector<xcb_atom_t> atoms;
    for (const auto question : questions) {
        const auto reply = awaitReply<xcb_intern_atom_reply>(connection, question);
        atoms.push_back(reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE});
    }
    return atoms;
}

xcb_atom_t internAtom(xcb_connection_t* connection, std::string_view name) {
    return internAtoms(connection, std::span(&name, 1)).front();
}

Atoms::Atoms(const Connection& connection) {
    std::array<std::string_view, namesOfAtoms.size()> names;
    std::ranges::transform(namesOfAtoms, names.begin(), &Name::text);
    const auto atoms = internAtoms(connection.get(), names);
    for (std::size_t index = 0; index < atoms.size(); ++index) {
        this->*namesOfAtoms[index].member = atoms[index];
    }
}

} // namespace hollowfernpike::x11
