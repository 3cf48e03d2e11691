#pragma once

#include <functional>

namespace hollowfernpike::test {

/// Runs this on a thread that the system made, and returns when it is done.
void onAnotherThread(const std::function<void()>& work);

} // namespace hollowfernpike::test
