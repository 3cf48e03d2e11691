#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace hollowfernpike::test {

/// The keys of a keyboard, by their names in the keyboard map ("AC01", "LCTL").
class Keys {
public:
    Keys() = default;
    Keys(const Keys&) = delete;
    Keys& operator=(const Keys&) = delete;
    virtual ~Keys() = default;

    /// Both throw std::invalid_argument if the map has no key of that name.
    virtual void press(std::string_view keyName) = 0;
    virtual void release(std::string_view keyName) = 0;

    /// Presses the keys in this order.
    void hold(const std::vector<std::string>& keyNames) {
        for (const auto& name : keyNames) {
            press(name);
        }
    }

    /// Lets them go in the opposite order.
    void letGo(const std::vector<std::string>& keyNames) {
        for (auto name = keyNames.rbegin(); name != keyNames.rend(); ++name) {
            release(*name);
        }
        sync(); // more than a connection takes at once would break it
    }

    void strike(const std::vector<std::string>& keyNames) {
        hold(keyNames);
        letGo(keyNames);
    }

    /// Returns when all that was pressed has arrived. What is made of that may reach windows later.
    virtual void sync() const = 0;
};

} // namespace hollowfernpike::test
