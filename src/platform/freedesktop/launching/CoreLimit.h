#pragma once

namespace hollowfernpike::freedesktop {

/// From now on a crash of this process leaves no core file, and no copy of its memory with the
/// crash reporters that keep to the limit: key presses could be in it. To make the process
/// undumpable (PR_SET_DUMPABLE) would go further, and hide it from portals and task bars, too,
/// which look into /proc to know whom they deal with.
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
