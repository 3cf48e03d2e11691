#include "desktop/editor/ScreenReader.h"

#include "support/WaitUntil.h"

#include <algorithm>
#include <stdexcept>

namespace hollowfernpike::test {

namespace {

constexpr auto patience = 20s;
constexpr int answerTimeout = 20'000; // ms

constexpr auto accessibleInterface = "org.a11y.atspi.Accessible";
constexpr auto actionInterface = "org.a11y.atspi.Action";
constexpr auto componentInterface = "org.a11y.atspi.Component";
constexpr auto editableTextInterface = "org.a11y.atspi.EditableText";
constexpr auto textInterface = "org.a11y.atspi.Text";
constexpr auto propertiesInterface = "org.freedesktop.DBus.Properties";

// As AtspiStateType numbers them.
constexpr std::uint32_t enabled = 8;
constexpr std::uint32_t focused = 12;
constexpr std::uint32_t selected = 23;
constexpr std::uint32_t showing = 25;

const Accessible desktop{"org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root", {}, {}};

using Answer = ScreenReader::Answer;
using Bus = ScreenReader::Bus;

Bus connectTo(const std::string& address) {
    constexpr auto flags =
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    Bus connection(
        g_dbus_connection_new_for_address_sync(address.c_str(), flags, nullptr, nullptr, nullptr));
    if (!connection) {
        throw std::runtime_error("no bus at " + address);
    }
    return connection;
}

/// The answer, or null if there is none: parts of windows come and go.
Answer ask(GDBusConnection* bus, const std::string& program, const std::string& object,
           const char* interface, const char* method, GVariant* arguments) {
    return Answer(g_dbus_connection_call_sync(bus, program.c_str(), object.c_str(), interface,
                                              method, arguments, nullptr, G_DBUS_CALL_FLAGS_NONE,
                                              answerTimeout, nullptr, nullptr));
}

std::string textIn(GVariant* value) {
    return g_variant_get_string(value, nullptr);
}

std::string addressOfAccessibility(GDBusConnection* session) {
    const auto answer =
        ask(session, "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", nullptr);
    if (!answer) {
        throw std::runtime_error("no accessibility bus");
    }
    const Answer address(g_variant_get_child_value(answer.get(), 0));
    return textIn(address.get());
}

void announceListener(GDBusConnection* session) {
    for (const char* name : {"IsEnabled", "ScreenReaderEnabled"}) {
        ask(session, "org.a11y.Bus", "/org/a11y/bus", propertiesInterface, "Set",
            g_variant_new("(ssv)", "org.a11y.Status", name, g_variant_new_boolean(TRUE)));
    }
}

} // namespace

ScreenReader::ScreenReader(const std::string& sessionBus) {
    const auto session = connectTo(sessionBus);
    bus_ = connectTo(addressOfAccessibility(session.get()));
    announceListener(session.get());
}

Accessible ScreenReader::find(std::string_view role, std::string_view name) {
    return find(desktop, role, name);
}

Accessible ScreenReader::find(const Accessible& whole, std::string_view role,
                              std::string_view name) {
    std::vector<Accessible> parts;
    std::vector<Accessible>::const_iterator found;
    const auto isThere = [&] {
        parts = partsOf(whole);
        found = std::ranges::find_if(
            parts, [&](const Accessible& part) { return part.role == role && part.name == name; });
        return found != parts.end();
    };
    if (waitUntil(isThere, patience)) {
        return *found;
    }
    std::string all;
    for (const auto& part : parts) {
        all += "\n  " + part.role + " \"" + part.name + '"';
    }
    throw std::runtime_error("no " + std::string(role) + " \"" + std::string(name) +
                             "\" in:" + all);
}

std::vector<Accessible> ScreenReader::partsOf(const Accessible& whole) {
    std::vector<Accessible> parts;
    collect(whole, parts);
    return parts;
}

void ScreenReader::collect(const Accessible& whole, std::vector<Accessible>& parts) {
    for (const auto& child : childrenOf(whole)) {
        const bool isProgram = child.role == "application";
        if (isProgram || isShown(child)) {
            parts.push_back(child);
            collect(child, parts);
        }
    }
}

bool ScreenReader::isShown(const Accessible& part) {
    return hasState(part, showing);
}

bool ScreenReader::isEnabled(const Accessible& part) {
    return hasState(part, enabled);
}

bool ScreenReader::isFocused(const Accessible& part) {
    return hasState(part, focused);
}

bool ScreenReader::isSelected(const Accessible& part) {
    return hasState(part, selected);
}

std::string ScreenReader::description(const Accessible& part) {
    const auto value = property(part, accessibleInterface, "Description");
    return value ? textIn(value.get()) : std::string{};
}

ScreenReader::Point ScreenReader::middleOf(const Accessible& part) {
    constexpr guint32 onScreen = 0;
    const auto answer =
        call(part, componentInterface, "GetExtents", g_variant_new("(u)", onScreen));
    gint32 x = 0;
    gint32 y = 0;
    gint32 width = 0;
    gint32 height = 0;
    if (answer) {
        g_variant_get(answer.get(), "((iiii))", &x, &y, &width, &height);
    }
    return {.x = x + width / 2, .y = y + height / 2};
}

std::vector<std::string> ScreenReader::actions(const Accessible& part) {
    std::vector<std::string> names;
    const auto answer = call(part, actionInterface, "GetActions");
    if (!answer) {
        return names;
    }
    const Answer list(g_variant_get_child_value(answer.get(), 0));
    for (gsize index = 0; index < g_variant_n_children(list.get()); ++index) {
        const Answer action(g_variant_get_child_value(list.get(), index));
        const Answer name(g_variant_get_child_value(action.get(), 0));
        names.push_back(textIn(name.get()));
    }
    return names;
}

void ScreenReader::act(const Accessible& part, std::string_view action) {
    const auto names = actions(part);
    const auto found = std::ranges::find(names, action);
    const auto index = static_cast<gint32>(found - names.begin());
    if (found == names.end() ||
        !call(part, actionInterface, "DoAction", g_variant_new("(i)", index))) {
        throw std::runtime_error(part.role + " \"" + part.name + "\" cannot " +
                                 std::string(action));
    }
}

void ScreenReader::write(const Accessible& field, const std::string& text) {
    if (!call(field, editableTextInterface, "SetTextContents",
              g_variant_new("(s)", text.c_str()))) {
        throw std::runtime_error(field.role + " \"" + field.name + "\" takes no text");
    }
}

std::string ScreenReader::text(const Accessible& field) {
    const auto answer = call(field, textInterface, "GetText", g_variant_new("(ii)", 0, -1));
    if (!answer) {
        return {};
    }
    const Answer text(g_variant_get_child_value(answer.get(), 0));
    return textIn(text.get());
}

Answer ScreenReader::call(const Accessible& part, const char* interface, const char* method,
                          GVariant* arguments) {
    return ask(bus_.get(), part.program, part.path, interface, method, arguments);
}

Answer ScreenReader::property(const Accessible& part, const char* interface, const char* name) {
    const auto answer =
        call(part, propertiesInterface, "Get", g_variant_new("(ss)", interface, name));
    if (!answer) {
        return nullptr;
    }
    const Answer boxed(g_variant_get_child_value(answer.get(), 0));
    return Answer(g_variant_get_variant(boxed.get()));
}

bool ScreenReader::hasState(const Accessible& part, std::uint32_t state) {
    const auto answer = call(part, accessibleInterface, "GetState");
    if (!answer) {
        return false;
    }
    guint32 word = 0;
    const Answer words(g_variant_get_child_value(answer.get(), 0));
    g_variant_get_child(words.get(), state / 32, "u", &word);
    return (word >> state % 32 & 1U) != 0;
}

std::vector<Accessible> ScreenReader::childrenOf(const Accessible& whole) {
    std::vector<Accessible> children;
    const auto answer = call(whole, accessibleInterface, "GetChildren");
    if (!answer) {
        return children;
    }
    const Answer list(g_variant_get_child_value(answer.get(), 0));
    for (gsize index = 0; index < g_variant_n_children(list.get()); ++index) {
        const char* program = nullptr;
        const char* path = nullptr;
        g_variant_get_child(list.get(), index, "(&s&o)", &program, &path);
        Accessible child{program, path, {}, {}};
        const auto role = call(child, accessibleInterface, "GetRoleName");
        const auto name = property(child, accessibleInterface, "Name");
        if (role && name) {
            const Answer text(g_variant_get_child_value(role.get(), 0));
            child.role = textIn(text.get());
            child.name = textIn(name.get());
            children.push_back(child);
        }
    }
    return children;
}

} // namespace hollowfernpike::test
