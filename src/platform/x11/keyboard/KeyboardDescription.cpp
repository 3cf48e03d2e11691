#include "platform/x11/keyboard/KeyboardDescription.h"

#include "platform/x11/keyboard/Xkb.h"
#include "platform/x11/server/Atoms.h"

#include <algorithm>
#include <span>
#include <string_view>

namespace hollowfernpike::x11 {

namespace {

constexpr std::array<std::string_view, 6> virtualModifierNames{"Alt",   "Meta",    "Super",
                                                               "Hyper", "NumLock", "ScrollLock"};
constexpr std::uint16_t mapParts = XCB_XKB_MAP_PART_MODIFIER_MAP | XCB_XKB_MAP_PART_VIRTUAL_MODS |
                                   XCB_XKB_MAP_PART_VIRTUAL_MOD_MAP | XCB_XKB_MAP_PART_KEY_ACTIONS;
constexpr std::uint32_t nameParts = XCB_XKB_NAME_DETAIL_KEY_NAMES |
                                    XCB_XKB_NAME_DETAIL_KEY_ALIASES |
                                    XCB_XKB_NAME_DETAIL_VIRTUAL_MOD_NAMES;

xcb_xkb_get_map_map_t unpack(const xcb_xkb_get_map_reply_t& reply) {
    xcb_xkb_get_map_map_t parts{};
    xcb_xkb_get_map_map_unpack(xcb_xkb_get_map_map(&reply), reply.nTypes, reply.nKeySyms,
                               reply.nKeyActions, reply.totalActions, reply.totalKeyBehaviors,
                               reply.virtualMods, reply.totalKeyExplicit, reply.totalModMapKeys,
                               reply.totalVModMapKeys, reply.present, &parts);
    return parts;
}

xcb_xkb_get_names_value_list_t unpack(const xcb_xkb_get_names_reply_t& reply) {
    xcb_xkb_get_names_value_list_t parts{};
    xcb_xkb_get_names_value_list_unpack(
        xcb_xkb_get_names_value_list(&reply), reply.nTypes, reply.indicators, reply.virtualMods,
        reply.groupNames, reply.nKeys, reply.nKeyAliases, reply.nRadioGroups, reply.which, &parts);
    return parts;
}

/// One value per virtual modifier (sixteen); `values` has only those whose bit is in `mask`.
template <class Value>
std::array<Value, 16> spread(std::uint16_t mask, const Value* values) {
    std::array<Value, 16> result{};
    for (std::size_t bit = 0; bit < result.size(); ++bit) {
        if ((mask >> bit & 1U) != 0) {
            result.at(bit) = *values++;
        }
    }
    return result;
}

std::string text(std::span<const char, 4> name) {
    const std::string_view padded(name.data(), name.size());
    return std::string{padded.substr(0, padded.find('\0'))};
}

void addModifiers(KeyboardDescription& description, const xcb_xkb_get_map_reply_t& reply) {
    const auto parts = unpack(reply);
    description.firstKey = reply.minKeyCode;
    description.lastKey = reply.maxKeyCode;
    for (const auto& entry : std::span(parts.modmap_rtrn, reply.totalModMapKeys)) {
        description.keys.at(entry.keycode).modifiers = entry.mods;
    }
    for (const auto& entry : std::span(parts.vmodmap_rtrn, reply.totalVModMapKeys)) {
        description.keys.at(entry.keycode).virtualModifiers = entry.vmods;
    }
}

void addAction(KeyboardDescription::Key& key, const xcb_xkb_action_t& action) {
    switch (action.type) {
    case XCB_XKB_SA_TYPE_SET_MODS:
    case XCB_XKB_SA_TYPE_LATCH_MODS:
    case XCB_XKB_SA_TYPE_LOCK_MODS:
        key.actionModifiers = action.setmods.mask;
        break;
    case XCB_XKB_SA_TYPE_SET_GROUP:
    case XCB_XKB_SA_TYPE_LATCH_GROUP:
    case XCB_XKB_SA_TYPE_LOCK_GROUP:
        key.changesGroup = true;
        break;
    default:
        break;
    }
}

void addActions(KeyboardDescription& description, const xcb_xkb_get_map_reply_t& reply) {
    const auto parts = unpack(reply);
    const std::span actions(parts.acts_rtrn_acts, reply.totalActions);
    unsigned key = reply.firstKeyAction;
    std::size_t first = 0;
    for (const auto count : std::span(parts.acts_rtrn_count, reply.nKeyActions)) {
        if (count > 0) {
            addAction(description.keys.at(key), actions[first]);
        }
        first += count;
        ++key;
    }
}

void addNames(KeyboardDescription& description, const xcb_xkb_get_names_reply_t& reply) {
    const auto parts = unpack(reply);
    unsigned key = reply.firstKey;
    for (const auto& name : std::span(parts.keyNames, reply.nKeys)) {
        description.keys.at(key++).name = text(name.name);
    }
    for (const auto& alias : std::span(parts.keyAliases, reply.nKeyAliases)) {
        description.aliases.emplace(text(alias.real), text(alias.alias));
    }
}

void addVirtualModifiers(KeyboardDescription& description, const xcb_xkb_get_map_reply_t& map,
                         const xcb_xkb_get_names_reply_t& names,
                         std::span<const xcb_atom_t> atoms) {
    const auto places = spread(map.virtualMods, unpack(map).vmods_rtrn);
    const auto bitNames = spread(names.virtualMods, unpack(names).virtualModNames);
    for (std::size_t index = 0; index < atoms.size(); ++index) {
        for (std::size_t bit = 0; bit < bitNames.size(); ++bit) {
            if (atoms[index] != XCB_ATOM_NONE && bitNames.at(bit) == atoms[index]) {
                description.virtualModifiers[std::string{virtualModifierNames.at(index)}] = {
                    static_cast<std::uint16_t>(1U << bit), places.at(bit)};
            }
        }
    }
}

} // namespace

std::optional<KeyboardDescription> KeyboardDescription::read(const Connection& connection) {
    auto* const server = connection.get();
    const auto mapCookie = xcb_xkb_get_map(server, XCB_XKB_ID_USE_CORE_KBD, mapParts, 0, 0, 0, 0, 0,
                                           0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
    const auto namesCookie = xcb_xkb_get_names(server, XCB_XKB_ID_USE_CORE_KBD, nameParts);
    const auto controlsCookie = xcb_xkb_get_controls(server, XCB_XKB_ID_USE_CORE_KBD);
    const auto atoms = internAtoms(server, virtualModifierNames, true);
    const auto map = awaitReply<xcb_xkb_get_map_reply>(server, mapCookie);
    const auto names = awaitReply<xcb_xkb_get_names_reply>(server, namesCookie);
    const auto controls = awaitReply<xcb_xkb_get_controls_reply>(server, controlsCookie);
    if (!map || !names || !controls) {
        return std::nullopt;
    }
    KeyboardDescription description;
    addModifiers(description, *map);
    addActions(description, *map);
    addNames(description, *names);
    addVirtualModifiers(description, *map, *names, atoms);
    description.longestRepetition = std::max(controls->repeatDelay, controls->repeatInterval);
    return description;
}

} // namespace hollowfernpike::x11
