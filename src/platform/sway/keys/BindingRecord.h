#pragma once

#include <string>
#include <vector>

namespace hollowfernpike::sway {

/// Which keys we have bound in this sway, kept in a file of the runtime directory. If the program
/// is killed, its bindings stay in sway and go on swallowing the keys; sway cannot be asked for
/// them. The next run reads here what to take back. Failures are logged only.
class BindingRecord {
public:
    /// `socket` is the path of sway's socket, which tells one sway from another.
    explicit BindingRecord(std::string socket) : socket_(std::move(socket)) {}

    /// What an earlier run has left bound in this sway.
    std::vector<std::string> read() const;

    /// To be called before the keys are bound.
    void write(const std::vector<std::string>& keys) const;

private:
    std::string socket_;
};

} // namespace hollowfernpike::sway
