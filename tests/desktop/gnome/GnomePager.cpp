#include "desktop/gnome/GnomePager.h"

#include <nlohmann/json.hpp>

namespace hollowfernpike::test {

namespace {

constexpr const char* allWindows = "const windows = global.display.sort_windows_by_stacking("
                                   "  global.get_window_actors().map(actor => actor.meta_window)"
                                   "    .filter(window => !window.is_override_redirect()));";

} // namespace

std::vector<PagerWindow> GnomePager::windows() const {
    const auto described = desktop_.evaluate(
        std::string{allWindows} +
        "windows.map(window => ({process: window.get_pid(), identifier: window.get_wm_class(),"
        "  title: window.title, workspace: window.get_workspace()?.index() ?? -1,"
        "  hasFocus: window.has_focus(), isVisible: window.showing_on_its_workspace() &&"
        "    window.located_on_workspace(global.workspace_manager.get_active_workspace()),"
        "  isFullscreen: window.is_fullscreen()}))");
    std::vector<PagerWindow> result;
    for (const auto& window : described) {
        const auto text = [&](const char* key) {
            return window.at(key).is_string() ? window.at(key).get<std::string>() : std::string{};
        };
        result.push_back({.process = window.at("process").get<pid_t>(),
                          .applicationId = text("identifier"),
                          .title = text("title"),
                          .workspace = std::to_string(window.at("workspace").get<int>()),
                          .isFocused = window.at("hasFocus").get<bool>(),
                          .isVisible = window.at("isVisible").get<bool>(),
                          .isFullscreen = window.at("isFullscreen").get<bool>()});
    }
    return result;
}

std::string GnomePager::workspace() const {
    return desktop_.evaluate("global.workspace_manager.get_active_workspace_index()").dump();
}

void GnomePager::goToWorkspace(const std::string& name) const {
    desktop_.evaluate("global.workspace_manager.get_workspace_by_index(" + name +
                      ").activate(global.display.get_current_time_roundtrip()); 0");
}

void GnomePager::tellWindows(pid_t process, const std::string& request) const {
    tell("window.get_pid() === " + std::to_string(process), request);
}

void GnomePager::tellTitled(const std::string& title, const std::string& request) const {
    tell("window.title === " + nlohmann::json(title).dump(), request);
}

void GnomePager::tell(const std::string& condition, const std::string& request) const {
    desktop_.evaluate(std::string{allWindows} + "for (const window of windows) if (" + condition +
                      ") " + request + "; 0");
}

} // namespace hollowfernpike::test
