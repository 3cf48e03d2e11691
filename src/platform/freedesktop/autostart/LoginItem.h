#pragma once

#include "platform/LoginItem.h"

#include <filesystem>

namespace hollowfernpike::freedesktop {

/// The entry "app.hollowfernpike.Hollowfernpike.desktop" in the user's autostart directory, by the
/// Desktop Application Autostart Specification 0.5.
///
/// There may be an entry of that name for all users, too ($XDG_CONFIG_DIRS). It counts as long as
/// the user has none, and cannot be taken out: unregistering then leaves an entry of the user's
/// that hides it, and the status is "requires approval", as if it were switched off in the settings
/// of the desktop.
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
