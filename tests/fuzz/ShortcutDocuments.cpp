// The input is a document that somebody imports, or that lies in place of our file.

#include "fuzz/Require.h"
#include "fuzz/Target.h"
#include "model/AppShortcut.h"
#include "model/document/ShortcutDecoder.h"
#include "model/document/ShortcutEncoder.h"
#include "model/json/Utf8.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include <nlohmann/json.hpp>

namespace hollowfernpike::test {
namespace {

using List = std::vector<AppShortcut>;

/// What another JSON reader makes of a document.
struct Reference {
    enum class Verdict {
        refused,
        accepted,
        undecided, ///< a number is one that this reader would have to round, or cannot hold
    };

    Verdict verdict = Verdict::refused;
    std::vector<AppShortcut> shortcuts = {}; ///< if accepted
};

using Verdict = Reference::Verdict;

/// Holds floating numbers in the largest type there is, because the reader refuses what does not
/// fit.
using Json = nlohmann::basic_json<std::map, std::vector, std::string, bool, std::int64_t,
                                  std::uint64_t, long double>;

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

/// Reads a list of shortcuts without any code of ours but the UUID's.
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

bool isSame(const AppShortcut& left, const AppShortcut& right) {
    const auto fields = [](const AppShortcut& shortcut) {
        return std::tie(shortcut.id, shortcut.keyCode, shortcut.modifierFlags, shortcut.appPath,
                        shortcut.appName, shortcut.appBundleIdentifier);
    };
    return fields(left) == fields(right);
}

bool isSame(const List& left, const List& right) {
    return std::ranges::equal(left, right, [](const AppShortcut& one, const AppShortcut& other) {
        return isSame(one, other);
    });
}

void requireReadable(std::string_view message) {
    require(!message.empty(), "an error says something");
    require(firstInvalidUtf8(message) == std::string_view::npos, "an error's text is UTF-8");
    require(std::ranges::none_of(message, [](char byte) { return byte >= 0 && byte < ' '; }),
            "an error's text is one line");
}

std::optional<List> listIn(std::string_view document) {
    try {
        return decodeShortcuts(document);
    } catch (const platform::LocalizedError& error) {
        requireReadable(error.japanese());
        requireReadable(error.english());
        return std::nullopt;
    }
}

void requireAgreement(const std::optional<List>& list, const Reference& reference) {
    if (reference.verdict == Verdict::undecided) {
        return;
    }
    require(list.has_value() == (reference.verdict == Verdict::accepted),
            "both readers take the document for a list of shortcuts, or neither does");
    require(!list || isSame(*list, reference.shortcuts), "both readers read the same list");
}

void requireItSurvivesWriting(const List& list, DocumentLayout layout) {
    const auto document = encodeShortcuts(list, layout);
    const auto again = listIn(document);
    require(again && isSame(*again, list), "what was written reads the same");
    require(encodeShortcuts(*again, layout) == document, "what was written is written the same");
    const auto reference = readByReference(document);
    require(reference.verdict == Verdict::accepted && isSame(reference.shortcuts, list),
            "what was written reads the same elsewhere");
}

} // namespace
} // namespace hollowfernpike::test

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace hollowfernpike;
    using namespace hollowfernpike::test;
    const std::string_view document{reinterpret_cast<const char*>(data), size};
    const auto list = listIn(document);
    requireAgreement(list, readByReference(document));
    if (list) {
        requireItSurvivesWriting(*list, DocumentLayout::compact);
        requireItSurvivesWriting(*list, DocumentLayout::pretty);
    }
    return 0;
}
