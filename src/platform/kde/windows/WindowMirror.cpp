#include "platform/kde/windows/WindowMirror.h"

#include <algorithm>
#include <limits>
#include <set>
#include <string_view>
#include <utility>

#include <plasma-window-management-client-protocol.h>

namespace hollowfernpike::kde {

namespace {

/// Later ones tell the stacking order only to those who ask each time.
constexpr std::uint32_t managementVersion = 16;

} // namespace

struct WindowMirror::Record {
    WindowMirror& mirror;
    std::string uuid;
    std::int64_t number;
    org_kde_plasma_window* proxy;
    platform::WindowFacts facts{};
    bool isKnown = false; ///< KWin has told all that there is to tell
    bool isActive = false;
    bool isMinimised = false;
    std::set<std::string> desktops{}; ///< none: the window is on all of them
};

WindowMirror::WindowMirror(wayland::Connection& connection)
    : connection_(connection), desktops_(connection),
      management_(connection.bind<org_kde_plasma_window_management>(
          org_kde_plasma_window_management_interface, managementVersion)) {
    static constexpr auto listener = [] {
        org_kde_plasma_window_management_listener events{};
        events.show_desktop_changed = [](void*, org_kde_plasma_window_management*, std::uint32_t) {
        };
        events.window = [](void*, org_kde_plasma_window_management*, std::uint32_t) {};
        events.stacking_order_changed = [](void*, org_kde_plasma_window_management*, wl_array*) {};
        events.stacking_order_uuid_changed = [](void* self, org_kde_plasma_window_management*,
                                                const char* uuids) {
            static_cast<WindowMirror*>(self)->restack(uuids);
        };
        events.window_with_uuid = [](void* self, org_kde_plasma_window_management*, std::uint32_t,
                                     const char* uuid) {
            static_cast<WindowMirror*>(self)->add(uuid);
        };
        return events;
    }();
    if (management_ != nullptr) {
        org_kde_plasma_window_management_add_listener(management_, &listener, this);
        connection_.roundTrip(); // tells which windows there are,
        connection_.roundTrip(); // and this what they are
    }
}

WindowMirror::~WindowMirror() {
    for (const auto& [uuid, record] : records_) {
        org_kde_plasma_window_destroy(record->proxy);
    }
    if (management_ != nullptr) {
        org_kde_plasma_window_management_destroy(management_);
    }
}

std::optional<std::vector<wayland::ListedWindow>> WindowMirror::windows() {
    if (!isGranted()) {
        return std::nullopt;
    }
    connection_.dispatchArrived();
    std::vector<wayland::ListedWindow> windows;
    std::map<std::string_view, std::ptrdiff_t> places; // those that have none yet are at the back
    for (const auto& uuid : backToFront_) {
        places.emplace(uuid, -static_cast<std::ptrdiff_t>(places.size()) - 1);
    }
    std::multimap<std::ptrdiff_t, const Record*> frontToBack;
    for (const auto& [uuid, record] : records_) {
        if (record->isKnown) {
            frontToBack.emplace(places[uuid], record.get());
        }
    }
    for (const auto& [place, record] : frontToBack) {
        windows.push_back({.number = record->number,
                           .facts = record->facts,
                           .isMinimised = record->isMinimised,
                           .isOnShownWorkspace = isOnShownDesktop(*record)});
    }
    return windows;
}

void WindowMirror::activate(std::span<const std::int64_t> numbers) {
    constexpr auto active = ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_ACTIVE;
    for (const auto number : numbers) {
        const auto found = std::ranges::find_if(
            records_, [&](const auto& entry) { return entry.second->number == number; });
        if (found != records_.end()) {
            org_kde_plasma_window_set_state(found->second->proxy, active, active);
        }
    }
    wl_display_flush(connection_.get());
}

void WindowMirror::add(const char* uuid) {
    auto& record = records_[uuid];
    if (record == nullptr) {
        auto* const proxy = org_kde_plasma_window_management_get_window_by_uuid(management_, uuid);
        record = std::make_unique<Record>(
            Record{.mirror = *this, .uuid = uuid, .number = ++count_, .proxy = proxy});
        listenTo(*record);
    }
}

void WindowMirror::listenTo(Record& record) {
    static constexpr auto recordOf = [](void* data) -> Record& {
        return *static_cast<Record*>(data);
    };
    static constexpr auto listener = [] {
        org_kde_plasma_window_listener events{};
        events.title_changed = [](void*, org_kde_plasma_window*, const char*) {};
        events.app_id_changed = [](void* data, org_kde_plasma_window*, const char* identifier) {
            auto& facts = recordOf(data).facts;
            facts.className = facts.desktopFile = wayland::boundedText(identifier);
        };
        events.state_changed = [](void* data, org_kde_plasma_window*, std::uint32_t state) {
            constexpr auto minimised = ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_MINIMIZED;
            constexpr auto active = ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_ACTIVE;
            auto& window = recordOf(data);
            window.isMinimised = (state & minimised) != 0;
            const bool wasActive = std::exchange(window.isActive, (state & active) != 0);
            window.mirror.activations_ += window.isActive && !wasActive ? 1 : 0;
        };
        events.virtual_desktop_changed = [](void*, org_kde_plasma_window*, std::int32_t) {};
        events.themed_icon_name_changed = [](void*, org_kde_plasma_window*, const char*) {};
        events.unmapped = [](void* data, org_kde_plasma_window*) {
            recordOf(data).mirror.remove(recordOf(data));
        };
        events.initial_state = [](void* data, org_kde_plasma_window*) {
            recordOf(data).isKnown = true;
            recordOf(data).mirror.tellChange();
        };
        events.parent_window = [](void*, org_kde_plasma_window*, org_kde_plasma_window*) {};
        events.geometry = [](void*, org_kde_plasma_window*, std::int32_t, std::int32_t,
                             std::uint32_t, std::uint32_t) {};
        events.icon_changed = [](void*, org_kde_plasma_window*) {};
        events.pid_changed = [](void* data, org_kde_plasma_window*, std::uint32_t process) {
            constexpr std::uint32_t largest = std::numeric_limits<std::int32_t>::max();
            recordOf(data).facts.process = process > 0 && process <= largest
                                               ? std::optional(static_cast<std::int32_t>(process))
                                               : std::nullopt;
        };
        events.virtual_desktop_entered = [](void* data, org_kde_plasma_window*,
                                            const char* desktop) {
            recordOf(data).desktops.insert(desktop);
        };
        events.virtual_desktop_left = [](void* data, org_kde_plasma_window*, const char* desktop) {
            recordOf(data).desktops.erase(desktop);
        };
        events.application_menu = [](void*, org_kde_plasma_window*, const char*, const char*) {};
        events.activity_entered = [](void*, org_kde_plasma_window*, const char*) {};
        events.activity_left = [](void*, org_kde_plasma_window*, const char*) {};
        events.resource_name_changed = [](void* data, org_kde_plasma_window*, const char* name) {
            recordOf(data).facts.instanceName = wayland::boundedText(name);
        };
        return events;
    }();
    org_kde_plasma_window_add_listener(record.proxy, &listener, &record);
    wl_display_flush(connection_.get());
}

void WindowMirror::remove(const Record& record) {
    org_kde_plasma_window_destroy(record.proxy);
    records_.erase(records_.find(record.uuid));
    tellChange();
}

void WindowMirror::restack(const char* uuids) {
    backToFront_.clear();
    for (std::string_view rest = uuids; !rest.empty();) {
        const auto end = std::min(rest.find(';'), rest.size());
        backToFront_.emplace_back(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
}

bool WindowMirror::isOnShownDesktop(const Record& record) const {
    return record.desktops.empty() ||
           std::ranges::any_of(record.desktops, [&](const std::string& desktop) {
               return desktops_.isShown(desktop);
           });
}

} // namespace hollowfernpike::kde
