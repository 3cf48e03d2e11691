#pragma once

#include "platform/Interface.h"
#include "platform/RunLoop.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hollowfernpike::platform {

/// Where to find the icon of a file: a name in the user's icon theme, an image of its own, or the
/// desktop, which draws it. All are empty if no icon is known.
struct FileIcon {
    std::string themeName;
    std::string imageFile;     ///< absolute path
    std::string drawnFor = {}; ///< the file whose icon ApplicationBundles::drawIcon() draws

    bool operator==(const FileIcon&) const = default;
};

/// A square picture: the rows from top to bottom, each from left to right; for each pixel one byte
/// of red, green, blue and alpha, the colours multiplied by alpha.
struct IconPixels {
    int side = 0;
    std::vector<std::uint8_t> bytes; ///< 4 * side * side
};

/// What file panels have to know of applications.
struct ApplicationFiles {
    std::string extension;   ///< of their names, with its dot
    bool areFolders = false; ///< which people see as one file
};

/// What an application says of itself.
struct ApplicationBundle {
    std::optional<std::string> bundleIdentifier; ///< absent if it has none
};

/// An application as people know it. Texts are in the language that was asked for as far as the
/// application has them.
struct InstalledApplication {
    std::string path;
    std::string bundleIdentifier;
    std::string name;
    std::string genericName; ///< such as "Web Browser"; may be empty
    std::vector<std::string> keywords;
    FileIcon icon;

    bool operator==(const InstalledApplication&) const = default;
};

/// Whether an application would be opened now.
enum class Standing : unsigned char {
    fine,
    gone,      ///< there is none at that place any more, or its program is missing
    untrusted, ///< its file lies where anybody may put files, and could be anybody's work
};

/// Applications as files, and their icons. Main thread only.
class ApplicationBundles : public Interface {
public:
    /// Nothing if there is no application at `path` that can be read.
    virtual std::optional<ApplicationBundle> bundleAt(const std::string& path) = 0;

    /// The name of the application at `path` as people know it, in this language as far as the
    /// application has it; empty if there is none to be read. `language` is a code such as "ja".
    virtual std::string displayName(const std::string& path, std::string_view language) = 0;

    /// The icon of the application at `path`; an empty one if there is none to be read.
    virtual FileIcon iconForFile(const std::string& path) = 0;

    /// The icon that a `FileIcon::drawnFor` stands for, `side` pixels wide and high; absent if it
    /// cannot be drawn.
    virtual std::optional<IconPixels> drawIcon(const std::string& /*file*/, int /*side*/) {
        return std::nullopt;
    }

    /// Whether the application at `path` would be opened.
    virtual Standing standingOf(const std::string& path) = 0;

    /// Those that the desktop offers to this user, in no particular order.
    virtual std::vector<InstalledApplication> installedApplications(std::string_view language) = 0;

    virtual ApplicationFiles applicationFiles() = 0;

    /// Where installed applications lie, for file panels: existing directories, best first.
    virtual std::vector<std::string> applicationDirectories() = 0;

    /// Calls `onChange` soon after applications or icons of theirs may have been installed, changed
    /// or removed, until the subscription is destroyed. Not where the desktop does not tell; each
    /// call asks it again.
    [[nodiscard]] virtual std::unique_ptr<Subscription> watch(std::function<void()> onChange) = 0;
};

} // namespace hollowfernpike::platform
