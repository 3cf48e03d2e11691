#include "support/Files.h"
#include "support/TemporaryDirectory.h"
#include "ui/icons/ReadIcons.h"

#include <cstddef>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

namespace hollowfernpike::test {
namespace {

/// Of this process, in kilobytes.
std::size_t anonymousMemory() {
    std::ifstream stream("/proc/self/smaps_rollup");
    std::size_t kilobytes = 0;
    for (std::string word; stream >> word;) {
        if (word == "Anonymous:") {
            stream >> kilobytes;
        }
    }
    return kilobytes;
}

void readAtOnce(const std::string& file, int times) {
    for (int time = 0; time < times; ++time) {
        readIcon({file}, QSize(32, 32), [](const QImage&) {});
    }
    awaitIcons();
}

TEST(IconMemoryTest, LargeIconsLeaveNoneBehind) {
    constexpr std::size_t mostGrowth = 4096;
    const TemporaryDirectory folder;
    const auto file = folder.path() / "large.svg";
    putFile(file,
            R"(<svg xmlns="http://www.w3.org/2000/svg">)" + std::string(4'000'000, ' ') + "</svg>");
    readAtOnce(file, 1);
    const auto before = anonymousMemory();
    ASSERT_GT(before, 0U);
    readAtOnce(file, 40);
    EXPECT_LT(anonymousMemory(), before + mostGrowth);
}

} // namespace
} // namespace hollowfernpike::test
