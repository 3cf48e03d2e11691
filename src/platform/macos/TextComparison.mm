#include "platform/macos/TextComparison.h"

#include "platform/macos/Text.h"

namespace hollowfernpike::macos {

bool TextComparison::canonicallyEquivalent(std::string_view left, std::string_view right) {
    if (left == right) {
        return true;
    }
    @autoreleasepool {
        NSString* composedLeft = [text(left) precomposedStringWithCanonicalMapping];
        NSString* composedRight = [text(right) precomposedStringWithCanonicalMapping];
        return composedLeft != nil && composedRight != nil &&
               [composedLeft isEqualToString:composedRight];
    }
}

} // namespace hollowfernpike::macos
