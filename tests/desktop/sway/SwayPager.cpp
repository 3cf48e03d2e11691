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

SwayWindow describe(const json& node, const std::string& workspace) {
    return {.process = node.at("pid").get<pid_t>(),
            .applicationId = textOf(node, "app_id"),
            .title = textOf(node, "name"),
            .workspace = workspace,
            .isFocused = node.at("focused").get<bool>(),
            .isVisible = node.at("visible").get<bool>(),
            .isFullscreen = node.at("fullscreen_mode").get<int>() != 0};
}

void collect(const json& node, const std::string& workspace, std::vector<SwayWindow>& into) {
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

std::vector<SwayWindow> SwayPager::windows() const {
    std::vector<SwayWindow> found;
    collect(ipc_.tree(), {}, found);
    return found;
}

std::optional<SwayWindow> SwayPager::windowOf(pid_t process) const {
    const auto all = windows();
    const auto found = std::ranges::find(all, process, &SwayWindow::process);
    return found == all.end() ? std::nullopt : std::optional{*found};
}

pid_t SwayPager::focusedProcess() const {
    const auto all = windows();
    const auto found = std::ranges::find(all, true, &SwayWindow::isFocused);
    return found == all.end() ? 0 : found->process;
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

} // namespace hollowfernpike::test
