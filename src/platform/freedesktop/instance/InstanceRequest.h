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
    std::string parameter = {};    ///< of the action; may be empty

    bool operator==(const InstanceRequest&) const = default;
};

/// Called with each request, on the main thread. It may destroy the object that calls it.
using InstanceRequestHandler = std::function<void(const InstanceRequest&)>;

/// Whether a request can be carried out.
using InstanceRequestJudge = std::function<bool(const InstanceRequest&)>;

/// The most bytes of one text in a request, and of a whole encoded request.
constexpr std::size_t longestRequestText = 1024;
constexpr std::size_t longestRequest = 4 * (longestRequestText + 1);

/// The request as it is sent: lines, the first of which names the format. A start-up identifier
/// that is too long or not a single line is left out. Throws std::invalid_argument if the action is
/// empty, or if the action or its parameter is too long or not a single line.
std::string encoded(const InstanceRequest& request);

/// The reverse of encoded(); absent for a text that encoded() does not make.
std::optional<InstanceRequest> decoded(std::string_view text);

} // namespace hollowfernpike::freedesktop
