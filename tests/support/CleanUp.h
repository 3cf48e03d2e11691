#pragma once

#include <memory>

#include <gtest/gtest.h>

namespace hollowfernpike::test {

/// Undoes after every test what it has changed of the process (variables, signals, the working
/// directory and the mask of file modes), so that the tests of a program do not depend on each
/// other when one process runs them all.
class CleanUp final : public testing::EmptyTestEventListener {
public:
    CleanUp();
    ~CleanUp() override;

    void OnTestStart(const testing::TestInfo& test) override;
    void OnTestEnd(const testing::TestInfo& test) override;

private:
    class Surroundings;
    std::unique_ptr<Surroundings> before_;
};

} // namespace hollowfernpike::test
