#pragma once

#include "support/WaylandDesktop.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace hollowfernpike::test {

/// Compositors on the library wlroots, all of which run commands by key combinations.
enum class WlrootsCompositor { labwc, sway };

/// A combination that runs a command.
struct KeyCommand {
    std::string labwcKey;  ///< the combination as the attribute of a line of labwc's configuration
    std::string swayKey;   ///< the same for the command "bindcode"
    std::string arguments; ///< of the program, as a shell reads them
};

/// A private session on such a compositor. Programs are not told of sway's socket. There is no
/// keyboard until there is a VirtualKeyboard. Where the tests are root's, the whole session is an
/// ordinary user's.
class WlrootsDesktop final : public WaylandDesktop {
public:
    /// The configuration has these commands run the program. Ready for clients on return; throws
    /// std::runtime_error with what the compositor says if it does not get there.
    WlrootsDesktop(WlrootsCompositor kind, const std::filesystem::path& program,
                   const std::vector<KeyCommand>& commands);

    WlrootsCompositor kind() const { return kind_; }

    /// Writes these lines into the part of the configuration that binds keys, and has the
    /// compositor read it. Returns before it has.
    void bindKeys(const std::string& lines);

private:
    std::filesystem::path configurationFile() const;
    std::string controlSocket() const { return runtime() / "sway.sock"; }
    std::string lineOf(const KeyCommand& command, const std::filesystem::path& program) const;
    void configure(const std::string& lines) const;
    std::unique_ptr<ChildProcess> startCompositor() override;
    bool isReady() override;

    WlrootsCompositor kind_;
};

} // namespace hollowfernpike::test
