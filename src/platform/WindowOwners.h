#pragma once

#include "platform/Interface.h"

#include <cstdint>
#include <optional>
#include <string>

namespace hollowfernpike::platform {

/// What a window, or its display server, says of who owns it. Texts are as the client wrote them:
/// the backend bounds their length, otherwise they are untrusted.
struct WindowFacts {
    std::optional<std::int32_t>
        process;                      ///< as the display server knows it, else as the window says
    std::string instanceName;         ///< WM_CLASS, first string
    std::string className;            ///< WM_CLASS, second string
    std::string gtkApplicationId;     ///< _GTK_APPLICATION_ID
    std::string desktopFile;          ///< _KDE_NET_WM_DESKTOP_FILE or _BAMF_DESKTOP_FILE
    std::string sandboxApplicationId; ///< told by the display server, where it knows sandboxes

    bool operator==(const WindowFacts&) const = default;
};

/// The application that a window belongs to.
struct WindowOwner {
    std::string name;             ///< the entry's name, else the window's class; may be empty
    std::string bundleIdentifier; ///< empty when no installed entry matches the window
};

/// Finds the application behind a window. Main thread only.
class WindowOwners : public Interface {
public:
    virtual WindowOwner ownerOf(const WindowFacts& window) = 0;

    /// Grows whenever `ownerOf` may answer differently for the same facts, because entries were
    /// installed, changed or removed. Cached answers must be dropped then.
    virtual std::uint64_t generation() = 0;
};

} // namespace hollowfernpike::platform
