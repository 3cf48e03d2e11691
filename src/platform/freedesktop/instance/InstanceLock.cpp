#include "platform/freedesktop/instance/InstanceLock.h"

#include "platform/freedesktop/files/FileErrors.h"
#include "platform/freedesktop/files/PercentEncoding.h"
#include "platform/freedesktop/files/SystemCall.h"
#include "platform/freedesktop/instance/InstanceSocket.h"

#include <array>
#include <string_view>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>

namespace hollowfernpike::freedesktop {

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds pause{10}; // between two attempts

std::string runtimeName(const std::string& name, std::string_view extension) {
    return "hollowfernpike-" + percentEncoded(name, "-_:.") + std::string{extension};
}

std::string lockName(const std::string& name) {
    return runtimeName(name, ".lock");
}

std::string socketName(const std::string& name) {
    return runtimeName(name, ".socket");
}

Descriptor openLockFile(const PrivateDirectory& directory, const std::string& name) {
    constexpr int flags = O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    constexpr mode_t mode = S_IRUSR | S_IWUSR;
    return Descriptor{checked(::openat(directory.descriptor(), name.c_str(), flags, mode))};
}

/// Whether the file still has a name. A lock on one without is nobody else's business.
bool isNamed(int descriptor) {
    struct stat status = {};
    checked(::fstat(descriptor, &status));
    return status.st_nlink > 0;
}

bool lock(int descriptor) {
    if (uninterrupted([&] { return ::flock(descriptor, LOCK_EX | LOCK_NB); }) == 0) {
        return true;
    }
    if (errno != EWOULDBLOCK) {
        throw std::system_error{errno, std::generic_category()};
    }
    return false;
}

/// None if another one holds the lock.
Descriptor lockedFile(const PrivateDirectory& directory, const std::string& name) {
    for (;;) {
        auto file = openLockFile(directory, name);
        if (!lock(file.get())) {
            return {};
        }
        if (isNamed(file.get())) {
            // The sticky bit keeps it from those who clean up runtime directories.
            ::fchmod(file.get(), S_ISVTX | S_IRUSR | S_IWUSR);
            return file;
        }
    }
}

bool isAcknowledged(int socket, Clock::time_point deadline) {
    const auto rest = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    pollfd readable{socket, POLLIN, 0};
    const int wait = rest.count() > 0 ? static_cast<int>(rest.count()) : 0;
    if (::poll(&readable, 1, wait) <= 0) {
        return false;
    }
    std::array<char, acknowledgement.size()> answer{};
    const auto size = ::recv(socket, answer.data(), answer.size(), 0);
    return size > 0 &&
           acknowledgement == std::string_view(answer.data(), static_cast<std::size_t>(size));
}

bool deliver(const PrivateDirectory& directory, const std::string& name, const std::string& text,
             Clock::time_point deadline) {
    try {
        const auto socket = connectedSocket(directory, name);
        checked(::send(socket.get(), text.data(), text.size(), MSG_NOSIGNAL));
        return isAcknowledged(socket.get(), deadline);
    } catch (const std::system_error&) {
        return false;
    }
}

} // namespace

std::optional<InstanceLock> InstanceLock::acquire(const std::string& name) {
    auto directory = PrivateDirectory::forRuntime();
    try {
        auto file = lockedFile(directory, lockName(name));
        if (!file) {
            return std::nullopt;
        }
        return InstanceLock(
            std::make_unique<Held>(Held{std::move(directory), name, std::move(file), nullptr}));
    } catch (const std::system_error& error) {
        throw fileError(FileOperation::write, directory.path() / lockName(name),
                        error.code().value());
    }
}

void InstanceLock::listen(platform::RunLoop& runLoop, InstanceRequestHandler onRequest) {
    held_->listener.reset();
    held_->listener = std::make_unique<InstanceListener>(held_->directory, socketName(held_->name),
                                                         runLoop, std::move(onRequest));
}

HandOver handOver(const std::string& name, const InstanceRequest& request,
                  std::chrono::milliseconds patience) {
    const auto text = encoded(request);
    const auto directory = PrivateDirectory::forRuntime();
    const auto deadline = Clock::now() + patience;
    for (;;) {
        if (deliver(directory, socketName(name), text, deadline)) {
            return {.isTaken = true, .lock = {}};
        }
        if (auto lock = InstanceLock::acquire(name)) {
            return {.isTaken = false, .lock = std::move(lock)};
        }
        if (Clock::now() >= deadline) {
            return {};
        }
        std::this_thread::sleep_for(pause);
    }
}

} // namespace hollowfernpike::freedesktop
