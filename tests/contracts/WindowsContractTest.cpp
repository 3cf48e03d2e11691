#include "contracts/Backend.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike::test {

namespace {

class WindowsContractTest : public testing::Test {
protected:
    /// The owners of ordinary windows, front to back.
    std::vector<std::string> owners() {
        std::vector<std::string> names;
        const auto windows = windows_.copyWindowInfo().value();
        for (const auto& window : windows) {
            if (window.layer == 0 && window.ownerName && window.ownerProcess) {
                names.push_back(*window.ownerName);
            }
        }
        return names;
    }

    bool ownersBecome(const std::vector<std::string>& expected) {
        return backend_->eventually([&] { return owners() == expected; });
    }

    std::optional<std::int32_t> processOf(const std::string& name) {
        const auto windows = windows_.copyWindowInfo().value();
        for (const auto& window : windows) {
            if (window.ownerName == name) {
                return window.ownerProcess;
            }
        }
        return std::nullopt;
    }

    std::unique_ptr<Backend> backend_ = makeBackend();
    platform::Windows& windows_ = backend_->windows();
};

TEST_F(WindowsContractTest, ListsOrdinaryWindowsFrontToBackByTheNamesOfTheirApplications) {
    EXPECT_TRUE(ownersBecome({}));
    backend_->open("Behind");
    EXPECT_TRUE(ownersBecome({"Behind"}));
    backend_->open("Before");
    EXPECT_TRUE(ownersBecome({"Before", "Behind"}));
    backend_->quit("Before");
    EXPECT_TRUE(ownersBecome({"Behind"}));
}

TEST_F(WindowsContractTest, BringsAnOwnerToTheFront) {
    backend_->open("Behind");
    backend_->open("Before");
    ASSERT_TRUE(ownersBecome({"Before", "Behind"}));
    const auto process = processOf("Behind");
    ASSERT_TRUE(process);
    EXPECT_TRUE(windows_.bringToFront(*process));
    EXPECT_TRUE(backend_->eventually([&] { return backend_->isInFront("Behind"); }));
    EXPECT_TRUE(ownersBecome({"Behind", "Before"}));
}

TEST_F(WindowsContractTest, WhatIsInFrontStaysThere) {
    backend_->open("Front");
    ASSERT_TRUE(ownersBecome({"Front"}));
    EXPECT_TRUE(windows_.bringToFront(processOf("Front").value()));
    EXPECT_TRUE(ownersBecome({"Front"}));
    EXPECT_TRUE(backend_->isInFront("Front"));
}

TEST_F(WindowsContractTest, NobodyComesForAProcessThatIsNotThere) {
    backend_->open("Front");
    ASSERT_TRUE(ownersBecome({"Front"}));
    EXPECT_FALSE(windows_.bringToFront(std::numeric_limits<std::int32_t>::max()));
    EXPECT_TRUE(backend_->isInFront("Front"));
}

} // namespace

} // namespace hollowfernpike::test
