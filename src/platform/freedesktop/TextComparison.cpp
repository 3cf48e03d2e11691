#include "platform/freedesktop/TextComparison.h"

#include "platform/freedesktop/entries/GlibPointers.h"

namespace hollowfernpike::freedesktop {

namespace {

// Null if the text is not valid UTF-8, or has a zero byte, which would end it early.
TextPointer decomposed(std::string_view text) {
    if (g_utf8_validate_len(text.data(), text.size(), nullptr) == FALSE) {
        return nullptr;
    }
    return TextPointer(
        g_utf8_normalize(text.data(), static_cast<gssize>(text.size()), G_NORMALIZE_NFD));
}

} // namespace

bool TextComparison::canonicallyEquivalent(std::string_view left, std::string_view right) {
    if (left == right) {
        return true;
    }
    if (left.empty() || right.empty()) {
        return false;
    }
    const auto leftForm = decomposed(left);
    const auto rightForm = decomposed(right);
    return leftForm && rightForm && std::string_view(leftForm.get()) == rightForm.get();
}

} // namespace hollowfernpike::freedesktop
