#pragma once

namespace hollowfernpike::freedesktop {

/// From now on a crash of this process leaves no core file, and no copy of its memory with crash
/// reporters that respect the limit: key presses could be in it. PR_SET_DUMPABLE would stop all
/// copies, but also close our /proc entry to portals and task bars, which identify us by it.
void turnOffCoreFiles();

/// As long as it lives, new processes get the limit that we were started with.
class CoreFilesGivenBack {
public:
    CoreFilesGivenBack();
    CoreFilesGivenBack(const CoreFilesGivenBack&) = delete;
    CoreFilesGivenBack& operator=(const CoreFilesGivenBack&) = delete;
    ~CoreFilesGivenBack();
};

} // namespace hollowfernpike::freedesktop
