#include "support/KWinVirtualDesktops.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include <plasma-virtual-desktop-client-protocol.h>

namespace hollowfernpike::test {

class KWinVirtualDesktops::Desktop {
public:
    Desktop(org_kde_plasma_virtual_desktop* handle, std::string identifier)
        : handle_(handle), identifier_(std::move(identifier)) {
        using Handle = org_kde_plasma_virtual_desktop;
        static const auto listener = [] {
            org_kde_plasma_virtual_desktop_listener events{};
            events.activated = [](void* self, Handle* /*handle*/) {
                static_cast<Desktop*>(self)->isCurrent_ = true;
            };
            events.deactivated = [](void* self, Handle* /*handle*/) {
                static_cast<Desktop*>(self)->isCurrent_ = false;
            };
            events.desktop_id = ignoreEvent;
            events.name = ignoreEvent;
            events.done = ignoreEvent;
            events.removed = ignoreEvent;
            return events;
        }();
        org_kde_plasma_virtual_desktop_add_listener(handle_, &listener, this);
    }
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;
    ~Desktop() { org_kde_plasma_virtual_desktop_destroy(handle_); }

    const std::string& identifier() const { return identifier_; }
    bool isCurrent() const { return isCurrent_; }
    void activate() const { org_kde_plasma_virtual_desktop_request_activate(handle_); }

private:
    org_kde_plasma_virtual_desktop* handle_;
    std::string identifier_;
    bool isCurrent_ = false;
};

KWinVirtualDesktops::KWinVirtualDesktops(WaylandConnection& connection)
    : connection_(connection),
      management_(connection.bind<org_kde_plasma_virtual_desktop_management>(
          org_kde_plasma_virtual_desktop_management_interface, 2)) {
    using Management = org_kde_plasma_virtual_desktop_management;
    static const auto listener = [] {
        org_kde_plasma_virtual_desktop_management_listener events{};
        events.desktop_created = [](void* self, Management* /*management*/, const char* identifier,
                                    std::uint32_t position) {
            static_cast<KWinVirtualDesktops*>(self)->create(identifier, position);
        };
        events.desktop_removed = [](void* self, Management* /*management*/,
                                    const char* identifier) {
            std::erase_if(static_cast<KWinVirtualDesktops*>(self)->desktops_,
                          [&](const auto& desktop) { return desktop->identifier() == identifier; });
        };
        events.done = ignoreEvent;
        events.rows = ignoreEvent;
        return events;
    }();
    org_kde_plasma_virtual_desktop_management_add_listener(management_, &listener, this);
    connection_.sync();
}

KWinVirtualDesktops::~KWinVirtualDesktops() {
    desktops_.clear();
    org_kde_plasma_virtual_desktop_management_destroy(management_);
}

std::vector<std::string> KWinVirtualDesktops::all() {
    connection_.sync();
    std::vector<std::string> identifiers;
    for (const auto& desktop : desktops_) {
        identifiers.push_back(desktop->identifier());
    }
    return identifiers;
}

std::string KWinVirtualDesktops::current() {
    connection_.sync();
    const auto found =
        std::ranges::find_if(desktops_, [](const auto& desktop) { return desktop->isCurrent(); });
    return found == desktops_.end() ? std::string{} : (*found)->identifier();
}

void KWinVirtualDesktops::goTo(const std::string& identifier) {
    connection_.sync();
    const auto found = std::ranges::find_if(
        desktops_, [&](const auto& desktop) { return desktop->identifier() == identifier; });
    if (found == desktops_.end()) {
        throw std::invalid_argument("no virtual desktop " + identifier);
    }
    (*found)->activate();
    connection_.sync();
}

void KWinVirtualDesktops::add(const std::string& name) {
    org_kde_plasma_virtual_desktop_management_request_create_virtual_desktop(
        management_, name.c_str(), static_cast<std::uint32_t>(desktops_.size()));
    connection_.sync();
    connection_.sync(); // what there is to know of it comes when it was asked for
}

void KWinVirtualDesktops::create(const char* identifier, std::uint32_t position) {
    auto* const handle =
        org_kde_plasma_virtual_desktop_management_get_virtual_desktop(management_, identifier);
    const auto place = std::min<std::size_t>(position, desktops_.size());
    desktops_.insert(desktops_.begin() + static_cast<std::ptrdiff_t>(place),
                     std::make_unique<Desktop>(handle, identifier));
}

} // namespace hollowfernpike::test
