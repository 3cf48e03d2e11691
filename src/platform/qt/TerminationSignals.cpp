#include "platform/qt/TerminationSignals.h"

#include "platform/posix/SystemCall.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <utility>

#include <sys/eventfd.h>
#include <unistd.h>

namespace hollowfernpike::qt {

namespace {

constexpr unsigned secondsToLeave = 5;

std::atomic<int> arrivalsOfSignals = -1;

/// May interrupt any thread at any place, so it calls nothing that is not made for that.
void noteSignal(int /*number*/) {
    const int before = errno;
    ::alarm(secondsToLeave); // SIGALRM ends the process
    constexpr std::uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(arrivalsOfSignals, &one, sizeof one);
    errno = before;
}

void handleBy(void (*handler)(int)) {
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        ::sigaction(number, &action, nullptr);
    }
}

} // namespace

TerminationSignals::TerminationSignals()
    : arrivals_(posix::checked(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))) {
    arrivalsOfSignals = arrivals_.get();
    handleBy(noteSignal);
}

TerminationSignals::~TerminationSignals() {
    handleBy(SIG_DFL);
    ::alarm(0);
}

void TerminationSignals::watch(platform::RunLoop& runLoop, std::function<void()> onSignal) {
    watch_ = runLoop.watchReadable(arrivals_.get(),
                                   [arrivals = arrivals_.get(), onSignal = std::move(onSignal)] {
                                       std::uint64_t count = 0;
                                       if (::read(arrivals, &count, sizeof count) == sizeof count) {
                                           onSignal();
                                       }
                                   });
}

} // namespace hollowfernpike::qt
