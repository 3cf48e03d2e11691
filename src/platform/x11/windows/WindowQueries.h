#pragma once

#include "platform/WindowOwners.h"
#include "platform/x11/server/Atoms.h"
#include "platform/x11/server/ClientProcesses.h"
#include "platform/x11/server/Connection.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include <xcb/xcb.h>

namespace hollowfernpike::x11 {

/// What may change while a window lives.
struct WindowState {
    bool isHidden = false;                     ///< minimised, or hidden in another way
    std::optional<std::uint32_t> desktop;      ///< absent if the window manager has none
    std::optional<std::int32_t> clientProcess; ///< as the server knows it
    std::string windowClass;                   ///< WM_CLASS, both strings with their final zeros
};

/// What a window tells once: its type and hints at the application behind it.
struct WindowTraits {
    std::int32_t layer = 0;
    std::optional<std::int32_t> statedProcess; ///< _NET_WM_PID, if the client is of this machine
    std::string gtkApplicationId;
    std::string desktopFile;
};

/// The states of many windows in one batch. The constructor sends, `take` waits; between the two
/// other questions can be sent. Every sent query must be taken.
class WindowStateQuery {
public:
    WindowStateQuery(const Connection& connection, const Atoms& atoms,
                     const ClientProcesses& processes, std::span<const xcb_window_t> windows);

    /// Windows that are gone are left out.
    std::unordered_map<xcb_window_t, WindowState> take();

private:
    struct Question {
        xcb_window_t window;
        xcb_get_property_cookie_t state;
        xcb_get_property_cookie_t desktop;
        xcb_get_property_cookie_t windowClass;
    };

    std::optional<WindowState> takeOne(const Question& question) const;

    const Connection& connection_;
    const Atoms& atoms_;
    const ClientProcesses& processes_;
    std::vector<Question> questions_;
    std::optional<xcb_res_query_client_ids_cookie_t> processQuestion_;
};

/// The traits of many windows in one batch, to be used in the same way.
class WindowTraitsQuery {
public:
    WindowTraitsQuery(const Connection& connection, const Atoms& atoms,
                      std::span<const xcb_window_t> windows);

    /// Windows that are gone have empty traits.
    std::unordered_map<xcb_window_t, WindowTraits> take();

private:
    struct Question {
        xcb_window_t window;
        xcb_get_property_cookie_t type;
        xcb_get_property_cookie_t pid;
        xcb_get_property_cookie_t machine;
        xcb_get_property_cookie_t gtkApplicationId;
        xcb_get_property_cookie_t kdeDesktopFile;
        xcb_get_property_cookie_t bamfDesktopFile;
    };

    WindowTraits takeOne(const Question& question) const;

    const Connection& connection_;
    const Atoms& atoms_;
    std::vector<Question> questions_;
};

/// Everything that tells which application a window belongs to.
platform::WindowFacts factsOf(const WindowState& state, const WindowTraits& traits);

} // namespace hollowfernpike::x11
