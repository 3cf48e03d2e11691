#pragma once

#include "platform/Interface.h"

#include <any>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace hollowfernpike::platform {

/// A value of the user's settings: text, number, truth value, date, data, list or dictionary. Only
/// the store that gave it knows its type; handed back, it is written as it was. Empty for none.
using PropertyValue = std::any;

/// The user's settings under keys, kept from run to run. Writes report no failure: what cannot be
/// saved to disk lasts until the process ends. Main thread only.
class UserDefaults : public Interface {
public:
    /// The text under `key`; absent if there is no value or it is not a text. Cheap.
    virtual std::optional<std::string> stringForKey(std::string_view key) = 0;

    /// The value under `key` in the application's own domain, else in those that stand in for it,
    /// such as the settings for all users of the machine.
    virtual PropertyValue objectForKey(std::string_view key) = 0;

    /// Writes into the application's own domain.
    virtual void setObject(const PropertyValue& value, std::string_view key) = 0;
    virtual void setString(std::string_view value, std::string_view key) = 0;

    /// All that the user's domain of this name holds and nothing else; absent if there is none.
    virtual std::optional<std::map<std::string, PropertyValue>>
    persistentDomainForName(std::string_view name) = 0;
};

} // namespace hollowfernpike::platform
