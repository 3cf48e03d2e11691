#include "support/SessionBus.h"

#include "support/SessionUser.h"
#include "support/WriteFile.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <stdexcept>

namespace hollowfernpike::test {

namespace {

std::string valueIn(const Environment& environment, const std::string& name) {
    const auto given = environment.find(name);
    if (given != environment.end()) {
        return given->second.value_or("");
    }
    const char* own = std::getenv(name.c_str());
    return own == nullptr ? "" : own;
}

/// That of the system's session bus, but without the machine's services, and with its socket in a
/// directory that goes with it.
std::string busConfiguration(const Environment& environment,
                             const std::filesystem::path& directory) {
    std::string directories;
    for (const auto* data : {"XDG_DATA_HOME", "XDG_DATA_DIRS"}) {
        directories +=
            "<servicedir>" + valueIn(environment, data) + "/dbus-1/services</servicedir>";
    }
    return "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\" "
           "\"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">"
           "<busconfig><type>session</type><listen>unix:tmpdir=" +
           directory.string() + "</listen><auth>EXTERNAL</auth>" + directories +
           "<policy context=\"default\"><allow user=\"root\"/><allow send_destination=\"*\" "
           "eavesdrop=\"true\"/>"
           "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy>"
           "<limit name=\"service_start_timeout\">120000</limit></busconfig>\n";
}

} // namespace

// Without the identity of this daemon, which the address of the next one would not have.
SessionBus::SessionBus(const Environment& environment, BusOwner owner) : environment_(environment) {
    const auto configuration = directory_.path() / "session.conf";
    writeFile(configuration, busConfiguration(environment, directory_.path()));
    command_ = {"dbus-daemon", "--config-file=" + configuration.string(), "--nofork",
                "--print-address=1"};
    if (owner == BusOwner::sessionUser) {
        giveToSessionUser(directory_.path());
        command_ = asSessionUser(command_);
    }
    address_ = start();
    address_.erase(std::min(address_.find(",guid="), address_.size()));
    command_.push_back("--address=" + address_);
}

void SessionBus::end() {
    daemon_->signal(SIGKILL);
    daemon_->wait();
}

void SessionBus::startAgain() {
    start();
}

std::string SessionBus::start() {
    daemon_ = std::make_unique<ChildProcess>(command_, environment_);
    auto line = daemon_->waitForLine("");
    if (!line) {
        throw std::runtime_error("dbus-daemon did not start: " + daemon_->errors());
    }
    return *line;
}

std::string callOnBus(const Environment& environment, const std::vector<std::string>& arguments) {
    std::vector<std::string> line{"gdbus",      "call",     "--session",  "--timeout",
                                  "20",         "--dest",   arguments[0], "--object-path",
                                  arguments[1], "--method", arguments[2], "--"};
    line.insert(line.end(), arguments.begin() + 3, arguments.end());
    ChildProcess caller(line, environment);
    if (caller.wait() != 0) {
        throw std::runtime_error(arguments[2] + ": " + caller.errors());
    }
    return caller.output();
}

} // namespace hollowfernpike::test
