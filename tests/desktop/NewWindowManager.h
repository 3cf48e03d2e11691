#pragma once

#include "desktop/Story.h"

#include <memory>
#include <string>
#include <vector>

namespace hollowfernpike::test {

/// Starts another window manager and waits for the end of the one that the story began with, and
/// until the other has brought a new window to the front: what the old one told may stay behind it.
/// Throws std::runtime_error if it does not come to that.
std::unique_ptr<ChildProcess> startNewWindowManager(Story& story,
                                                    const std::vector<std::string>& program);

} // namespace hollowfernpike::test
