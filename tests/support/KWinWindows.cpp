#include "support/KWinWindows.h"

#include <algorithm>
#include <cstdint>

#include <plasma-window-management-client-protocol.h>

namespace hollowfernpike::test {

class KWinWindows::Window {
public:
    Window(org_kde_plasma_window* handle, std::string identifier)
        : handle_(handle), identifier_(std::move(identifier)) {
        static const auto listener = makeListener();
        org_kde_plasma_window_add_listener(handle_, &listener, this);
    }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    ~Window() { org_kde_plasma_window_destroy(handle_); }

    org_kde_plasma_window* handle() const { return handle_; }
    const std::string& identifier() const { return identifier_; }
    const KWinWindow& description() const { return description_; }
    bool isDescribed() const { return isDescribed_; }
    bool isGone() const { return isGone_; }

private:
    static Window& self(void* window) { return *static_cast<Window*>(window); }

    void takeState(std::uint32_t state) {
        const auto is = [state](std::uint32_t flag) { return (state & flag) != 0; };
        description_.isActive = is(ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_ACTIVE);
        description_.isMinimized = is(ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_MINIMIZED);
        description_.isFullscreen = is(ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_FULLSCREEN);
        description_.skipsTaskBar = is(ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_SKIPTASKBAR);
    }

    // Newer descriptions of the protocol have more events, which this version never sends.
    static org_kde_plasma_window_listener makeListener();

    org_kde_plasma_window* handle_;
    std::string identifier_;
    KWinWindow description_;
    bool isDescribed_ = false;
    bool isGone_ = false;
};

namespace {

constexpr std::uint32_t managementVersion = 16; // the newest that all releases have

} // namespace

org_kde_plasma_window_listener KWinWindows::Window::makeListener() {
    using Handle = org_kde_plasma_window;
    org_kde_plasma_window_listener events{};
    events.title_changed = [](void* window, Handle* /*handle*/, const char* title) {
        self(window).description_.title = title;
    };
    events.app_id_changed = [](void* window, Handle* /*handle*/, const char* identifier) {
        self(window).description_.applicationId = identifier;
    };
    events.pid_changed = [](void* window, Handle* /*handle*/, std::uint32_t process) {
        self(window).description_.process = static_cast<pid_t>(process);
    };
    events.state_changed = [](void* window, Handle* /*handle*/, std::uint32_t state) {
        self(window).takeState(state);
    };
    events.virtual_desktop_entered = [](void* window, Handle* /*handle*/, const char* desktop) {
        self(window).description_.desktops.emplace_back(desktop);
    };
    events.virtual_desktop_left = [](void* window, Handle* /*handle*/, const char* desktop) {
        std::erase(self(window).description_.desktops, desktop);
    };
    events.initial_state = [](void* window, Handle* /*handle*/) {
        self(window).isDescribed_ = true;
    };
    events.unmapped = [](void* window, Handle* /*handle*/) { self(window).isGone_ = true; };
    events.virtual_desktop_changed = ignoreEvent;
    events.themed_icon_name_changed = ignoreEvent;
    events.parent_window = ignoreEvent;
    events.geometry = ignoreEvent;
    events.icon_changed = ignoreEvent;
    events.application_menu = ignoreEvent;
    events.activity_entered = ignoreEvent;
    events.activity_left = ignoreEvent;
    events.resource_name_changed = ignoreEvent;
    return events;
}

KWinWindows::KWinWindows(WaylandConnection& connection)
    : connection_(connection), management_(connection.bind<org_kde_plasma_window_management>(
                                   org_kde_plasma_window_management_interface, managementVersion)) {
    using Management = org_kde_plasma_window_management;
    static const auto listener = [] {
        org_kde_plasma_window_management_listener events{};
        events.window_with_uuid = [](void* self, Management* /*management*/, std::uint32_t /*id*/,
                                     const char* identifier) {
            static_cast<KWinWindows*>(self)->add(identifier);
        };
        events.stacking_order_uuid_changed = [](void* self, Management* /*management*/,
                                                const char* identifiers) {
            static_cast<KWinWindows*>(self)->order_ = identifiers;
        };
        events.show_desktop_changed = ignoreEvent;
        events.window = ignoreEvent;
        events.stacking_order_changed = ignoreEvent;
        return events;
    }();
    org_kde_plasma_window_management_add_listener(management_, &listener, this);
}

KWinWindows::~KWinWindows() {
    windows_.clear();
    org_kde_plasma_window_management_destroy(management_);
}

std::vector<KWinWindow> KWinWindows::all() {
    update();
    std::vector<KWinWindow> result;
    for (const auto& window : windows_) {
        result.push_back(window->description());
    }
    return result;
}

void KWinWindows::ask(const Condition& condition, const Request& request) {
    update();
    for (const auto& window : windows_) {
        if (condition(window->description())) {
            request(window->handle());
        }
    }
    connection_.sync();
}

void KWinWindows::add(const char* identifier) {
    auto* const handle =
        org_kde_plasma_window_management_get_window_by_uuid(management_, identifier);
    windows_.push_back(std::make_unique<Window>(handle, identifier));
}

void KWinWindows::update() {
    do {
        connection_.sync();
        std::erase_if(windows_, [](const auto& window) { return window->isGone(); });
    } while (!std::ranges::all_of(windows_, &Window::isDescribed));
    std::ranges::stable_sort(
        windows_, {}, [this](const auto& window) { return order_.find(window->identifier()); });
}

} // namespace hollowfernpike::test
