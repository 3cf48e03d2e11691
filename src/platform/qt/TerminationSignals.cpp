#include "platform/qt/TerminationSignals.h"

#include "platform/freedesktop/files/SystemCall.h"

#include <csignal>
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
    descriptor_ = freedesktop::Descriptor{
        freedesktop::checked(::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK))};
}

void TerminationSignals::watch(platform::RunLoop& runLoop, std::function<void()> onSignal) {
    watch_ = runLoop.watchReadable(
        descriptor_.get(), [descriptor = descriptor_.get(), onSignal = std::move(onSignal)] {
            signalfd_siginfo signal{};
            while (::read(descriptor, &signal, sizeof signal) == sizeof signal) {
                onSignal();
            }
        });
}

} // namespace hollowfernpike::qt
