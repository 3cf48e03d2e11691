#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace hollowfernpike {

/// A universally unique identifier (RFC 4122): 16 bytes in network order.
class UUID {
public:
    using Bytes = std::array<std::uint8_t, 16>;

    /// The nil UUID.
    constexpr UUID() = default;
    constexpr explicit UUID(const Bytes& bytes) : bytes_(bytes) {}

    /// A fresh version 4 UUID from the system's entropy.
    static UUID random();

    /// Reads the canonical form, 8-4-4-4-12 hexadecimal digits in either case and nothing else.
    static std::optional<UUID> parse(std::string_view text);

    /// The canonical form in upper case, 36 characters.
    std::string text() const;

    const Bytes& bytes() const { return bytes_; }

    auto operator<=>(const UUID&) const = default;

private:
    Bytes bytes_{};
};

} // namespace hollowfernpike
