#include "platform/sway/windows/Tree.h"

#include "platform/sway/ipc/Json.h"

#include <algorithm>
#include <limits>

#include <unistd.h>

namespace hollowfernpike::sway {

namespace {

using rapidjson::Value;

/// No text that identifies an application is longer; a client may send any.
constexpr std::size_t longestText = 1024;

std::int64_t numberMember(const Value& value, const char* name) {
    const auto& number = member(value, name);
    return number.IsInt64() ? number.GetInt64() : 0;
}

std::string boundedText(const Value& value, const char* name) {
    return textMember(value, name).substr(0, longestText);
}

std::optional<std::int32_t> processOf(const Value& node) {
    const auto number = numberMember(node, "pid");
    const bool isProcess = number > 0 && number <= std::numeric_limits<std::int32_t>::max();
    return isProcess ? std::optional(static_cast<std::int32_t>(number)) : std::nullopt;
}

// A Wayland client names its desktop entry, an X client its window class.
platform::WindowFacts factsOf(const Value& node) {
    const auto applicationId = boundedText(node, "app_id");
    const auto& properties = member(node, "window_properties");
    return {.process = processOf(node),
            .instanceName =
                applicationId.empty() ? boundedText(properties, "instance") : applicationId,
            .className = applicationId.empty() ? boundedText(properties, "class") : applicationId,
            .gtkApplicationId = {},
            .desktopFile = applicationId,
            .sandboxApplicationId = boundedText(node, "sandbox_app_id")};
}

/// Only windows have this member, be it empty.
bool isWindow(const Value& node) {
    return node.IsObject() && node.HasMember("app_id");
}

bool isOurs(const Value& node) {
    return processOf(node) == ::getpid();
}

std::vector<const Value*> childrenOf(const Value& node) {
    std::vector<const Value*> children;
    for (const char* const kind : {"nodes", "floating_nodes"}) {
        const auto& list = member(node, kind);
        if (list.IsArray()) {
            std::ranges::transform(list.GetArray(), std::back_inserter(children),
                                   [](const Value& child) { return &child; });
        }
    }
    return children;
}

/// The children by their places in the list "focus"; those that are not in it come last.
std::vector<const Value*> lastUsedFirst(const Value& node) {
    auto children = childrenOf(node);
    const auto& focus = member(node, "focus");
    const auto place = [&](const Value* child) -> std::size_t {
        if (!focus.IsArray()) {
            return 0;
        }
        const auto list = focus.GetArray();
        const auto number = numberMember(*child, "id");
        return static_cast<std::size_t>(
            std::find_if(list.begin(), list.end(),
                         [&](const Value& id) { return id.IsInt64() && id.GetInt64() == number; }) -
            list.begin());
    };
    std::ranges::stable_sort(children, {}, place);
    return children;
}

} // namespace

std::optional<std::vector<TreeWindow>> readTree(std::string_view json) {
    const auto tree = parse(json);
    if (!tree.IsObject()) {
        return std::nullopt;
    }
    std::vector<TreeWindow> windows;
    std::vector<const Value*> waiting{&tree};
    while (!waiting.empty()) {
        const auto& node = *waiting.back();
        waiting.pop_back();
        if (isWindow(node)) {
            windows.push_back({.identifier = numberMember(node, "id"),
                               .title = isOurs(node) ? textMember(node, "name") : std::string{},
                               .isVisible = member(node, "visible").IsTrue(),
                               .facts = factsOf(node)});
        }
        const auto children = lastUsedFirst(node);
        waiting.insert(waiting.end(), children.rbegin(), children.rend());
    }
    return windows;
}

} // namespace hollowfernpike::sway
