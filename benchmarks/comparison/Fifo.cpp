#include "comparison/Fifo.h"

#include "support/WaitUntil.h"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace hollowfernpike::bench {

namespace {

constexpr mode_t writtenByAnybody = S_IRUSR | S_IWUSR | S_IWGRP | S_IWOTH;

} // namespace

Fifo::Fifo(std::filesystem::path path) : path_(std::move(path)) {
    if (::mkfifo(path_.c_str(), writtenByAnybody) != 0 ||
        ::chmod(path_.c_str(), writtenByAnybody) != 0) {
        throw std::system_error(errno, std::generic_category(), path_);
    }
    // Open for writing, too, so that reading never meets the end of the file.
    descriptor_ = ::open(path_.c_str(), O_RDWR | O_CLOEXEC | O_NONBLOCK);
    if (descriptor_ < 0) {
        throw std::system_error(errno, std::generic_category(), path_);
    }
}

Fifo::~Fifo() {
    ::close(descriptor_);
}

bool Fifo::wait() const {
    pollfd waiting{descriptor_, POLLIN, 0};
    return ::poll(&waiting, 1, static_cast<int>(test::patience.count())) > 0;
}

std::size_t Fifo::read(void* bytes, std::size_t size) const {
    return static_cast<std::size_t>(std::max<ssize_t>(::read(descriptor_, bytes, size), 0));
}

} // namespace hollowfernpike::bench
