#include "platform/freedesktop/launching/CoreLimit.h"

#include <optional>

#include <sys/resource.h>

namespace hollowfernpike::freedesktop {

namespace {

std::optional<rlimit> limitAtStart;

} // namespace

// The hard limit stays: once it is lowered, nobody could give it back.
void turnOffCoreFiles() {
    rlimit limit{};
    if (!limitAtStart && ::getrlimit(RLIMIT_CORE, &limit) == 0) {
        limitAtStart = limit;
        limit.rlim_cur = 0;
        ::setrlimit(RLIMIT_CORE, &limit);
    }
}

void giveBackCoreFiles() {
    if (limitAtStart) {
        ::setrlimit(RLIMIT_CORE, &*limitAtStart);
    }
}

} // namespace hollowfernpike::freedesktop
