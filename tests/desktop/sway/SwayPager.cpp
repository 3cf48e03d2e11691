#include "desktop/sway/SwayPager.h"

#include <algorithm>

#include <nlohmann/json.hpp>

namespace hollowfernpike::test {

namespace {

using nlohmann::json;

/// Null where sway says nothing.
std::string textOf(const json& node, const char* key) {
    const auto value = node.find(key);
    return value != node.end() && value->is_string() ? value->get<std::string>() : std::string{};
}

PagerWindow describe(const json& node, const std::string& workspace) {
    return {.process = node.at("pid").get<pid_t>(),
            .applicationId = textOf(node, "app_id"),
            .title = textOf(node, "name"),
            .workspace = workspace,
            .isFocused = node.at("focused").get<bool>(),
            .isVisible = node.at("visible").get<bool>(),
            .isFullscreen = node.at("fullscreen_mode").get<int>() != 0};
}

void collect(const json& node, const std::string& workspace, std::vector<PagerWindow>& into) {
    const auto place = textOf(node, "type") == "workspace" ? textOf(node, "name") : workspace;
    if (node.contains("pid")) {
        into.push_back(describe(node, place));
    }
    for (const char* children : {"nodes", "floating_nodes"}) {
        for (const auto& child : node.at(children)) {
            collect(child, place, into);
        }
    }
}

} // namespace

std::vector<PagerWindow> SwayPager::windows() const {
    std::vector<PagerWindow> found;
    collect(ipc_.tree(), {}, found);
    return found;
}

std::string SwayPager::workspace() const {
    const auto all = ipc_.workspaces();
    const auto found = std::ranges::find_if(
        all, [](const json& workspace) { return workspace.at("focused").get<bool>(); });
    return found == all.end() ? std::string{} : textOf(*found, "name");
}

void SwayPager::tellWindows(pid_t process, const std::string& command) const {
    run("[pid=" + std::to_string(process) + "] " + command);
}

void SwayPager::tellTitled(const std::string& title, const std::string& command) const {
    run("[title=\"" + title + "\"] " + command);
}

} // namespace hollowfernpike::test
