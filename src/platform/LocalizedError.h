#pragma once

#include <exception>
#include <string>
#include <utility>

namespace hollowfernpike::platform {

/// An error whose description people read. It has one in each language of the interface; the code
/// that shows it chooses. Messages on standard output take the Japanese one, debug logs the English
/// one.
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
