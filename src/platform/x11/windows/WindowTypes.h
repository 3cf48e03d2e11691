#pragma once

#include "platform/x11/server/Atoms.h"

#include <cstdint>
#include <span>

namespace hollowfernpike::x11 {

/// The layer of windows that people work in. Whatever only surrounds them lies below or above.
inline constexpr std::int32_t ordinaryLayer = 0;

/// The layer of a window from its `_NET_WM_WINDOW_TYPE`, which lists types, best first; the first
/// that we know counts. A window that names none is a normal one, or a dialog if it is transient:
/// both are ordinary.
std::int32_t layerOf(const Atoms& atoms, std::span<const xcb_atom_t> types);

} // namespace hollowfernpike::x11
