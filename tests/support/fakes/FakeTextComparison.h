#pragma once

#include "platform/TextComparison.h"
#include "support/fakes/CallLog.h"

#include <map>
#include <string>

namespace hollowfernpike::test {

/// Knows as much of Unicode as its table says.
class FakeTextComparison final : public platform::TextComparison {
public:
    explicit FakeTextComparison(CallLog& log) : log_(log) {}

    std::map<std::string, std::string, std::less<>> composedForms{
        {"Cafe\u0301", "Caf\u00E9"},
        {"\u30D5\u309A\u30EC\u30D2\u3099\u30E5\u30FC", "\u30D7\u30EC\u30D3\u30E5\u30FC"},
        {"\u212Aeep", "Keep"},
    };

    bool canonicallyEquivalent(std::string_view left, std::string_view right) override {
        log_.record("textComparison.canonicallyEquivalent");
        return composed(left) == composed(right);
    }

private:
    std::string_view composed(std::string_view text) const {
        const auto form = composedForms.find(text);
        return form == composedForms.end() ? text : form->second;
    }

    CallLog& log_;
};

} // namespace hollowfernpike::test
