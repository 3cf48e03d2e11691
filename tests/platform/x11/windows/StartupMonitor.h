#pragma once

#include <string>
#include <vector>

#include <xcb/xcb.h>

struct SnDisplay;
struct SnMonitorContext;
struct SnMonitorEvent;

namespace hollowfernpike::test {

/// Start-up notices as panels and window managers see them: through libstartup-notification, on a
/// connection of its own.
class StartupMonitor {
public:
    struct Notice {
        std::string event; ///< "new" or "remove"
        std::string id;
        std::string name;
        std::string binary;
        std::string windowClass;
        std::string application;
        int screen = -1;
        unsigned long time = 0;
    };

    explicit StartupMonitor(const std::string& display);
    StartupMonitor(const StartupMonitor&) = delete;
    StartupMonitor& operator=(const StartupMonitor&) = delete;
    ~StartupMonitor();

    /// All notices so far.
    const std::vector<Notice>& notices();

private:
    static void onEvent(SnMonitorEvent* event, void* self);

    xcb_connection_t* connection_;
    SnDisplay* display_ = nullptr;
    SnMonitorContext* context_ = nullptr;
    std::vector<Notice> notices_;
};

} // namespace hollowfernpike::test
