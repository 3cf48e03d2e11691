#pragma once

#include "platform/EventTap.h"
#include "platform/sway/ipc/IpcClient.h"
#include "platform/sway/keys/BindingRecord.h"
#include "platform/sway/keys/UserConfiguration.h"
#include "platform/wayland/keyboard/Keymap.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace hollowfernpike::sway {

/// Our bindings in sway. A combination that the user's own configuration binds is left to the user:
/// sway would let ours win without a word, and could not give the user's back. Main thread only.
class Bindings {
public:
    /// Takes back what an earlier run has left. The client outlives this object.
    explicit Bindings(IpcClient& ipc);

    /// Binds these combinations and unbinds all others. False if sway cannot be asked.
    bool bind(const std::vector<platform::KeyCombination>& combinations,
              const wayland::Keymap* keymap);

    /// To be called when sway has read its configuration again: it has dropped our bindings.
    void onReload() { bound_.clear(); }

    /// Those of the last bind() that are the user's.
    const std::vector<platform::KeyCombination>& refused() const { return refused_; }

    /// Which of these combinations are the user's, with the configuration as it was read last.
    std::vector<platform::KeyCombination>
    refusedAmong(const std::vector<platform::KeyCombination>& combinations,
                 const wayland::Keymap* keymap) const;

private:
    /// The commands that lead from what is bound to what is wanted: commands by keys.
    std::vector<std::string> changes(const std::map<std::string, std::string>& wanted) const;
    bool execute(const std::vector<std::string>& commands);

    IpcClient& ipc_;
    BindingRecord record_;
    UserConfiguration configuration_;
    std::set<std::string> bound_; ///< keys in sway's words
    std::vector<platform::KeyCombination> refused_;
};

} // namespace hollowfernpike::sway
