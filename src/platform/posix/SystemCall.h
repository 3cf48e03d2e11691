#pragma once

#include <cerrno>
#include <system_error>

namespace hollowfernpike::posix {

/// Calls again as long as a signal interrupts.
template <class Call>
auto uninterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

/// The result of a system call that did not fail; throws errno as std::system_error if it did.
template <class Result>
Result checked(Result result) {
    if (result < 0) {
        throw std::system_error{errno, std::generic_category()};
    }
    return result;
}

} // namespace hollowfernpike::posix
