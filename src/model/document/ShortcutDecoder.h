#pragma once

#include "model/AppShortcut.h"

#include <string_view>
#include <vector>

namespace hollowfernpike {

/// Reads a JSON document (RFC 8259, UTF-8, a byte-order mark allowed) as a list of shortcuts, in
/// the document's order. If a key occurs twice in an object, the last one counts; unknown keys are
/// ignored. The depth of nesting and the length of numbers are limited only by memory, the size of
/// the document by 4 GiB. Throws `DecodingError`; for a document that is not JSON, always the
/// syntax error, even if a value before it is wrong.
std::vector<AppShortcut> decodeShortcuts(std::string_view document);

} // namespace hollowfernpike
