#pragma once

#include "platform/macos/AccessibilityTrust.h"
#include "platform/macos/fakes/FakeMac.h"
#include "support/fakes/CallLog.h"

namespace hollowfernpike::test {

/// The system's permission as the test says, by way of the backend.
class FakeAccessibilityTrust final : public platform::AccessibilityTrust {
public:
    explicit FakeAccessibilityTrust(CallLog& log) : log_(log) {}

    bool& trusted = FakeMac::shared().trusted;

    bool isProcessTrusted() override {
        log_.record("accessibilityTrust.isProcessTrusted");
        return backend_.isProcessTrusted();
    }

    bool isProcessTrustedWithPrompt() override {
        log_.record("accessibilityTrust.isProcessTrustedWithPrompt");
        return backend_.isProcessTrustedWithPrompt();
    }

private:
    CallLog& log_;
    macos::AccessibilityTrust backend_;
};

} // namespace hollowfernpike::test
