#pragma once

#include "platform/Desktop.h"
#include "platform/wayland/connection/Connection.h"

#include <memory>
#include <utility>

namespace hollowfernpike::wayland {

/// A session on a Wayland compositor, with the connection by which it was found.
template <class Desktop>
class FoundDesktop final : public platform::FoundDesktop {
public:
    explicit FoundDesktop(std::unique_ptr<Connection> connection)
        : connection_(std::move(connection)) {}

    const char* toolkitPlatform() const override { return "wayland"; }
    std::unique_ptr<platform::Desktop> open(const platform::DesktopHost& host) override {
        return std::make_unique<Desktop>(host, std::move(connection_));
    }

private:
    std::unique_ptr<Connection> connection_;
};

} // namespace hollowfernpike::wayland
