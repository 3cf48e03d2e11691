#pragma once

#include <memory>
#include <string>

#include <gio/gio.h>

namespace hollowfernpike::test {

/// Calls over the accessibility bus of a session.
class AccessibilityBus {
    struct Unref {
        void operator()(GVariant* value) const { g_variant_unref(value); }
        void operator()(GDBusConnection* connection) const { g_object_unref(connection); }
    };

public:
    using Value = std::unique_ptr<GVariant, Unref>;

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
    using Connection = std::unique_ptr<GDBusConnection, Unref>;

    static Connection connectTo(const std::string& address);
    static Value ask(const Connection& connection, const std::string& program,
                     const std::string& object, const char* interface, const char* method,
                     GVariant* arguments);

    Connection connection_;
};

} // namespace hollowfernpike::test
