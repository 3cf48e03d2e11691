#include "fuzz/ReferenceReader.h"

#include <cstdint>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace hollowfernpike::test {

namespace {

/// Holds floating numbers in the largest type there is, because the reader refuses what does not
/// fit.
using Json = nlohmann::basic_json<std::map, std::vector, std::string, bool, std::int64_t,
                                  std::uint64_t, long double>;
using Verdict = Reference::Verdict;

/// Reads one record, as far as every member before was in order.
class RecordReader {
public:
    explicit RecordReader(const Json& object) : object_(object) {
        if (!object.is_object()) {
            verdict_ = Verdict::refused;
        }
    }

    Verdict verdict() const { return verdict_; }

    std::string text(const char* key) {
        const auto* const value = member(key);
        return value != nullptr && require(value->is_string()) ? value->get<std::string>()
                                                               : std::string{};
    }

    UUID uuid(const char* key) {
        const auto id = UUID::parse(text(key));
        return require(id.has_value()) ? *id : UUID{};
    }

    template <class Integer>
    Integer integer(const char* key) {
        const auto* const value = member(key);
        if (value == nullptr || !require(value->is_number())) {
            return 0;
        }
        if (value->is_number_float()) {
            verdict_ = Verdict::undecided;
            return 0;
        }
        const bool isNatural = value->is_number_unsigned() || value->get<std::int64_t>() == 0;
        const bool fits = require(isNatural && value->get<std::uint64_t>() <=
                                                   std::numeric_limits<Integer>::max());
        return fits ? value->get<Integer>() : Integer{0};
    }

private:
    bool require(bool condition) {
        if (!condition && verdict_ == Verdict::accepted) {
            verdict_ = Verdict::refused;
        }
        return condition;
    }

    const Json* member(const char* key) {
        if (verdict_ == Verdict::refused || !require(object_.contains(key))) {
            return nullptr;
        }
        return &object_.at(key);
    }

    const Json& object_;
    Verdict verdict_ = Verdict::accepted;
};

Verdict readRecord(const Json& object, AppShortcut& shortcut) {
    RecordReader reader(object);
    shortcut.id = reader.uuid("id");
    shortcut.keyCode = reader.integer<std::uint16_t>("keyCode");
    shortcut.modifierFlags = reader.integer<std::uint64_t>("modifierFlags");
    shortcut.appPath = reader.text("appPath");
    shortcut.appName = reader.text("appName");
    shortcut.appBundleIdentifier = reader.text("appBundleIdentifier");
    return reader.verdict();
}

} // namespace

Reference readByReference(std::string_view document) {
    // The reader takes a zero byte for the end of its input, but no JSON document has one.
    if (document.find('\0') != std::string_view::npos) {
        return {};
    }
    Json list;
    try {
        list = Json::parse(document);
    } catch (const Json::parse_error&) {
        return {};
    } catch (const Json::out_of_range&) {
        return {.verdict = Verdict::undecided};
    }
    if (!list.is_array()) {
        return {};
    }
    Reference reference{.verdict = Verdict::accepted};
    for (const auto& object : list) {
        const auto verdict = readRecord(object, reference.shortcuts.emplace_back());
        if (verdict != Verdict::accepted) {
            return {.verdict = verdict};
        }
    }
    return reference;
}

} // namespace hollowfernpike::test
