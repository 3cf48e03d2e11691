#include "package/InstalledProgram.h"

#include <stdexcept>
#include <string>

namespace hollowfernpike::test {

namespace installed {

void show(const PrivateDesktop& desktop) {
    const std::string name = identifier;
    desktop.showOfMachine("applications/" + name + ".desktop");
    desktop.showOfMachine("dbus-1/services/" + name + ".service");
    desktop.showOfMachine("icons/hicolor");
    callOnBus(desktop, {"org.freedesktop.DBus", "/org/freedesktop/DBus",
                        "org.freedesktop.DBus.ReloadConfig"});
}

void call(const PrivateDesktop& desktop, const std::string& method,
          const std::vector<std::string>& arguments) {
    std::vector<std::string> line{identifier, "/app/hollowfernpike/Hollowfernpike",
                                  "org.freedesktop.Application." + method};
    line.insert(line.end(), arguments.begin(), arguments.end());
    callOnBus(desktop, line);
}

pid_t process(const PrivateDesktop& desktop) {
    const std::string prefix = "(uint32 ";
    const auto answer =
        callOnBus(desktop, {"org.freedesktop.DBus", "/org/freedesktop/DBus",
                            "org.freedesktop.DBus.GetConnectionUnixProcessID", identifier});
    return std::stoi(answer.substr(answer.find(prefix) + prefix.size()));
}

} // namespace installed

Application& InstalledProgramTest::bindTarget() {
    auto& target = story.install("Target");
    story.bind(bound, target);
    story.writeShortcuts();
    return target;
}

void InstalledProgramTest::activate() {
    installed::call(story.desktop, "Activate", {"{}"});
    user.managementComes();
}

} // namespace hollowfernpike::test
