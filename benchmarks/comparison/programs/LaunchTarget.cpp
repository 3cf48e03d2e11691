// A program whose launch is timed: the first thing it does is to read the clock. It writes the time
// in nanoseconds and its process number into the FIFO that its only argument names.

#include <array>
#include <cstdint>
#include <ctime>

#include <fcntl.h>
#include <unistd.h>

int main(int count, char** arguments) {
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    if (count != 2) {
        return 2;
    }
    const std::array<std::int64_t, 2> report{now.tv_sec * 1'000'000'000LL + now.tv_nsec,
                                             ::getpid()};
    const int fifo = ::open(arguments[1], O_WRONLY | O_CLOEXEC);
    return ::write(fifo, report.data(), sizeof report) == sizeof report ? 0 : 1;
}
