#include "model/UUID.h"
#include "model/Shortcuts.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

namespace hollowfernpike::test {
namespace {

TEST(UUIDTest, ParsesAndWritesTheCanonicalFormInUpperCase) {
    const std::string text = "E621E1F8-C36C-495A-93FC-0C247A3E6E5F";
    const auto uuid = UUID::parse(text);
    ASSERT_TRUE(uuid);
    EXPECT_EQ(uuid->bytes(), (UUID::Bytes{0xE6, 0x21, 0xE1, 0xF8, 0xC3, 0x6C, 0x49, 0x5A, 0x93,
                                          0xFC, 0x0C, 0x24, 0x7A, 0x3E, 0x6E, 0x5F}));
    EXPECT_EQ(uuid->text(), text);
}

TEST(UUIDTest, ReadsLowerAndMixedCase) {
    const auto upper = UUID::parse("E621E1F8-C36C-495A-93FC-0C247A3E6E5F");
    EXPECT_EQ(UUID::parse("e621e1f8-c36c-495a-93fc-0c247a3e6e5f"), upper);
    EXPECT_EQ(UUID::parse("e621E1f8-C36c-495A-93fc-0c247A3E6e5F"), upper);
}

TEST(UUIDTest, KeepsUUIDsOfEveryVersion) {
    for (const std::string text :
         {"00000000-0000-0000-0000-000000000000", "FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF",
          "C232AB00-9414-11EC-B3C8-9F6BDECED846"}) {
        const auto uuid = UUID::parse(text);
        ASSERT_TRUE(uuid) << text;
        EXPECT_EQ(uuid->text(), text);
    }
}

TEST(UUIDTest, RefusesEveryOtherForm) {
    for (const std::string text :
         {"", "E621E1F8", "E621E1F8-C36C-495A-93FC-0C247A3E6E5",
          "E621E1F8-C36C-495A-93FC-0C247A3E6E5F0", "E621E1F8C36C495A93FC0C247A3E6E5F",
          "{E621E1F8-C36C-495A-93FC-0C247A3E6E5F}", " E621E1F8-C36C-495A-93FC-0C247A3E6E5F",
          "E621E1F8-C36C-495A-93FC-0C247A3E6E5F ", "G621E1F8-C36C-495A-93FC-0C247A3E6E5F",
          "E621E1F8-C36C-495A-93FC-0C247A3E6E5g", "E621E1F8_C36C_495A_93FC_0C247A3E6E5F",
          "E621E1F-8C36C-495A-93FC-0C247A3E6E5F", "-621E1F8-C36C-495A-93FC-0C247A3E6E5F",
          "+621E1F8-C36C-495A-93FC-0C247A3E6E5F", "0xE621E1-C36C-495A-93FC-0C247A3E6E5F",
          "E621E1F8-C36C-495A-93FC-0C247A3E\xC3\xA9\x35\x46"}) {
        EXPECT_EQ(UUID::parse(text), std::nullopt) << text;
    }
    EXPECT_EQ(UUID::parse({"E621E1F8-C36C-495A-93FC-0C247A3E6E5\0", 36}), std::nullopt);
}

TEST(UUIDTest, FreshOnesAreRandomOfVersion4) {
    std::set<std::string> seen;
    for (int round = 0; round < 1000; ++round) {
        const auto uuid = UUID::random();
        EXPECT_EQ(uuid.bytes()[6] >> 4, 4);
        EXPECT_EQ(uuid.bytes()[8] >> 6, 2);
        EXPECT_TRUE(seen.insert(uuid.text()).second) << uuid.text();
    }
}

TEST(UUIDTest, FreshOnesUseEveryBitThatIsFree) {
    UUID::Bytes everSet{};
    UUID::Bytes alwaysSet{};
    alwaysSet.fill(0xFF);
    for (int round = 0; round < 1000; ++round) {
        const auto bytes = UUID::random().bytes();
        for (std::size_t index = 0; index < bytes.size(); ++index) {
            everSet.at(index) |= bytes.at(index);
            alwaysSet.at(index) &= bytes.at(index);
        }
    }
    EXPECT_EQ(everSet, (UUID::Bytes{255, 255, 255, 255, 255, 255, 0x4F, 255, 0xBF, 255, 255, 255,
                                    255, 255, 255, 255}));
    EXPECT_EQ(alwaysSet, (UUID::Bytes{0, 0, 0, 0, 0, 0, 0x40, 0, 0x80, 0, 0, 0, 0, 0, 0, 0}));
}

} // namespace
} // namespace hollowfernpike::test
