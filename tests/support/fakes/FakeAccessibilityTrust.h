#pragma once

#include "platform/AccessibilityTrust.h"
#include "support/fakes/CallLog.h"

namespace hollowfernpike::test {

/// Trust as the test says.
class FakeAccessibilityTrust final : public platform::AccessibilityTrust {
public:
    explicit FakeAccessibilityTrust(CallLog& log) : log_(log) {}

    bool trusted = true;

    bool isProcessTrusted() override {
        log_.record("accessibilityTrust.isProcessTrusted");
        return trusted;
    }

    bool isProcessTrustedWithPrompt() override {
        log_.record("accessibilityTrust.isProcessTrustedWithPrompt");
        return trusted;
    }

private:
    CallLog& log_;
};

} // namespace hollowfernpike::test
