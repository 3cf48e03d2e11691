#pragma once

#include "platform/WindowOwners.h"
#include "platform/kde/windows/VirtualDesktops.h"
#include "platform/wayland/connection/Connection.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

struct org_kde_plasma_window;
struct org_kde_plasma_window_management;

namespace hollowfernpike::kde {

/// The windows of the session as KWin tells of them all the time
/// (org_kde_plasma_window_management). It tells only programs whose desktop entry asks for that.
/// Main thread only.
class WindowMirror {
public:
    /// A window that has been shown.
    struct Window {
        std::int64_t number = 0; ///< windows are numbered as they come
        platform::WindowFacts facts;
        bool isMinimised = false;
        bool isOnShownDesktop = true;

        bool isVisible() const { return !isMinimised && isOnShownDesktop; }
    };

    /// Asks for all windows and waits until they are there. The connection outlives this object.
    explicit WindowMirror(wayland::Connection& connection);
    WindowMirror(const WindowMirror&) = delete;
    WindowMirror& operator=(const WindowMirror&) = delete;
    ~WindowMirror();

    /// Whether KWin tells us of windows. The others do nothing where it does not.
    bool isGranted() const { return management_ != nullptr; }

    /// From front to back, minimised ones and those of other virtual desktops included.
    std::vector<Window> windows();

    /// Activates the window. KWin shows it if it is minimised and switches to its virtual desktop.
    void activate(std::int64_t number);

    /// Called when a window has come or gone; may be replaced by the handler.
    std::function<void()> onChange;

private:
    struct Record;

    void add(const char* uuid);
    void listenTo(Record& record);
    void remove(const Record& record);
    void restack(const char* uuids);
    bool isOnShownDesktop(const Record& record) const;
    void tellChange() const;

    wayland::Connection& connection_;
    VirtualDesktops desktops_;
    org_kde_plasma_window_management* management_;
    std::map<std::string, std::unique_ptr<Record>, std::less<>> records_; ///< by KWin's identifier
    std::vector<std::string> backToFront_;
    std::int64_t count_ = 0; ///< of windows so far
};

} // namespace hollowfernpike::kde
