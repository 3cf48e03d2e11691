#pragma once

#include "model/AppShortcut.h"
#include "model/DecodingError.h"
#include "model/RecordKeys.h"
#include "model/json/JsonValue.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace hollowfernpike {

/// What an object of the document holds under the keys of a record, by `RecordKey`; absent where
/// the key is missing.
using RecordMembers = std::array<std::optional<JsonValue>, recordKeyNames.size()>;

/// Makes a list of shortcuts out of the events of a JSON reader: a value for every scalar, open and
/// close around what arrays and objects hold, a key before every member.
class ShortcutListReader {
public:
    void value(JsonType type, std::string_view text);
    void key(std::string_view key);
    void open(JsonType type);
    void close();

    /// What was read, once the document has ended. Throws the first error of the document.
    std::vector<AppShortcut> take();

private:
    void place(JsonType type, std::string_view text);
    void finishRecord();

    std::vector<AppShortcut> shortcuts_;
    std::optional<DecodingError> error_; ///< once set, the rest is skipped
    RecordMembers members_;
    std::optional<RecordKey> key_; ///< whose value comes next, if it is one of a record's
    std::size_t depth_ = 0;        ///< arrays and objects that are open
};

} // namespace hollowfernpike
