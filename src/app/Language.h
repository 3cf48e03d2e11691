#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace hollowfernpike {

/// Posted on the notification centre whenever a language was chosen, even if it is the same one.
inline constexpr std::string_view languageDidChange = "languageDidChange";

/// The language of the interface. Every text exists in both languages and is chosen when it is
/// built; code that builds texts has to rebuild them on `languageDidChange`.
class Language {
public:
    enum Case : unsigned char { japanese, english };

    constexpr Language(Case value) : value_(value) {}

    /// In the order in which they are offered.
    static const std::array<Language, 2> allCases;

    /// Absent for any text but exactly "ja" and "en".
    static constexpr std::optional<Language> fromRawValue(std::string_view rawValue);
    constexpr std::string_view rawValue() const { return value_ == english ? "en" : "ja"; }

    /// The user's choice; Japanese before there is one, whatever the desktop's language. Cheap, so
    /// call it for every text instead of keeping the result. Main thread only.
    static Language current();

    /// Stores the choice and posts `languageDidChange` before returning. Main thread only.
    static void setCurrent(Language language);

    constexpr bool operator==(const Language&) const = default;

private:
    Case value_;
};

inline constexpr std::array<Language, 2> Language::allCases{japanese, english};

constexpr std::optional<Language> Language::fromRawValue(std::string_view rawValue) {
    for (const Language language : allCases) {
        if (language.rawValue() == rawValue) {
            return language;
        }
    }
    return std::nullopt;
}

/// The one of two texts that is in the current language.
template <class Text>
// NOLINTNEXTLINE(performance-unnecessary-value-param): string literals are passed as pointers
Text localized(Text japanese, Text english) {
    return Language::current() == Language::english ? english : japanese;
}

} // namespace hollowfernpike
