#include "model/document/ShortcutListReader.h"

#include "model/document/DecodingError.h"
#include "model/json/JsonNumbers.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace hollowfernpike {

namespace {

class RecordReader {
public:
    RecordReader(RecordMembers& members, std::size_t element)
        : members_(members), element_(element) {}

    UUID uuid(RecordKey key) {
        const auto& value = require(key, JsonType::string);
        const auto uuid = UUID::parse(value.text);
        if (!uuid) {
            throw DecodingError::notAUUID({element_, key}, value);
        }
        return *uuid;
    }

    template <class Integer>
    Integer integer(RecordKey key) {
        constexpr auto maximum = std::numeric_limits<Integer>::max();
        const auto& value = require(key, JsonType::number);
        const auto result = integerValue(value.text, maximum);
        if (const auto* const fault = std::get_if<IntegerFault>(&result)) {
            throw *fault == IntegerFault::notAnInteger
                ? DecodingError::notAnInteger({element_, key}, value)
                : DecodingError::outOfRange({element_, key}, value, maximum);
        }
        return static_cast<Integer>(std::get<std::uint64_t>(result));
    }

    std::string text(RecordKey key) { return std::move(require(key, JsonType::string).text); }

private:
    JsonValue& require(RecordKey key, JsonType type) {
        auto& value = members_.at(static_cast<std::size_t>(key));
        if (!value) {
            throw DecodingError::missing({element_, key});
        }
        if (value->type != type) {
            throw DecodingError::wrongType({element_, key}, type, *value);
        }
        return *value;
    }

    RecordMembers& members_;
    std::size_t element_;
};

/// Throws `DecodingError` at the first key, in encoding order, that is missing or has a wrong
/// value; `element` counts from 1.
AppShortcut decodeRecord(RecordMembers& members, std::size_t element) {
    RecordReader reader(members, element);
    AppShortcut shortcut;
    shortcut.id = reader.uuid(RecordKey::id);
    shortcut.keyCode = reader.integer<std::uint16_t>(RecordKey::keyCode);
    shortcut.modifierFlags = reader.integer<std::uint64_t>(RecordKey::modifierFlags);
    shortcut.appPath = reader.text(RecordKey::appPath);
    shortcut.appName = reader.text(RecordKey::appName);
    shortcut.appBundleIdentifier = reader.text(RecordKey::appBundleIdentifier);
    return shortcut;
}

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
