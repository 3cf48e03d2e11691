#pragma once

#include "platform/wayland/connection/Connection.h"

#include <map>
#include <memory>
#include <string>

struct org_kde_plasma_virtual_desktop;
struct org_kde_plasma_virtual_desktop_management;

namespace hollowfernpike::kde {

/// Which virtual desktops KWin shows now (org_kde_plasma_virtual_desktop_management), as far as the
/// connection has told. Main thread only.
class VirtualDesktops {
public:
    /// The connection outlives this object.
    explicit VirtualDesktops(wayland::Connection& connection);
    VirtualDesktops(const VirtualDesktops&) = delete;
    VirtualDesktops& operator=(const VirtualDesktops&) = delete;
    ~VirtualDesktops();

    bool isShown(const std::string& identifier) const;

private:
    struct VirtualDesktop {
        org_kde_plasma_virtual_desktop* proxy = nullptr;
        bool isShown = false;
    };

    void add(const char* identifier);
    void remove(const char* identifier);

    org_kde_plasma_virtual_desktop_management* management_;
    std::map<std::string, std::unique_ptr<VirtualDesktop>, std::less<>> desktops_;
};

} // namespace hollowfernpike::kde
