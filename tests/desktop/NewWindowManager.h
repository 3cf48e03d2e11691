#pragma once

#include "desktop/Story.h"

#include <memory>
#include <string>
#include <vector>

namespace hollowfernpike::test {

/// Starts another window manager, and waits until the one that the story began with has ended and
/// the new one has brought a new window to the front. Nothing less proves that it is at work,
/// because what the old one wrote may stay behind it. Throws std::runtime_error if that does not
/// happen.
std::unique_ptr<ChildProcess> startNewWindowManager(Story& story,
                                                    const std::vector<std::string>& program);

} // namespace hollowfernpike::test
