#pragma once

#include "model/AppShortcut.h"
#include "model/RecordKeys.h"
#include "model/json/JsonValue.h"

#include <array>
#include <cstddef>
#include <optional>

namespace hollowfernpike {

/// What an object of the document holds under the keys of a record, by `RecordKey`; absent where
/// the key is missing.
using RecordMembers = std::array<std::optional<JsonValue>, recordKeyNames.size()>;

/// Makes a record of its members, whose texts it takes. Throws `DecodingError` at the first key, in
/// encoding order, that is missing or holds what does not fit; `element` counts from 1.
AppShortcut decodeRecord(RecordMembers& members, std::size_t element);

} // namespace hollowfernpike
