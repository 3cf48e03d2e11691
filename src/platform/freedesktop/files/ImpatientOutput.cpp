#include "platform/freedesktop/files/ImpatientOutput.h"

#include "platform/posix/SystemCall.h"

#include <climits>
#include <cstddef>

#include <poll.h>
#include <unistd.h>

namespace hollowfernpike::freedesktop {

// A pipe that is ready for writing takes PIPE_BUF bytes at once. Not O_NONBLOCK: that would hold
// for everybody who shares the descriptor, such as the shell.
void writeWithoutWaiting(int descriptor, std::string_view text) {
    while (!text.empty()) {
        pollfd writable{descriptor, POLLOUT, 0};
        if (::poll(&writable, 1, 0) <= 0 || (writable.revents & POLLOUT) == 0) {
            return;
        }
        const auto part = text.substr(0, PIPE_BUF);
        const auto count =
            posix::uninterrupted([&] { return ::write(descriptor, part.data(), part.size()); });
        if (count <= 0) {
            return;
        }
        text.remove_prefix(static_cast<std::size_t>(count));
    }
}

} // namespace hollowfernpike::freedesktop
