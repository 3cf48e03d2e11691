#include "platform/freedesktop/launching/OwnEnvironment.h"

#include <cstdlib>
#include <map>
#include <string_view>

#include <unistd.h>

namespace hollowfernpike::freedesktop {

namespace {

using Value = std::optional<std::string>;

/// The original values of the variables that we have changed.
std::map<std::string, Value, std::less<>>& usersValues() {
    static std::map<std::string, Value, std::less<>> values;
    return values;
}

} // namespace

void setOwnVariable(const std::string& name, const Value& value) {
    const char* const before = std::getenv(name.c_str());
    usersValues().try_emplace(name, before == nullptr ? Value{} : Value{before});
    if (value) {
        ::setenv(name.c_str(), value->c_str(), 1);
    } else {
        ::unsetenv(name.c_str());
    }
}

std::vector<std::string> usersEnvironment() {
    std::vector<std::string> variables;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        const std::string_view text = *variable;
        if (!usersValues().contains(text.substr(0, text.find('=')))) {
            variables.emplace_back(text);
        }
    }
    for (const auto& [name, value] : usersValues()) {
        if (value) {
            variables.push_back(name + '=' + *value);
        }
    }
    return variables;
}

} // namespace hollowfernpike::freedesktop
