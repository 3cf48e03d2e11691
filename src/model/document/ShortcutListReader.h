#pragma once

#include "model/AppShortcut.h"
#include "model/document/DecodingError.h"
#include "model/document/RecordKeys.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace hollowfernpike {

/// The values that an object of the document has for the keys of a record, indexed by `RecordKey`;
/// absent where the key is missing.
using RecordMembers = std::array<std::optional<JsonValue>, recordKeyNames.size()>;

/// Builds a list of shortcuts from a JSON reader's events: value() for every scalar, open() and
/// close() around the contents of arrays and objects, key() before every member.
class ShortcutListReader {
public:
    void value(JsonType type, std::string_view text);
    void key(std::string_view key);
    void open(JsonType type);
    void close();

    /// The list, after the document's end. Throws the first error of the document.
    std::vector<AppShortcut> take();

private:
    void place(JsonType type, std::string_view text);
    void finishRecord();

    std::vector<AppShortcut> shortcuts_;
    std::optional<DecodingError> error_; ///< once set, the rest is skipped
    RecordMembers members_;
    std::optional<RecordKey> key_; ///< of the value that comes next; absent if unknown
    std::size_t depth_ = 0;        ///< arrays and objects that are open
};

} // namespace hollowfernpike
