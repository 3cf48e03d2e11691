#include "desktop/Utility.h"

#include <gtest/gtest.h>

namespace hollowfernpike::test {

Utility::~Utility() {
    end();
}

std::string Utility::tells() {
    return process_ ? process_->output() + process_->errors() : std::string{};
}

void Utility::end() {
    if (!process_) {
        return;
    }
    const auto& errors = process_->errors();
    for (const char* complaint : {"Sanitizer", "runtime error:"}) {
        EXPECT_TRUE(errors.find(complaint) == std::string::npos) << errors;
    }
    process_.reset();
}

} // namespace hollowfernpike::test
