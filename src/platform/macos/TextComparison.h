#pragma once

#include "platform/TextComparison.h"

namespace hollowfernpike::macos {

class TextComparison final : public platform::TextComparison {
public:
    bool canonicallyEquivalent(std::string_view left, std::string_view right) override;
};

} // namespace hollowfernpike::macos
