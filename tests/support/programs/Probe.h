#pragma once

#include "support/programs/Doorbell.h"
#include "support/programs/ProbeOptions.h"

#include <cstdio>
#include <functional>
#include <span>

namespace hollowfernpike::test {

/// Writes a line for the test, at once.
template <class... Values>
void tell(const char* format, Values... values) {
    std::printf(format, values...);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

/// Aborts, and leaves no memory image behind.
[[noreturn]] void crash();

/// What all probes do, whatever they show their windows on: reads the options on the command line,
/// tells that it has started, and becomes the processes that were asked for. Then `showWindows`
/// opens the windows and stays until they are closed; it is not called if there are to be none.
/// Returns the status to end with.
int runProbe(std::span<char*> commandLine,
             const std::function<void(const ProbeOptions&, const Doorbell&)>& showWindows);

} // namespace hollowfernpike::test
