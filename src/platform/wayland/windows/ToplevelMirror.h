#pragma once

#include "platform/wayland/connection/Connection.h"
#include "platform/wayland/windows/WindowSource.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

struct wl_seat;
struct zwlr_foreign_toplevel_handle_v1;
struct zwlr_foreign_toplevel_manager_v1;

namespace hollowfernpike::wayland {

/// The windows of the session by wlr-foreign-toplevel-management, which tells of neither processes
/// nor workspaces nor what lies above what. "Front to back" is the order in which the windows had
/// the focus. Main thread only.
class ToplevelMirror final : public WindowSource {
public:
    /// Asks for all windows and waits until they are there. The connection outlives this object.
    /// `ownApplication` is the identifier of our own windows.
    ToplevelMirror(Connection& connection, std::string ownApplication);
    ToplevelMirror(const ToplevelMirror&) = delete;
    ToplevelMirror& operator=(const ToplevelMirror&) = delete;
    ~ToplevelMirror() override;

    /// No question needs an answer of the compositor.
    std::optional<std::vector<ListedWindow>> windows() override;

    void activate(std::span<const std::int64_t> numbers) override;

    /// Activates our own window with this title, at once or as soon as the compositor tells of it.
    /// Whether it is there already.
    bool activateOwn(const std::string& title);

private:
    struct Record;

    bool isGranted() const { return manager_ != nullptr && seat_ != nullptr; }

    void add(zwlr_foreign_toplevel_handle_v1* handle);
    void settle(Record& record);
    void remove(const Record& record);
    void activate(const Record& record) const;

    Connection& connection_;
    std::string ownApplication_;
    wl_seat* seat_;
    zwlr_foreign_toplevel_manager_v1* manager_;
    std::map<std::int64_t, std::unique_ptr<Record>> records_; ///< by their numbers
    std::int64_t count_ = 0;                                  ///< of windows so far
    std::uint64_t activations_ = 0;                           ///< so far
    std::string awaitedTitle_; ///< of our own window that is to be activated when it comes
};

} // namespace hollowfernpike::wayland
