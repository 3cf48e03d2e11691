#include "comparison/Contestant.h"

#include "support/WaitUntil.h"
#include "support/WriteFile.h"

#include <csignal>
#include <stdexcept>

namespace hollowfernpike::bench {

namespace {

test::KeyGrab grabOf(const std::string& display) {
    return {test::KeyInjector{display}.keycode(combination.keyName()), combination.modifierState()};
}

Racer racerOn(const test::PrivateDesktop& desktop, const Contestant& contestant) {
    return {.name = contestant.name,
            .role = contestant.role,
            .run = [&desktop, contestant](auto& race) {
                const RunningContestant running(desktop, contestant);
                race(running.pid());
            }};
}

} // namespace

Contestant ours(const Build& build, const test::PrivateDesktop& desktop,
                const InstalledApplication& application) {
    return {.name = build.name,
            .role = Role::build,
            .file = shortcutsFile(desktop.dataHome()),
            .configuration = shortcutList(application),
            .arguments = {build.program}};
}

Contestant sxhkd(const test::PrivateDesktop& desktop, const std::string& name,
                 const std::string& command) {
    const auto file = desktop.home() / "sxhkdrc";
    return {.name = name,
            .role = Role::peer,
            .file = file,
            .configuration = "ctrl + alt + x\n    " + command + '\n',
            .arguments = {"sxhkd", "-c", file}};
}

Contestant xbindkeys(const test::PrivateDesktop& desktop, const std::string& name,
                     const std::string& command) {
    const auto file = desktop.home() / "xbindkeysrc";
    return {.name = name,
            .role = Role::peer,
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

std::vector<Racer> racersOn(const test::PrivateDesktop& desktop, const Builds& builds,
                            const InstalledApplication& application,
                            const std::vector<Contestant>& peers) {
    std::vector<Racer> racers;
    for (const auto& build : builds) {
        racers.push_back(racerOn(desktop, ours(build, desktop, application)));
    }
    for (const auto& peer : peers) {
        racers.push_back(racerOn(desktop, peer));
    }
    return racers;
}

} // namespace hollowfernpike::bench
