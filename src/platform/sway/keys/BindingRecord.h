#pragma once

#include <set>
#include <string>

namespace hollowfernpike::sway {

/// Which keys we may have bound in a sway, kept in a file of the runtime directory. If the program
/// is killed, its bindings stay in sway and go on swallowing the keys until sway is reloaded; sway
/// cannot be asked for them. The next run reads here what to take back. There is one record for a
/// user, of the sway that was written to last. Failures are logged only.
class BindingRecord {
public:
    /// `socket` is the path of sway's socket, which tells one sway from another.
    explicit BindingRecord(std::string socket) : socket_(std::move(socket)) {}

    /// What an earlier run may have left bound in this sway.
    std::set<std::string> read() const;

    /// To be called before the keys are bound.
    void write(const std::set<std::string>& keys) const;

private:
    std::string socket_;
};

} // namespace hollowfernpike::sway
