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
    /// What an earlier run has left is taken back with the first change. The client outlives this
    /// object.
    explicit Bindings(IpcClient& ipc);

    /// Binds these combinations and unbinds all others. False if sway cannot be asked; the next
    /// call makes up for it.
    bool bind(const std::vector<platform::KeyCombination>& combinations,
              const wayland::Keymap* keymap);

    /// Unbinds everything. False if sway cannot be asked.
    bool unbind();

    /// sway has read its configuration again and has dropped our bindings.
    void onReload();

    /// Something may have happened to our bindings that we have not been told.
    void onDoubt();

    /// Those of the last bind() that are the user's.
    const std::vector<platform::KeyCombination>& refused() const { return refused_; }

    /// Which of these combinations are the user's, with the configuration as it was read last.
    std::vector<platform::KeyCombination>
    refusedAmong(const std::vector<platform::KeyCombination>& combinations,
                 const wayland::Keymap* keymap) const;

private:
    using Keys = std::set<std::string>;                  ///< combinations in sway's words
    using Commands = std::map<std::string, std::string>; ///< by keys

    bool change(const Commands& wanted);
    std::vector<std::string> steps(const Commands& wanted) const;
    bool execute(const std::vector<std::string>& steps);

    IpcClient& ipc_;
    BindingRecord record_;
    UserConfiguration configuration_;
    Keys bound_;    ///< for certain
    Keys doubtful_; ///< perhaps
    std::vector<platform::KeyCombination> refused_;
};

} // namespace hollowfernpike::sway
