#include "ui/window/OpenWindows.h"

#include <gmock/gmock.h>

namespace hollowfernpike {

namespace {

using testing::IsEmpty;
using testing::SizeIs;

TEST(OpenWindowsTest, AreReadAsTheyWereWritten) {
    const auto edited = UUID::random();
    const OpenWindows windows{
        .hasMainWindow = true,
        .editors = {{.editing = edited,
                     .appPath = "/usr/share/applications/\xE8\x8A\xB1\xFF.desktop",
                     .keyCode = 0xFFFF,
                     .modifierFlags = 0xFFFFFFFFFFFFFFFF},
                    {.editing = std::nullopt,
                     .appPath = "",
                     .keyCode = std::nullopt,
                     .modifierFlags = std::nullopt}}};
    const auto read = OpenWindows::parse(windows.text());
    EXPECT_TRUE(read.hasMainWindow);
    ASSERT_THAT(read.editors, SizeIs(2));
    EXPECT_EQ(read.editors[0].editing, edited);
    EXPECT_EQ(read.editors[0].appPath, windows.editors[0].appPath);
    EXPECT_EQ(read.editors[0].keyCode, 0xFFFF);
    EXPECT_EQ(read.editors[0].modifierFlags, 0xFFFFFFFFFFFFFFFF);
    EXPECT_EQ(read.editors[1].editing, std::nullopt);
    EXPECT_EQ(read.editors[1].appPath, "");
    EXPECT_EQ(read.editors[1].keyCode, std::nullopt);
    EXPECT_EQ(read.editors[1].modifierFlags, std::nullopt);
}

TEST(OpenWindowsTest, OtherTextsOpenNothing) {
    for (const auto* const text : {"", "?", "AAAA", "oWA=", "////////"}) {
        const auto read = OpenWindows::parse(text);
        EXPECT_FALSE(read.hasMainWindow) << text;
        EXPECT_THAT(read.editors, IsEmpty()) << text;
    }
}

} // namespace

} // namespace hollowfernpike
