#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace hollowfernpike::freedesktop {

/// What a second start wants of the instance that runs already.
struct InstanceRequest {
    std::string action;            ///< a name, never empty
    std::string startupIdentifier; ///< of the second start; may be empty

    bool operator==(const InstanceRequest&) const = default;
};

/// Called with each request, on the main thread. It may destroy who calls.
using InstanceRequestHandler = std::function<void(const InstanceRequest&)>;

/// Bytes of one text of a request, and of a whole one on its way.
constexpr std::size_t longestRequestText = 1024;
constexpr std::size_t longestRequest = 3 * (longestRequestText + 1);

/// The request for its way: lines, of which the first tells the form. A start-up identifier that
/// is too long or not a single line is left out. Throws std::invalid_argument for an action like
/// that, or an empty one.
std::string encoded(const InstanceRequest& request);

/// The other way round; absent for anything that encoded() does not make.
std::optional<InstanceRequest> decoded(std::string_view text);

} // namespace hollowfernpike::freedesktop
