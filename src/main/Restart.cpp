#include "main/Restart.h"

#include "platform/freedesktop/launching/CoreLimit.h"
#include "platform/freedesktop/launching/OwnEnvironment.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <vector>

#include <unistd.h>

namespace hollowfernpike {

namespace {

constexpr const char* stateVariable = "HOLLOWFERNPIKE_STATE";

} // namespace

void restartProgram(const std::string& program, const std::string& state) {
    auto variables = freedesktop::usersEnvironment();
    variables.push_back(std::string{stateVariable} + '=' + state);
    std::vector<char*> environment;
    for (auto& variable : variables) {
        environment.push_back(variable.data());
    }
    environment.push_back(nullptr);
    std::string name = program;
    std::array<char*, 2> words{name.data(), nullptr};
    // The new run takes what it finds for the user's.
    const freedesktop::CoreFilesGivenBack usersLimit;
    sigset_t none;
    sigemptyset(&none);
    ::pthread_sigmask(SIG_SETMASK, &none, nullptr);
    ::execve(program.c_str(), words.data(), environment.data());
}

std::optional<std::string> stateBeforeRestart() {
    const char* const value = std::getenv(stateVariable);
    auto state = value == nullptr ? std::nullopt : std::optional<std::string>(value);
    ::unsetenv(stateVariable);
    return state;
}

} // namespace hollowfernpike
