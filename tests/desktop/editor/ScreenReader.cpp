#include "desktop/editor/ScreenReader.h"

#include "support/WaitUntil.h"

#include <algorithm>
#include <deque>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace hollowfernpike::test {

namespace {

constexpr auto accessibleInterface = "org.a11y.atspi.Accessible";
constexpr auto actionInterface = "org.a11y.atspi.Action";
constexpr auto componentInterface = "org.a11y.atspi.Component";
constexpr auto editableTextInterface = "org.a11y.atspi.EditableText";
constexpr auto textInterface = "org.a11y.atspi.Text";

// As AtspiStateType numbers them.
constexpr std::uint32_t activeState = 1;
constexpr std::uint32_t enabledState = 8;
constexpr std::uint32_t focusedState = 12;
constexpr std::uint32_t selectedState = 23;
constexpr std::uint32_t showingState = 25;

const Accessible root{"org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root", {}, {}};

std::string described(const Accessible& part) {
    return part.role + " \"" + part.name + '"';
}

} // namespace

ScreenReader::ScreenReader(const std::string& sessionBus) : bus_(sessionBus) {}

Accessible ScreenReader::find(std::string_view role, std::string_view name) {
    return find(root, role, name);
}

Accessible ScreenReader::find(const Accessible& whole, std::string_view role,
                              std::string_view name) {
    const Accessible wanted{{}, {}, std::string(role), std::string(name)};
    std::optional<Accessible> found;
    if (waitUntil([&] { return (found = nearest(whole, wanted)).has_value(); })) {
        return *found;
    }
    std::string all;
    for (const auto& part : partsOf(whole)) {
        all += "\n  " + described(part);
    }
    throw std::runtime_error("no " + described(wanted) + " in:" + all);
}

// Level by level, so that windows are found without a look into others.
std::optional<Accessible> ScreenReader::nearest(const Accessible& whole, const Accessible& wanted) {
    std::deque<Accessible> waiting{whole};
    for (; !waiting.empty(); waiting.pop_front()) {
        for (auto& child : childrenOf(waiting.front())) {
            if (!isReached(child)) {
                continue;
            }
            if (described(child) == described(wanted)) {
                return child;
            }
            waiting.push_back(std::move(child));
        }
    }
    return std::nullopt;
}

std::vector<Accessible> ScreenReader::partsOf(const Accessible& whole) {
    std::vector<Accessible> parts;
    collect(whole, parts);
    return parts;
}

std::vector<Accessible> ScreenReader::windows() {
    std::vector<Accessible> windows;
    for (const auto& program : childrenOf(root)) {
        std::ranges::copy_if(childrenOf(program), std::back_inserter(windows),
                             [this](const Accessible& window) { return isShown(window); });
    }
    return windows;
}

void ScreenReader::collect(const Accessible& whole, std::vector<Accessible>& parts) {
    for (const auto& child : childrenOf(whole)) {
        if (isReached(child)) {
            parts.push_back(child);
            collect(child, parts);
        }
    }
}

// Programs have no place on the screen.
bool ScreenReader::isReached(const Accessible& part) {
    return part.role == "application" || isShown(part);
}

bool ScreenReader::isShown(const Accessible& part) {
    return hasState(part, showingState);
}

bool ScreenReader::isEnabled(const Accessible& part) {
    return hasState(part, enabledState);
}

bool ScreenReader::isActive(const Accessible& window) {
    return hasState(window, activeState);
}

bool ScreenReader::isFocused(const Accessible& part) {
    return hasState(part, focusedState);
}

bool ScreenReader::isSelected(const Accessible& part) {
    return hasState(part, selectedState);
}

bool ScreenReader::hasSelected(const Accessible& whole, std::string_view role,
                               std::string_view name) {
    return std::ranges::any_of(partsOf(whole), [&](const Accessible& part) {
        return part.role == role && part.name == name && isSelected(part);
    });
}

std::string ScreenReader::description(const Accessible& part) {
    const auto value = bus_.property(part.program, part.path, accessibleInterface, "Description");
    return value ? g_variant_get_string(value.get(), nullptr) : std::string{};
}

Place ScreenReader::placeOf(const Accessible& part) {
    constexpr guint32 onScreen = 0;
    const auto answer =
        call(part, componentInterface, "GetExtents", g_variant_new("(u)", onScreen));
    Place place;
    if (answer) {
        g_variant_get(answer.get(), "((iiii))", &place.x, &place.y, &place.width, &place.height);
    }
    return place;
}

ScreenReader::Point ScreenReader::middleOf(const Accessible& part) {
    const auto place = placeOf(part);
    return {.x = place.x + place.width / 2, .y = place.y + place.height / 2};
}

std::vector<std::string> ScreenReader::actions(const Accessible& part) {
    std::vector<std::string> names;
    const auto answer = call(part, actionInterface, "GetActions");
    if (!answer) {
        return names;
    }
    const auto list = AccessibilityBus::first(answer);
    for (gsize index = 0; index < g_variant_n_children(list.get()); ++index) {
        const char* name = nullptr;
        g_variant_get_child(list.get(), index, "(&sss)", &name, nullptr, nullptr);
        names.emplace_back(name);
    }
    return names;
}

void ScreenReader::act(const Accessible& part, std::string_view action) {
    const auto names = actions(part);
    const auto found = std::ranges::find(names, action);
    const auto index = static_cast<gint32>(found - names.begin());
    if (found == names.end() ||
        !call(part, actionInterface, "DoAction", g_variant_new("(i)", index))) {
        throw std::runtime_error(described(part) + " cannot " + std::string(action));
    }
}

void ScreenReader::write(const Accessible& field, const std::string& text) {
    if (!call(field, editableTextInterface, "SetTextContents",
              g_variant_new("(s)", text.c_str()))) {
        throw std::runtime_error(described(field) + " takes no text");
    }
}

std::string ScreenReader::text(const Accessible& field) {
    const auto answer = call(field, textInterface, "GetText", g_variant_new("(ii)", 0, -1));
    return answer ? AccessibilityBus::firstText(answer) : std::string{};
}

AccessibilityBus::Value ScreenReader::call(const Accessible& part, const char* interface,
                                           const char* method, GVariant* arguments) {
    return bus_.call(part.program, part.path, interface, method, arguments);
}

bool ScreenReader::hasState(const Accessible& part, std::uint32_t state) {
    const auto answer = call(part, accessibleInterface, "GetState");
    if (!answer) {
        return false;
    }
    guint32 word = 0;
    g_variant_get_child(AccessibilityBus::first(answer).get(), state / 32, "u", &word);
    return (word >> state % 32 & 1U) != 0;
}

std::vector<Accessible> ScreenReader::childrenOf(const Accessible& whole) {
    std::vector<Accessible> children;
    const auto answer = call(whole, accessibleInterface, "GetChildren");
    if (!answer) {
        return children;
    }
    const auto list = AccessibilityBus::first(answer);
    for (gsize index = 0; index < g_variant_n_children(list.get()); ++index) {
        const char* program = nullptr;
        const char* path = nullptr;
        g_variant_get_child(list.get(), index, "(&s&o)", &program, &path);
        const auto name = bus_.property(program, path, accessibleInterface, "Name");
        const auto role = bus_.call(program, path, accessibleInterface, "GetRoleName");
        if (name && role) {
            children.push_back({program, path, AccessibilityBus::firstText(role),
                                g_variant_get_string(name.get(), nullptr)});
        }
    }
    return children;
}

} // namespace hollowfernpike::test
