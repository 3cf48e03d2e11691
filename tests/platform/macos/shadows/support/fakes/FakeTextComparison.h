#pragma once

#include "platform/macos/TextComparison.h"
#include "support/fakes/CallLog.h"

namespace hollowfernpike::test {

/// The backend's.
class FakeTextComparison final : public platform::TextComparison {
public:
    explicit FakeTextComparison(CallLog& log) : log_(log) {}

    bool canonicallyEquivalent(std::string_view left, std::string_view right) override {
        log_.record("textComparison.canonicallyEquivalent");
        return backend_.canonicallyEquivalent(left, right);
    }

private:
    CallLog& log_;
    macos::TextComparison backend_;
};

} // namespace hollowfernpike::test
