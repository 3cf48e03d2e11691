#include "platform/macos/UserDefaults.h"

#include "platform/macos/Ref.h"
#include "platform/macos/Text.h"

namespace hollowfernpike::macos {

namespace {

using Property = Ref<CFTypeRef>;

platform::PropertyValue propertyOf(id object) {
    return object == nil ? platform::PropertyValue()
                         : Property::retained((__bridge CFTypeRef)object);
}

id storedUnder(std::string_view key) {
    return [[NSUserDefaults standardUserDefaults] objectForKey:text(key)];
}

} // namespace

// Not the system's stringForKey:, which makes texts of numbers.
std::optional<std::string> UserDefaults::stringForKey(std::string_view key) {
    @autoreleasepool {
        NSString* stored = textOrNil(storedUnder(key));
        return stored == nil ? std::nullopt : std::optional(utf8(stored));
    }
}

platform::PropertyValue UserDefaults::objectForKey(std::string_view key) {
    @autoreleasepool {
        return propertyOf(storedUnder(key));
    }
}

void UserDefaults::setObject(const platform::PropertyValue& value, std::string_view key) {
    @autoreleasepool {
        if (const auto* const property = std::any_cast<Property>(&value)) {
            [[NSUserDefaults standardUserDefaults] setObject:(__bridge id)property->get()
                                                      forKey:text(key)];
        }
    }
}

void UserDefaults::setString(std::string_view value, std::string_view key) {
    @autoreleasepool {
        [[NSUserDefaults standardUserDefaults] setObject:text(value) forKey:text(key)];
    }
}

std::optional<std::map<std::string, platform::PropertyValue>>
UserDefaults::persistentDomainForName(std::string_view name) {
    @autoreleasepool {
        NSDictionary* domain =
            [[NSUserDefaults standardUserDefaults] persistentDomainForName:text(name)];
        if (domain == nil) {
            return std::nullopt;
        }
        std::map<std::string, platform::PropertyValue> properties;
        for (NSString* key in domain) {
            properties.emplace(utf8(key), propertyOf([domain objectForKey:key]));
        }
        return properties;
    }
}

} // namespace hollowfernpike::macos
