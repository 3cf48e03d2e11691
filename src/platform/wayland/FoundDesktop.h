#pragma once

#include "platform/Desktop.h"
#include "platform/wayland/connection/Connection.h"

#include <functional>
#include <memory>
#include <utility>

namespace hollowfernpike::wayland {

/// A session on a Wayland compositor, with the connection by which it was found.
class FoundDesktop final : public platform::FoundDesktop {
public:
    using Open = std::function<std::unique_ptr<platform::Desktop>(
        const platform::DesktopHost& host, std::unique_ptr<Connection> connection)>;

    FoundDesktop(std::unique_ptr<Connection> connection, Open open)
        : connection_(std::move(connection)), open_(std::move(open)) {}

    const char* toolkitPlatform() const override { return "wayland"; }
    std::unique_ptr<platform::Desktop> open(const platform::DesktopHost& host) override {
        return open_(host, std::move(connection_));
    }

private:
    std::unique_ptr<Connection> connection_;
    Open open_;
};

} // namespace hollowfernpike::wayland
