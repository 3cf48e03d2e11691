#include "model/document/ShortcutDecoder.h"
#include "model/document/ShortcutEncoder.h"
#include "platform/freedesktop/files/FileManager.h"
#include "support/TemporaryDirectory.h"

#include <cstdint>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace hollowfernpike {
namespace {

/// A list as people have them, only longer: texts of usual length, some of them not ASCII.
std::vector<AppShortcut> shortcuts(std::int64_t count) {
    std::vector<AppShortcut> list;
    for (std::int64_t index = 0; index < count; ++index) {
        const auto number = std::to_string(index);
        list.push_back(
            {.id = UUID::random(),
             .keyCode = static_cast<std::uint16_t>(index % 128),
             .modifierFlags = modifierMask | static_cast<std::uint64_t>(index) << 32,
             .appPath = "/usr/share/applications/org.example.Application" + number + ".desktop",
             .appName = "アプリケーション " + number,
             .appBundleIdentifier = "org.example.Application" + number});
    }
    return list;
}

std::string compactDocument(std::int64_t count) {
    return encodeShortcuts(shortcuts(count), DocumentLayout::compact);
}

void decode(benchmark::State& state) {
    const auto document = compactDocument(state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(decodeShortcuts(document));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(document.size()));
}

void encode(benchmark::State& state, DocumentLayout layout) {
    const auto list = shortcuts(state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(encodeShortcuts(list, layout));
    }
}

/// Read and decode, as at the start of the utility.
void load(benchmark::State& state) {
    const test::TemporaryDirectory folder;
    const auto file = folder.path() / "shortcuts.json";
    freedesktop::FileManager files;
    files.writeFileAtomically(file, compactDocument(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(decodeShortcuts(files.readFile(file)));
    }
}

/// Encode and bring to the disk, as at every change.
void save(benchmark::State& state) {
    const test::TemporaryDirectory folder;
    const auto file = folder.path() / "shortcuts.json";
    freedesktop::FileManager files;
    const auto list = shortcuts(state.range(0));
    for (auto _ : state) {
        files.writeFileAtomically(file, encodeShortcuts(list, DocumentLayout::compact));
    }
}

/// Wall time, because a save waits for the disk.
void lengths(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(10)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond)->UseRealTime();
}

BENCHMARK(decode)->Apply(lengths);
BENCHMARK_CAPTURE(encode, compact, DocumentLayout::compact)->Apply(lengths);
BENCHMARK_CAPTURE(encode, pretty, DocumentLayout::pretty)->Apply(lengths);
BENCHMARK(load)->Apply(lengths);
BENCHMARK(save)->Apply(lengths);

} // namespace
} // namespace hollowfernpike
