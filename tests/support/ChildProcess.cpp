#include "support/ChildProcess.h"

#include "support/WaitUntil.h"

#include <array>
#include <csignal>
#include <cstring>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace hollowfernpike::test {

namespace {

std::vector<std::string> merged(const Environment& changes) {
    std::vector<std::string> variables;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string variable = *entry;
        if (!changes.contains(variable.substr(0, variable.find('=')))) {
            variables.push_back(variable);
        }
    }
    for (const auto& [name, value] : changes) {
        if (value) {
            variables.push_back(name + '=' + *value);
        }
    }
    return variables;
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    for (auto& text : texts) {
        result.push_back(text.data());
    }
    result.push_back(nullptr);
    return result;
}

std::array<int, 2> makePipe() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe2");
    }
    return ends;
}

void drain(int descriptor, std::string& into) {
    std::array<char, 4096> buffer{};
    for (ssize_t count = 0; (count = ::read(descriptor, buffer.data(), buffer.size())) > 0;) {
        into.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

std::optional<std::string> findLine(const std::string& text, const std::string& prefix) {
    for (std::size_t start = 0, end = 0; (end = text.find('\n', start)) != std::string::npos;
         start = end + 1) {
        if (text.compare(start, prefix.size(), prefix) == 0) {
            return text.substr(start, end - start);
        }
    }
    return std::nullopt;
}

} // namespace

Environment changed(Environment environment, const Environment& changes) {
    for (const auto& [variable, value] : changes) {
        environment[variable] = value;
    }
    return environment;
}

ChildProcess::ChildProcess(const std::vector<std::string>& arguments,
                           const Environment& environment) {
    auto argumentTexts = arguments;
    auto variableTexts = merged(environment);
    const auto output = makePipe();
    const auto errors = makePipe();

    posix_spawn_file_actions_t actions{};
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, errors[1], STDERR_FILENO);
    posix_spawnattr_t attributes{};
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
    const int failure =
        ::posix_spawnp(&pid_, arguments.front().c_str(), &actions, &attributes,
                       pointers(argumentTexts).data(), pointers(variableTexts).data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    ::close(output[1]);
    ::close(errors[1]);
    outputPipe_ = output[0];
    errorPipe_ = errors[0];
    if (failure != 0) {
        ::close(outputPipe_);
        ::close(errorPipe_);
        throw std::system_error(failure, std::generic_category(), arguments.front());
    }
}

ChildProcess::~ChildProcess() {
    ::kill(-pid_, SIGKILL);
    if (!status_) {
        ::waitpid(pid_, nullptr, 0);
    }
    ::close(outputPipe_);
    ::close(errorPipe_);
}

const std::string& ChildProcess::output() {
    drain(outputPipe_, output_);
    return output_;
}

const std::string& ChildProcess::errors() {
    drain(errorPipe_, errors_);
    return errors_;
}

std::optional<std::string> ChildProcess::waitForLine(const std::string& prefix,
                                                     std::chrono::milliseconds longest) {
    std::optional<std::string> line;
    const auto found = [&] {
        const bool ended = hasEnded();
        line = findLine(output(), prefix);
        return line || ended;
    };
    return waitUntil(found, longest) ? line : std::nullopt;
}

void ChildProcess::signal(int number) const {
    ::kill(pid_, number);
}

bool ChildProcess::hasEnded() {
    int status = 0;
    if (!status_ && ::waitpid(pid_, &status, WNOHANG) == pid_) {
        status_ = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }
    return status_.has_value();
}

std::optional<int> ChildProcess::wait(std::chrono::milliseconds longest) {
    return waitUntil([this] { return hasEnded(); }, longest) ? status_ : std::nullopt;
}

std::string processState(pid_t process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string text;
    std::getline(file, text); // fails, and does not throw, if the process ends meanwhile
    const auto nameEnd = text.rfind(") ");
    return nameEnd == std::string::npos ? std::string{} : text.substr(nameEnd + 2, 1);
}

} // namespace hollowfernpike::test
