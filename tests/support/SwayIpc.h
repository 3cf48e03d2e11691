#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include <nlohmann/json_fwd.hpp>

namespace hollowfernpike::test {

/// What one can tell and ask sway over its socket. Each question goes over a connection of its own,
/// so none depends on what became of those before.
///
/// All throw std::runtime_error if sway does not answer.
class SwayIpc {
public:
    explicit SwayIpc(std::string socket) : socket_(std::move(socket)) {}

    /// Runs commands as the user's configuration or swaymsg would. Throws std::runtime_error if
    /// sway refuses one.
    void command(const std::string& text) const;

    /// All outputs, workspaces and windows; `nodes` and `floating_nodes` lead from one to the next.
    nlohmann::json tree() const;

    nlohmann::json workspaces() const;
    nlohmann::json version() const;

    /// Has sway read its configuration again. Returns when that is done.
    void reload() const;

    /// Tells sway to end. It may still be about to on return.
    void exit() const;

private:
    nlohmann::json ask(std::uint32_t kind, const std::string& payload = {}) const;

    std::string socket_;
};

} // namespace hollowfernpike::test
