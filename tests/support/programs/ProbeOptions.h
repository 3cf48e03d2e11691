#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace hollowfernpike::test {

/// How a probe window looks and behaves. On Wayland a window has no more than a class, a title, a
/// parent and a state; the rest is left out there.
struct ProbeOptions {
    std::string instanceName = "probe"; ///< --class INSTANCE,CLASS
    std::string className = "Probe";
    std::string title = "probe";      ///< --title TEXT
    bool hasPid = true;               ///< --no-pid
    std::optional<std::uint32_t> pid; ///< --pid N: a lie in _NET_WM_PID
    std::string machine;              ///< --machine HOST: a lie in WM_CLIENT_MACHINE
    std::string gtkApplicationId;     ///< --gtk-id ID
    std::string desktopFile;          ///< --desktop-file ID
    std::string type;                 ///< --type dock|desktop|dialog|...
    std::int16_t x = 100, y = 100;    ///< --geometry X,Y,W,H
    std::uint16_t width = 200, height = 150;
    int windows = 1;                   ///< --windows N; --no-window: 0
    bool transient = false;            ///< --transient: later windows belong to the first one
    bool isFullscreen = false;         ///< --fullscreen: on Wayland only
    bool crashesOnKey = false;         ///< --exit-on-key: aborts at any key press
    bool forksChild = false;           ///< --fork-child: keeps a helper process beside it
    bool handsOver = false;            ///< --hand-over: goes on as a process of its own and ends
    bool isSingle = false;             ///< --single: see the program; needs --log
    std::string log;                   ///< --log FILE: tells it all at the end of that file
    std::chrono::milliseconds delay{}; ///< --delay MS: works that long before it opens a window
};

/// Throws std::invalid_argument for what it does not know.
ProbeOptions parseProbeOptions(std::span<char*> arguments);

} // namespace hollowfernpike::test
