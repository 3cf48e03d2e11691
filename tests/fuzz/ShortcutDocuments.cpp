// The input is a document that somebody imports, or that lies in place of our file.

#include "fuzz/ReferenceReader.h"
#include "fuzz/Require.h"
#include "fuzz/Target.h"
#include "model/document/ShortcutDecoder.h"
#include "model/document/ShortcutEncoder.h"
#include "model/json/Utf8.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace hollowfernpike::test {
namespace {

using List = std::vector<AppShortcut>;
using Verdict = Reference::Verdict;

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
