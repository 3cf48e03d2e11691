#pragma once

#include "model/ShortcutStore.h"

#include <cstdint>
#include <string>

namespace hollowfernpike::test {

/// A shortcut of its own for the application `name`, as the editor makes them.
inline AppShortcut shortcutFor(const std::string& name, std::uint16_t keyCode,
                               std::uint64_t modifierFlags) {
    return {.id = UUID::random(),
            .keyCode = keyCode,
            .modifierFlags = modifierFlags,
            .appPath = "/applications/" + name + ".desktop",
            .appName = name,
            .appBundleIdentifier = "org.example." + name};
}

inline void addShortcut(const std::string& name, std::uint16_t keyCode,
                        std::uint64_t modifierFlags) {
    ShortcutStore::shared().add(shortcutFor(name, keyCode, modifierFlags));
}

} // namespace hollowfernpike::test
