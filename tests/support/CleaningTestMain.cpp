// Changes back, behind every test, what it has changed of the process, so that the tests of a
// program do not depend on each other when one process runs them all.

#include <array>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace hollowfernpike::test {

namespace {

class Surroundings {
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

class CleanUp final : public testing::EmptyTestEventListener {
public:
    void OnTestStart(const testing::TestInfo& /*test*/) override { before_.emplace(); }
    void OnTestEnd(const testing::TestInfo& /*test*/) override { before_->restore(); }

private:
    std::optional<Surroundings> before_;
};

} // namespace

} // namespace hollowfernpike::test

int main(int count, char** arguments) {
    testing::InitGoogleTest(&count, arguments);
    testing::UnitTest::GetInstance()->listeners().Append(new hollowfernpike::test::CleanUp);
    return RUN_ALL_TESTS();
}
