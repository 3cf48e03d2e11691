#pragma once

#include "platform/LoginItem.h"
#include "support/fakes/CallLog.h"

#include <optional>

namespace hollowfernpike::test {

/// A registration as the test says, and the failures of changing it.
class FakeLoginItem final : public platform::LoginItem {
public:
    explicit FakeLoginItem(CallLog& log) : log_(log) {}

    platform::LoginItemStatus present = platform::LoginItemStatus::notRegistered;
    platform::LoginItemStatus registered = platform::LoginItemStatus::enabled; ///< by registration
    std::optional<platform::LocalizedError> failure; ///< of the next changes

    platform::LoginItemStatus status() override { return present; }

    void registerItem() override {
        log_.record("loginItem.registerItem");
        change(registered);
    }

    void unregisterItem() override {
        log_.record("loginItem.unregisterItem");
        change(platform::LoginItemStatus::notRegistered);
    }

private:
    void change(platform::LoginItemStatus status) {
        if (failure) {
            throw platform::LocalizedError{*failure};
        }
        present = status;
    }

    CallLog& log_;
};

} // namespace hollowfernpike::test
