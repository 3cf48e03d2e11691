#pragma once

#include "platform/posix/AtomicFile.h"
#include "support/Files.h"
#include "support/TemporaryDirectory.h"

#include <string_view>
#include <system_error>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace hollowfernpike::test {

namespace fs = std::filesystem;

using posix::writeFileAtomically;

class AtomicFileTest : public testing::Test {
protected:
    fs::path folder() const { return directory_.path(); }
    fs::path file() const { return folder() / "file"; }

    static std::error_code failure(const fs::path& path, std::string_view data = "new") {
        return failureOf([&] { writeFileAtomically(path, data); });
    }

    static mode_t modeOf(const fs::path& path) {
        struct stat status = {};
        EXPECT_EQ(::stat(path.c_str(), &status), 0);
        return status.st_mode & 07777;
    }

    TemporaryDirectory directory_;
};

} // namespace hollowfernpike::test
