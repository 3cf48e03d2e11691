#include "app/Language.h"

#include "platform/NotificationCenter.h"
#include "platform/Services.h"
#include "platform/UserDefaults.h"

namespace hollowfernpike {

namespace {

constexpr std::string_view settingsKey = "AppLanguage";

} // namespace

Language Language::current() {
    const auto stored = platform::services().userDefaults.stringForKey(settingsKey);
    return fromRawValue(stored.value_or("")).value_or(japanese);
}

void Language::setCurrent(Language language) {
    const auto& services = platform::services();
    services.userDefaults.setString(language.rawValue(), settingsKey);
    services.notificationCenter.post(languageDidChange);
}

} // namespace hollowfernpike
