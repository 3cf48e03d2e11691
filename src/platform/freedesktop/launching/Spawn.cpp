#include "platform/freedesktop/launching/Spawn.h"

#include "platform/freedesktop/launching/CoreLimit.h"

#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstddef>
#include <memory>
#include <system_error>

#include <fcntl.h>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

namespace hollowfernpike::freedesktop {

namespace {

// Below what the allocator maps anew each time.
constexpr std::size_t stackSize = std::size_t{64} * 1024;
constexpr std::size_t numberWidth = 12;

// All that the new process needs, laid out before it exists. It runs on our memory until it has
// become the program (we stand still meanwhile), so it must neither allocate nor throw nor return.
struct Plan {
    const char* program = nullptr;
    const char* workingDirectory = nullptr;
    char* const* arguments = nullptr;
    char* const* environment = nullptr;
    char* ownNumber = nullptr;
    int failure = 0;
};

void resetSignals() {
    struct sigaction standard = {};
    standard.sa_handler = SIG_DFL;
    for (int number = 1; number < NSIG; ++number) {
        ::sigaction(number, &standard, nullptr);
    }
}

bool emptyStandardInput() {
    const int nothing = ::open("/dev/null", O_RDONLY);
    return nothing == STDIN_FILENO || ::dup2(nothing, STDIN_FILENO) == STDIN_FILENO;
}

int becomeProgram(void* argument) {
    auto& plan = *static_cast<Plan*>(argument);
    resetSignals();
    giveBackCoreFiles();
    ::setsid();
    if (plan.ownNumber != nullptr) {
        *std::to_chars(plan.ownNumber, plan.ownNumber + numberWidth - 1, ::getpid()).ptr = '\0';
    }
    if (emptyStandardInput() && ::chdir(plan.workingDirectory) == 0) {
        ::close_range(STDERR_FILENO + 1, ~0U, 0);
        sigset_t none{};
        sigemptyset(&none);
        ::sigprocmask(SIG_SETMASK, &none, nullptr);
        ::execve(plan.program, plan.arguments, plan.environment);
    }
    plan.failure = errno;
    ::_exit(127);
}

// A handler of ours must never run in the new process as long as it shares our memory.
class SignalsBlocked {
public:
    SignalsBlocked() {
        sigset_t all{};
        sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &before_);
    }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;
    ~SignalsBlocked() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

private:
    sigset_t before_{};
};

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (auto& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

// As posix_spawn does it, which itself can neither tell the program its own number nor give us a
// descriptor of the process.
StartedProcess run(Plan& plan) {
    const auto stack = std::make_unique_for_overwrite<std::byte[]>(stackSize);
    const SignalsBlocked guard;
    int descriptor = -1;
    const pid_t number =
        ::clone(&becomeProgram, stack.get() + stackSize,
                CLONE_VM | CLONE_VFORK | CLONE_PIDFD | SIGCHLD, &plan, &descriptor);
    if (number < 0) {
        throw std::system_error(errno, std::generic_category());
    }
    return {number, Descriptor(descriptor)};
}

} // namespace

StartedProcess spawn(ProgramStart start) {
    Plan plan;
    if (!start.ownNumberVariable.empty()) {
        auto& variable = start.environment.emplace_back(start.ownNumberVariable + '=');
        const auto valueAt = variable.size();
        variable.append(numberWidth, '\0');
        plan.ownNumber = &variable[valueAt];
    }
    const auto argumentPointers = pointersTo(start.arguments);
    const auto environmentPointers = pointersTo(start.environment);
    plan.program = start.program.c_str();
    plan.workingDirectory = start.workingDirectory.c_str();
    plan.arguments = argumentPointers.data();
    plan.environment = environmentPointers.data();

    auto process = run(plan);
    if (plan.failure != 0) {
        ::waitid(P_PID, static_cast<id_t>(process.number), nullptr, WEXITED);
        throw std::system_error(plan.failure, std::generic_category());
    }
    return process;
}

} // namespace hollowfernpike::freedesktop
