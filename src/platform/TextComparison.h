#pragma once

#include "platform/Interface.h"

#include <string_view>

namespace hollowfernpike::platform {

/// Comparison of texts as people read them. Any thread.
class TextComparison : public Interface {
public:
    /// Whether two UTF-8 texts are the same under Unicode canonical equivalence (UAX #15): composed
    /// and decomposed forms are equal, case and white space count. Text that is not valid UTF-8
    /// equals only itself.
    virtual bool canonicallyEquivalent(std::string_view left, std::string_view right) = 0;
};

} // namespace hollowfernpike::platform
