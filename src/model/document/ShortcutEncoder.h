#pragma once

#include "model/AppShortcut.h"
#include "platform/LocalizedError.h"

#include <span>
#include <string>

namespace hollowfernpike {

/// A record that JSON cannot carry.
class EncodingError : public platform::LocalizedError {
public:
    using LocalizedError::LocalizedError;
};

enum class DocumentLayout {
    compact, ///< for the utility's own file: nothing between the tokens, keys in encoding order
    pretty,  ///< for people: a line per key, two blanks per level, keys sorted
};

/// The list as a JSON document (RFC 8259, UTF-8 without a byte-order mark, slashes escaped). Throws
/// `EncodingError` if a text, such as the path of a file with an odd name, is not UTF-8: replacing
/// its bytes would name another file.
std::string encodeShortcuts(std::span<const AppShortcut> shortcuts, DocumentLayout layout);

} // namespace hollowfernpike
