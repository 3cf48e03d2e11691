#pragma once

#include "platform/WindowOwners.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hollowfernpike::sway {

/// A window in sway's tree.
struct TreeWindow {
    std::int64_t identifier = 0; ///< "con_id" in commands
    std::string title;           ///< of our own windows alone; those of others are not kept
    bool isVisible = false; ///< on a shown workspace and not behind a tab or a fullscreen window
    platform::WindowFacts facts;
};

/// The windows in sway's answer to "get_tree", those used last first, including the windows of
/// other workspaces and of the scratchpad. Absent if the text is no tree.
std::optional<std::vector<TreeWindow>> readTree(std::string_view json);

} // namespace hollowfernpike::sway
