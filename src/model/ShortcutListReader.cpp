#include "model/ShortcutListReader.h"

#include <algorithm>
#include <utility>

namespace hollowfernpike {

namespace {

constexpr std::size_t topLevel = 0;
constexpr std::size_t inList = 1;
constexpr std::size_t inRecord = 2;

std::optional<RecordKey> recordKey(std::string_view key) {
    const auto* const found = std::ranges::find(recordKeyNames, key);
    if (found == recordKeyNames.end()) {
        return std::nullopt;
    }
    return static_cast<RecordKey>(found - recordKeyNames.begin());
}

} // namespace

void ShortcutListReader::value(JsonType type, std::string_view text) {
    if (!error_) {
        place(type, text);
    }
}

void ShortcutListReader::key(std::string_view key) {
    if (!error_ && depth_ == inRecord) {
        key_ = recordKey(key);
    }
}

void ShortcutListReader::open(JsonType type) {
    value(type, {});
    ++depth_;
}

void ShortcutListReader::close() {
    if (!error_ && depth_ == inRecord) {
        finishRecord();
    }
    --depth_;
}

std::vector<AppShortcut> ShortcutListReader::take() {
    if (error_) {
        throw DecodingError{*error_};
    }
    return std::move(shortcuts_);
}

void ShortcutListReader::place(JsonType type, std::string_view text) {
    if (depth_ == topLevel && type != JsonType::array) {
        error_ = DecodingError::notAList({type, std::string{text}});
    } else if (depth_ == inList && type != JsonType::object) {
        error_ = DecodingError::notARecord(shortcuts_.size() + 1, {type, std::string{text}});
    } else if (depth_ == inRecord && key_) {
        members_.at(static_cast<std::size_t>(*key_)) = JsonValue{type, std::string{text}};
    }
}

void ShortcutListReader::finishRecord() {
    try {
        shortcuts_.push_back(decodeRecord(members_, shortcuts_.size() + 1));
    } catch (const DecodingError& error) {
        error_ = error;
    }
    members_ = {};
}

} // namespace hollowfernpike
