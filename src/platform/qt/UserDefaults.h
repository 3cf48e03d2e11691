#pragma once

#include "platform/UserDefaults.h"

#include <QSettings>

#include <memory>

namespace hollowfernpike::qt {

/// Settings in INI files, one for each domain: "<domain>.conf" in the user's configuration
/// directory. A key that is missing there is looked up in the files of the same name for all users
/// ($XDG_CONFIG_DIRS). Texts, numbers and truth values are all written as text. Keys lie in the
/// group "General". A file that is none, such as a pipe, is passed over; in the place of the user's
/// own one, nothing is kept.
class UserDefaults final : public platform::UserDefaults {
public:
    /// `domain` is our own.
    explicit UserDefaults(std::string_view domain);

    std::optional<std::string> stringForKey(std::string_view key) override;
    platform::PropertyValue objectForKey(std::string_view key) override;
    void setObject(const platform::PropertyValue& value, std::string_view key) override;
    void setString(std::string_view value, std::string_view key) override;
    std::optional<std::map<std::string, platform::PropertyValue>>
    persistentDomainForName(std::string_view name) override;

private:
    std::unique_ptr<QSettings> settings_;
};

} // namespace hollowfernpike::qt
