#include "model/RecordDecoder.h"

#include "model/DecodingError.h"
#include "model/json/JsonInteger.h"

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

} // namespace

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

} // namespace hollowfernpike
