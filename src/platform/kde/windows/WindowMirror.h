#pragma once

#include "platform/kde/windows/VirtualDesktops.h"
#include "platform/wayland/connection/Connection.h"
#include "platform/wayland/windows/WindowSource.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

struct org_kde_plasma_window;
struct org_kde_plasma_window_management;

namespace hollowfernpike::kde {

/// The windows of the session as KWin tells of them all the time
/// (org_kde_plasma_window_management). It tells only programs whose desktop entry asks for that.
/// Main thread only.
class WindowMirror final : public wayland::WindowSource {
public:
    /// Asks for all windows and waits until they are there. The connection outlives this object.
    explicit WindowMirror(wayland::Connection& connection);
    WindowMirror(const WindowMirror&) = delete;
    WindowMirror& operator=(const WindowMirror&) = delete;
    ~WindowMirror() override;

    /// Whether KWin tells us of windows.
    bool isGranted() const { return management_ != nullptr; }

    /// No question needs an answer from KWin.
    std::optional<std::vector<wayland::ListedWindow>> windows() override;

    void activate(std::span<const std::int64_t> numbers) override;

    /// How often a window has become the active one so far.
    std::uint64_t activations() const { return activations_; }

private:
    struct Record;

    void add(const char* uuid);
    void listenTo(Record& record);
    void remove(const Record& record);
    void restack(const char* uuids);
    bool isOnShownDesktop(const Record& record) const;

    wayland::Connection& connection_;
    VirtualDesktops desktops_;
    org_kde_plasma_window_management* management_;
    std::map<std::string, std::unique_ptr<Record>, std::less<>> records_; ///< by KWin's identifier
    std::vector<std::string> backToFront_;
    std::int64_t count_ = 0; ///< of windows so far
    std::uint64_t activations_ = 0;
};

} // namespace hollowfernpike::kde
