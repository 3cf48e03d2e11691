#pragma once

#include "platform/macos/LoginItem.h"
#include "platform/macos/fakes/FakeMac.h"
#include "support/fakes/CallLog.h"

#include <optional>

namespace hollowfernpike::test {

/// The system's registration as the test says, by way of the backend.
class FakeLoginItem final : public platform::LoginItem {
public:
    explicit FakeLoginItem(CallLog& log) : log_(log) {}

    platform::LoginItemStatus present = platform::LoginItemStatus::notRegistered;
    platform::LoginItemStatus registered = platform::LoginItemStatus::enabled; ///< by registration
    std::optional<platform::LocalizedError> failure; ///< of the next changes

    platform::LoginItemStatus status() override {
        FakeMac::shared().loginItemStatus = static_cast<long>(present);
        return backend_.status();
    }

    void registerItem() override {
        log_.record("loginItem.registerItem");
        change([this] { backend_.registerItem(); }, registered);
    }

    void unregisterItem() override {
        log_.record("loginItem.unregisterItem");
        change([this] { backend_.unregisterItem(); }, platform::LoginItemStatus::notRegistered);
    }

private:
    template <class Change>
    void change(Change change, platform::LoginItemStatus status) {
        FakeMac::shared().loginItemError = failure ? failure->japanese() : "";
        change();
        present = status;
    }

    CallLog& log_;
    macos::LoginItem backend_;
};

} // namespace hollowfernpike::test
