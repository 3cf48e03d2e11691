#include "comparison/Contestant.h"

#include "support/WaitUntil.h"
#include "support/WriteFile.h"

#include <algorithm>
#include <csignal>
#include <iterator>
#include <stdexcept>

namespace hollowfernpike::bench {

namespace {

test::KeyGrab grabOf(const std::string& display) {
    return {test::KeyInjector{display}.keycode(combination.keyName()), combination.modifierState()};
}

} // namespace

Contestant ours(const test::PrivateDesktop& desktop, const InstalledApplication& application) {
    return {.name = "hollowfernpike",
            .file = shortcutsFile(desktop.dataHome()),
            .configuration = shortcutList(application),
            .arguments = {HFP_PROGRAM}};
}

Contestant sxhkd(const test::PrivateDesktop& desktop, const std::string& name,
                 const std::string& command) {
    const auto file = desktop.home() / "sxhkdrc";
    return {.name = name,
            .file = file,
            .configuration = "ctrl + alt + x\n    " + command + '\n',
            .arguments = {"sxhkd", "-c", file}};
}

Contestant xbindkeys(const test::PrivateDesktop& desktop, const std::string& name,
                     const std::string& command) {
    const auto file = desktop.home() / "xbindkeysrc";
    return {.name = name,
            .file = file,
            .configuration = '"' + command + "\"\n    Control + Alt + x\n",
            .arguments = {"xbindkeys", "--nodaemon", "--file", file}};
}

RunningContestant::RunningContestant(const test::PrivateDesktop& desktop,
                                     const Contestant& contestant)
    : prober_(desktop.display()), grab_(grabOf(desktop.display())) {
    test::writeFile(contestant.file, contestant.configuration);
    process_ = desktop.start(contestant.arguments);
    if (!test::waitUntil([this] { return holdsCombination(); })) {
        throw std::runtime_error(contestant.name +
                                 " does not get the combination: " + process_->errors());
    }
}

RunningContestant::~RunningContestant() {
    process_->signal(SIGTERM);
    static_cast<void>(process_->wait());
    static_cast<void>(test::waitUntil([this] { return !holdsCombination(); }));
}

bool RunningContestant::holdsCombination() {
    return prober_.areTaken({grab_});
}

std::vector<Racer> racersOn(const test::PrivateDesktop& desktop,
                            const std::vector<Contestant>& contestants) {
    std::vector<Racer> racers;
    std::ranges::transform(
        contestants, std::back_inserter(racers), [&desktop](const Contestant& contestant) {
            return Racer{.name = contestant.name, .run = [&desktop, contestant](const auto& race) {
                             const RunningContestant running(desktop, contestant);
                             race(running.pid());
                         }};
        });
    return racers;
}

} // namespace hollowfernpike::bench
