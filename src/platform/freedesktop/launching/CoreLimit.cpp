#include "platform/freedesktop/launching/CoreLimit.h"

#include <optional>

#include <sys/resource.h>

namespace hollowfernpike::freedesktop {

namespace {

std::optional<rlimit> limitAtStart;

// The hard limit stays: once lowered, it could not be raised again for the programs we start.
void setLimit(rlim_t size) {
    const rlimit limit{size, limitAtStart->rlim_max};
    ::setrlimit(RLIMIT_CORE, &limit);
}

} // namespace

void turnOffCoreFiles() {
    rlimit limit{};
    if (!limitAtStart && ::getrlimit(RLIMIT_CORE, &limit) == 0) {
        limitAtStart = limit;
        setLimit(0);
    }
}

CoreFilesGivenBack::CoreFilesGivenBack() {
    if (limitAtStart) {
        setLimit(limitAtStart->rlim_cur);
    }
}

CoreFilesGivenBack::~CoreFilesGivenBack() {
    if (limitAtStart) {
        setLimit(0);
    }
}

} // namespace hollowfernpike::freedesktop
