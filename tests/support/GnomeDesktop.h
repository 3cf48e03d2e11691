#pragma once

#include "support/BusConnection.h"
#include "support/KeptShaders.h"
#include "support/KeyboardMap.h"
#include "support/WaylandDesktop.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

namespace hollowfernpike::test {

/// How a session on GNOME begins.
struct GnomeSettings {
    KeyboardLayout layout = {};
    bool hasExtension = true;                      ///< the utility's, installed for the user
    bool enablesExtension = true;                  ///< as the user's settings have it
    bool allowsExtensions = true;                  ///< as the switch for all of them has it
    std::vector<std::filesystem::path> shown = {}; ///< see showOfMachine()
    Home home = std::make_shared<TemporaryDirectory>();
};

/// A private session on GNOME Shell. It has two workspaces, and no X server. Where the tests are
/// root's, the whole session is an ordinary user's.
class GnomeDesktop final : public WaylandDesktop {
public:
    /// Ready for clients on return, with the overview closed; throws std::runtime_error with what
    /// the shell says if it does not get there.
    explicit GnomeDesktop(const GnomeSettings& settings = {});

    ~GnomeDesktop() override;

    /// A connection to the session bus of the tests' own.
    GDBusConnection* busConnection() const { return busConnection_.get(); }

    /// What a script comes to in the shell, which waits for a promise. Throws std::runtime_error
    /// with what the shell says if it fails.
    nlohmann::json evaluate(const std::string& script) const;

    /// Has the shell take other layouts into use, as the user's settings do. It does so some time
    /// after the return.
    void use(const KeyboardLayout& layout);

    /// The layouts that it was told last.
    const KeyboardLayout& layout() const { return settings_.layout; }

    /// Installs the utility's extension for the user.
    void installExtension() const;

    /// Whether the shell's own scripts, and its extensions, are modules.
    bool hasModules() const;

    /// The identifier of that one of the utility's extensions which this shell can use.
    std::string extension() const;

    /// Writes a picture of the whole screen, in the format PNG.
    void takePicture(const std::filesystem::path& file) const;

    using WaylandDesktop::restart;

private:
    void writeSettings() const;
    std::unique_ptr<ChildProcess> startCompositor() override;
    bool isReady() override;

    KeptShaders shaders_{home()};
    GnomeSettings settings_;
    BusConnection busConnection_;
};

} // namespace hollowfernpike::test
