#include "platform/kde/windows/VirtualDesktops.h"

#include <plasma-virtual-desktop-client-protocol.h>

namespace hollowfernpike::kde {

VirtualDesktops::VirtualDesktops(wayland::Connection& connection)
    : management_(connection.bind<org_kde_plasma_virtual_desktop_management>(
          org_kde_plasma_virtual_desktop_management_interface, 1)) {
    static constexpr org_kde_plasma_virtual_desktop_management_listener listener{
        .desktop_created =
            [](void* self, org_kde_plasma_virtual_desktop_management*, const char* identifier,
               std::uint32_t) { static_cast<VirtualDesktops*>(self)->add(identifier); },
        .desktop_removed =
            [](void* self, org_kde_plasma_virtual_desktop_management*, const char* identifier) {
                static_cast<VirtualDesktops*>(self)->remove(identifier);
            },
        .done = [](void*, org_kde_plasma_virtual_desktop_management*) {},
        .rows = [](void*, org_kde_plasma_virtual_desktop_management*, std::uint32_t) {},
    };
    if (management_ != nullptr) {
        org_kde_plasma_virtual_desktop_management_add_listener(management_, &listener, this);
    }
}

VirtualDesktops::~VirtualDesktops() {
    for (const auto& [identifier, desktop] : desktops_) {
        org_kde_plasma_virtual_desktop_destroy(desktop->proxy);
    }
    if (management_ != nullptr) {
        org_kde_plasma_virtual_desktop_management_destroy(management_);
    }
}

bool VirtualDesktops::isShown(const std::string& identifier) const {
    const auto found = desktops_.find(identifier);
    return found != desktops_.end() && found->second->isShown;
}

void VirtualDesktops::add(const char* identifier) {
    static constexpr org_kde_plasma_virtual_desktop_listener listener{
        .desktop_id = [](void*, org_kde_plasma_virtual_desktop*, const char*) {},
        .name = [](void*, org_kde_plasma_virtual_desktop*, const char*) {},
        .activated =
            [](void* desktop, org_kde_plasma_virtual_desktop*) {
                static_cast<VirtualDesktop*>(desktop)->isShown = true;
            },
        .deactivated =
            [](void* desktop, org_kde_plasma_virtual_desktop*) {
                static_cast<VirtualDesktop*>(desktop)->isShown = false;
            },
        .done = [](void*, org_kde_plasma_virtual_desktop*) {},
        .removed = [](void*, org_kde_plasma_virtual_desktop*) {},
    };
    auto& desktop = desktops_[identifier];
    if (desktop == nullptr) {
        desktop = std::make_unique<VirtualDesktop>();
        desktop->proxy =
            org_kde_plasma_virtual_desktop_management_get_virtual_desktop(management_, identifier);
        org_kde_plasma_virtual_desktop_add_listener(desktop->proxy, &listener, desktop.get());
    }
}

void VirtualDesktops::remove(const char* identifier) {
    if (const auto found = desktops_.find(identifier); found != desktops_.end()) {
        org_kde_plasma_virtual_desktop_destroy(found->second->proxy);
        desktops_.erase(found);
    }
}

} // namespace hollowfernpike::kde
