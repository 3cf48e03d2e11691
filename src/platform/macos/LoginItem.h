#pragma once

#include "platform/LoginItem.h"

namespace hollowfernpike::macos {

/// The system's service for login items, for the bundle that is running. Before macOS 13 there is
/// none.
class LoginItem final : public platform::LoginItem {
public:
    platform::LoginItemStatus status() override;
    void registerItem() override;
    void unregisterItem() override;
};

} // namespace hollowfernpike::macos
