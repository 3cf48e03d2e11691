#pragma once

#include "platform/UserDefaults.h"

namespace hollowfernpike::macos {

/// The system's settings of the bundle that is running.
class UserDefaults final : public platform::UserDefaults {
public:
    std::optional<std::string> stringForKey(std::string_view key) override;
    platform::PropertyValue objectForKey(std::string_view key) override;
    void setObject(const platform::PropertyValue& value, std::string_view key) override;
    void setString(std::string_view value, std::string_view key) override;
    std::optional<std::map<std::string, platform::PropertyValue>>
    persistentDomainForName(std::string_view name) override;
};

} // namespace hollowfernpike::macos
