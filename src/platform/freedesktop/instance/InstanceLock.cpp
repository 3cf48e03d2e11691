#include "platform/freedesktop/instance/InstanceLock.h"

#include "platform/posix/FileErrors.h"
#include "platform/posix/SystemCall.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/inotify.h>
#include <sys/socket.h>
#include <sys/stat.h>

namespace hollowfernpike::freedesktop {

namespace {

using Clock = std::chrono::steady_clock;

std::string lockName(const std::string& name) {
    return name + ".lock";
}

std::string socketName(const std::string& name) {
    return name + ".socket";
}

posix::Descriptor openLockFile(const PrivateDirectory& directory, const std::string& name) {
    constexpr int flags = O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    constexpr mode_t mode = S_IRUSR | S_IWUSR;
    return posix::Descriptor{
        posix::checked(::openat(directory.descriptor(), name.c_str(), flags, mode))};
}

/// Whether the file still has a name. A lock on a deleted file excludes nobody.
bool isNamed(int descriptor) {
    struct stat status = {};
    posix::checked(::fstat(descriptor, &status));
    return status.st_nlink > 0;
}

bool lock(int descriptor) {
    if (posix::uninterrupted([&] { return ::flock(descriptor, LOCK_EX | LOCK_NB); }) == 0) {
        return true;
    }
    if (errno != EWOULDBLOCK) {
        throw std::system_error{errno, std::generic_category()};
    }
    return false;
}

/// None if another one holds the lock.
posix::Descriptor lockedFile(const PrivateDirectory& directory, const std::string& name) {
    for (;;) {
        auto file = openLockFile(directory, name);
        if (!lock(file.get())) {
            return {};
        }
        if (isNamed(file.get())) {
            // The sticky bit protects it from programs that clean up runtime directories.
            ::fchmod(file.get(), S_ISVTX | S_IRUSR | S_IWUSR);
            return file;
        }
    }
}

int millisecondsUntil(Clock::time_point deadline) {
    const auto rest = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    return rest.count() > 0 ? static_cast<int>(rest.count()) : 0;
}

bool isReadable(int descriptor, Clock::time_point deadline) {
    pollfd readable{descriptor, POLLIN, 0};
    return ::poll(&readable, 1, millisecondsUntil(deadline)) > 0;
}

/// What the holder answers; empty if it does not.
std::string answerOn(int socket, Clock::time_point deadline) {
    if (!isReadable(socket, deadline)) {
        return {};
    }
    std::array<char, std::max(acknowledgement.size(), refusal.size())> answer{};
    const auto size = ::recv(socket, answer.data(), answer.size(), 0);
    return {answer.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0))};
}

/// Notices files that are moved into a directory from now on; none if the system has no watches
/// left.
class Arrivals {
public:
    explicit Arrivals(const PrivateDirectory& directory)
        : queue_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
        const auto path = "/proc/self/fd/" + std::to_string(directory.descriptor());
        ::inotify_add_watch(queue_.get(), path.c_str(), IN_MOVED_TO);
    }

    /// Waits for a file to arrive; false if none does before the deadline.
    bool wait(Clock::time_point deadline) {
        if (!isReadable(queue_.get(), deadline)) {
            return false;
        }
        alignas(inotify_event) std::array<char, 4096> events{};
        return ::read(queue_.get(), events.data(), events.size()) > 0;
    }

private:
    posix::Descriptor queue_;
};

/// The same for this request.
std::string answerTo(const std::string& text, const PrivateDirectory& directory,
                     const std::string& name, Clock::time_point deadline) {
    try {
        const auto socket = connectedSocket(directory, name);
        posix::checked(::send(socket.get(), text.data(), text.size(), MSG_NOSIGNAL));
        return answerOn(socket.get(), deadline);
    } catch (const std::system_error&) {
        return {};
    }
}

} // namespace

InstanceLock::InstanceLock(PrivateDirectory directory, std::string socketName,
                           posix::Descriptor file)
    : directory_(std::move(directory)), socketName_(std::move(socketName)), file_(std::move(file)),
      socket_(listeningSocket(directory_, socketName_)) {}

InstanceLock::~InstanceLock() {
    ::unlinkat(directory_.descriptor(), socketName_.c_str(), 0);
}

std::unique_ptr<InstanceLock> InstanceLock::acquire(const std::string& name) {
    auto directory = PrivateDirectory::forRuntime();
    const auto path = directory.path();
    auto failed = lockName(name);
    try {
        auto file = lockedFile(directory, failed);
        if (!file) {
            return nullptr;
        }
        failed = socketName(name);
        return std::unique_ptr<InstanceLock>(
            new InstanceLock(std::move(directory), failed, std::move(file)));
    } catch (const std::system_error& error) {
        throw posix::fileError(posix::FileOperation::write, path / failed, error.code().value());
    }
}

void InstanceLock::listen(platform::RunLoop& runLoop, InstanceRequestHandler onRequest,
                          InstanceRequestJudge mayBeDone) {
    listener_.reset();
    listener_.emplace(socket_, runLoop, std::move(onRequest), std::move(mayBeDone));
}

// A holder may have the lock and not listen yet: waits until its socket is moved into place.
HandOver handOver(const std::string& name, const InstanceRequest& request,
                  std::chrono::milliseconds patience) {
    const auto text = encoded(request);
    const auto directory = PrivateDirectory::forRuntime();
    const auto deadline = Clock::now() + patience;
    Arrivals arrivals(directory);
    bool isLate = false;
    for (;;) {
        const auto answer = answerTo(text, directory, socketName(name), deadline);
        if (answer == acknowledgement || answer == refusal) {
            return {.isTaken = answer == acknowledgement, .isRefused = answer == refusal};
        }
        if (auto lock = InstanceLock::acquire(name); lock || isLate) {
            return {.lock = std::move(lock)};
        }
        isLate = !arrivals.wait(deadline);
    }
}

} // namespace hollowfernpike::freedesktop
