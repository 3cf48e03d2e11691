// What it costs to find the owner of a window, to find running applications, and to read and list
// the installed entries: 500 of them, each as long as one with translations into 60 languages.

#include "platform/freedesktop/entries/ApplicationBundles.h"
#include "platform/freedesktop/entries/DesktopEntries.h"
#include "platform/freedesktop/launching/ProgramLaunch.h"
#include "platform/freedesktop/owners/ProcessTable.h"
#include "platform/freedesktop/owners/WindowOwners.h"
#include "support/TemporaryDirectory.h"

#include <fstream>
#include <string>

#include <benchmark/benchmark.h>
#include <sys/wait.h>
#include <unistd.h>

namespace hollowfernpike::freedesktop {

namespace {

constexpr int entryCount = 500;

class Installation {
public:
    Installation() {
        for (int number = 0; number < entryCount; ++number) {
            write(number);
        }
    }

    const std::filesystem::path& directory() const { return directory_.path(); }

    std::string path(int number) const {
        return (directory() / ("org.example.App" + std::to_string(number) + ".desktop")).string();
    }

    void write(int number) const {
        const auto name = "App" + std::to_string(number);
        std::ofstream file(path(number));
        file << "[Desktop Entry]\nType=Application\nExec=true %U\nStartupWMClass=" << name << '\n';
        for (int language = 0; language < 60; ++language) {
            file << "Name[l" << language << "]=" << name << "\nComment[l" << language
                 << "]=An application that stands for many others\n";
        }
        file << "Name=" << name << "\nIcon=app\n";
    }

private:
    test::TemporaryDirectory directory_;
};

const Installation& installation() {
    static const Installation installed;
    return installed;
}

DesktopEntries& entries() {
    static DesktopEntries known({installation().directory()});
    return known;
}

platform::WindowFacts windowOf(const std::string& className) {
    platform::WindowFacts window;
    window.instanceName = className;
    window.className = className;
    return window;
}

void readAllEntries(benchmark::State& state) {
    for ([[maybe_unused]] const auto iteration : state) {
        DesktopEntries fresh({installation().directory()});
        benchmark::DoNotOptimize(fresh.generation());
    }
}
BENCHMARK(readAllEntries)->Unit(benchmark::kMillisecond);

void readEntriesAfterOneChange(benchmark::State& state) {
    entries().generation();
    for ([[maybe_unused]] const auto iteration : state) {
        state.PauseTiming();
        installation().write(7);
        state.ResumeTiming();
        benchmark::DoNotOptimize(entries().generation());
    }
}
BENCHMARK(readEntriesAfterOneChange)->Unit(benchmark::kMicrosecond);

void askUnchangedEntries(benchmark::State& state) {
    for ([[maybe_unused]] const auto iteration : state) {
        benchmark::DoNotOptimize(entries().generation());
    }
}
BENCHMARK(askUnchangedEntries);

void listApplicationsFirstTime(benchmark::State& state) {
    for ([[maybe_unused]] const auto iteration : state) {
        DesktopEntries fresh({installation().directory()});
        benchmark::DoNotOptimize(ApplicationBundles(fresh).installedApplications("ja"));
    }
}
BENCHMARK(listApplicationsFirstTime)->Unit(benchmark::kMillisecond);

void listApplicationsAgain(benchmark::State& state) {
    entries().generation();
    ApplicationBundles bundles(entries());
    for ([[maybe_unused]] const auto iteration : state) {
        benchmark::DoNotOptimize(bundles.installedApplications("ja"));
    }
}
BENCHMARK(listApplicationsAgain)->Unit(benchmark::kMillisecond);

void ownerByClass(benchmark::State& state) {
    const auto window = windowOf("App250");
    const auto& index = entries().index();
    for ([[maybe_unused]] const auto iteration : state) {
        benchmark::DoNotOptimize(ownerOf(window, {}, index));
    }
}
BENCHMARK(ownerByClass);

void ownerOfNobodysWindow(benchmark::State& state) {
    const auto window = windowOf("Nobody");
    const auto process = processFacts(::getpid());
    const auto& index = entries().index();
    for ([[maybe_unused]] const auto iteration : state) {
        benchmark::DoNotOptimize(ownerOf(window, process, index));
    }
}
BENCHMARK(ownerOfNobodysWindow);

void factsOfAProcess(benchmark::State& state) {
    for ([[maybe_unused]] const auto iteration : state) {
        benchmark::DoNotOptimize(processFacts(::getpid()));
    }
}
BENCHMARK(factsOfAProcess)->Unit(benchmark::kMicrosecond);

void runningFirstTime(benchmark::State& state) {
    entries().generation();
    for ([[maybe_unused]] const auto iteration : state) {
        ProcessTable table(entries());
        benchmark::DoNotOptimize(table.running("org.example.App3"));
    }
}
BENCHMARK(runningFirstTime)->Unit(benchmark::kMicrosecond);

void runningWithNothingNew(benchmark::State& state) {
    ProcessTable table(entries());
    for ([[maybe_unused]] const auto iteration : state) {
        benchmark::DoNotOptimize(table.running("org.example.App3"));
    }
}
BENCHMARK(runningWithNothingNew)->Unit(benchmark::kMicrosecond);

void runningAfterAProcessCameAndWent(benchmark::State& state) {
    ProcessTable table(entries());
    for ([[maybe_unused]] const auto iteration : state) {
        state.PauseTiming();
        const pid_t child = ::fork();
        if (child == 0) {
            ::_exit(0);
        }
        ::waitpid(child, nullptr, 0);
        state.ResumeTiming();
        benchmark::DoNotOptimize(table.running("org.example.App3"));
    }
}
BENCHMARK(runningAfterAProcessCameAndWent)->Unit(benchmark::kMicrosecond);

void entryForALaunch(benchmark::State& state) {
    const auto path = installation().path(3);
    for ([[maybe_unused]] const auto iteration : state) {
        benchmark::DoNotOptimize(entries().entryAt(path));
    }
}
BENCHMARK(entryForALaunch);

void startAProgram(benchmark::State& state) {
    const auto entry = entries().entryAt(installation().path(3));
    for ([[maybe_unused]] const auto iteration : state) {
        const auto process = launchProgram(entry, "id_TIME1");
        state.PauseTiming();
        ::waitpid(process.number, nullptr, 0);
        state.ResumeTiming();
    }
}
BENCHMARK(startAProgram)->Unit(benchmark::kMicrosecond)->UseRealTime();

} // namespace

} // namespace hollowfernpike::freedesktop
