#pragma once

#include <cstddef>
#include <cstdint>

/// What a fuzzer calls, by this name, with every input that it makes up. Returns 0. Every file of
/// the folder that defines it is a program of its own.
extern "C" int LLVMFuzzerTestOneInput( // NOLINT(readability-identifier-naming)
    const std::uint8_t* data, std::size_t size);
