#include "support/CleanUp.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

namespace hollowfernpike::test {

class CleanUp::Surroundings {
public:
    Surroundings() {
        for (char** variable = environ; *variable != nullptr; ++variable) {
            variables_.emplace_back(*variable);
        }
        for (int number = 1; number < NSIG; ++number) {
            ::sigaction(number, nullptr, &actions_.at(static_cast<std::size_t>(number)));
        }
        ::pthread_sigmask(SIG_SETMASK, nullptr, &blockedSignals_);
        ::umask(fileModeMask_);
    }

    void restore() const {
        ::clearenv();
        for (const auto& variable : variables_) {
            const auto end = variable.find('=');
            ::setenv(variable.substr(0, end).c_str(), variable.substr(end + 1).c_str(), 1);
        }
        for (int number = 1; number < NSIG; ++number) {
            ::sigaction(number, &actions_.at(static_cast<std::size_t>(number)), nullptr);
        }
        ::pthread_sigmask(SIG_SETMASK, &blockedSignals_, nullptr);
        ::umask(fileModeMask_);
        std::filesystem::current_path(workingDirectory_);
    }

private:
    std::vector<std::string> variables_;
    std::array<struct sigaction, NSIG> actions_{};
    sigset_t blockedSignals_{};
    mode_t fileModeMask_ = ::umask(0);
    std::filesystem::path workingDirectory_ = std::filesystem::current_path();
};

CleanUp::CleanUp() = default;
CleanUp::~CleanUp() = default;

void CleanUp::OnTestStart(const testing::TestInfo& /*test*/) {
    before_ = std::make_unique<Surroundings>();
}

void CleanUp::OnTestEnd(const testing::TestInfo& /*test*/) {
    before_->restore();
}

} // namespace hollowfernpike::test
