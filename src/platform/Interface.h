#pragma once

namespace hollowfernpike::platform {

/// Base of what is used through a pointer to its base: destroyed through it, never copied.
class Interface {
public:
    Interface(const Interface&) = delete;
    Interface& operator=(const Interface&) = delete;
    virtual ~Interface() = default;

protected:
    Interface() = default;
};

} // namespace hollowfernpike::platform
