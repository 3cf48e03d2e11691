#include "desktop/wlroots/ToplevelPager.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <span>
#include <sstream>
#include <stdexcept>
#include <utility>

#include <wlr-foreign-toplevel-management-unstable-v1-client-protocol.h>

namespace hollowfernpike::test {

namespace {

using Handle = zwlr_foreign_toplevel_handle_v1;

[[noreturn]] void failWithoutWorkspaces() {
    throw std::logic_error("task bars are not told of workspaces");
}

} // namespace

struct ToplevelPager::Toplevel {
    Handle* handle;
    std::string title{};
    std::string applicationId{};
    std::vector<std::uint32_t> states{};
    bool isGone = false;

    bool is(std::uint32_t state) const { return std::ranges::count(states, state) > 0; }
};

/// 0 if there is none.
pid_t ToplevelPager::processOf(const Toplevel& toplevel) const {
    const auto word = ',' + toplevel.applicationId + '\0';
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const auto name = entry.path().filename().string();
        pid_t process = 0;
        std::from_chars(name.data(), name.data() + name.size(), process);
        std::ifstream file(entry.path() / "cmdline");
        std::ostringstream text; // unlike an iterator it throws nothing when the process ends
        text << file.rdbuf();
        const auto line = text.str();
        if (line.starts_with(home_.string()) && line.find(word) != std::string::npos) {
            return process;
        }
    }
    return 0;
}

ToplevelPager::ToplevelPager(const std::string& display, std::filesystem::path home)
    : home_(std::move(home)), connection_(display),
      seat_(connection_.bind<wl_seat>(wl_seat_interface, 1)),
      manager_(connection_.bind<zwlr_foreign_toplevel_manager_v1>(
          zwlr_foreign_toplevel_manager_v1_interface, 3)) {
    static constexpr zwlr_foreign_toplevel_manager_v1_listener listener{
        .toplevel = [](void* self, zwlr_foreign_toplevel_manager_v1*,
                       Handle* handle) { static_cast<ToplevelPager*>(self)->add(handle); },
        .finished = ignoreEvent};
    zwlr_foreign_toplevel_manager_v1_add_listener(manager_, &listener, this);
    connection_.sync();
}

ToplevelPager::~ToplevelPager() {
    for (const auto& toplevel : toplevels_) {
        zwlr_foreign_toplevel_handle_v1_destroy(toplevel->handle);
    }
    zwlr_foreign_toplevel_manager_v1_destroy(manager_);
    wl_seat_destroy(seat_);
}

std::vector<PagerWindow> ToplevelPager::windows() const {
    connection_.sync();
    std::vector<PagerWindow> found;
    for (const auto& toplevel : toplevels_) {
        if (!toplevel->isGone) {
            found.push_back(
                {.process = processOf(*toplevel),
                 .applicationId = toplevel->applicationId,
                 .title = toplevel->title,
                 .workspace = {},
                 .isFocused = toplevel->is(ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_ACTIVATED),
                 .isVisible = !toplevel->is(ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_MINIMIZED),
                 .isFullscreen = toplevel->is(ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_FULLSCREEN)});
        }
    }
    return found;
}

void ToplevelPager::focus(pid_t process) const {
    askOf([&](const auto& each) { return processOf(each) == process; },
          [](const auto& pager, const auto& each) {
              zwlr_foreign_toplevel_handle_v1_activate(each.handle, pager.seat_);
          });
}

void ToplevelPager::makeFullscreen(pid_t process) const {
    askOf([&](const auto& each) { return processOf(each) == process; },
          [](const auto&, const auto& each) {
              zwlr_foreign_toplevel_handle_v1_set_fullscreen(each.handle, nullptr);
          });
}

void ToplevelPager::close(pid_t process) const {
    askOf(
        [&](const auto& each) { return processOf(each) == process; },
        [](const auto&, const auto& each) { zwlr_foreign_toplevel_handle_v1_close(each.handle); });
}

void ToplevelPager::focusTitled(const std::string& title) const {
    askOf([&](const auto& each) { return each.title == title; },
          [](const auto& pager, const auto& each) {
              zwlr_foreign_toplevel_handle_v1_activate(each.handle, pager.seat_);
          });
}

void ToplevelPager::closeTitled(const std::string& title) const {
    askOf(
        [&](const auto& each) { return each.title == title; },
        [](const auto&, const auto& each) { zwlr_foreign_toplevel_handle_v1_close(each.handle); });
}

void ToplevelPager::minimise(pid_t process) const {
    askOf([&](const auto& each) { return processOf(each) == process; },
          [](const auto&, const auto& each) {
              zwlr_foreign_toplevel_handle_v1_set_minimized(each.handle);
          });
}

bool ToplevelPager::isMinimised(pid_t process) const {
    const auto window = windowOf(process);
    return window && !window->isVisible;
}

std::string ToplevelPager::workspace() const {
    failWithoutWorkspaces();
}

std::string ToplevelPager::otherWorkspace() const {
    failWithoutWorkspaces();
}

void ToplevelPager::moveToWorkspace(pid_t /*process*/, const std::string& /*name*/) const {
    failWithoutWorkspaces();
}

void ToplevelPager::goToWorkspace(const std::string& /*name*/) const {
    failWithoutWorkspaces();
}

void ToplevelPager::add(Handle* handle) {
    static constexpr auto self = [](void* data) -> Toplevel& {
        return *static_cast<Toplevel*>(data);
    };
    static constexpr zwlr_foreign_toplevel_handle_v1_listener listener{
        .title = [](void* data, Handle*, const char* title) { self(data).title = title; },
        .app_id = [](void* data, Handle*, const char* name) { self(data).applicationId = name; },
        .output_enter = ignoreEvent,
        .output_leave = ignoreEvent,
        .state =
            [](void* data, Handle*, wl_array* states) {
                const std::span all(static_cast<const std::uint32_t*>(states->data),
                                    states->size / sizeof(std::uint32_t));
                self(data).states.assign(all.begin(), all.end());
            },
        .done = ignoreEvent,
        .closed = [](void* data, Handle*) { self(data).isGone = true; },
        .parent = ignoreEvent};
    auto& toplevel = toplevels_.emplace_back(std::make_unique<Toplevel>(Toplevel{handle}));
    zwlr_foreign_toplevel_handle_v1_add_listener(handle, &listener, toplevel.get());
}

void ToplevelPager::askOf(const Condition& isWanted, Request request) const {
    connection_.sync();
    for (const auto& toplevel : toplevels_) {
        if (!toplevel->isGone && isWanted(*toplevel)) {
            request(*this, *toplevel);
        }
    }
    connection_.sync();
}

} // namespace hollowfernpike::test
