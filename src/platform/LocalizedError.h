#pragma once

#include <exception>
#include <string>
#include <utility>

namespace hollowfernpike::platform {

/// An error whose description people read: in both languages of the interface, chosen by whoever
/// shows it. Diagnostics take the Japanese one.
class LocalizedError : public std::exception {
public:
    LocalizedError(std::string japanese, std::string english)
        : japanese_(std::move(japanese)), english_(std::move(english)) {}

    const std::string& japanese() const noexcept { return japanese_; }
    const std::string& english() const noexcept { return english_; }
    const char* what() const noexcept override { return english_.c_str(); }

private:
    std::string japanese_;
    std::string english_;
};

} // namespace hollowfernpike::platform
