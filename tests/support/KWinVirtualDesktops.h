#pragma once

#include "support/WaylandConnection.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

struct org_kde_plasma_virtual_desktop_management;

namespace hollowfernpike::test {

/// The virtual desktops of KWin, by their identifiers, as it tells them over a connection.
class KWinVirtualDesktops {
public:
    /// The connection outlives this.
    explicit KWinVirtualDesktops(WaylandConnection& connection);
    KWinVirtualDesktops(const KWinVirtualDesktops&) = delete;
    KWinVirtualDesktops& operator=(const KWinVirtualDesktops&) = delete;
    ~KWinVirtualDesktops();

    /// In their order.
    std::vector<std::string> all();

    std::string current();

    /// Throws std::invalid_argument if there is none of that name.
    void goTo(const std::string& identifier);

    /// Adds one behind the others.
    void add(const std::string& name);

private:
    class Desktop;

    void create(const char* identifier, std::uint32_t position);

    WaylandConnection& connection_;
    org_kde_plasma_virtual_desktop_management* management_;
    std::vector<std::unique_ptr<Desktop>> desktops_;
};

} // namespace hollowfernpike::test
