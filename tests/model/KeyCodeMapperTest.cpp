#include "model/KeyCodeMapper.h"
#include "model/KeyNames.h"

#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike::test {
namespace {

TEST(KeyCodeMapperTest, NamesEightyKeys) {
    ASSERT_EQ(keyNames.size(), 80U);
    for (const auto& [keyCode, name] : keyNames) {
        EXPECT_EQ(KeyCodeMapper::keyName(keyCode), name) << keyCode;
    }
}

TEST(KeyCodeMapperTest, ShowsEveryOtherCodeAsANumber) {
    for (std::uint32_t keyCode = 0; keyCode <= 65535; ++keyCode) {
        const auto code = static_cast<std::uint16_t>(keyCode);
        if (!keyNames.contains(code)) {
            ASSERT_EQ(KeyCodeMapper::keyName(code), "Key(" + std::to_string(keyCode) + ")");
        }
    }
}

TEST(KeyCodeMapperTest, CallsKeypadDigitsAsThoseOfTheTopRow) {
    EXPECT_EQ(KeyCodeMapper::keyName(82), KeyCodeMapper::keyName(29));
    EXPECT_EQ(KeyCodeMapper::keyName(83), KeyCodeMapper::keyName(18));
}

TEST(KeyCodeMapperTest, AnswersOnEveryThread) {
    std::vector<std::string> names(8);
    std::vector<std::thread> threads;
    for (auto& name : names) {
        threads.emplace_back([&name] { name = KeyCodeMapper::keyName(36); });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(names, std::vector<std::string>(8, "Return"));
}

} // namespace
} // namespace hollowfernpike::test
