#include "platform/freedesktop/ApplicationsHome.h"

#include "support/WaitUntil.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include <sys/wait.h>
#include <unistd.h>

namespace hollowfernpike::test {

namespace {

void setVariable(const char* name, const std::filesystem::path& value) {
    ::setenv(name, value.c_str(), 1);
}

WitnessReport readReport(const std::filesystem::path& file) {
    WitnessReport report;
    report.process = std::stoi(file.filename().string());
    std::ifstream input(file);
    for (std::string line; std::getline(input, line);) {
        const auto tab = line.find('\t');
        report.lines.emplace(line.substr(0, tab), line.substr(tab + 1));
    }
    return report;
}

} // namespace

std::vector<std::string> WitnessReport::all(const std::string& key) const {
    std::vector<std::string> values;
    const auto [first, last] = lines.equal_range(key);
    std::transform(first, last, std::back_inserter(values),
                   [](const auto& line) { return line.second; });
    return values;
}

std::string WitnessReport::first(const std::string& key) const {
    const auto found = lines.find(key);
    return found == lines.end() ? std::string{} : found->second;
}

std::string WitnessReport::variable(const std::string& name) const {
    for (const auto& variable : all("variable")) {
        if (variable.starts_with(name + '=')) {
            return variable.substr(name.size() + 1);
        }
    }
    return "(unset)";
}

ApplicationsHome::ApplicationsHome() {
    std::filesystem::create_directories(applications());
    std::filesystem::create_directories(systemApplications());
    std::filesystem::create_directories(reports());
    std::filesystem::create_directories(path() / "run");
    setVariable("HOME", path());
    setVariable("XDG_DATA_HOME", path() / "data");
    setVariable("XDG_DATA_DIRS", path() / "system");
    setVariable("XDG_RUNTIME_DIR", path() / "run");
    ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
}

// Children are killed although they have not reported yet: they hold the test's output open, so the
// test run would wait for their end.
ApplicationsHome::~ApplicationsHome() {
    std::ifstream children("/proc/self/task/" + std::to_string(::getpid()) + "/children");
    for (pid_t child = 0; children >> child;) {
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
    }
    for (const auto& witness : witnesses()) {
        if (isOfThisHome(witness.process)) {
            ::kill(witness.process, SIGKILL);
        }
    }
}

std::string ApplicationsHome::write(const std::filesystem::path& file,
                                    const std::string& text) const {
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file) << text;
    return file.string();
}

std::string ApplicationsHome::addEntry(const std::string& name, const std::string& exec,
                                       const std::string& more) const {
    return write(applications() / (name + ".desktop"), "[Desktop Entry]\nType=Application\nName=" +
                                                           name + "\nExec=" + exec + '\n' + more);
}

std::string ApplicationsHome::program(const std::string& name) const {
    const auto copy = path() / "bin" / (name + '-' + path().filename().string());
    std::filesystem::create_directories(copy.parent_path());
    std::filesystem::copy_file(HFP_WITNESS, copy, std::filesystem::copy_options::skip_existing);
    return copy.string();
}

std::string ApplicationsHome::witness(const std::string& manner, const std::string& more) const {
    return witnessNamed("witness", manner) + (more.empty() ? "" : ' ' + more);
}

std::string ApplicationsHome::witnessNamed(const std::string& name,
                                           const std::string& manner) const {
    return program(name) + ' ' + reports().string() + ' ' + manner;
}

// The number of a process that has ended may be another's by now.
bool ApplicationsHome::isOfThisHome(pid_t process) const {
    std::error_code error;
    const auto file =
        std::filesystem::read_symlink("/proc/" + std::to_string(process) + "/exe", error);
    return file.string().starts_with(path().string() + '/');
}

std::vector<WitnessReport> ApplicationsHome::witnesses() const {
    std::vector<WitnessReport> reports;
    for (const auto& file : std::filesystem::directory_iterator(this->reports())) {
        if (!file.path().has_extension()) {
            reports.push_back(readReport(file.path()));
        }
    }
    std::ranges::sort(reports, {}, &WitnessReport::process);
    return reports;
}

std::vector<WitnessReport> ApplicationsHome::awaitWitnesses(std::size_t count) const {
    if (!waitUntil([&] { return witnesses().size() >= count; })) {
        throw std::runtime_error("the launched programs did not report");
    }
    return witnesses();
}

} // namespace hollowfernpike::test
