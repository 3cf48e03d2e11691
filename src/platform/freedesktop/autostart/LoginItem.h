#pragma once

#include "platform/LoginItem.h"

#include <filesystem>
#include <string>

namespace hollowfernpike::freedesktop {

enum class Autostart { on, off };

/// The text of the autostart entry for our program, an absolute path. Throws
/// platform::LocalizedError if no entry can name that path.
std::string autostartEntry(const std::filesystem::path& program, Autostart state);

/// How this desktop treats the autostart entry at `path`: `notFound` if it starts nothing because
/// it cannot be read or its program is missing.
platform::LoginItemStatus statusOfAutostartEntry(const std::string& path);

/// The entry "app.hollowfernpike.Hollowfernpike.desktop" in the user's autostart directory, by the
/// Desktop Application Autostart Specification 0.5.
///
/// An entry of that name may also exist for all users ($XDG_CONFIG_DIRS). It applies while the user
/// has none. We cannot remove it, so unregistering writes a user's entry that hides it; the status
/// is then "requires approval", as if it were switched off in the settings of the desktop.
class LoginItem final : public platform::LoginItem {
public:
    /// `program` is what the entry starts: an absolute path.
    explicit LoginItem(std::filesystem::path program) : program_(std::move(program)) {}

    platform::LoginItemStatus status() override;
    void registerItem() override;
    void unregisterItem() override;

private:
    std::filesystem::path program_;
};

} // namespace hollowfernpike::freedesktop
