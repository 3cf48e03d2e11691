#pragma once

#include "support/BusConnection.h"

#include <memory>
#include <string>

namespace hollowfernpike::test {

/// Calls over the accessibility bus of a session.
class AccessibilityBus {
public:
    using Value = std::unique_ptr<GVariant, freedesktop::Releaser<&g_variant_unref>>;

    /// Starts the bus and says that somebody listens, as a screen reader does at its start. Throws
    /// std::runtime_error if there is no such bus.
    explicit AccessibilityBus(const std::string& sessionBus);

    /// What an object of a program answers; null if it does not, since parts of windows come and
    /// go. Takes over floating arguments.
    Value call(const std::string& program, const std::string& object, const char* interface,
               const char* method, GVariant* arguments = nullptr);

    /// Likewise for a property.
    Value property(const std::string& program, const std::string& object, const char* interface,
                   const char* name);

    /// The first value of an answer.
    static Value first(const Value& answer);
    static std::string firstText(const Value& answer);

private:
    static Value ask(const BusConnection& connection, const std::string& program,
                     const std::string& object, const char* interface, const char* method,
                     GVariant* arguments);

    BusConnection connection_;
};

} // namespace hollowfernpike::test
