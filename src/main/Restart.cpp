#include "main/Restart.h"

#include "platform/freedesktop/files/BaseDirectories.h"
#include "platform/freedesktop/launching/OwnEnvironment.h"
#include "platform/wayland/connection/Connection.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <thread>
#include <vector>

#include <unistd.h>

namespace hollowfernpike {

namespace {

constexpr const char* stateVariable = "HOLLOWFERNPIKE_STATE";

bool hasSocket() {
    const char* const name = std::getenv("WAYLAND_DISPLAY");
    const auto directory = freedesktop::runtimeDirectory();
    std::error_code failure;
    return name != nullptr &&
           std::filesystem::exists(directory.value_or("/") / std::filesystem::path(name), failure);
}

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
    ::execve(program.c_str(), words.data(), environment.data());
}

std::optional<std::string> stateBeforeRestart() {
    const char* const value = std::getenv(stateVariable);
    auto state = value == nullptr ? std::nullopt : std::optional<std::string>(value);
    ::unsetenv(stateVariable);
    return state;
}

bool awaitCompositor(std::chrono::seconds longest) {
    constexpr std::chrono::milliseconds pause{100};
    const auto deadline = std::chrono::steady_clock::now() + longest;
    while (hasSocket() && std::chrono::steady_clock::now() < deadline) {
        if (wayland::Connection::open()) {
            return true;
        }
        std::this_thread::sleep_for(pause);
    }
    return false;
}

} // namespace hollowfernpike
