#pragma once

#include "platform/EventTap.h"
#include "platform/sway/ipc/IpcClient.h"
#include "platform/sway/keys/UserBindings.h"
#include "platform/wayland/keyboard/Keymap.h"

#include <string>
#include <vector>

namespace hollowfernpike::sway {

/// What the user's own configuration binds, as far as it can be known: sway tells the text of its
/// main file, included files are read from the disk. Bindings that were made by commands while sway
/// runs cannot be known, nor files whose names an included line has a command find out.
class UserConfiguration {
public:
    /// Reads it anew. False if sway cannot be asked; what was read before stays then.
    bool read(IpcClient& ipc);

    /// Whether a press of the combination is the user's, or switches to another virtual terminal.
    /// `keymap` tells which key symbols a position gives; null if there is no keyboard.
    bool binds(const platform::KeyCombination& combination, const wayland::Keymap* keymap) const;

    /// Whether these keys, in sway's words, are bound by their key code.
    bool bindsByCode(const std::string& keys) const;

private:
    std::vector<UserBinding> bindings_;
};

} // namespace hollowfernpike::sway
