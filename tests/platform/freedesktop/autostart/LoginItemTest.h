#pragma once

#include "platform/LocalizedError.h"
#include "platform/freedesktop/ApplicationsHome.h"
#include "platform/freedesktop/autostart/LoginItem.h"

#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>

#include <gtest/gtest.h>

namespace hollowfernpike::test {

namespace fs = std::filesystem;
using platform::LoginItemStatus;

inline constexpr auto entryName = "app.hollowfernpike.Hollowfernpike.desktop";
inline constexpr auto minimal = "[Desktop Entry]\nType=Application\nName=H\nExec=true\n";

/// A login item of a home whose autostart directories are its own.
class LoginItemTest : public testing::Test {
protected:
    LoginItemTest() {
        ::setenv("XDG_CONFIG_HOME", config().c_str(), 1);
        ::setenv("XDG_CONFIG_DIRS", (home_.path() / "shared").c_str(), 1);
        ::unsetenv("XDG_CURRENT_DESKTOP");
    }

    fs::path config() const { return home_.path() / "config"; }
    fs::path file() const { return config() / "autostart" / entryName; }
    fs::path sharedFile() const { return home_.path() / "shared/autostart" / entryName; }

    /// The status with an entry of these lines below the minimum that every entry needs.
    LoginItemStatus statusWith(const std::string& lines) { return statusOf(minimal + lines); }

    LoginItemStatus statusOf(const std::string& entry) {
        home_.write(file(), entry);
        return item_.status();
    }

    ApplicationsHome home_;
    freedesktop::LoginItem item_{"/bin/true"};
};

/// What an operation fails with, in Japanese and in English.
template <class Operation>
std::pair<std::string, std::string> messagesOf(Operation operation) {
    try {
        operation();
    } catch (const platform::LocalizedError& error) {
        return {error.japanese(), error.english()};
    }
    return {"no error", "no error"};
}

} // namespace hollowfernpike::test
