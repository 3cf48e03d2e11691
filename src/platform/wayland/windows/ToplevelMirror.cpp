#include "platform/wayland/windows/ToplevelMirror.h"

#include <algorithm>
#include <span>
#include <utility>

#include <wayland-client-protocol.h>
#include <wlr-foreign-toplevel-management-unstable-v1-client-protocol.h>

namespace hollowfernpike::wayland {

namespace {

constexpr std::uint32_t managerVersion = 3;

bool contains(const wl_array& states, std::uint32_t state) {
    const std::span all(static_cast<const std::uint32_t*>(states.data),
                        states.size / sizeof(std::uint32_t));
    return std::ranges::find(all, state) != all.end();
}

} // namespace

struct ToplevelMirror::Record {
    ToplevelMirror& mirror;
    std::int64_t number;
    zwlr_foreign_toplevel_handle_v1* handle;
    platform::WindowFacts facts{};
    std::string title{};  ///< of our own windows alone; those of others are not kept
    bool isKnown = false; ///< the compositor has told all that there is to tell
    bool isMinimised = false;
    bool isActive = false;
    std::uint64_t lastActivation = 0;
};

ToplevelMirror::ToplevelMirror(Connection& connection, std::string ownApplication)
    : connection_(connection), ownApplication_(std::move(ownApplication)),
      seat_(connection.bind<wl_seat>(wl_seat_interface, 1)),
      manager_(connection.bind<zwlr_foreign_toplevel_manager_v1>(
          zwlr_foreign_toplevel_manager_v1_interface, managerVersion)) {
    static constexpr zwlr_foreign_toplevel_manager_v1_listener listener{
        .toplevel =
            [](void* self, zwlr_foreign_toplevel_manager_v1*,
               zwlr_foreign_toplevel_handle_v1* handle) {
                static_cast<ToplevelMirror*>(self)->add(handle);
            },
        .finished = [](void*, zwlr_foreign_toplevel_manager_v1*) {},
    };
    if (manager_ != nullptr) {
        zwlr_foreign_toplevel_manager_v1_add_listener(manager_, &listener, this);
        connection_.roundTrip();
    }
}

ToplevelMirror::~ToplevelMirror() {
    for (const auto& [number, record] : records_) {
        zwlr_foreign_toplevel_handle_v1_destroy(record->handle);
    }
    if (manager_ != nullptr) {
        zwlr_foreign_toplevel_manager_v1_destroy(manager_);
    }
    if (seat_ != nullptr) {
        wl_seat_destroy(seat_);
    }
}

std::optional<std::vector<ListedWindow>> ToplevelMirror::windows() {
    if (!isGranted()) {
        return std::nullopt;
    }
    connection_.dispatchArrived();
    std::vector<const Record*> known;
    for (const auto& [number, record] : records_) {
        if (record->isKnown) {
            known.push_back(record.get());
        }
    }
    std::ranges::stable_sort(known, std::ranges::greater{}, &Record::lastActivation);
    std::vector<ListedWindow> windows;
    for (const auto* const record : known) {
        windows.push_back(
            {.number = record->number, .facts = record->facts, .isMinimised = record->isMinimised});
    }
    return windows;
}

void ToplevelMirror::activate(std::span<const std::int64_t> numbers) {
    for (const auto number : numbers) {
        if (const auto found = records_.find(number); found != records_.end()) {
            activate(*found->second);
        }
    }
}

bool ToplevelMirror::activateOwn(const std::string& title) {
    connection_.dispatchArrived();
    const auto found = std::ranges::find_if(records_, [&](const auto& entry) {
        return entry.second->isKnown && entry.second->title == title;
    });
    const bool isThere = isGranted() && found != records_.end();
    awaitedTitle_ = isThere ? std::string{} : title;
    if (isThere) {
        activate(*found->second);
    }
    return isThere;
}

void ToplevelMirror::add(zwlr_foreign_toplevel_handle_v1* handle) {
    static constexpr auto recordOf = [](void* data) -> Record& {
        return *static_cast<Record*>(data);
    };
    static constexpr auto listener = [] {
        using Handle = zwlr_foreign_toplevel_handle_v1;
        zwlr_foreign_toplevel_handle_v1_listener events{};
        events.title = [](void* data, Handle*, const char* title) {
            recordOf(data).title = boundedText(title);
        };
        events.app_id = [](void* data, Handle*, const char* identifier) {
            auto& facts = recordOf(data).facts;
            facts.className = facts.desktopFile = boundedText(identifier);
        };
        events.output_enter = [](void*, Handle*, wl_output*) {};
        events.output_leave = [](void*, Handle*, wl_output*) {};
        events.state = [](void* data, Handle*, wl_array* states) {
            auto& record = recordOf(data);
            record.isMinimised = contains(*states, ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_MINIMIZED);
            const bool isActive =
                contains(*states, ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_ACTIVATED);
            if (isActive && !std::exchange(record.isActive, isActive)) {
                record.lastActivation = ++record.mirror.activations_;
            }
            record.isActive = isActive;
        };
        events.done = [](void* data, Handle*) { recordOf(data).mirror.settle(recordOf(data)); };
        events.closed = [](void* data, Handle*) { recordOf(data).mirror.remove(recordOf(data)); };
        events.parent = [](void*, Handle*, Handle*) {};
        return events;
    }();
    const auto number = ++count_;
    auto& record = records_[number];
    record = std::make_unique<Record>(Record{.mirror = *this, .number = number, .handle = handle});
    zwlr_foreign_toplevel_handle_v1_add_listener(handle, &listener, record.get());
}

void ToplevelMirror::settle(Record& record) {
    if (record.facts.className != ownApplication_) {
        record.title.clear();
    } else if (!awaitedTitle_.empty() && record.title == awaitedTitle_) {
        awaitedTitle_.clear();
        activate(record);
    }
    if (!std::exchange(record.isKnown, true)) {
        tellChange();
    }
}

void ToplevelMirror::remove(const Record& record) {
    zwlr_foreign_toplevel_handle_v1_destroy(record.handle);
    records_.erase(records_.find(record.number));
    tellChange();
}

void ToplevelMirror::activate(const Record& record) const {
    if (seat_ == nullptr) {
        return;
    }
    if (record.isMinimised) {
        zwlr_foreign_toplevel_handle_v1_unset_minimized(record.handle);
    }
    zwlr_foreign_toplevel_handle_v1_activate(record.handle, seat_);
    wl_display_flush(connection_.get());
}

} // namespace hollowfernpike::wayland
