// Stands in for the fuzzer where the compiler has none: runs every input of the folders that it is
// given once.

#include "fuzz/Target.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <span>
#include <string>

namespace hollowfernpike::test {
namespace {

void replay(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    const std::string input{std::istreambuf_iterator<char>{stream}, {}};
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

int replayAll(std::span<char*> folders) {
    int count = 0;
    for (const auto* folder : folders) {
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            std::cout << entry.path().filename().string() << std::endl;
            replay(entry.path());
            ++count;
        }
    }
    return count > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace
} // namespace hollowfernpike::test

int main(int argc, char** argv) {
    return hollowfernpike::test::replayAll(
        std::span(argv, static_cast<std::size_t>(argc)).subspan(1));
}
