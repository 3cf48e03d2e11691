#pragma once

#include "model/AppShortcut.h"

#include <string_view>
#include <vector>

namespace hollowfernpike {

/// Reads a JSON document (RFC 8259, UTF-8, a byte-order mark allowed) as a list of shortcuts, in
/// the document's order. Of a key that occurs twice in an object the last counts; keys that a
/// record does not have are ignored. The nesting of a document and the length of its numbers are
/// bounded by memory alone, its size by 4 GiB. Throws `DecodingError`; where the document is not
/// even JSON, that is what it says, whatever else is wrong.
std::vector<AppShortcut> decodeShortcuts(std::string_view document);

} // namespace hollowfernpike
