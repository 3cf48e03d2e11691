#include "platform/freedesktop/launching/Spawn.h"

#include "platform/freedesktop/launching/CoreLimit.h"

#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace hollowfernpike::freedesktop {

namespace {

void check(int failure) {
    if (failure != 0) {
        throw std::system_error{failure, std::generic_category()};
    }
}

class Attributes {
public:
    Attributes() {
        check(::posix_spawnattr_init(&value_));
        sigset_t signals{};
        sigemptyset(&signals);
        ::posix_spawnattr_setsigmask(&value_, &signals);
        sigfillset(&signals);
        ::posix_spawnattr_setsigdefault(&value_, &signals);
        ::posix_spawnattr_setflags(&value_, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK |
                                                POSIX_SPAWN_SETSIGDEF);
    }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;
    ~Attributes() { ::posix_spawnattr_destroy(&value_); }

    const posix_spawnattr_t* get() const { return &value_; }

private:
    posix_spawnattr_t value_{};
};

class FileActions {
public:
    explicit FileActions(const std::string& workingDirectory) {
        check(::posix_spawn_file_actions_init(&value_));
        check(::posix_spawn_file_actions_addopen(&value_, STDIN_FILENO, "/dev/null", O_RDONLY, 0));
        check(::posix_spawn_file_actions_addchdir_np(&value_, workingDirectory.c_str()));
        check(::posix_spawn_file_actions_addclosefrom_np(&value_, STDERR_FILENO + 1));
    }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;
    ~FileActions() { ::posix_spawn_file_actions_destroy(&value_); }

    const posix_spawn_file_actions_t* get() const { return &value_; }

private:
    posix_spawn_file_actions_t value_{};
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

} // namespace

StartedProcess spawn(ProgramStart start) {
    const Attributes attributes;
    const FileActions actions(start.workingDirectory);
    const auto arguments = pointersTo(start.arguments);
    const auto environment = pointersTo(start.environment);
    pid_t number = 0;
    {
        const CoreFilesGivenBack limit;
        check(::posix_spawn(&number, start.program.c_str(), actions.get(), attributes.get(),
                            arguments.data(), environment.data()));
    }
    // The number cannot be reused for another process before we wait for the child.
    posix::Descriptor descriptor(static_cast<int>(::syscall(SYS_pidfd_open, number, 0)));
    if (!descriptor) {
        const int failure = errno;
        ::kill(number, SIGKILL);
        ::waitid(P_PID, static_cast<id_t>(number), nullptr, WEXITED);
        check(failure);
    }
    return {number, std::move(descriptor)};
}

void ChildProcesses::adopt(StartedProcess process, std::function<void()> onEnd) {
    const pid_t number = process.number;
    auto& child = children_[number];
    child.process = std::move(process);
    child.onEnd = std::move(onEnd);
    child.watch =
        runLoop_.watchReadable(child.process.descriptor.get(), [this, number] { reap(number); });
}

void ChildProcesses::reap(pid_t number) {
    const auto child = children_.extract(number);
    ::waitid(P_PIDFD, static_cast<id_t>(child.mapped().process.descriptor.get()), nullptr,
             WEXITED | WNOHANG);
    child.mapped().onEnd();
}

} // namespace hollowfernpike::freedesktop
