#pragma once

#include "support/BusConnection.h"

#include <optional>
#include <string>
#include <vector>

namespace hollowfernpike::test {

/// An action of the utility among the global shortcuts of the desktop.
struct ListedShortcut {
    std::string name; ///< stays the same
    std::string label;
    std::vector<int> keys; ///< as Qt counts them
};

/// The page of the desktop's settings that lists global shortcuts: what it reads of the utility's
/// and what it tells KWin when the user changes one, over the session bus.
class ShortcutSettings {
public:
    explicit ShortcutSettings(const std::string& sessionBus)
        : connection_(connectToBus(sessionBus)) {}

    /// Those that KWin knows now, active or not.
    std::vector<ListedShortcut> list() const;

    /// The one with this label; absent if there is none.
    std::optional<ListedShortcut> find(const std::string& label) const;

    /// What the user does there: other keys for an action, or none.
    void change(const ListedShortcut& shortcut, const std::vector<int>& keys) const;

    /// Another program with an action that has these keys, and what the user does to it there.
    void registerOther(const std::string& action, const std::vector<int>& keys) const;
    void changeOther(const std::string& action, const std::vector<int>& keys) const;

private:
    using Reply = std::unique_ptr<GVariant, freedesktop::Releaser<&g_variant_unref>>;

    void setForeign(const char* const (&identifier)[5], const std::vector<int>& keys) const;

    /// Null if KWin refuses.
    Reply call(const char* path, const char* interface, const char* method,
               GVariant* arguments) const;

    BusConnection connection_;
};

} // namespace hollowfernpike::test
