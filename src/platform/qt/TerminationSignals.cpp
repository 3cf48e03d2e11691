#include "platform/qt/TerminationSignals.h"

#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

#include <sys/signalfd.h>
#include <unistd.h>

namespace hollowfernpike::qt {

TerminationSignals::TerminationSignals() {
    sigset_t signals{};
    sigemptyset(&signals);
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        sigaddset(&signals, number);
    }
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    descriptor_ = ::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
    if (descriptor_ < 0) {
        throw std::system_error(errno, std::generic_category(), "signalfd");
    }
}

TerminationSignals::~TerminationSignals() {
    watch_.reset();
    ::close(descriptor_);
}

void TerminationSignals::watch(platform::RunLoop& runLoop, std::function<void()> onSignal) {
    watch_ = runLoop.watchReadable(
        descriptor_, [descriptor = descriptor_, onSignal = std::move(onSignal)] {
            signalfd_siginfo signal{};
            while (::read(descriptor, &signal, sizeof signal) == sizeof signal) {
                onSignal();
            }
        });
}

} // namespace hollowfernpike::qt
