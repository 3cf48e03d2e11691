#pragma once

#include "platform/UserDefaults.h"

#include <map>
#include <string>

namespace hollowfernpike::test {

/// Settings in memory: our own domain, what stands in for it, and the domains of others.
class FakeUserDefaults final : public platform::UserDefaults {
public:
    using Domain = std::map<std::string, platform::PropertyValue>;

    Domain own;
    Domain fallback;
    std::map<std::string, Domain> others;
    int writes = 0;
    int domainReads = 0;

    std::optional<std::string> stringForKey(std::string_view key) override {
        const auto value = objectForKey(key);
        const auto* text = std::any_cast<std::string>(&value);
        return text == nullptr ? std::nullopt : std::optional(*text);
    }

    platform::PropertyValue objectForKey(std::string_view key) override {
        for (const Domain* domain : {&own, &fallback}) {
            if (const auto found = domain->find(std::string{key}); found != domain->end()) {
                return found->second;
            }
        }
        return {};
    }

    void setObject(const platform::PropertyValue& value, std::string_view key) override {
        own[std::string{key}] = value;
        ++writes;
    }

    void setString(std::string_view value, std::string_view key) override {
        setObject(std::string{value}, key);
    }

    std::optional<Domain> persistentDomainForName(std::string_view name) override {
        ++domainReads;
        const auto found = others.find(std::string{name});
        return found == others.end() ? std::nullopt : std::optional(found->second);
    }
};

} // namespace hollowfernpike::test
