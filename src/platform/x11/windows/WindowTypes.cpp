#include "platform/x11/windows/WindowTypes.h"

#include <algorithm>
#include <array>
#include <optional>

namespace hollowfernpike::x11 {

namespace {

constexpr std::int32_t layerBelow = -1;
constexpr std::int32_t layerAbove = 1;

template <std::size_t count>
bool isAmong(const std::array<xcb_atom_t, count>& types, xcb_atom_t type) {
    return std::ranges::find(types, type) != types.end();
}

std::optional<std::int32_t> layerOfType(const Atoms& atoms, xcb_atom_t type) {
    const std::array ordinary{atoms.typeNormal, atoms.typeDialog, atoms.typeUtility,
                              atoms.typeToolbar};
    const std::array above{atoms.typeDock,         atoms.typeSplash,    atoms.typeMenu,
                           atoms.typeDropdownMenu, atoms.typePopupMenu, atoms.typeTooltip,
                           atoms.typeNotification, atoms.typeCombo,     atoms.typeDragIcon};
    if (isAmong(ordinary, type)) {
        return ordinaryLayer;
    }
    if (isAmong(above, type)) {
        return layerAbove;
    }
    return type == atoms.typeDesktop ? std::optional(layerBelow) : std::nullopt;
}

} // namespace

std::int32_t layerOf(const Atoms& atoms, std::span<const xcb_atom_t> types) {
    for (const auto type : types) {
        if (const auto layer = layerOfType(atoms, type)) {
            return *layer;
        }
    }
    return ordinaryLayer;
}

} // namespace hollowfernpike::x11
