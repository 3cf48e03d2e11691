#include "model/document/Documents.h"

#include "model/document/DecodingError.h"
#include "model/document/ShortcutDecoder.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace hollowfernpike::test {

const Members& validMembers() {
    static const Members members{
        {"id", R"("E621E1F8-C36C-495A-93FC-0C247A3E6E5F")"},
        {"keyCode", "36"},
        {"modifierFlags", "1179648"},
        {"appPath", R"("\/Applications\/Name.app")"},
        {"appName", R"("Name")"},
        {"appBundleIdentifier", R"("org.example.Name")"},
    };
    return members;
}

std::string record(const Members& members) {
    std::string text;
    for (const auto& [key, value] : members) {
        text.append(text.empty() ? "{\"" : ",\"").append(key).append("\":").append(value);
    }
    return text + '}';
}

std::string recordWith(const std::string& key, const std::string& value) {
    auto members = validMembers();
    members[key] = value;
    return record(members);
}

std::string recordWithout(const std::string& key) {
    auto members = validMembers();
    members.erase(key);
    return record(members);
}

std::string list(const std::string& elements) {
    return '[' + elements + ']';
}

AppShortcut decodeOne(const std::string& element) {
    const auto shortcuts = decodeShortcuts(list(element));
    EXPECT_EQ(shortcuts.size(), 1U);
    return shortcuts.at(0);
}

std::string refusal(const std::string& document) {
    try {
        decodeShortcuts(document);
        return "accepted";
    } catch (const DecodingError& error) {
        EXPECT_EQ(error.japanese().find('\n'), std::string::npos);
        EXPECT_EQ(error.english().find('\n'), std::string::npos);
        return error.english();
    }
}

std::string refusalOfSecond(const std::string& element) {
    const auto text = refusal(list(record(validMembers()) + ',' + element));
    const std::string start = "Element 2 of the list (counted from 1)";
    EXPECT_EQ(text.substr(0, start.size()), start);
    return text.substr(std::min(start.size(), text.size()));
}

} // namespace hollowfernpike::test
