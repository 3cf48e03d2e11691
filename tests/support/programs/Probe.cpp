#include "support/programs/Probe.h"

#include <csignal>
#include <cstdlib>
#include <exception>
#include <stdexcept>

#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace hollowfernpike::test {

namespace {

void startHelper() {
    const pid_t parent = ::getpid();
    const pid_t child = ::fork();
    if (child == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        while (::getppid() == parent) {
            ::pause();
        }
        ::_exit(0);
    }
    tell("child %d", child);
}

// As terminals do whose windows all belong to one process.
void handOver() {
    if (::fork() != 0) {
        ::_exit(0);
    }
    ::setsid();
    tell("handed-over %d", ::getpid());
}

void becomeProcessesOf(const ProbeOptions& options) {
    if (options.handsOver) {
        handOver();
    }
    if (options.forksChild) {
        startHelper();
    }
    while (options.windows == 0) {
        ::pause();
    }
}

} // namespace

void crash() {
    const rlimit noCoreFile{};
    ::setrlimit(RLIMIT_CORE, &noCoreFile);
    std::abort();
}

int runProbe(std::span<char*> commandLine,
             const std::function<void(const ProbeOptions&, const Doorbell&)>& showWindows) {
    try {
        const auto options = parseProbeOptions(commandLine.subspan(1));
        if (!options.log.empty() && std::freopen(options.log.c_str(), "a", stdout) == nullptr) {
            throw std::runtime_error("cannot write " + options.log);
        }
        tell("started %d", ::getpid());
        Doorbell doorbell;
        if (options.isSingle && !doorbell.hang(options.log + ".doorbell")) {
            return 0;
        }
        becomeProcessesOf(options);
        showWindows(options, doorbell);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "probe: %s\n", error.what());
        return 2;
    }
    return 0;
}

} // namespace hollowfernpike::test
