#include "desktop/editor/AccessibilityBus.h"

#include <stdexcept>

namespace hollowfernpike::test {

namespace {

constexpr int answerTimeout = 20'000; // ms

constexpr auto propertiesInterface = "org.freedesktop.DBus.Properties";
constexpr auto launcher = "org.a11y.Bus";
constexpr auto launcherPath = "/org/a11y/bus";

} // namespace

AccessibilityBus::AccessibilityBus(const std::string& sessionBus) {
    const auto session = connectToBus(sessionBus);
    const auto address = ask(session, launcher, launcherPath, launcher, "GetAddress", nullptr);
    if (!address) {
        throw std::runtime_error("no accessibility bus");
    }
    connection_ = connectToBus(firstText(address));
    for (const char* name : {"IsEnabled", "ScreenReaderEnabled"}) {
        ask(session, launcher, launcherPath, propertiesInterface, "Set",
            g_variant_new("(ssv)", "org.a11y.Status", name, g_variant_new_boolean(TRUE)));
    }
}

AccessibilityBus::Value AccessibilityBus::call(const std::string& program,
                                               const std::string& object, const char* interface,
                                               const char* method, GVariant* arguments) {
    return ask(connection_, program, object, interface, method, arguments);
}

AccessibilityBus::Value AccessibilityBus::property(const std::string& program,
                                                   const std::string& object, const char* interface,
                                                   const char* name) {
    const auto answer =
        call(program, object, propertiesInterface, "Get", g_variant_new("(ss)", interface, name));
    return answer ? Value(g_variant_get_variant(first(answer).get())) : nullptr;
}

AccessibilityBus::Value AccessibilityBus::first(const Value& answer) {
    return Value(g_variant_get_child_value(answer.get(), 0));
}

std::string AccessibilityBus::firstText(const Value& answer) {
    return g_variant_get_string(first(answer).get(), nullptr);
}

AccessibilityBus::Value AccessibilityBus::ask(const BusConnection& connection,
                                              const std::string& program, const std::string& object,
                                              const char* interface, const char* method,
                                              GVariant* arguments) {
    return Value(g_dbus_connection_call_sync(
        connection.get(), program.c_str(), object.c_str(), interface, method, arguments, nullptr,
        G_DBUS_CALL_FLAGS_NONE, answerTimeout, nullptr, nullptr));
}

} // namespace hollowfernpike::test
